#include <jet/Functions.h>
#include <text/RuntimeError.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace jet {

namespace {

/// The first or the last row's value, Null included. The keys of its rows follow the value; without them the
/// rows count as they come.
template <bool Last>
class Edge final : public Accumulator {
  public:
    void step(std::span<const Value> arguments) override {
        m_newKey.clear();
        for (const Value& key : arguments.subspan(1))
            m_newKey.push_back(key.isNull() ? std::numeric_limits<qint64>::min() : key.toInteger());
        if (m_any && (Last ? m_newKey < m_key : m_newKey >= m_key)) return;
        m_value = arguments[0];
        m_key.swap(m_newKey);
        m_any = true;
    }
    [[nodiscard]] Value result() const override { return m_value; }

  private:
    Value m_value;
    std::vector<qint64> m_key, m_newKey;
    bool m_any = false;
};

/// Variance in two passes over the sorted values, as the functions of the server do it step by step: large
/// values that lie close together lose no digits, and equal ones give exactly 0.
template <bool Population, bool Root>
class Spread final : public Accumulator {
  public:
    void step(std::span<const Value> arguments) override {
        if (!arguments[0].isNull()) m_values.push_back(arguments[0].toDouble());
    }
    [[nodiscard]] Value result() const override {
        const auto count = double(m_values.size());
        const double divisor = Population ? count : count - 1;
        if (divisor < 1) return {};
        std::vector<double> values = m_values;
        std::sort(values.begin(), values.end());
        const double least = values.front();
        double above = 0;
        for (const double x : values)
            above += x - least;
        const double mean = least + above / count;
        double distances = 0, squares = 0;
        for (const double x : values) {
            const double distance = x - mean;
            distances += distance;
            squares += square(distance);
        }
        const double variance = std::max(0.0, squares - square(distances) / count) / divisor;
        if (!std::isfinite(variance)) RaiseOverflow();
        return Root ? std::sqrt(variance) : variance;
    }

  private:
    static double square(double x) { return std::abs(x) < 1e-150 ? 0 : x * x; }
    std::vector<double> m_values;
};

template <class T>
std::unique_ptr<Accumulator> make() {
    return std::make_unique<T>();
}

} // namespace

const std::vector<Aggregate>& aggregates() {
    static const std::vector<Aggregate> list{
        {"jet_first", make<Edge<false>>},         {"jet_last", make<Edge<true>>},
        {"jet_var", make<Spread<false, false>>},  {"jet_varp", make<Spread<true, false>>},
        {"jet_stdev", make<Spread<false, true>>}, {"jet_stdevp", make<Spread<true, true>>},
    };
    return list;
}

} // namespace jet
