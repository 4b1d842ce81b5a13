#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

/// German order without case, as the collation "de" of Unicode has it: signs, digits, letters; letters with
/// marks sort as their plain letter, and the mark only decides between texts that are equal without marks (a
/// < ä < b, "Muller" < "Müller" < "Mullern", "Strasse" < "Straße" < "Strassen"). Returns <0, 0, >0; 0 for
/// texts that differ in case, in control characters, or in the way a mark is written. A database server that
/// sorts with the same version of the library has the same order.
[[nodiscard]] int CompareText(QStringView a, QStringView b);
/// The same over UTF-8 bytes, for the engine's collation; bytes that are no UTF-8 sort behind all characters
/// and are alike.
[[nodiscard]] int CompareUtf8(const char* a, qsizetype aLength, const char* b, qsizetype bLength);

/// The part of `prefix` with which a range can be built: up to the first "ß" or letter of a script
/// whose letters join or change places when they are sorted. Every text that LikeText finds by this part and
/// a star lies between it and its PrefixEnd.
[[nodiscard]] QStringView SortablePrefix(QStringView prefix);
/// The upper end of the range of texts that start with `prefix`: itself followed by the last character of
/// all.
[[nodiscard]] QString PrefixEnd(QStringView prefix);

/// Changes when a new version of the library may sort differently: indexes that were built before are to be
/// built again then.
[[nodiscard]] QByteArray CollationVersion();

/// Jet's LIKE over the whole text, without case ("ß" is "ss" here too, "ä" is not "a"): * any text, ? one
/// character, # one digit, [a-z] one character of a set, [!a-z] one outside it. Inside brackets * ? # [ stand
/// for themselves, ranges follow the order of CompareText, "[]" is nothing. Raises 93 for a set that is not
/// closed or a range that runs backwards.
[[nodiscard]] bool LikeText(QStringView text, QStringView pattern);

/// A text without case and with "ss" for "ß". Every text that LikeText finds by a pattern holds, folded, the
/// pattern's FoldedPart: its longest run without wildcards, "" for a pattern that has none.
[[nodiscard]] QString FoldedText(QStringView text);
[[nodiscard]] QString FoldedPart(QStringView pattern);
