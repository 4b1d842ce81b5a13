#include "DateText.h"
#include "FormatParts.h"
#include "GermanNames.h"
#include "Weeks.h"

namespace format {

namespace {

enum class Clock { Full, UpperHalves, LowerHalves, UpperLetters, LowerLetters, SystemHalves };

/// Length of the mark of a twelve-hour clock behind its first letter, which was taken already.
int halfMark(QStringView rest, char16_t first, Clock& clock) {
    const bool upper = first == u'A';
    if (rest.startsWith(u"M/PM", Qt::CaseInsensitive)) {
        clock = upper ? Clock::UpperHalves : Clock::LowerHalves;
        return 4;
    }
    if (rest.startsWith(u"/P", Qt::CaseInsensitive)) {
        clock = upper ? Clock::UpperLetters : Clock::LowerLetters;
        return 2;
    }
    if (rest.startsWith(u"MPM", Qt::CaseInsensitive)) {
        clock = Clock::SystemHalves;
        return 3;
    }
    return 0;
}

class DateWriter {
  public:
    DateWriter(DateTime date, QStringView format, int firstDayOfWeek, int firstWeekOfYear)
        : m_moment(date)
        , m_date(date.date())
        , m_time(date.time())
        , m_format(format)
        , m_firstDayOfWeek(firstDayOfWeek)
        , m_firstWeekOfYear(firstWeekOfYear) {
        m_date.getDate(&m_year, &m_month, &m_day);
    }

    QString write() {
        findClock();
        Scanner scanner(m_format);
        QStringView literal;
        while (const char16_t c = scanner.next(literal)) {
            if (c == u';') break;
            if (c == Scanner::isLiteral)
                m_out.put(literal);
            else
                item(scanner, c);
        }
        return m_out.text();
    }

  private:
    void findClock() {
        Scanner scanner(m_format);
        QStringView literal;
        while (const char16_t c = scanner.next(literal))
            if ((c == u'a' || c == u'A') && halfMark(scanner.rest(), c, m_clock) > 0) return;
    }

    void item(Scanner& scanner, char16_t c) {
        const bool behindHour = m_behindHour;
        switch (c) {
        case u'd':
        case u'D':
            day(1 + scanner.run(u'd', 5));
            break;
        case u'm':
        case u'M':
            month(1 + scanner.run(u'm', 3), behindHour);
            break;
        case u'y':
        case u'Y':
            year(scanner);
            break;
        case u'h':
        case u'H':
            hour(1 + scanner.run(u'h', 1));
            return;
        case u'n':
        case u'N':
            m_out.number(m_time.minute(), 1 + scanner.run(u'n', 1));
            break;
        case u's':
        case u'S':
            m_out.number(m_time.second(), 1 + scanner.run(u's', 1));
            break;
        case u'w':
        case u'W':
            if (scanner.run(u'w', 1) == 1)
                m_out.number(weekOf(m_date, m_firstDayOfWeek, m_firstWeekOfYear), 1);
            else
                m_out.number(weekdayOf(m_date, m_firstDayOfWeek), 1);
            break;
        case u'q':
        case u'Q':
            m_out.number((m_month + 2) / 3, 1);
            break;
        case u'c':
        case u'C':
            m_out.put(generalDate(m_moment));
            break;
        case u't':
        case u'T':
            if (scanner.rest().startsWith(u"tttt", Qt::CaseInsensitive)) {
                scanner.skip(4);
                clockTime();
            } else {
                m_out.put(c);
            }
            break;
        case u'a':
        case u'A':
            half(scanner, c);
            return;
        case u'/':
            m_out.put(u'.');
            return;
        default:
            m_out.put(c);
            return;
        }
        m_behindHour = false;
    }

    void day(int letters) {
        const auto weekday = static_cast<size_t>(m_date.dayOfWeek() % 7);
        switch (letters) {
        case 3:
            return m_out.put(german::shortWeekdays[weekday]);
        case 4:
            return m_out.put(german::weekdays[weekday]);
        case 5:
            return shortDate();
        case 6:
            m_out.put(german::weekdays[weekday]);
            m_out.put(u", ");
            m_out.number(m_day, 1);
            m_out.put(u". ");
            month(4, false);
            m_out.put(u' ');
            return m_out.number(m_year, 4);
        default:
            m_out.number(m_day, letters);
        }
    }

    void month(int letters, bool behindHour) {
        if (behindHour && letters <= 2) return m_out.number(m_time.minute(), letters);
        const auto index = static_cast<size_t>(m_month - 1);
        if (letters == 3) return m_out.put(german::shortMonths[index]);
        if (letters == 4) return m_out.put(german::months[index]);
        m_out.number(m_month, letters);
    }

    void year(Scanner& scanner) {
        if (scanner.rest().startsWith(u"yyy", Qt::CaseInsensitive)) {
            scanner.skip(3);
            m_out.number(m_year, 4);
        } else if (scanner.run(u'y', 1) == 1) {
            m_out.number(m_year % 100, 2);
        } else {
            m_out.number(m_date.dayOfYear(), 1);
        }
    }

    void hour(int letters) {
        int hour = m_time.hour();
        if (m_clock != Clock::Full) hour = (hour + 11) % 12 + 1;
        m_out.number(hour, letters);
        m_behindHour = true;
    }

    void half(Scanner& scanner, char16_t c) {
        Clock mark = Clock::Full;
        scanner.skip(halfMark(scanner.rest(), c, mark));
        const bool morning = m_time.hour() < 12;
        switch (mark) {
        case Clock::Full:
            return m_out.put(c);
        case Clock::UpperHalves:
            return m_out.put(morning ? u"AM" : u"PM");
        case Clock::LowerHalves:
            return m_out.put(morning ? u"am" : u"pm");
        case Clock::UpperLetters:
            return m_out.put(morning ? u'A' : u'P');
        case Clock::LowerLetters:
            return m_out.put(morning ? u'a' : u'p');
        case Clock::SystemHalves: // German has no words for them
            return;
        }
    }

    void shortDate() {
        m_out.number(m_day, 2);
        m_out.put(u'.');
        m_out.number(m_month, 2);
        m_out.put(u'.');
        m_out.number(m_year, 4);
    }

    void clockTime() {
        m_out.number(m_time.hour(), 2);
        m_out.put(u':');
        m_out.number(m_time.minute(), 2);
        m_out.put(u':');
        m_out.number(m_time.second(), 2);
    }

    DateTime m_moment;
    QDate m_date;
    int m_year = 0, m_month = 0, m_day = 0;
    QTime m_time;
    QStringView m_format;
    int m_firstDayOfWeek;
    int m_firstWeekOfYear;
    Clock m_clock = Clock::Full;
    bool m_behindHour = false; ///< "m" means minutes now
    Output m_out;
};

} // namespace

QString formatDate(DateTime date, QStringView format, int firstDayOfWeek, int firstWeekOfYear) {
    if (!date.date().isValid()) return {};
    return DateWriter(date, format, firstDayOfWeek, firstWeekOfYear).write();
}

} // namespace format
