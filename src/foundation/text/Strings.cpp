#include "Letters.h"

#include <text/CodePage.h>
#include <text/RuntimeError.h>
#include <text/Sort.h>
#include <text/Strings.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace vb {

namespace {

constexpr qsizetype longest = 50'000'000;

void checkLength(qsizetype length) {
    if (length > longest) throw RuntimeError(14, u"Nicht genügend Zeichenfolgenspeicher"_s);
}

void require(bool condition) {
    if (!condition) RaiseInvalidCall();
}

bool ignoresCase(int compare) {
    require(compare >= 0 && compare <= 2);
    return compare != 0;
}

QString folded(QStringView text) {
    QString result = text.toString();
    for (qsizetype i = 0; i < result.size(); ++i) {
        const char16_t c = std::as_const(result)[i].unicode();
        const char32_t f = fold(c);
        if (f != c && f < 0x10000) result[i] = QChar(static_cast<char16_t>(f));
    }
    return result;
}

/// A text to search in and what to search for, made alike if case does not count.
struct Search {
    QString foldedText, foldedWanted;
    QStringView text, wanted;

    Search(QStringView text_, QStringView wanted_, int compare)
        : text(text_)
        , wanted(wanted_) {
        if (!ignoresCase(compare)) return;
        text = foldedText = folded(text_);
        wanted = foldedWanted = folded(wanted_);
    }
};

int place(qsizetype index) { return static_cast<int>(index + 1); }

} // namespace

int Len(QStringView text) { return static_cast<int>(text.size()); }

QString Left(QStringView text, int count) {
    require(count >= 0);
    return text.left(count).toString();
}

QString Right(QStringView text, int count) {
    require(count >= 0);
    return text.right(count).toString();
}

QString Mid(QStringView text, int start) { return Mid(text, start, std::numeric_limits<int>::max()); }

QString Mid(QStringView text, int start, int count) {
    require(start >= 1 && count >= 0);
    return text.mid(start - 1, count).toString();
}

int InStr(int start, QStringView text, QStringView wanted, int compare) {
    require(start >= 1);
    const Search search(text, wanted, compare);
    if (start > text.size()) return 0;
    if (wanted.isEmpty()) return start;
    return place(search.text.indexOf(search.wanted, start - 1));
}

int InStrRev(QStringView text, QStringView wanted, int start, int compare) {
    require(start >= 1 || start == -1);
    const Search search(text, wanted, compare);
    if (text.isEmpty() || start > text.size()) return 0;
    const qsizetype end = start == -1 ? text.size() : start;
    if (wanted.isEmpty()) return static_cast<int>(end);
    // Told where to begin: from the end of a view, this version of Qt looks at the unit behind it.
    return end < wanted.size() ? 0 : place(search.text.lastIndexOf(search.wanted, end - wanted.size()));
}

QString Replace(QStringView text, QStringView wanted, QStringView replacement, int start, int count,
                int compare) {
    require(start >= 1 && count >= -1);
    text = text.mid(start - 1);
    const Search search(text, wanted, compare);
    if (wanted.isEmpty()) return text.toString();
    QString result;
    qsizetype from = 0;
    for (qsizetype at; count != 0 && (at = search.text.indexOf(search.wanted, from)) >= 0; --count) {
        result += text.mid(from, at - from);
        result += replacement;
        checkLength(result.size());
        from = at + wanted.size();
    }
    result += text.mid(from);
    return result;
}

int StrComp(QStringView a, QStringView b, int compare) {
    const int order = ignoresCase(compare) ? CompareText(a, b) : a.compare(b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

QString LTrim(QStringView text) {
    while (!text.isEmpty() && text.front() == u' ')
        text = text.mid(1);
    return text.toString();
}

QString RTrim(QStringView text) {
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);
    return text.toString();
}

QString Trim(QStringView text) { return LTrim(RTrim(text)); }

QString UCase(QStringView text) { return inCase(text, Case::Upper); }
QString LCase(QStringView text) { return inCase(text, Case::Lower); }

QString StrConv(QStringView text, int conversion) {
    require(conversion >= 1 && conversion <= 3);
    if (conversion == 1) return UCase(text);
    QString result = LCase(text);
    bool inWord = conversion == 2;
    for (qsizetype i = 0; conversion == 3 && i < result.size(); ++i) {
        const QChar c = std::as_const(result)[i];
        if (!inWord) result[i] = c.toUpper();
        inWord = c.isLetterOrNumber() || c == u'\'' || c == u'-';
    }
    return result;
}

QString Space(int count) {
    require(count >= 0);
    checkLength(count);
    return QString(count, u' ');
}

QString String(int count, const Value& character) {
    require(count >= 0);
    checkLength(count);
    if (character.isText()) {
        const auto& text = std::get<QString>(character.data());
        require(!text.isEmpty());
        return QString(count, text[0]);
    }
    return QString(count, Chr(character.toLong() & 0xff)[0]);
}

QString StrReverse(QStringView text) {
    QString result = text.toString();
    std::reverse(result.begin(), result.end());
    return result;
}

int Asc(QStringView text) {
    require(!text.isEmpty());
    return static_cast<unsigned char>(ToWindows1252(text.left(1))[0]);
}

int AscW(QStringView text) {
    require(!text.isEmpty());
    return text[0].unicode();
}

QString Chr(int code) {
    require(code >= 0 && code <= 255);
    const char byte = static_cast<char>(code);
    return FromWindows1252(QByteArrayView(&byte, 1));
}

QString ChrW(int code) {
    require(code >= -32768 && code <= 65535);
    return QString(QChar(static_cast<char16_t>(code & 0xffff)));
}

namespace {

QString inBase(const Value& value, int base) {
    const qint64 whole = value.toInteger();
    auto bits = static_cast<quint64>(whole);
    if (whole < 0 && whole >= std::numeric_limits<qint32>::min()) bits &= 0xffffffffU;
    return QString::number(bits, base).toUpper();
}

} // namespace

QString Hex(const Value& value) { return inBase(value, 16); }
QString Oct(const Value& value) { return inBase(value, 8); }

} // namespace vb
