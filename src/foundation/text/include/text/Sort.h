#pragma once

#include <QString>
#include <QStringView>

/// German order without case: signs, digits, letters; letters with marks sort as their plain letter, and the
/// mark only decides between texts that are equal without marks (a < ä < b, "Muller" < "Müller" < "Mullern").
/// "ß" is "ss". Returns <0, 0, >0; 0 only for texts that differ in case, or in "ß" against "ss". A text never
/// sorts before its own prefix, and every text that starts with a prefix lies between the prefix and
/// PrefixEnd(prefix).
[[nodiscard]] int CompareText(QStringView a, QStringView b);
/// The same over UTF-8 bytes, for the engine's collation; bytes that are no UTF-8 sort behind all characters,
/// in their own order.
[[nodiscard]] int CompareUtf8(const char* a, qsizetype aLength, const char* b, qsizetype bLength);
/// The upper end of the range of texts that start with `prefix`: itself followed by the last character of
/// all.
[[nodiscard]] QString PrefixEnd(QStringView prefix);

/// Jet's LIKE over the whole text, without case ("ß" is "ss" here too, "ä" is not "a"): * any text, ? one
/// character, # one digit, [a-z] one character of a set, [!a-z] one outside it. Inside brackets * ? # [ stand
/// for themselves, ranges follow the order of CompareText, "[]" is nothing. Raises 93 for a set that is not
/// closed or a range that runs backwards.
[[nodiscard]] bool LikeText(QStringView text, QStringView pattern);
