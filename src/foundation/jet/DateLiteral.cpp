#include "Lexer.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

/// Numbers, words and separators of a date text, read from left to right.
class Reader {
  public:
    explicit Reader(QStringView text)
        : m_text(text) {
        blanks();
    }

    [[nodiscard]] bool atEnd() const { return m_pos >= m_text.size(); }
    [[nodiscard]] qsizetype mark() const { return m_pos; }
    void reset(qsizetype mark) { m_pos = mark; }
    void blanks() {
        while (m_pos < m_text.size() && m_text[m_pos].isSpace())
            ++m_pos;
    }
    std::optional<int> number(int& digits) {
        digits = 0;
        int value = 0;
        while (m_pos < m_text.size() && m_text[m_pos] >= u'0' && m_text[m_pos] <= u'9' && digits < 5) {
            value = value * 10 + (m_text[m_pos++].unicode() - u'0');
            ++digits;
        }
        if (digits == 0 || digits > 4) return std::nullopt;
        return value;
    }
    QStringView word() {
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && m_text[m_pos].isLetter())
            ++m_pos;
        return m_text.mid(start, m_pos - start);
    }
    bool take(char16_t c) {
        if (atEnd() || m_text[m_pos] != c) return false;
        ++m_pos;
        return true;
    }
    bool takeAny(QStringView set) {
        if (atEnd() || !set.contains(m_text[m_pos])) return false;
        ++m_pos;
        return true;
    }

  private:
    QStringView m_text;
    qsizetype m_pos = 0;
};

struct Time {
    int hour = 0, minute = 0, second = 0;
};

std::optional<Time> readTime(Reader& in) {
    Time t;
    int digits = 0;
    const auto hour = in.number(digits);
    if (!hour || digits > 2) return std::nullopt;
    t.hour = *hour;
    bool told = false;
    if (in.take(u':')) {
        told = true;
        const auto minute = in.number(digits);
        if (!minute || digits > 2) return std::nullopt;
        t.minute = *minute;
        if (in.take(u':')) {
            const auto second = in.number(digits);
            if (!second || digits > 2) return std::nullopt;
            t.second = *second;
        }
    }
    in.blanks();
    const QStringView half = in.word();
    if (!half.isEmpty()) {
        const bool pm =
            half.compare(u"PM", Qt::CaseInsensitive) == 0 || half.compare(u"P", Qt::CaseInsensitive) == 0;
        const bool am =
            half.compare(u"AM", Qt::CaseInsensitive) == 0 || half.compare(u"A", Qt::CaseInsensitive) == 0;
        if ((!am && !pm) || t.hour > 12 || t.hour == 0) return std::nullopt;
        t.hour = t.hour % 12 + (pm ? 12 : 0);
        told = true;
    }
    in.blanks();
    if (!told || t.hour > 23 || t.minute > 59 || t.second > 59) return std::nullopt;
    return t;
}

int monthOf(QStringView word) {
    static constexpr const char16_t* months[] = {u"january",   u"february", u"march",    u"april",
                                                 u"may",       u"june",     u"july",     u"august",
                                                 u"september", u"october",  u"november", u"december"};
    if (word.size() < 3) return 0;
    for (int m = 0; m < 12; ++m)
        if (QStringView(months[m]).startsWith(word, Qt::CaseInsensitive)) return m + 1;
    return 0;
}

int fullYear(int year, int digits) {
    if (digits > 2) return year;
    return year < 30 ? 2000 + year : 1900 + year;
}

std::optional<QDate> readDate(Reader& in) {
    int digits1 = 0, digits2 = 0, digits3 = 0;
    static constexpr QStringView separators = u"/-.";
    int year = 0, month = 0, day = 0;
    if (const QStringView word = in.word(); !word.isEmpty()) { // Nov 22, 2026
        month = monthOf(word);
        in.blanks();
        in.takeAny(separators);
        const auto d = in.number(digits1);
        in.takeAny(u",/-.");
        in.blanks();
        const auto y = in.number(digits2);
        if (!month || !d || !y) return std::nullopt;
        day = *d, year = fullYear(*y, digits2);
    } else {
        const auto first = in.number(digits1);
        if (!first) return std::nullopt;
        const bool blank = [&] {
            const qsizetype before = in.mark();
            in.blanks();
            return in.mark() != before;
        }();
        const bool separated = in.takeAny(separators);
        if (!separated && !blank) return std::nullopt;
        in.blanks();
        if (const QStringView name = in.word(); !name.isEmpty()) { // 22 Nov 2026
            month = monthOf(name);
            in.takeAny(u".,/-");
            in.blanks();
            const auto y = in.number(digits3);
            if (!month || !y) return std::nullopt;
            day = *first, year = fullYear(*y, digits3);
        } else {
            const auto second = in.number(digits2);
            if (!separated || !second) return std::nullopt;
            std::optional<int> third;
            if (in.takeAny(separators)) {
                third = in.number(digits3);
                if (!third) return std::nullopt;
            }
            if (digits1 > 2) {
                if (!third) return std::nullopt;
                year = *first, month = *second, day = *third;
            } else {
                month = *first, day = *second;
                year = third ? fullYear(*third, digits3) : CurrentYear();
                if (month > 12 && day <= 12) std::swap(month, day);
            }
        }
    }
    const QDate date(year, month, day);
    if (!date.isValid() || year < 100) return std::nullopt;
    return date;
}

} // namespace

std::optional<DateTime> parseDateLiteral(QStringView text) {
    Reader in(text);
    if (in.atEnd()) return std::nullopt;
    if (const auto time = readTime(in); time && in.atEnd())
        return DateTime::fromQTime(QTime(time->hour, time->minute, time->second));
    in = Reader(text);
    const auto date = readDate(in);
    if (!date) return std::nullopt;
    Time time;
    if (!in.atEnd()) {
        const qsizetype before = in.mark();
        in.blanks();
        if (in.mark() == before && !in.take(u'T')) return std::nullopt;
        if (!in.atEnd()) {
            const auto read = readTime(in);
            if (!read || !in.atEnd()) return std::nullopt;
            time = *read;
        }
    }
    return DateTime::fromParts(date->year(), date->month(), date->day(), time.hour, time.minute, time.second);
}

} // namespace jet
