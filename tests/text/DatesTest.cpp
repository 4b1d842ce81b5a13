#include "Printers.h"

#include <text/Dates.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

DateTime at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return DateTime::fromParts(y, m, d, h, mi, s);
}

} // namespace

TEST(Dates, AddsIntervals) {
    const DateTime start = at(2024, 1, 31, 22, 30, 15);
    const struct {
        QStringView interval;
        double number;
        DateTime result;
    } rows[] = {
        {u"m", 1, at(2024, 2, 29, 22, 30, 15)},    {u"M", 13, at(2025, 2, 28, 22, 30, 15)},
        {u"m", -2, at(2023, 11, 30, 22, 30, 15)},  {u"yyyy", 1, at(2025, 1, 31, 22, 30, 15)},
        {u"q", -1, at(2023, 10, 31, 22, 30, 15)},  {u"d", 1, at(2024, 2, 1, 22, 30, 15)},
        {u"y", -31, at(2023, 12, 31, 22, 30, 15)}, {u"w", 3, at(2024, 2, 3, 22, 30, 15)},
        {u"ww", -1, at(2024, 1, 24, 22, 30, 15)},  {u"h", 2, at(2024, 2, 1, 0, 30, 15)},
        {u"n", 90, at(2024, 2, 1, 0, 0, 15)},      {u"s", -16, at(2024, 1, 31, 22, 29, 59)},
        {u"d", 1.5, at(2024, 2, 2, 22, 30, 15)},   {u"d", 2.5, at(2024, 2, 2, 22, 30, 15)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(vb::DateAdd(row.interval, row.number, start), row.result)
            << shown(row.interval) << row.number;
    EXPECT_EQ(vb::DateAdd(u"h", -30, at(1899, 12, 30, 1)), at(1899, 12, 28, 19));
    EXPECT_EQ(vb::DateAdd(u"d", 59, at(1899, 12, 30)), at(1900, 2, 27));
}

TEST(Dates, CountsBorders) {
    const struct {
        QStringView interval;
        DateTime first, second;
        qint64 result;
    } rows[] = {
        {u"yyyy", at(2025, 12, 31), at(2026, 1, 1), 1},
        {u"q", at(2025, 12, 31), at(2026, 4, 1), 2},
        {u"m", at(2026, 3, 31), at(2026, 2, 1), -1},
        {u"d", at(2026, 3, 1, 23, 59), at(2026, 3, 2, 0, 1), 1},
        {u"w", at(2026, 3, 1), at(2026, 3, 14), 1},
        {u"w", at(2026, 3, 14), at(2026, 3, 1), -1},
        {u"ww", at(2026, 3, 7), at(2026, 3, 8), 1}, // Saturday to Sunday
        {u"ww", at(2026, 3, 8), at(2026, 3, 14), 0},
        {u"ww", at(2026, 3, 8), at(2026, 3, 7), -1},
        {u"h", at(2026, 3, 1, 9, 59, 59), at(2026, 3, 1, 10), 1},
        {u"n", at(2026, 3, 1, 9, 59, 59), at(2026, 3, 1, 9, 59), 0},
        {u"s", at(1899, 12, 29, 23, 59, 59), at(1899, 12, 30), 1},
        {u"h", at(1899, 12, 29, 6), at(1899, 12, 30, 6), 24},
        {u"s", at(100, 1, 1), at(9999, 12, 31), qint64{3615899} * 86400},
    };
    for (const auto& row : rows)
        EXPECT_EQ(vb::DateDiff(row.interval, row.first, row.second), row.result) << shown(row.interval);
    // Sunday to Monday is a border only where weeks begin on Monday.
    EXPECT_EQ(vb::DateDiff(u"ww", at(2026, 3, 8), at(2026, 3, 9), 2), 1);
    EXPECT_EQ(vb::DateDiff(u"ww", at(2026, 3, 8), at(2026, 3, 9), 1), 0);
    EXPECT_EQ(vb::DateDiff(u"ww", at(2026, 3, 8), at(2026, 3, 9), 0), 1);
}

TEST(Dates, TakesParts) {
    const DateTime moment = at(2026, 11, 22, 14, 7, 9); // a Sunday
    const std::pair<QStringView, int> rows[] = {{u"yyyy", 2026}, {u"q", 4}, {u"m", 11},  {u"y", 326},
                                                {u"d", 22},      {u"w", 1}, {u"ww", 48}, {u"h", 14},
                                                {u"n", 7},       {u"S", 9}};
    for (const auto& [interval, part] : rows)
        EXPECT_EQ(vb::DatePart(interval, moment), part) << shown(interval);
    EXPECT_EQ(vb::DatePart(u"ww", moment, 2, 2), 47);
    EXPECT_EQ(vb::DatePart(u"w", moment, 2), 7);
    EXPECT_EQ(vb::Weekday(moment), 1);
    EXPECT_EQ(vb::Weekday(moment, 0), 7);
    EXPECT_EQ(vb::Hour(at(1899, 12, 29, 6)), 6);
    EXPECT_EQ(vb::Year(DateTime{0.5}), 1899);
}

TEST(Dates, IsoWeeksAgreeWithTheCalendar) {
    for (QDate day(1995, 1, 1); day < QDate(2035, 1, 1); day = day.addDays(1))
        ASSERT_EQ(vb::DatePart(u"ww", DateTime::fromQDate(day), 2, 2), day.weekNumber()) << day.toJulianDay();
}

TEST(Dates, BuildsAndNames) {
    EXPECT_EQ(vb::DateSerial(2026, 12 + 1, 0), at(2026, 12, 31));
    EXPECT_EQ(vb::TimeSerial(8, 90, -30), at(1899, 12, 30, 9, 29, 30));
    EXPECT_EQ(vb::DateValue(u"22.11.2026 14:07"), at(2026, 11, 22));
    EXPECT_EQ(vb::TimeValue(u"22.11.2026 14:07"), at(1899, 12, 30, 14, 7));
    EXPECT_EQ(vb::MonthName(3), u"März"_s);
    EXPECT_EQ(vb::MonthName(12, true), u"Dez"_s);
    EXPECT_EQ(vb::WeekdayName(1), u"Montag"_s);
    EXPECT_EQ(vb::WeekdayName(1, false, 1), u"Sonntag"_s);
    EXPECT_EQ(vb::WeekdayName(7, true, 6), u"Do"_s);
}

TEST(Dates, RefusesNonsense) {
    const DateTime day = at(2026, 11, 22), never{1e9};
    EXPECT_EQ(errorOf([&] { return vb::DateAdd(u"x", 1, day); }), 5);
    EXPECT_EQ(errorOf([&] { return vb::DateAdd(u"", 1, day); }), 5);
    EXPECT_EQ(errorOf([&] { return vb::DateAdd(u"d", 1, never); }), 5);
    for (const double far : {1e7, 4e9, 1e15, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")})
        for (const QStringView interval : {u"yyyy", u"q", u"m", u"d", u"ww"})
            EXPECT_EQ(errorOf([&] { return vb::DateAdd(interval, far, day); }), 5) << shown(interval) << far;
    EXPECT_EQ(errorOf([&] { return vb::DateDiff(u"d", never, day); }), 5);
    EXPECT_EQ(errorOf([&] { return vb::DatePart(u"w", day, 8); }), 5);
    EXPECT_EQ(errorOf([&] { return vb::DatePart(u"ww", day, 1, 4); }), 5);
    EXPECT_EQ(errorOf([&] { return vb::Hour(never); }), 5);
    EXPECT_EQ(errorOf([] { return vb::MonthName(13); }), 5);
    EXPECT_EQ(errorOf([] { return vb::WeekdayName(0); }), 5);
    EXPECT_EQ(errorOf([] { return vb::DateValue(u"heute"); }), 13);
}
