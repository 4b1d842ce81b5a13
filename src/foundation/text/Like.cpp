#include "Letters.h"

#include <text/RuntimeError.h>
#include <text/Sort.h>

using namespace Qt::StringLiterals;

namespace {

/// Takes the next character of UTF-16; half a pair stands for itself.
QStringView take(const char16_t*& at, const char16_t* end) {
    const char16_t* const start = at++;
    if (QChar::isHighSurrogate(*start) && at != end && QChar::isLowSurrogate(*at)) ++at;
    return {start, at};
}

char32_t folded(QStringView character) {
    return fold(character.size() == 2 ? QChar::surrogateToUcs4(character[0], character[1])
                                      : char32_t{character[0].unicode()});
}

/// One "[...]", from behind the bracket to the closing one.
struct Set {
    const char16_t* begin;
    const char16_t* end;
    bool inverted = false;

    [[nodiscard]] bool empty() const { return begin == end && !inverted; }

    [[nodiscard]] bool contains(QStringView c) const {
        bool found = false;
        for (const char16_t* at = begin; at != end && !found;) {
            const QStringView low = take(at, end);
            if (at != end && *at == u'-' && at + 1 != end) {
                ++at;
                const QStringView high = take(at, end);
                found = CompareText(low, c) <= 0 && CompareText(c, high) <= 0;
            } else {
                found = folded(low) == folded(c);
            }
        }
        return found != inverted;
    }

    void check() const {
        for (const char16_t* at = begin; at != end;) {
            const QStringView low = take(at, end);
            if (at == end || *at != u'-' || at + 1 == end) continue;
            ++at;
            if (CompareText(low, take(at, end)) > 0)
                throw RuntimeError(93, u"Ungültige Musterzeichenfolge: Bereich läuft rückwärts"_s);
        }
    }
};

/// `at` stands behind "[" and is moved behind "]".
Set takeSet(const char16_t*& at, const char16_t* end) {
    Set set{at, at};
    if (at != end && *at == u'!' && at + 1 != end && at[1] != u']') {
        set.inverted = true;
        set.begin = ++at;
    }
    while (at != end && *at != u']')
        ++at;
    if (at == end)
        throw RuntimeError(93, u"Ungültige Musterzeichenfolge: zu [ fehlt die schließende Klammer"_s);
    set.end = at++;
    return set;
}

void checkSets(QStringView pattern) {
    const char16_t* at = pattern.utf16();
    const char16_t* const end = at + pattern.size();
    while (at != end)
        if (*at++ == u'[') takeSet(at, end).check();
}

/// Moves over one "ss" without case.
bool takeDoubleS(const char16_t*& at, const char16_t* end) {
    if (end - at < 2 || fold(at[0]) != U's' || fold(at[1]) != U's') return false;
    at += 2;
    return true;
}

/// Matches one item of the pattern that is no star, and moves both behind it.
bool matchItem(const char16_t*& text, const char16_t* textEnd, const char16_t*& pattern,
               const char16_t* patternEnd) {
    const char16_t item = *pattern;
    if (item == u'[') {
        ++pattern;
        const Set set = takeSet(pattern, patternEnd);
        if (set.empty()) return true;
        return text != textEnd && set.contains(take(text, textEnd));
    }
    if (text == textEnd) return false;
    if (item == u'?') {
        ++pattern;
        take(text, textEnd);
        return true;
    }
    if (item == u'#') {
        ++pattern;
        const char16_t c = *text++;
        return c >= u'0' && c <= u'9';
    }
    const char16_t* const patternStart = pattern;
    const char16_t* const textStart = text;
    const char32_t wanted = folded(take(pattern, patternEnd));
    const char32_t found = folded(take(text, textEnd));
    if (wanted == found) return true;
    if (wanted == U'ß') return takeDoubleS(text = textStart, textEnd);
    if (found == U'ß') return takeDoubleS(pattern = patternStart, patternEnd);
    return false;
}

} // namespace

bool LikeText(QStringView text, QStringView pattern) {
    if (pattern.contains(u'[')) checkSets(pattern);
    const char16_t* t = text.utf16();
    const char16_t* const tEnd = t + text.size();
    const char16_t* p = pattern.utf16();
    const char16_t* const pEnd = p + pattern.size();
    // A star that failed later is retried one character further on; only the last star needs to be
    // remembered.
    const char16_t* starPattern = nullptr;
    const char16_t* starText = nullptr;
    for (;;) {
        if (p != pEnd && *p == u'*') {
            starPattern = ++p;
            starText = t;
            if (p == pEnd) return true;
            continue;
        }
        if (p == pEnd ? t == tEnd : matchItem(t, tEnd, p, pEnd)) {
            if (p == pEnd && t == tEnd) return true;
            continue;
        }
        if (starPattern == nullptr || starText == tEnd) return false;
        take(starText, tEnd);
        t = starText;
        p = starPattern;
    }
}

QString FoldedText(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    const char16_t* at = text.utf16();
    const char16_t* const end = at + text.size();
    while (at != end) {
        const char32_t c = ::folded(take(at, end));
        if (c == U'ß')
            folded += u"ss";
        else if (QChar::requiresSurrogates(c))
            folded += QChar::fromUcs4(c);
        else
            folded += QChar(static_cast<char16_t>(c));
    }
    return folded;
}

QString FoldedPart(QStringView pattern) {
    QStringView longest;
    const char16_t* at = pattern.utf16();
    const char16_t* const end = at + pattern.size();
    for (const char16_t* run = at;;) {
        const bool wildcard = at != end && (*at == u'*' || *at == u'?' || *at == u'#' || *at == u'[');
        if (at != end && !wildcard) {
            ++at;
            continue;
        }
        if (at - run > longest.size()) longest = {run, at};
        if (at == end) return FoldedText(longest);
        if (*at++ == u'[') takeSet(at, end);
        run = at;
    }
}
