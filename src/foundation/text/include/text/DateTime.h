#pragma once

#include <QDateTime>

#include <compare>

/// The year of a date that is written without one; the system's unless another clock is given. nullptr gives
/// that back.
[[nodiscard]] int CurrentYear();
void SetCurrentYear(int (*year)());

/// A point in time as the store keeps it: days since 30.12.1899 with the time of day as the fraction.
/// Negative values count the day downwards and the fraction upwards (-1.25 is 29.12.1899 06:00).
/// Range 1.1.100 to 31.12.9999. A pure time has day 0, a pure date the fraction 0. Resolution is one second;
/// equal seconds give equal `days`.
struct DateTime {
    double days = 0;

    /// Raises 5 for an invalid date.
    static DateTime fromQDateTime(const QDateTime& value);
    static DateTime fromQDate(QDate date);
    static DateTime fromQTime(QTime time);
    /// Month and day may run over, as in DateSerial(2026, 13, 0). Two-digit years 0-29 are 2000s, 30-99
    /// 1900s.
    static DateTime fromParts(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

    [[nodiscard]] QDateTime toQDateTime() const; ///< local time, rounded to the second
    [[nodiscard]] QDate date() const;
    [[nodiscard]] QTime time() const;
    /// Only the day, and only the time of day.
    [[nodiscard]] DateTime dayPart() const;
    [[nodiscard]] DateTime timePart() const;

    auto operator<=>(const DateTime&) const = default;
};
