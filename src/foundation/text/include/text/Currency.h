#pragma once

#include <QtGlobal>

#include <compare>

/// Money: a 64-bit integer scaled by 10,000, so exactly four decimals, range ±922,337,203,685,477.5807.
/// Every operation that leaves the range raises error 6; conversions round half to even.
///
///     Currency price = Currency::fromDouble(1.99);   // scaled() == 19900
///     Currency line = price * 3;                     // 5,97
class Currency {
  public:
    constexpr Currency() = default;
    /// The value whose ten-thousandths are `scaled`.
    static constexpr Currency fromScaled(qint64 scaled) {
        Currency c;
        c.m_scaled = scaled;
        return c;
    }
    /// Nearest value with four decimals, ties to even. Raises 6 outside the range, also for NaN and infinity.
    static Currency fromDouble(double value);
    /// Raises 6 outside the range.
    static Currency fromInteger(qint64 value);

    [[nodiscard]] constexpr qint64 scaled() const { return m_scaled; }
    [[nodiscard]] double toDouble() const;
    [[nodiscard]] constexpr bool isZero() const { return m_scaled == 0; }

    [[nodiscard]] Currency operator-() const;
    [[nodiscard]] Currency operator+(Currency other) const;
    [[nodiscard]] Currency operator-(Currency other) const;
    /// Exact product rounded half to even to four decimals.
    [[nodiscard]] Currency operator*(Currency other) const;
    [[nodiscard]] Currency operator*(int factor) const { return *this * fromInteger(factor); }
    Currency& operator+=(Currency other) { return *this = *this + other; }
    Currency& operator-=(Currency other) { return *this = *this - other; }
    constexpr auto operator<=>(const Currency&) const = default;

  private:
    qint64 m_scaled = 0;
};
