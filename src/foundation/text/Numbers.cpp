#include <text/Convert.h>
#include <text/Numbers.h>
#include <text/RuntimeError.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace vb {

namespace {

/// Calls `act` with the number in `value`, which is a qint64, a double or a Currency.
template <class Act>
Value onNumber(const Value& value, Act act) {
    if (value.isNull()) return {};
    if (const auto* c = std::get_if<Currency>(&value.data())) return act(*c);
    if (const auto* i = std::get_if<qint64>(&value.data())) return act(*i);
    if (const auto* b = std::get_if<bool>(&value.data())) return act(qint64{*b ? -1 : 0});
    return act(value.toDouble());
}

double inRange(double value) {
    if (!std::isfinite(value)) RaiseOverflow();
    return value;
}

qint64 wholeDown(qint64 scaled) { return scaled - ((scaled % 10000) + 10000) % 10000; }

/// Money cannot hold the whole number below its smallest amount.
Currency down(Currency value) {
    if (value.scaled() < std::numeric_limits<qint64>::min() + 10000) RaiseOverflow();
    return Currency::fromScaled(wholeDown(value.scaled()));
}

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

} // namespace

Value Abs(const Value& value) {
    return onNumber(value, Overloaded{[](Currency c) -> Value { return c.scaled() < 0 ? -c : c; },
                                      [](qint64 i) -> Value {
                                          if (i == std::numeric_limits<qint64>::min()) RaiseOverflow();
                                          return i < 0 ? -i : i;
                                      },
                                      [](double d) -> Value { return std::abs(d); }});
}

Value Int(const Value& value) {
    return onNumber(value, Overloaded{[](Currency c) -> Value { return down(c); },
                                      [](qint64 i) -> Value { return i; },
                                      [](double d) -> Value { return std::floor(d); }});
}

Value Fix(const Value& value) {
    return onNumber(
        value,
        Overloaded{[](Currency c) -> Value { return Currency::fromScaled(c.scaled() - c.scaled() % 10000); },
                   [](qint64 i) -> Value { return i; }, [](double d) -> Value { return std::trunc(d); }});
}

Value Sgn(const Value& value) {
    const auto sign = [](auto n) -> Value { return n > 0 ? 1 : n < 0 ? -1 : 0; };
    return onNumber(value, Overloaded{[&](Currency c) { return sign(c.scaled()); },
                                      [&](qint64 i) { return sign(i); }, [&](double d) { return sign(d); }});
}

Value Round(const Value& value, int digits) {
    if (digits < 0) RaiseInvalidCall();
    return onNumber(value, Overloaded{[&](Currency c) -> Value {
                                          qint64 unit = 1;
                                          for (int i = digits; i < 4; ++i)
                                              unit *= 10;
                                          qint64 rest = c.scaled() % unit;
                                          qint64 whole = c.scaled() - rest;
                                          if (rest < 0) rest = -rest;
                                          const bool up = rest * 2 > unit || (rest * 2 == unit && unit > 1 &&
                                                                              whole / unit % 2 != 0);
                                          if (!up) return Currency::fromScaled(whole);
                                          const Currency step = Currency::fromScaled(unit);
                                          const Currency result = Currency::fromScaled(whole);
                                          return c.scaled() < 0 ? result - step : result + step;
                                      },
                                      [](qint64 i) -> Value { return i; },
                                      [&](double d) -> Value { return RoundHalfEven(d, digits); }});
}

double Sqr(double value) {
    if (!(value >= 0)) RaiseInvalidCall();
    return std::sqrt(value);
}

double Exp(double value) { return inRange(std::exp(value)); }

double Log(double value) {
    if (!(value > 0)) RaiseInvalidCall();
    return std::log(value);
}

double Sin(double value) { return inRange(std::sin(value)); }
double Cos(double value) { return inRange(std::cos(value)); }
double Tan(double value) { return inRange(std::tan(value)); }
double Atn(double value) { return std::atan(value); }

double Power(double base, double exponent) {
    if (base == 0 && exponent < 0) RaiseInvalidCall();
    if (base < 0 && exponent != std::trunc(exponent)) RaiseInvalidCall();
    return inRange(std::pow(base, exponent));
}

qint64 IntegerDivide(const Value& a, const Value& b) {
    const qint64 dividend = a.toInteger(), divisor = b.toInteger();
    if (divisor == 0) RaiseDivisionByZero();
    if (divisor == -1 && dividend == std::numeric_limits<qint64>::min()) RaiseOverflow();
    return dividend / divisor;
}

qint64 Mod(const Value& a, const Value& b) {
    const qint64 dividend = a.toInteger(), divisor = b.toInteger();
    if (divisor == 0) RaiseDivisionByZero();
    return divisor == -1 ? 0 : dividend % divisor;
}

double Rnd(double number) {
    // A linear congruential row of 24 bits, as Basic always had it.
    static quint32 state = 0x50000;
    if (number < 0) {
        const auto bits = std::bit_cast<quint32>(static_cast<float>(std::max(number, -3e38)));
        state = (bits + (bits >> 24)) & 0xffffff;
    }
    if (number != 0) state = (state * 0x43fd43fdU + 0xc39ec3U) & 0xffffff;
    return state / 16777216.0;
}

} // namespace vb
