#include "FunctionParts.h"

#include <text/RuntimeError.h>
#include <text/Sort.h>

#include <set>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

QString one(char32_t c) { return QString::fromUcs4(&c, 1); }

void add(QString& out, char32_t c) {
    if (c < 128 && !QChar::isLetterOrNumber(c)) out += u'\\';
    out += one(c);
}

/// The spellings of a character that differ in case alone.
std::set<char32_t> spellings(char32_t c) {
    if (c == U'ß' || c == U'ẞ') return {U'ß', U'ẞ'};
    return {c, QChar::toLower(c), QChar::toUpper(c), QChar::toTitleCase(c)};
}

QString letter(char32_t c) {
    if (c == U'ß' || c == U'ẞ') return u"(?:[ßẞ]|[sS][sS])"_s;
    const std::set<char32_t> all = spellings(c);
    QString out;
    for (const char32_t spelling : all)
        add(out, spelling);
    return all.size() > 1 ? QString(u'[' + out + u']') : out;
}

/// "ss" may stand as "ß" wherever it begins; the run is cut into pairs.
QString runOfS(qsizetype count) {
    const QString s = u"[sS]"_s, pair = u"(?:[sS][sS]|[ßẞ])"_s;
    if (count == 1) return s;
    if (count == 3) return u"(?:[sS]"_s + pair + u"|[ßẞ][sS])"_s;
    return pair + (count > 2 ? runOfS(count - 2) : QString());
}

/// The characters of "[..]" one by one: ranges follow the sorting, which no expression of an engine knows.
/// Beyond the letters of Europe only the characters between the ends of a range are looked at.
QString members(QStringView inside) {
    const QList<char32_t> told = [&] {
        QList<char32_t> list;
        for (const uint c : inside.toUcs4())
            list.append(c);
        return list;
    }();
    std::set<char32_t> candidates;
    bool range = false;
    for (qsizetype i = 0; i < told.size(); ++i) {
        candidates.merge(spellings(told[i]));
        if (told[i] != U'-' || i == 0 || i + 1 == told.size()) continue;
        range = true;
        const char32_t low = told[i - 1], high = told[i + 1];
        for (char32_t c = low; low > 0x24F && c < high && c - low < 3000; ++c)
            if (!QChar::isSurrogate(c)) candidates.merge(spellings(c));
    }
    for (char32_t c = 1; range && c < 0x250; ++c)
        candidates.insert(c);
    const QString set = u'[' + inside + u']';
    QString out;
    for (const char32_t c : candidates)
        if (LikeText(one(c), set)) add(out, c);
    return out;
}

} // namespace

QString jetPattern(QStringView ansi) {
    QString pattern;
    for (const QChar c : ansi) {
        if (c == u'%')
            pattern += u'*';
        else if (c == u'_')
            pattern += u'?';
        else if (c == u'*' || c == u'?' || c == u'#')
            pattern += u"["_s + c + u"]"_s;
        else
            pattern += c;
    }
    return pattern;
}

QString likeExpression(QStringView pattern) {
    static_cast<void>(LikeText({}, pattern)); // raises what is wrong with it
    QString out = u"^"_s;
    for (qsizetype i = 0; i < pattern.size();) {
        const QChar c = pattern[i++];
        if (c == u'*') {
            if (!out.endsWith(u".*")) out += u".*"_s;
        } else if (c == u'?') {
            out += u'.';
        } else if (c == u'#') {
            out += u"[0-9]"_s;
        } else if (c == u'[') {
            const bool inverted = pattern.mid(i).startsWith(u'!') && !pattern.mid(i + 1).startsWith(u']');
            const qsizetype begin = inverted ? i + 1 : i, end = pattern.indexOf(u']', begin);
            i = end + 1;
            if (begin == end) {
                if (inverted) out += u'.';
                continue;
            }
            const QString set = members(pattern.mid(begin, end - begin));
            out += (inverted ? u"[^"_s : u"["_s) + set + u']';
        } else if (c == u's' || c == u'S') {
            const qsizetype start = i - 1;
            while (i < pattern.size() && (pattern[i] == u's' || pattern[i] == u'S'))
                ++i;
            out += runOfS(i - start);
        } else if (c.isHighSurrogate() && i < pattern.size() && pattern[i].isLowSurrogate()) {
            out += letter(QChar::surrogateToUcs4(c, pattern[i++]));
        } else {
            out += letter(c.unicode());
        }
    }
    if (!out.endsWith(u".*")) return out + u'$';
    out.chop(2); // what follows does not matter
    return out;
}

} // namespace jet
