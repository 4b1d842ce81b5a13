#include "Collation.h"

#include <text/Sort.h>

#include <cstring>
#include <span>

namespace collation {

namespace {

/// Letters of Latin script that do not decompose but belong to one or two plain ones.
struct Spelling {
    char32_t letter;
    char first, second;
};
constexpr Spelling spellings[] = {{U'æ', 'a', 'e'}, {U'œ', 'o', 'e'}, {U'þ', 't', 'h'}, {U'ø', 'o', 0},
                                  {U'đ', 'd', 0},   {U'ð', 'd', 0},   {U'ħ', 'h', 0},   {U'ı', 'i', 0},
                                  {U'ł', 'l', 0},   {U'ŧ', 't', 0},   {U'ŋ', 'n', 0},   {U'ĸ', 'k', 0},
                                  {U'ƒ', 'f', 0},   {U'ə', 'e', 0}};

std::uint32_t letterWeight(char32_t plain) { return letterBase + plain; }

bool isSign(char32_t c) {
    switch (QChar::category(c)) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Number_DecimalDigit:
    case QChar::Number_Letter:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
        return false;
    default:
        return true;
    }
}

Elements compute(char32_t c) {
    c = fold(c);
    Elements e;
    if (c < 128) {
        const bool digit = c >= U'0' && c <= U'9';
        const bool letter = c >= U'a' && c <= U'z';
        e.first.primary = digit ? digitBase + c : letter ? letterWeight(c) : c;
        return e;
    }
    if (c == U'ß') return {{letterWeight('s'), 0}, {letterWeight('s'), 0}, true};
    for (const Spelling& s : spellings) {
        if (s.letter != c) continue;
        e.first = {letterWeight(static_cast<char32_t>(s.first)), c};
        if (s.second != 0) {
            e.second = {letterWeight(static_cast<char32_t>(s.second)), c};
            e.two = true;
        }
        return e;
    }
    // A letter with marks, several of them one after the other, is its plain letter first of all.
    char32_t base = c;
    while (base >= 128 && base < strayByte && QChar::decompositionTag(base) == QChar::Canonical) {
        const QString parts = QChar::decomposition(base);
        const char16_t* at = reinterpret_cast<const char16_t*>(parts.constData());
        base = take(at, at + parts.size());
    }
    if (base < 128 && fold(base) >= U'a' && fold(base) <= U'z') {
        e.first = {letterWeight(fold(base)), c};
        return e;
    }
    e.first.primary = c < strayByte && isSign(c) ? c : otherBase + c;
    return e;
}

/// The letters of European languages, looked up often.
constexpr char32_t tableEnd = 0x250;
const std::array<Elements, tableEnd>& table() {
    static const auto elements = [] {
        std::array<Elements, tableEnd> all;
        for (char32_t c = 0; c < tableEnd; ++c)
            all[c] = compute(c);
        return all;
    }();
    return elements;
}

} // namespace

Elements elementsOf(char32_t character) {
    return character < tableEnd ? table()[character] : compute(character);
}

std::span<const Elements> frequentElements() { return table(); }

char32_t take(const char*& at, const char* end) {
    const auto byte = [&](qsizetype i) { return static_cast<unsigned char>(at[i]); };
    const unsigned char lead = byte(0);
    const char32_t stray = strayByte + lead;
    if (lead < 0x80) return static_cast<unsigned char>(*at++);
    const int length = lead >= 0xc2 && lead < 0xe0   ? 2
                       : lead >= 0xe0 && lead < 0xf0 ? 3
                       : lead >= 0xf0 && lead < 0xf5 ? 4
                                                     : 0;
    char32_t c = length == 2 ? lead & 0x1fU : length == 3 ? lead & 0x0fU : lead & 0x07U;
    bool valid = length != 0 && end - at >= length;
    for (int i = 1; valid && i < length; ++i) {
        valid = (byte(i) & 0xc0U) == 0x80U;
        c = (c << 6) | (byte(i) & 0x3fU);
    }
    valid = valid && !(length == 3 && (c < 0x800 || QChar::isSurrogate(c))) &&
            !(length == 4 && (c < 0x10000 || c > 0x10ffff));
    at += valid ? length : 1;
    return valid ? c : stray;
}

} // namespace collation

namespace {

using namespace collation;

/// The elements of a text one after the other.
template <class Char>
class Stream {
  public:
    Stream(const Char* at, const Char* end)
        : m_at(at)
        , m_end(end) {}
    bool next(Element& element) {
        if (m_pending) {
            m_pending = false;
            element = m_second;
            return true;
        }
        if (m_at == m_end) return false;
        const char32_t c = take(m_at, m_end);
        const Elements& e = c < m_frequent.size() ? m_frequent[c] : (m_rare = elementsOf(c));
        m_pending = e.two;
        m_second = e.second;
        element = e.first;
        return true;
    }

  private:
    const Char* m_at;
    const Char* m_end;
    std::span<const Elements> m_frequent = frequentElements();
    Elements m_rare;
    Element m_second;
    bool m_pending = false;
};

template <class Char>
int compareElements(const Char* a, const Char* aEnd, const Char* b, const Char* bEnd) {
    Stream<Char> left(a, aEnd), right(b, bEnd);
    int marks = 0;
    for (;;) {
        Element x, y;
        const bool hasLeft = left.next(x), hasRight = right.next(y);
        if (!hasLeft || !hasRight) return hasLeft ? 1 : hasRight ? -1 : marks;
        if (x.primary != y.primary) return x.primary < y.primary ? -1 : 1;
        if (marks == 0 && x.mark != y.mark) marks = x.mark < y.mark ? -1 : 1;
    }
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

/// Where the character begins that the unit at `i` belongs to; what stands before is the same in both texts.
qsizetype characterStart(const char* text, qsizetype i) {
    for (qsizetype back = 1; back <= 3 && back <= i; ++back)
        if (static_cast<unsigned char>(text[i - back]) >= 0xc0) return i - back;
    return i;
}

qsizetype characterStart(const char16_t* text, qsizetype i) {
    return i > 0 && QChar::isHighSurrogate(text[i - 1]) ? i - 1 : i;
}

template <class Char>
int compare(const Char* a, qsizetype aLength, const Char* b, qsizetype bLength) {
    using Unit = std::make_unsigned_t<Char>;
    const qsizetype shorter = std::min(aLength, bLength);
    for (qsizetype i = 0;; ++i) {
        i += commonLength(a + i, b + i, shorter - i);
        const unsigned x = i < aLength ? static_cast<Unit>(a[i]) : 0U;
        const unsigned y = i < bLength ? static_cast<Unit>(b[i]) : 0U;
        if ((x | y) >= 128) {
            const qsizetype start = characterStart(a, i);
            return compareElements(a + start, a + aLength, b + start, b + bLength);
        }
        if (i == shorter) return aLength < bLength ? -1 : aLength > bLength ? 1 : 0;
        if (asciiRank[x] != asciiRank[y]) return asciiRank[x] < asciiRank[y] ? -1 : 1;
    }
}

} // namespace

int CompareText(QStringView a, QStringView b) { return compare(a.utf16(), a.size(), b.utf16(), b.size()); }

int CompareUtf8(const char* a, qsizetype aLength, const char* b, qsizetype bLength) {
    return compare(a, aLength, b, bLength);
}

QString PrefixEnd(QStringView prefix) {
    QString end = prefix.toString();
    end += QChar(QChar::highSurrogate(QChar::LastValidCodePoint));
    end += QChar(QChar::lowSurrogate(QChar::LastValidCodePoint));
    return end;
}
