#include "FunctionParts.h"

#include <text/Dates.h>
#include <text/RuntimeError.h>

#include <algorithm>

namespace jet {

namespace {

using Arguments = std::span<const Value>;

QDateTime systemNow() { return QDateTime::currentDateTime(); }
QDateTime (*clockNow)() = systemNow;

template <Value (*F)(Arguments)>
Value strict(Arguments a) {
    return std::any_of(a.begin(), a.end(), [](const Value& v) { return v.isNull(); }) ? Value() : F(a);
}
int wholeAt(Arguments a, std::size_t i, int otherwise) { return i < a.size() ? a[i].toLong() : otherwise; }

Value now(Arguments) { return clockValue(Encoding::Now); }
Value date(Arguments) { return clockValue(Encoding::Today); }
Value time(Arguments) { return clockValue(Encoding::TimeOfDay); }
Value timer(Arguments) { return clockValue(Encoding::Timer); }

Value year(Arguments a) { return vb::Year(a[0].toDate()); }
Value month(Arguments a) { return vb::Month(a[0].toDate()); }
Value day(Arguments a) { return vb::Day(a[0].toDate()); }
Value hour(Arguments a) { return vb::Hour(a[0].toDate()); }
Value minute(Arguments a) { return vb::Minute(a[0].toDate()); }
Value second(Arguments a) { return vb::Second(a[0].toDate()); }
Value weekday(Arguments a) { return vb::Weekday(a[0].toDate(), wholeAt(a, 1, 1)); }
Value monthName(Arguments a) { return vb::MonthName(a[0].toLong(), a.size() > 1 && a[1].toBool()); }
Value weekdayName(Arguments a) {
    return vb::WeekdayName(a[0].toLong(), a.size() > 1 && a[1].toBool(), wholeAt(a, 2, 0));
}
Value dateSerial(Arguments a) { return vb::DateSerial(a[0].toLong(), a[1].toLong(), a[2].toLong()); }
Value timeSerial(Arguments a) { return vb::TimeSerial(a[0].toLong(), a[1].toLong(), a[2].toLong()); }
Value dateValue(Arguments a) { return vb::DateValue(a[0]); }
Value timeValue(Arguments a) { return vb::TimeValue(a[0]); }
Value dateAdd(Arguments a) { return vb::DateAdd(a[0].toText(), a[1].toDouble(), a[2].toDate()); }
Value dateDiff(Arguments a) {
    return vb::DateDiff(a[0].toText(), a[1].toDate(), a[2].toDate(), wholeAt(a, 3, 1), wholeAt(a, 4, 1));
}
Value datePart(Arguments a) {
    return vb::DatePart(a[0].toText(), a[1].toDate(), wholeAt(a, 2, 1), wholeAt(a, 3, 1));
}

} // namespace

Value clockValue(Encoding encoding) {
    const QDateTime at = clockNow();
    switch (encoding) {
    case Encoding::Today:
        return DateTime::fromQDate(at.date());
    case Encoding::TimeOfDay:
        return DateTime::fromQTime(at.time());
    case Encoding::Now:
        return DateTime::fromQDateTime(at);
    default:
        return double(at.time().msecsSinceStartOfDay()) / 1000.0;
    }
}

void setClock(QDateTime (*clock)()) {
    clockNow = clock ? clock : systemNow;
    SetCurrentYear([] { return clockNow().date().year(); });
}

void addDateFunctions(std::vector<Function>& list) {
    const Function more[] = {
        {"jet_now", now, false},
        {"jet_date", date, false},
        {"jet_time", time, false},
        {"jet_timer", timer, false},
        {"jet_year", strict<year>},
        {"jet_month", strict<month>},
        {"jet_day", strict<day>},
        {"jet_hour", strict<hour>},
        {"jet_minute", strict<minute>},
        {"jet_second", strict<second>},
        {"jet_weekday", strict<weekday>},
        {"jet_monthname", strict<monthName>},
        {"jet_weekdayname", strict<weekdayName>},
        {"jet_dateserial", strict<dateSerial>},
        {"jet_timeserial", strict<timeSerial>},
        {"jet_datevalue", strict<dateValue>},
        {"jet_timevalue", strict<timeValue>},
        {"jet_dateadd", strict<dateAdd>},
        {"jet_datediff", strict<dateDiff>},
        {"jet_datepart", strict<datePart>},
    };
    list.insert(list.end(), std::begin(more), std::end(more));
}

} // namespace jet
