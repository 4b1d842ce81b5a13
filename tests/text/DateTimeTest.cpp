#include "Printers.h"

#include <gtest/gtest.h>

namespace {

QDateTime at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
    return {QDate(y, mo, d), QTime(h, mi, s)};
}

} // namespace

TEST(DateTime, CountsDaysAsTheStoreDoes) {
    const struct {
        QDateTime moment;
        double days;
    } rows[] = {
        {at(1899, 12, 30), 0},
        {at(1899, 12, 31), 1},
        {at(1900, 1, 1), 2},
        {at(2026, 11, 22), 46348},
        {at(2026, 11, 22, 18), 46348.75},
        {at(1899, 12, 29, 6), -1.25},
        {at(1899, 12, 28, 18), -2.75},
        {at(100, 1, 1), -657434},
        {at(9999, 12, 31), 2958465},
        {at(1899, 12, 30, 12), 0.5},
    };
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(DateTime::fromQDateTime(row.moment).days, row.days) << row.days;
        EXPECT_EQ(DateTime{row.days}.toQDateTime(), row.moment) << row.days;
    }
}

TEST(DateTime, EverySecondOfADayComesBack) {
    for (const QDate day :
         {QDate(2026, 11, 22), QDate(1899, 12, 29), QDate(9999, 12, 31), QDate(100, 1, 1)}) {
        for (int s = 0; s < 86400; s += 7) {
            const QTime time = QTime::fromMSecsSinceStartOfDay(s * 1000);
            const DateTime value = DateTime::fromParts(day.year(), day.month(), day.day(), 0, 0, s);
            ASSERT_EQ(value.date(), day) << s;
            ASSERT_EQ(value.time(), time) << s;
            ASSERT_EQ(value.timePart(), DateTime::fromQTime(time)) << s;
            ASSERT_EQ(value.dayPart(), DateTime::fromQDate(day)) << s;
        }
    }
}

TEST(DateTime, PartsMayRunOver) {
    const struct {
        DateTime value;
        QDateTime moment;
    } rows[] = {
        {DateTime::fromParts(2026, 13, 0), at(2026, 12, 31)},
        {DateTime::fromParts(2026, 0, 1), at(2025, 12, 1)},
        {DateTime::fromParts(2026, -11, 1), at(2025, 1, 1)},
        {DateTime::fromParts(2024, 2, 30), at(2024, 3, 1)},
        {DateTime::fromParts(2026, 3, -1), at(2026, 2, 27)},
        {DateTime::fromParts(29, 1, 1), at(2029, 1, 1)},
        {DateTime::fromParts(30, 1, 1), at(1930, 1, 1)},
        {DateTime::fromParts(2026, 11, 22, 25, -1, 61), at(2026, 11, 23, 1, 0, 1)},
        {DateTime::fromParts(2026, 11, 22, 0, 0, -1), at(2026, 11, 21, 23, 59, 59)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.value.toQDateTime(), row.moment);
}

TEST(DateTime, RefusesDaysThatNoCalendarHas) {
    EXPECT_EQ(errorOf([] { return DateTime::fromQDate({}); }), 5);
    EXPECT_EQ(errorOf([] { return DateTime::fromQTime({}); }), 5);
    EXPECT_EQ(errorOf([] { return DateTime::fromQDateTime({}); }), 5);
    EXPECT_EQ(errorOf([] { return DateTime::fromQDate(QDate(99, 12, 31)); }), 5);
    EXPECT_EQ(errorOf([] { return DateTime::fromParts(10000, 1, 1); }), 5);
    EXPECT_EQ(errorOf([] { return DateTime::fromParts(9999, 12, 32); }), 5);
    EXPECT_EQ(
        errorOf([] { return DateTime::fromParts(2147483647, 2147483647, 2147483647, -2147483647 - 1); }), 5);
    for (const double days : {1e300, -1e300, HUGE_VAL, std::nan(""), 2958466.0, -657435.5}) {
        EXPECT_FALSE(DateTime{days}.toQDateTime().isValid()) << days;
        EXPECT_FALSE(DateTime{days}.date().isValid()) << days;
        EXPECT_FALSE(DateTime{days}.time().isValid()) << days;
        EXPECT_EQ(errorOf([&] { return DateTime{days}.dayPart(); }), 5) << days;
    }
}

TEST(DateTime, RoundsToTheSecondAcrossMidnight) {
    EXPECT_EQ(DateTime{46348.999999}.toQDateTime(), at(2026, 11, 23));
    EXPECT_EQ(DateTime{0.4999999}.time(), QTime(12, 0));
}
