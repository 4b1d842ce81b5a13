#pragma once

#include <QChar>

#include <array>
#include <cstdint>

/// The order of characters that comparison and pattern sets share.
namespace collation {

/// What a character is sorted by: its place among plain characters, then its mark. Ligatures and "ß" have
/// two.
struct Element {
    std::uint32_t primary = 0;
    std::uint32_t mark = 0;
};
struct Elements {
    Element first, second;
    bool two = false;
};

inline constexpr std::uint32_t digitBase = 0x200000, letterBase = 0x300000, otherBase = 0x400000;
/// Stands for a byte that is no UTF-8, added to the byte.
inline constexpr char32_t strayByte = 0x110000;

/// Signs first, then digits, then letters without case; for the 128 characters of ASCII one small number
/// each.
inline constexpr auto asciiRank = [] {
    std::array<unsigned char, 128> rank{};
    unsigned char next = 0;
    const auto isDigit = [](unsigned c) { return c >= '0' && c <= '9'; };
    const auto isLetter = [](unsigned c) { return (c | 0x20U) >= 'a' && (c | 0x20U) <= 'z'; };
    for (unsigned c = 0; c < 128; ++c)
        if (!isDigit(c) && !isLetter(c)) rank[c] = next++;
    for (unsigned c = '0'; c <= '9'; ++c)
        rank[c] = next++;
    for (unsigned c = 'a'; c <= 'z'; ++c)
        rank[c] = rank[c - 0x20U] = next++;
    return rank;
}();

[[nodiscard]] Elements elementsOf(char32_t character);

/// One character without its case.
[[nodiscard]] inline char32_t fold(char32_t c) {
    if (c < 128) return c >= U'A' && c <= U'Z' ? c + 0x20U : c;
    return c == U'ẞ' ? U'ß' : QChar::toCaseFolded(c);
}

/// Takes the next character of UTF-16; half a pair stands for itself.
inline char32_t take(const char16_t*& at, const char16_t* end) {
    const char16_t c = *at++;
    if (QChar::isHighSurrogate(c) && at != end && QChar::isLowSurrogate(*at))
        return QChar::surrogateToUcs4(c, *at++);
    return c;
}

/// Takes the next character of UTF-8; a byte that starts none stands for itself behind all characters.
char32_t take(const char*& at, const char* end);

} // namespace collation
