#pragma once

#include <QStringView>

/// German order without case: letters with marks sort behind their plain letter as a tie-break (a < ä < b), "ß" as
/// "ss". Returns <0, 0, >0; 0 only for texts that differ in case alone. A text never sorts before its own prefix.
[[nodiscard]] int CompareText(QStringView a, QStringView b);
/// The same over UTF-8 bytes, for the engine's collation; bytes that are no UTF-8 compare as they are.
[[nodiscard]] int CompareUtf8(const char* a, qsizetype aLength, const char* b, qsizetype bLength);
/// Jet's LIKE: * any text, ? one character, # one digit, [a-z] [!a-z] sets; without case. Raises 93 for a set
/// that is not closed.
[[nodiscard]] bool LikeText(QStringView text, QStringView pattern);
