#include "GermanNames.h"
#include "Weeks.h"

#include <text/Convert.h>
#include <text/Dates.h>
#include <text/RuntimeError.h>

#include <cmath>

namespace vb {

namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval intervalOf(QStringView name) {
    static constexpr std::pair<QStringView, Interval> intervals[] = {
        {u"yyyy", Interval::Year},   {u"q", Interval::Quarter}, {u"m", Interval::Month},
        {u"y", Interval::DayOfYear}, {u"d", Interval::Day},     {u"w", Interval::Weekday},
        {u"ww", Interval::Week},     {u"h", Interval::Hour},    {u"n", Interval::Minute},
        {u"s", Interval::Second}};
    for (const auto& [text, interval] : intervals)
        if (name.compare(text, Qt::CaseInsensitive) == 0) return interval;
    RaiseInvalidCall();
}

QDate dayOf(DateTime date) {
    const QDate day = date.date();
    if (!day.isValid()) RaiseInvalidCall();
    return day;
}

QTime timeOf(DateTime date) {
    const QTime time = date.time();
    if (!time.isValid()) RaiseInvalidCall();
    return time;
}

int secondOf(DateTime date) { return date.time().msecsSinceStartOfDay() / 1000; }

qint64 divideDown(qint64 value, qint64 divisor) { return value / divisor - (value % divisor < 0 ? 1 : 0); }

DateTime compose(QDate day, qint64 seconds) {
    const qint64 over = divideDown(seconds, 86400);
    // What is further away than the calendar reaches is refused below, before it can overflow.
    const QDate moved = day.addDays(std::clamp<qint64>(over, -4'000'000, 4'000'000));
    const auto rest = static_cast<int>(seconds - over * 86400);
    if (!moved.isValid() || moved.year() < 100 || moved.year() > 9999) RaiseInvalidCall();
    return DateTime::fromParts(moved.year(), moved.month(), moved.day(), 0, 0, rest);
}

qint64 secondsSince(DateTime date) { return dayOf(date).toJulianDay() * 86400 + secondOf(date); }

int checkedDay(int firstDayOfWeek) {
    if (firstDayOfWeek < 0 || firstDayOfWeek > 7) RaiseInvalidCall();
    return firstDayOfWeek;
}

int checkedWeek(int firstWeekOfYear) {
    if (firstWeekOfYear < 0 || firstWeekOfYear > 3) RaiseInvalidCall();
    return firstWeekOfYear;
}

} // namespace

DateTime DateAdd(QStringView interval, double number, DateTime date) {
    const Interval unit = intervalOf(interval);
    const QDate day = dayOf(date);
    const double rounded = std::nearbyint(number);
    // Ten thousand years in seconds: nothing beyond stays in the calendar.
    if (!(std::abs(rounded) < 4e11)) RaiseInvalidCall();
    const auto count = static_cast<qint64>(rounded);
    const auto months = [&](qint64 factor) {
        const qint64 all = count * factor;
        if (std::abs(all) > 200'000) RaiseInvalidCall();
        return compose(day.addMonths(static_cast<int>(all)), secondOf(date));
    };
    switch (unit) {
    case Interval::Year:
        return months(12);
    case Interval::Quarter:
        return months(3);
    case Interval::Month:
        return months(1);
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday:
        return compose(day, count * 86400 + secondOf(date));
    case Interval::Week:
        return compose(day, count * 7 * 86400 + secondOf(date));
    case Interval::Hour:
        return compose(day, count * 3600 + secondOf(date));
    case Interval::Minute:
        return compose(day, count * 60 + secondOf(date));
    case Interval::Second:
        break;
    }
    return compose(day, count + secondOf(date));
}

qint64 DateDiff(QStringView interval, DateTime first, DateTime second, int firstDayOfWeek,
                int firstWeekOfYear) {
    const Interval unit = intervalOf(interval);
    checkedWeek(firstWeekOfYear);
    const QDate from = dayOf(first), to = dayOf(second);
    const qint64 years = to.year() - from.year();
    const qint64 days = from.daysTo(to);
    switch (unit) {
    case Interval::Year:
        return years;
    case Interval::Quarter:
        return years * 4 + (to.month() - 1) / 3 - (from.month() - 1) / 3;
    case Interval::Month:
        return years * 12 + to.month() - from.month();
    case Interval::DayOfYear:
    case Interval::Day:
        return days;
    case Interval::Weekday:
        return days / 7;
    case Interval::Week: {
        const int day = checkedDay(firstDayOfWeek);
        return (days + weekdayOf(from, day) - weekdayOf(to, day)) / 7;
    }
    case Interval::Hour:
        return divideDown(secondsSince(second), 3600) - divideDown(secondsSince(first), 3600);
    case Interval::Minute:
        return divideDown(secondsSince(second), 60) - divideDown(secondsSince(first), 60);
    case Interval::Second:
        break;
    }
    return secondsSince(second) - secondsSince(first);
}

int DatePart(QStringView interval, DateTime date, int firstDayOfWeek, int firstWeekOfYear) {
    const Interval unit = intervalOf(interval);
    const QDate day = dayOf(date);
    switch (unit) {
    case Interval::Year:
        return day.year();
    case Interval::Quarter:
        return (day.month() + 2) / 3;
    case Interval::Month:
        return day.month();
    case Interval::DayOfYear:
        return day.dayOfYear();
    case Interval::Day:
        return day.day();
    case Interval::Weekday:
        return weekdayOf(day, checkedDay(firstDayOfWeek));
    case Interval::Week:
        return weekOf(day, checkedDay(firstDayOfWeek), checkedWeek(firstWeekOfYear));
    case Interval::Hour:
        return date.time().hour();
    case Interval::Minute:
        return date.time().minute();
    case Interval::Second:
        break;
    }
    return date.time().second();
}

DateTime DateSerial(int year, int month, int day) { return DateTime::fromParts(year, month, day); }

DateTime TimeSerial(int hour, int minute, int second) {
    return DateTime::fromParts(1899, 12, 30, hour, minute, second);
}

DateTime DateValue(const Value& value) { return CDate(value).dayPart(); }
DateTime TimeValue(const Value& value) { return CDate(value).timePart(); }

int Year(DateTime date) { return dayOf(date).year(); }
int Month(DateTime date) { return dayOf(date).month(); }
int Day(DateTime date) { return dayOf(date).day(); }

int Hour(DateTime date) { return timeOf(date).hour(); }
int Minute(DateTime date) { return timeOf(date).minute(); }
int Second(DateTime date) { return timeOf(date).second(); }

int Weekday(DateTime date, int firstDayOfWeek) { return weekdayOf(dayOf(date), checkedDay(firstDayOfWeek)); }

QString MonthName(int month, bool abbreviate) {
    if (month < 1 || month > 12) RaiseInvalidCall();
    const auto index = static_cast<size_t>(month - 1);
    return (abbreviate ? german::shortMonths : german::months)[index].toString();
}

QString WeekdayName(int weekday, bool abbreviate, int firstDayOfWeek) {
    if (weekday < 1 || weekday > 7) RaiseInvalidCall();
    const int first = checkedDay(firstDayOfWeek) == 0 ? 2 : firstDayOfWeek;
    const auto index = static_cast<size_t>((weekday - 1 + first - 1) % 7);
    return (abbreviate ? german::shortWeekdays : german::weekdays)[index].toString();
}

} // namespace vb
