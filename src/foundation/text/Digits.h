#pragma once

#include <text/Currency.h>

#include <QByteArrayView>

/// The decimal digits of a number: 0.d0d1d2... times 10^point, without leading or trailing zeros; no digit is
/// zero. A double has at most 15 digits, as Visual Basic sees it, a Single 7; Currency and whole numbers are
/// exact.
struct Digits {
    static constexpr int capacity = 24;

    char d[capacity];
    int count = 0;
    int point = 0;
    bool negative = false;
    bool finite = true;
    int places = 15; ///< as many are written without an exponent

    static Digits of(double value);
    static Digits of(float value);
    static Digits of(qint64 value);
    static Digits of(Currency value);

    [[nodiscard]] bool isZero() const { return count == 0; }
    /// The digit that counts 10^power, '0' where none is kept.
    [[nodiscard]] char at(int power) const {
        const int i = point - 1 - power;
        return i >= 0 && i < count ? d[i] : '0';
    }
    [[nodiscard]] double toDouble() const;

    enum class Tie { Away, Even };
    /// Keeps `decimals` places behind the decimal point; negative ones are before it.
    void round(int decimals, Tie tie);
};
