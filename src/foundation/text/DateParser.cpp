#include "DateParser.h"

#include "GermanNames.h"

#include <QVarLengthArray>

#include <algorithm>

namespace {

struct Token {
    enum Kind { Number, Month, Weekday, Morning, Afternoon, Mark } kind = Mark;
    int value = 0;  ///< of a number, month 1..12; the character of a mark
    int length = 0; ///< digits of a number
    bool blankBefore = false;
};
using Tokens = QVarLengthArray<Token, 24>;

bool same(QStringView a, QStringView b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool readWord(QStringView word, Token& token) {
    static constexpr std::array<QStringView, 12> english = {
        u"January", u"February", u"March",     u"April",   u"May",      u"June",
        u"July",    u"August",   u"September", u"October", u"November", u"December"};
    for (int i = 0; i < 12; ++i) {
        const auto n = static_cast<size_t>(i);
        if (same(word, german::months[n]) || same(word, german::shortMonths[n]) || same(word, english[n]) ||
            same(word, english[n].left(3)) || (i == 2 && same(word, u"Mär"))) {
            token.kind = Token::Month;
            token.value = i + 1;
            return true;
        }
    }
    for (size_t i = 0; i < 7; ++i) {
        if (same(word, german::weekdays[i]) || same(word, german::shortWeekdays[i])) {
            token.kind = Token::Weekday;
            return true;
        }
    }
    if (same(word, u"AM") || same(word, u"PM") || same(word, u"A") || same(word, u"P")) {
        token.kind = word[0].toUpper() == u'A' ? Token::Morning : Token::Afternoon;
        return true;
    }
    token.value = u'T';
    return word == u"T";
}

bool tokenize(QStringView text, Tokens& tokens) {
    bool blank = false;
    for (qsizetype i = 0; i < text.size();) {
        const QChar c = text[i];
        if (c == u' ' || c == u'\t' || c == u'\u00a0') {
            blank = true;
            ++i;
            continue;
        }
        if (tokens.size() == 20) return false;
        Token token;
        token.blankBefore = blank;
        blank = false;
        if (c >= u'0' && c <= u'9') {
            token.kind = Token::Number;
            for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
                if (++token.length > 4) return false;
                token.value = token.value * 10 + (text[i].unicode() - u'0');
            }
        } else if (c.isLetter()) {
            const qsizetype start = i;
            while (i < text.size() && text[i].isLetter())
                ++i;
            if (!readWord(text.mid(start, i - start), token)) return false;
        } else if (QStringView(u"./-:,").contains(c)) {
            token.value = c.unicode();
            ++i;
        } else {
            return false;
        }
        tokens.append(token);
    }
    return true;
}

int century(const Token& year) {
    if (year.length > 2) return year.value;
    return year.value + (year.value <= 29 ? 2000 : 1900);
}

std::optional<QDate> validDate(int year, int month, int day) {
    if (year < 100 || year > 9999) return {};
    const QDate date(year, month, day);
    if (!date.isValid()) return {};
    return date;
}

/// Day, month and year in the order of the text, read as d m y unless only another order makes a date.
std::optional<QDate> orderDate(const Token& a, const Token& b, const Token& c) {
    if (b.length > 2) return {};
    if (a.length > 2) {
        if (c.length > 2) return {};
        if (auto date = validDate(a.value, b.value, c.value)) return date;
        return validDate(a.value, c.value, b.value);
    }
    if (auto date = validDate(century(c), b.value, a.value)) return date;
    if (auto date = validDate(century(c), a.value, b.value)) return date;
    if (c.length > 2) return {};
    return validDate(century(a), b.value, c.value);
}

class Reader {
  public:
    explicit Reader(const Tokens& tokens)
        : m_tokens(tokens) {}

    std::optional<DateTime> read() {
        if (m_tokens.isEmpty()) return {};
        bool date = false, time = false;
        while (m_at < m_tokens.size()) {
            if (!time && readTime()) {
                time = true;
            } else if (!date && readDate()) {
                date = true;
                const bool link = mark(u',') || mark(u'T');
                if (link && m_at == m_tokens.size()) return {};
            } else {
                return {};
            }
        }
        if (!date && !time) return {};
        const QDate day = date ? m_date : QDate(1899, 12, 30);
        return DateTime::fromParts(day.year(), day.month(), day.day(), m_hour, m_minute, m_second);
    }

