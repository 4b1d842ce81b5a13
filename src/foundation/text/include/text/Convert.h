#pragma once

#include <text/Value.h>

#include <QStringView>

/// Visual Basic's conversions in the German locale: decimal comma, "." groups thousands where it may stand,
/// blanks at the ends and a currency sign are allowed, "&H1F" and "&O17" are numbers. Conversions to whole
/// numbers round half to even. All raise 94 for Null, 13 for text that is no number, 6 outside the range.

/// True for what the conversions below would accept as a number; Null, dates and texts that are no number are
/// not.
[[nodiscard]] bool IsNumeric(const Value& value);
[[nodiscard]] bool IsNumeric(QStringView text);
[[nodiscard]] inline bool IsNumeric(const QString& text) { return IsNumeric(QStringView(text)); }
/// True for a date or a text that CDate accepts.
[[nodiscard]] bool IsDate(const Value& value);

[[nodiscard]] bool CBool(const Value& value);
[[nodiscard]] int CByte(const Value& value);
[[nodiscard]] int CInt(const Value& value); ///< 16 bits
[[nodiscard]] int CLng(const Value& value); ///< 32 bits
[[nodiscard]] double CDbl(const Value& value);
[[nodiscard]] float CSng(const Value& value);
[[nodiscard]] Currency CCur(const Value& value);
/// "22.11.2026", "22.11.26", "22. November 2026", "2026-11-22", "11/22/2026" read as in a German system, each
/// with an optional time, or a time alone; numbers are days.
[[nodiscard]] DateTime CDate(const Value& value);
[[nodiscard]] QString CStr(const Value& value);
/// The number that a text starts with, decimal point only, 0 if none; never raises.
[[nodiscard]] double Val(QStringView text);
/// As Val's inverse: a leading blank for numbers not below 0, a decimal point.
[[nodiscard]] QString Str(const Value& value);

/// Plain text form of a double with a decimal comma, up to 15 significant digits, as CStr gives it.
[[nodiscard]] QString NumberText(double value);
/// Rounds to `digits` decimals, half to even.
[[nodiscard]] double RoundHalfEven(double value, int digits = 0);
