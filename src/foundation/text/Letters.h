#pragma once

#include <QString>

/// Case as Visual Basic changes it: one character for one, so "ß" stays.
enum class Case { Kept, Lower, Upper };
[[nodiscard]] QString inCase(QStringView text, Case wanted);

/// One character without its case.
[[nodiscard]] inline char32_t fold(char32_t c) {
    if (c < 128) return c >= U'A' && c <= U'Z' ? c + 0x20U : c;
    return c == U'ẞ' ? U'ß' : QChar::toCaseFolded(c);
}
