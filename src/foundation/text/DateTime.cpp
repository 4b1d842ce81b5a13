#include <text/DateTime.h>
#include <text/RuntimeError.h>

#include <cmath>

namespace {

constexpr qint64 epoch = 2415019; // Julian day of 30.12.1899
constexpr qint64 firstDay = -657434;
constexpr qint64 lastDay = 2958465;
constexpr int secondsOfDay = 86400;

DateTime fromDaySeconds(qint64 day, qint64 seconds) {
    if (day < firstDay || day > lastDay) RaiseInvalidCall();
    const double fraction = static_cast<double>(seconds) / secondsOfDay;
    return {day < 0 ? static_cast<double>(day) - fraction : static_cast<double>(day) + fraction};
}

int systemYear() { return QDate::currentDate().year(); }
int (*currentYear)() = systemYear;

struct Split {
    qint64 day = 0;
    int seconds = 0;
    bool valid = false;
};

Split split(double days) {
    if (!(days > firstDay - 1.0 && days < lastDay + 1.0)) return {};
    const double whole = std::trunc(days);
    Split s{static_cast<qint64>(whole), static_cast<int>(std::lround(std::abs(days - whole) * secondsOfDay)),
            true};
    if (s.seconds == secondsOfDay) {
        s.seconds = 0;
        ++s.day;
    }
    s.valid = s.day >= firstDay && s.day <= lastDay;
    return s;
}

QDate dateOf(const Split& s) { return s.valid ? QDate::fromJulianDay(epoch + s.day) : QDate(); }
QTime timeOf(const Split& s) { return s.valid ? QTime::fromMSecsSinceStartOfDay(s.seconds * 1000) : QTime(); }

} // namespace

int CurrentYear() { return currentYear(); }
void SetCurrentYear(int (*year)()) { currentYear = year ? year : systemYear; }

DateTime DateTime::fromQDateTime(const QDateTime& value) {
    if (!value.isValid()) RaiseInvalidCall();
    return fromDaySeconds(value.date().toJulianDay() - epoch, value.time().msecsSinceStartOfDay() / 1000);
}

DateTime DateTime::fromQDate(QDate date) {
    if (!date.isValid()) RaiseInvalidCall();
    return fromDaySeconds(date.toJulianDay() - epoch, 0);
}

DateTime DateTime::fromQTime(QTime time) {
    if (!time.isValid()) RaiseInvalidCall();
    return fromDaySeconds(0, time.msecsSinceStartOfDay() / 1000);
}

DateTime DateTime::fromParts(int year, int month, int day, int hour, int minute, int second) {
    qint64 wholeYear = year;
    if (year >= 0 && year <= 29) wholeYear += 2000;
    if (year >= 30 && year <= 99) wholeYear += 1900;
    const qint64 months = wholeYear * 12 + month - 1;
    const qint64 monthOfYear = ((months % 12) + 12) % 12;
    const qint64 normalYear = (months - monthOfYear) / 12;
    if (normalYear < -9999 || normalYear > 19999) RaiseInvalidCall();
    // Year 0 exists for the arithmetic of Gregorian years, not for QDate, which goes from -1 to 1.
    const QDate first(static_cast<int>(normalYear <= 0 ? normalYear - 1 : normalYear),
                      static_cast<int>(monthOfYear) + 1, 1);
    qint64 days = first.toJulianDay() - epoch + day - 1;
    qint64 seconds = qint64{hour} * 3600 + qint64{minute} * 60 + second;
    qint64 over = seconds / secondsOfDay;
    if (seconds % secondsOfDay < 0) --over;
    days += over;
    seconds -= over * secondsOfDay;
    return fromDaySeconds(days, seconds);
}

QDateTime DateTime::toQDateTime() const {
    const Split s = split(days);
    return s.valid ? QDateTime(dateOf(s), timeOf(s)) : QDateTime();
}

QDate DateTime::date() const { return dateOf(split(days)); }
QTime DateTime::time() const { return timeOf(split(days)); }

DateTime DateTime::dayPart() const {
    const Split s = split(days);
    if (!s.valid) RaiseInvalidCall();
    return fromDaySeconds(s.day, 0);
}

DateTime DateTime::timePart() const {
    const Split s = split(days);
    if (!s.valid) RaiseInvalidCall();
    return fromDaySeconds(0, s.seconds);
}
