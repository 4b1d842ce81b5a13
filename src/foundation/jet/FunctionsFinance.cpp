#include "FunctionParts.h"

#include <text/RuntimeError.h>

#include <algorithm>
#include <cmath>

namespace jet {

namespace {

using Arguments = std::span<const Value>;

double at(Arguments a, std::size_t i, double otherwise = 0) {
    return i < a.size() ? a[i].toDouble() : otherwise;
}

template <double (*F)(Arguments)>
Value finite(Arguments a) {
    if (std::any_of(a.begin(), a.end(), [](const Value& v) { return v.isNull(); })) return {};
    const double result = F(a);
    if (!std::isfinite(result)) RaiseInvalidCall();
    return result;
}

// Depreciation: cost, salvage value, life, period.
double straightLine(Arguments a) {
    if (at(a, 2) == 0) RaiseDivisionByZero();
    return (at(a, 0) - at(a, 1)) / at(a, 2);
}
double yearsDigits(Arguments a) {
    const double life = at(a, 2), period = at(a, 3);
    if (life <= 0 || period < 1 || period > life || at(a, 1) < 0) RaiseInvalidCall();
    return (at(a, 0) - at(a, 1)) * (life - period + 1) * 2 / (life * (life + 1));
}
double decliningBalance(Arguments a) {
    const double cost = at(a, 0), salvage = at(a, 1), life = at(a, 2), period = at(a, 3),
                 factor = at(a, 4, 2);
    if (cost < 0 || salvage < 0 || life <= 0 || period < 1 || period > life || factor <= 0)
        RaiseInvalidCall();
    const double rest = std::pow(std::max(0.0, 1 - factor / life), period - 1);
    const double value = cost * rest;
    return std::max(0.0, std::min(value * std::min(1.0, factor / life), value - salvage));
}

// Annuities: rate per period, number of periods, payment, value at the other end, 1 when paid in advance.
double growth(Arguments a) { return std::pow(1 + at(a, 0), at(a, 1)); }
double advance(Arguments a) { return at(a, 4) != 0 ? 1 + at(a, 0) : 1; }
double futureValue(Arguments a) {
    if (at(a, 0) == 0) return -at(a, 3) - at(a, 2) * at(a, 1);
    return -at(a, 3) * growth(a) - at(a, 2) * advance(a) * (growth(a) - 1) / at(a, 0);
}
double presentValue(Arguments a) {
    if (at(a, 0) == 0) return -at(a, 3) - at(a, 2) * at(a, 1);
    return -(at(a, 3) + at(a, 2) * advance(a) * (growth(a) - 1) / at(a, 0)) / growth(a);
}
double payment(Arguments a) { // rate, periods, present value, future value, in advance
    if (at(a, 1) == 0) RaiseInvalidCall();
    if (at(a, 0) == 0) return -(at(a, 2) + at(a, 3)) / at(a, 1);
    return -(at(a, 3) + at(a, 2) * growth(a)) * at(a, 0) / (advance(a) * (growth(a) - 1));
}
double periods(Arguments a) { // rate, payment, present value, future value, in advance
    const double rate = at(a, 0), pay = at(a, 1) * advance(a);
    if (rate == 0) return -(at(a, 2) + at(a, 3)) / at(a, 1);
    return std::log((pay - at(a, 3) * rate) / (pay + at(a, 2) * rate)) / std::log1p(rate);
}

} // namespace

void addFinanceFunctions(std::vector<Function>& list) {
    const Function more[] = {
        {"jet_sln", finite<straightLine>},     {"jet_syd", finite<yearsDigits>},
        {"jet_ddb", finite<decliningBalance>}, {"jet_fv", finite<futureValue>},
        {"jet_pv", finite<presentValue>},      {"jet_pmt", finite<payment>},
        {"jet_nper", finite<periods>},
    };
    list.insert(list.end(), std::begin(more), std::end(more));
}

} // namespace jet
