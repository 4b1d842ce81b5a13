#include "Digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

void strip(Digits& n) {
    while (n.count > 0 && n.d[n.count - 1] == '0')
        --n.count;
    if (n.count == 0) n.point = 0;
}

Digits ofMagnitude(quint64 magnitude, bool negative) {
    Digits n;
    n.negative = negative;
    if (magnitude == 0) return n;
    const auto end = std::to_chars(n.d, n.d + Digits::capacity, magnitude).ptr;
    n.count = n.point = static_cast<int>(end - n.d);
    strip(n);
    return n;
}

quint64 magnitudeOf(qint64 value) {
    return value < 0 ? ~static_cast<quint64>(value) + 1U : static_cast<quint64>(value);
}

/// Reads "d.ddde±xx".
void fromScientific(Digits& n, const char* text, const char* end) {
    for (; text != end && *text != 'e'; ++text)
        if (*text != '.') n.d[n.count++] = *text;
    int exponent = 0;
    if (text != end) {
        ++text;
        if (text != end && *text == '+') ++text;
        std::from_chars(text, end, exponent);
    }
    n.point = exponent + 1;
    strip(n);
}

} // namespace

Digits Digits::of(double value) {
    // Whole numbers below 10^15 have no more than 15 digits and are the most frequent ones.
    if (std::abs(value) < 1e15) {
        const auto whole = static_cast<qint64>(value);
        if (static_cast<double>(whole) == value) return ofMagnitude(magnitudeOf(whole), whole < 0);
    }
    Digits n;
    n.negative = std::signbit(value);
    if (!std::isfinite(value)) {
        n.finite = false;
        return n;
    }
    char buffer[40];
    const double magnitude = std::abs(value);
    // The shortest text that reads back is the 15-digit text whenever it is no longer than that, except for
    // the tiniest doubles, which hold fewer digits.
    auto end = std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific).ptr;
    const auto mantissa = std::find(buffer, end, 'e') - buffer;
    if (mantissa > 16 || magnitude < std::numeric_limits<double>::min())
        end = std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific, 14).ptr;
    fromScientific(n, buffer, end);
    return n;
}

Digits Digits::of(float value) {
    Digits n = of(double(value));
    n.places = 7;
    if (n.finite) n.round(n.places - n.point, Tie::Away);
    return n;
}

Digits Digits::of(qint64 value) { return ofMagnitude(magnitudeOf(value), value < 0); }

Digits Digits::of(Currency value) {
    Digits n = of(value.scaled());
    if (n.count > 0) n.point -= 4;
    return n;
}

double Digits::toDouble() const {
    if (!finite) return negative ? -HUGE_VAL : HUGE_VAL;
    char buffer[capacity + 16];
    char* out = buffer;
    *out++ = '0';
    *out++ = '.';
    std::memcpy(out, d, static_cast<size_t>(count));
    out += count;
    *out++ = 'e';
    out = std::to_chars(out, buffer + sizeof buffer, point).ptr;
    double value = 0;
    if (count > 0 && std::from_chars(buffer, out, value).ec != std::errc())
        value = point > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return negative ? -value : value;
}

void Digits::round(int decimals, Tie tie) {
    const qint64 kept = qint64{point} + decimals;
    if (kept >= count) return;
    if (kept < 0) {
        count = point = 0;
        return;
    }
    const auto keep = static_cast<int>(kept);
    bool up = d[keep] >= '5';
    if (tie == Tie::Even && d[keep] == '5' && keep + 1 == count)
        up = keep > 0 && (d[keep - 1] - '0') % 2 == 1;
    count = keep;
    if (up) {
        int i = keep - 1;
        while (i >= 0 && d[i] == '9')
            --i;
        if (i >= 0) {
            ++d[i];
            count = i + 1;
        } else {
            d[0] = '1';
            count = 1;
            ++point;
        }
    }
    strip(*this);
}
