#pragma once

#include <text/Value.h>

#include <QStringView>

/// Visual Basic's date functions. Intervals are "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n" and "s", in
/// any case; others raise 5. Days of the week count from 1, Sunday, to 7 as `firstDayOfWeek`, 0 is the German
/// Monday. The first week of a year is the one with 1 January (1), the first with four days (2), the first
/// whole one (3), or the German rule, which is 2, for 0. Dates that leave the years 100 to 9999 raise 5.
namespace vb {

/// `number` is rounded to whole intervals; a day that the month does not have becomes its last one.
[[nodiscard]] DateTime DateAdd(QStringView interval, double number, DateTime date);
/// How many borders of the interval lie between both, negative when `second` is earlier. "w" counts whole
/// weeks from `first` on, "ww" the first days of weeks.
[[nodiscard]] qint64 DateDiff(QStringView interval, DateTime first, DateTime second, int firstDayOfWeek = 1,
                              int firstWeekOfYear = 1);
[[nodiscard]] int DatePart(QStringView interval, DateTime date, int firstDayOfWeek = 1,
                           int firstWeekOfYear = 1);

[[nodiscard]] DateTime DateSerial(int year, int month, int day);
[[nodiscard]] DateTime TimeSerial(int hour, int minute, int second);
[[nodiscard]] DateTime DateValue(const Value& value); ///< the day of what CDate makes of it
[[nodiscard]] DateTime TimeValue(const Value& value); ///< the time of day

[[nodiscard]] int Year(DateTime date);
[[nodiscard]] int Month(DateTime date);
[[nodiscard]] int Day(DateTime date);
[[nodiscard]] int Hour(DateTime date);
[[nodiscard]] int Minute(DateTime date);
[[nodiscard]] int Second(DateTime date);
[[nodiscard]] int Weekday(DateTime date, int firstDayOfWeek = 1);

/// German names; raise 5 for a number that is none.
[[nodiscard]] QString MonthName(int month, bool abbreviate = false);
[[nodiscard]] QString WeekdayName(int weekday, bool abbreviate = false, int firstDayOfWeek = 0);

} // namespace vb
