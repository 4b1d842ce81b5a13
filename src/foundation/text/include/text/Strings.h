#pragma once

#include <text/Value.h>

#include <QString>
#include <QStringView>

/// Visual Basic's text functions. Positions count from 1, `compare` is 0 for exact, 1 or 2 for comparison
/// without case. Impossible positions, lengths and modes raise 5; a result that would be absurdly long
/// raises 14.
namespace vb {

[[nodiscard]] int Len(QStringView text);
[[nodiscard]] QString Left(QStringView text, int count);
[[nodiscard]] QString Right(QStringView text, int count);
[[nodiscard]] QString Mid(QStringView text, int start);
[[nodiscard]] QString Mid(QStringView text, int start, int count);

/// Place of `wanted` at or behind `start`, 0 when it is not there; an empty `wanted` is found at `start`.
[[nodiscard]] int InStr(int start, QStringView text, QStringView wanted, int compare = 1);
/// The last place that ends at or before `start`, -1 being the end.
[[nodiscard]] int InStrRev(QStringView text, QStringView wanted, int start = -1, int compare = 1);
/// What stands from `start` on, with at most `count` replacements (-1: all of them).
[[nodiscard]] QString Replace(QStringView text, QStringView wanted, QStringView replacement, int start = 1,
                              int count = -1, int compare = 1);
/// -1, 0 or 1; without case it is the order of CompareText.
[[nodiscard]] int StrComp(QStringView a, QStringView b, int compare = 1);

/// Blanks only, no other white space.
[[nodiscard]] QString Trim(QStringView text);
[[nodiscard]] QString LTrim(QStringView text);
[[nodiscard]] QString RTrim(QStringView text);

/// One character for one, so "ß" stays what it is.
[[nodiscard]] QString UCase(QStringView text);
[[nodiscard]] QString LCase(QStringView text);
/// 1 upper case, 2 lower case, 3 words with a capital; others raise 5.
[[nodiscard]] QString StrConv(QStringView text, int conversion);

[[nodiscard]] QString Space(int count);
/// `count` times the first character of a text, or the character of a number modulo 256.
[[nodiscard]] QString String(int count, const Value& character);
[[nodiscard]] QString StrReverse(QStringView text);

/// Number of the first character in Windows-1252 ("?" for what it does not have), or in Unicode.
[[nodiscard]] int Asc(QStringView text);
[[nodiscard]] int AscW(QStringView text);
[[nodiscard]] QString Chr(int code);  ///< 0 to 255
[[nodiscard]] QString ChrW(int code); ///< -32768 to 65535

/// The whole number in base 16 or 8; negative ones as 32 bits when they fit.
[[nodiscard]] QString Hex(const Value& value);
[[nodiscard]] QString Oct(const Value& value);

} // namespace vb
