#pragma once

#include "Digits.h"

#include <QString>

/// The plain form of a number: without an exponent as long as its places do, else "1,5E-20". `leadingZero` is
/// the one before a decimal point.
[[nodiscard]] QString plainText(const Digits& number, char16_t decimalPoint, bool leadingZero = true);
