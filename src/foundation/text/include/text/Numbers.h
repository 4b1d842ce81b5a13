#pragma once

#include <text/Value.h>

/// Visual Basic's arithmetic functions and the operators that a C++ operator does not give. Those over Value
/// keep its shape (money stays money, whole numbers stay whole), take texts as numbers and dates as days, and
/// give Null for Null. Arguments outside a function's range raise 5, results outside a double 6.
namespace vb {

[[nodiscard]] Value Abs(const Value& value);
[[nodiscard]] Value Int(const Value& value); ///< downwards: Int(-1.5) is -2
[[nodiscard]] Value Fix(const Value& value); ///< towards 0: Fix(-1.5) is -1
[[nodiscard]] Value Sgn(const Value& value);
/// Half to even, as the digits that people see: Round(2.675, 2) is 2.68. Negative `digits` raise 5.
[[nodiscard]] Value Round(const Value& value, int digits = 0);

[[nodiscard]] double Sqr(double value);
[[nodiscard]] double Exp(double value);
[[nodiscard]] double Log(double value);
[[nodiscard]] double Sin(double value);
[[nodiscard]] double Cos(double value);
[[nodiscard]] double Tan(double value);
[[nodiscard]] double Atn(double value);

/// base ^ exponent; raises 5 for a root of a negative number and for 0 to a negative power.
[[nodiscard]] double Power(double base, double exponent);
/// a \ b and a MOD b: both are rounded half to even first; the remainder has the sign of `a`. Raise 11 for 0.
[[nodiscard]] qint64 IntegerDivide(const Value& a, const Value& b);
[[nodiscard]] qint64 Mod(const Value& a, const Value& b);

/// A pseudo random number from 0 to below 1. Above 0: the next one; 0: the last one again; below 0: one that
/// depends on `number` alone, and the row goes on from there. One row for the process, for one thread.
[[nodiscard]] double Rnd(double number = 1);

} // namespace vb