  private:
    [[nodiscard]] bool is(Token::Kind kind, qsizetype ahead = 0) const {
        return m_at + ahead < m_tokens.size() && m_tokens[m_at + ahead].kind == kind;
    }
    [[nodiscard]] bool isMark(char16_t c, qsizetype ahead = 0) const {
        return is(Token::Mark, ahead) && m_tokens[m_at + ahead].value == c;
    }
    bool mark(char16_t c) {
        if (!isMark(c)) return false;
        ++m_at;
        return true;
    }
    const Token& next() { return m_tokens[m_at++]; }

    bool readTime() {
        const qsizetype start = m_at;
        if (is(Token::Number) && m_tokens[m_at].length <= 2 &&
            (isMark(u':', 1) || is(Token::Morning, 1) || is(Token::Afternoon, 1))) {
            m_hour = next().value;
            m_minute = m_second = 0;
            if (clockPart(m_minute) && clockPart(m_second) && readHalf() && m_hour < 24 && m_minute < 60 &&
                m_second < 60)
                return true;
        }
        m_hour = m_minute = m_second = 0;
        m_at = start;
        return false;
    }

    /// ":nn" if it is there; false when the colon has nothing behind it.
    bool clockPart(int& part) {
        if (!mark(u':')) return true;
        if (!is(Token::Number) || m_tokens[m_at].length > 2) return false;
        part = next().value;
        return true;
    }

    bool readHalf() {
        const bool afternoon = is(Token::Afternoon);
        if (!afternoon && !is(Token::Morning)) return true;
        ++m_at;
        if (m_hour > 12) return afternoon;
        m_hour = m_hour % 12 + (afternoon ? 12 : 0);
        return true;
    }

    bool readDate() {
        if (is(Token::Weekday)) {
            ++m_at;
            if (!mark(u',')) mark(u'.');
            mark(u',');
        }
        const qsizetype start = m_at;
        if (readNumbers() || (m_at = start, readDayMonthName()) || (m_at = start, readMonthName()))
            return true;
        m_at = start;
        return false;
    }

    bool take(const std::optional<QDate>& date) {
        if (date) m_date = *date;
        return date.has_value();
    }

    /// 22.11.2026, 22/11/26, 2026-11-22, and 22.11. of the year that runs.
    bool readNumbers() {
        if (!is(Token::Number)) return false;
        const Token a = next();
        const bool point = isMark(u'.');
        const bool separated = point || isMark(u'/') || isMark(u'-');
        if (!separated || !is(Token::Number, 1)) return false;
        const int separator = next().value;
        const Token b = next();
        if (is(Token::Mark) && m_tokens[m_at].value == separator) {
            ++m_at;
            if (is(Token::Number) && !(is(Token::Mark, 1) && isMark(u':', 1)))
                return take(orderDate(a, b, next()));
            if (!point) return false;
        }
        if (a.length > 2 || b.length > 2) return false;
        const int year = CurrentYear();
        if (auto date = validDate(year, b.value, a.value)) return take(date);
        return take(validDate(year, a.value, b.value));
    }

    /// 22. November 2026, 22-Nov-26, and 22. November of the year that runs.
    bool readDayMonthName() {
        if (!is(Token::Number) || m_tokens[m_at].length > 2) return false;
        const int day = next().value;
        if (!mark(u'.')) mark(u'-');
        if (!is(Token::Month)) return false;
        return readYear(day, next().value);
    }

    /// November 22, 2026 and November 2026.
    bool readMonthName() {
        if (!is(Token::Month)) return false;
        const int month = next().value;
        mark(u'.');
        if (is(Token::Number) && m_tokens[m_at].length <= 2 && isMark(u',', 1)) {
            const int day = next().value;
            ++m_at;
            return is(Token::Number) && take(validDate(century(next()), month, day));
        }
        return is(Token::Number) && take(validDate(century(next()), month, 1));
    }

    bool readYear(int day, int month) {
        if (!mark(u'.')) mark(u'-');
        if (is(Token::Number) && !isMark(u':', 1)) return take(validDate(century(next()), month, day));
        return take(validDate(CurrentYear(), month, day));
    }

    const Tokens& m_tokens;
    qsizetype m_at = 0;
    QDate m_date;
    int m_hour = 0, m_minute = 0, m_second = 0;
};

} // namespace

std::optional<DateTime> parseDate(QStringView text) {
    Tokens tokens;
    if (!tokenize(text.trimmed(), tokens)) return {};
    return Reader(tokens).read();
}
