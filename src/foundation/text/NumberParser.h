#pragma once

#include <text/Currency.h>

#include <QStringView>
#include <QVarLengthArray>

/// A number as somebody typed it, kept in decimal digits so that each target type rounds only once.
class TypedNumber {
  public:
    /// Reads the whole text; false when it is no number in the German notation.
    [[nodiscard]] bool parse(QStringView text);
    /// What a text begins with, blanks skipped, decimal point, as Val reads it. 0 if nothing.
    static double leading(QStringView text);

    [[nodiscard]] double toDouble() const;     ///< infinite when out of range
    [[nodiscard]] Currency toCurrency() const; ///< raises 6
    [[nodiscard]] qint64 toInteger() const;    ///< half to even, raises 6
    /// For "&H.." and "&O..": the value as a signed number of so many bits, as the target type reads it.
    [[nodiscard]] qint64 toBits(int bits) const; ///< raises 6
    [[nodiscard]] bool isBitPattern() const { return m_isBits; }

  private:
    bool parseBits(QStringView text);
    [[nodiscard]] qint64 scaled(int decimals) const;

    QVarLengthArray<char, 64> m_digits; ///< without leading zeros
    qint64 m_exponent = 0;              ///< of the last digit
    quint64 m_bits = 0;
    bool m_negative = false;
    bool m_isBits = false;
};
