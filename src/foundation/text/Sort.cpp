#include <text/Sort.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <unicode/ucol.h>

namespace {

/// Case and width are differences of the third level, which secondary strength leaves out.
UCollator* openCollator() {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* const collator = ucol_open("de-u-ks-level2", &status);
    if (U_FAILURE(status)) qFatal("The collation library fails: %s", u_errorName(status));
    return collator;
}

const UCollator* collator() {
    static const UCollator* const german = openCollator();
    return german;
}

int compareFully(const char16_t* a, qsizetype aLength, const char16_t* b, qsizetype bLength) {
    return ucol_strcoll(collator(), a, static_cast<std::int32_t>(aLength), b,
                        static_cast<std::int32_t>(bLength));
}

int compareFully(const char* a, qsizetype aLength, const char* b, qsizetype bLength) {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(collator(), a ? a : "", static_cast<std::int32_t>(aLength), b ? b : "",
                            static_cast<std::int32_t>(bLength), &status);
}

/// The library's own order of the ASCII characters, one small number for those that differ in case alone; 0
/// for control characters, which it passes over.
constexpr std::size_t asciiCount = 128;
std::array<unsigned char, asciiCount> rankAscii() {
    const auto compare = [](char16_t a, char16_t b) { return compareFully(&a, 1, &b, 1); };
    std::array<char16_t, asciiCount> order{};
    for (char16_t c = 0; c < asciiCount; ++c)
        order[c] = c;
    std::stable_sort(order.begin(), order.end(), [&](char16_t a, char16_t b) { return compare(a, b) < 0; });
    std::array<unsigned char, asciiCount> rank{};
    const char16_t* before = nullptr;
    unsigned char next = 0;
    for (const char16_t& c : order) {
        const bool ignored = compareFully(&c, 1, &c, 0) == 0;
        if (!ignored && (!before || compare(*before, c) != 0)) ++next;
        rank[c] = ignored ? 0 : next;
        if (!ignored) before = &c;
    }
    return rank;
}

/// Length of what both texts begin with, eight bytes at a time.
template <class Char>
qsizetype commonLength(const Char* a, const Char* b, qsizetype length) {
    constexpr qsizetype step = 8 / sizeof(Char);
    qsizetype i = 0;
    for (std::uint64_t x, y; i + step <= length; i += step) {
        std::memcpy(&x, a + i, sizeof x);
        std::memcpy(&y, b + i, sizeof y);
        if (x != y) break;
    }
    while (i < length && a[i] == b[i])
        ++i;
    return i;
}

/// Most texts of a shop differ first in two ASCII characters that nothing behind them can change: those need
/// no library.
template <class Char>
int compare(const Char* a, qsizetype aLength, const Char* b, qsizetype bLength) {
    using Unit = std::make_unsigned_t<Char>;
    static const std::array<unsigned char, asciiCount> rank = rankAscii();
    const qsizetype shorter = std::min(aLength, bLength);
    // A mark that follows belongs to the character before it.
    const auto standsAlone = [](const Char* text, qsizetype next, qsizetype length) {
        return next >= length || static_cast<Unit>(text[next]) < asciiCount;
    };
    for (qsizetype i = 0;; ++i) {
        i += commonLength(a + i, b + i, shorter - i);
        if (i == aLength && i == bLength) return 0;
        const unsigned x = i < aLength ? static_cast<Unit>(a[i]) : 0U;
        const unsigned y = i < bLength ? static_cast<Unit>(b[i]) : 0U;
        if ((x | y) >= asciiCount || !standsAlone(a, i + 1, aLength) || !standsAlone(b, i + 1, bLength))
            break;
        if ((i < aLength && rank[x] == 0) || (i < bLength && rank[y] == 0)) break;
        if (rank[x] != rank[y]) return rank[x] < rank[y] ? -1 : 1;
    }
    return compareFully(a, aLength, b, bLength);
}

} // namespace

int CompareText(QStringView a, QStringView b) { return compare(a.utf16(), a.size(), b.utf16(), b.size()); }

int CompareUtf8(const char* a, qsizetype aLength, const char* b, qsizetype bLength) {
    return compare(a, aLength, b, bLength);
}

QStringView SortablePrefix(QStringView prefix) {
    const auto* const end = std::find_if(
        prefix.begin(), prefix.end(), [](QChar c) { return c.unicode() >= 0x250 || c == u'ſ' || c == u'ß'; });
    return prefix.left(end - prefix.begin());
}

QString PrefixEnd(QStringView prefix) { return prefix.toString() + QChar(0xFFFF); }

QByteArray CollationVersion() {
    UVersionInfo version;
    ucol_getVersion(collator(), version);
    char text[U_MAX_VERSION_STRING_LENGTH];
    u_versionToString(version, text);
    return text;
}
