#pragma once

#include <QDate>

/// 1..7 counted from `firstDayOfWeek` (1 is Sunday, 0 Monday).
[[nodiscard]] int weekdayOf(QDate date, int firstDayOfWeek);
/// The week of the year that `date` belongs to by the given rule; the last days of a year may be week 1.
[[nodiscard]] int weekOf(QDate date, int firstDayOfWeek, int firstWeekOfYear);
