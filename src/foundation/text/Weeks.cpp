#include "Weeks.h"

namespace {

constexpr int germanFirstDay = 2;  // Monday
constexpr int germanFirstWeek = 2; // with four days

/// First day of week 1.
QDate firstWeek(int year, int firstDayOfWeek, int rule) {
    const QDate first(year, 1, 1);
    const int before = weekdayOf(first, firstDayOfWeek) - 1;
    const bool nextWeek = (rule == 2 && before > 3) || (rule == 3 && before > 0);
    return first.addDays(nextWeek ? 7 - before : -before);
}

} // namespace

int weekdayOf(QDate date, int firstDayOfWeek) {
    const int first = firstDayOfWeek >= 1 && firstDayOfWeek <= 7 ? firstDayOfWeek : germanFirstDay;
    return (date.dayOfWeek() % 7 + 1 - first + 7) % 7 + 1;
}

int weekOf(QDate date, int firstDayOfWeek, int firstWeekOfYear) {
    const int rule = firstWeekOfYear >= 1 && firstWeekOfYear <= 3 ? firstWeekOfYear : germanFirstWeek;
    QDate start = firstWeek(date.year(), firstDayOfWeek, rule);
    if (date < start) {
        start = firstWeek(date.year() - 1, firstDayOfWeek, rule);
    } else if (rule == 2) {
        // Days of December may have most of their week in the next year.
        const QDate next = firstWeek(date.year() + 1, firstDayOfWeek, rule);
        if (date >= next) start = next;
    }
    return static_cast<int>(start.daysTo(date) / 7) + 1;
}
