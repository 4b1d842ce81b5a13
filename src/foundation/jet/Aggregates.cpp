#include <jet/Functions.h>

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

/// Variance by running mean and squared distance, which loses no digits for large values.
template <bool Population, bool Root>
class Spread final : public Accumulator {
  public:
    void step(std::span<const Value> arguments) override {
        if (arguments[0].isNull()) return;
        const double x = arguments[0].toDouble();
        ++m_count;
        const double distance = x - m_mean;
        m_mean += distance / double(m_count);
        m_squares += distance * (x - m_mean);
    }
    [[nodiscard]] Value result() const override {
        const qint64 divisor = Population ? m_count : m_count - 1;
        if (divisor < 1) return {};
        const double variance = m_squares / double(divisor);
        return Root ? std::sqrt(variance) : variance;
    }

  private:
    qint64 m_count = 0;
    double m_mean = 0, m_squares = 0;
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
