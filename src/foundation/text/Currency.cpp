#include "Int128.h"

#include <text/Currency.h>
#include <text/RuntimeError.h>

#include <cmath>
#include <limits>

namespace {

constexpr Int128 scale = 10000;

qint64 checked(Int128 scaled) {
    if (scaled < std::numeric_limits<qint64>::min() || scaled > std::numeric_limits<qint64>::max())
        RaiseOverflow();
    return static_cast<qint64>(scaled);
}

Int128 divideHalfEven(Int128 value, Int128 divisor) {
    Int128 quotient = value / divisor;
    const Int128 rest = value % divisor;
    const Int128 twice = (rest < 0 ? -rest : rest) * 2;
    if (twice > divisor || (twice == divisor && quotient % 2 != 0)) quotient += value < 0 ? -1 : 1;
    return quotient;
}

} // namespace

Currency Currency::fromDouble(double value) {
    const double scaled = value * 10000.0;
    // 2^63 is a double, the largest scaled value is not: everything below it fits.
    constexpr double limit = 9223372036854775808.0;
    if (!(scaled >= -limit && scaled < limit)) RaiseOverflow();
    double rounded = std::nearbyint(scaled);
    // Four decimals and a half are rarely exact in binary: what is a tie as far as a double can tell is one.
    const double down = std::floor(scaled);
    if (std::abs(scaled) < 0x1p43 && std::abs(scaled - down - 0.5) <= std::abs(scaled) * 0x1p-51)
        rounded = std::fmod(down, 2.0) == 0.0 ? down : down + 1.0;
    return fromScaled(static_cast<qint64>(rounded));
}

Currency Currency::fromInteger(qint64 value) { return fromScaled(checked(Int128{value} * scale)); }

double Currency::toDouble() const { return static_cast<double>(m_scaled) / 10000.0; }

Currency Currency::operator-() const { return fromScaled(checked(-Int128{m_scaled})); }

Currency Currency::operator+(Currency other) const {
    return fromScaled(checked(Int128{m_scaled} + other.m_scaled));
}

Currency Currency::operator-(Currency other) const {
    return fromScaled(checked(Int128{m_scaled} - other.m_scaled));
}

Currency Currency::operator*(Currency other) const {
    return fromScaled(checked(divideHalfEven(Int128{m_scaled} * other.m_scaled, scale)));
}
