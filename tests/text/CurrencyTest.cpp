#include "Printers.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

__extension__ typedef __int128 Wide;
constexpr qint64 largest = std::numeric_limits<qint64>::max();
constexpr qint64 smallest = std::numeric_limits<qint64>::min();

Currency scaled(qint64 value) { return Currency::fromScaled(value); }

} // namespace

TEST(Currency, KeepsFourDecimalsAndRoundsHalfToEven) {
    const struct {
        double value;
        qint64 scaled;
    } rows[] = {
        {1.99, 19900},
        {0.1, 1000},
        {-0.1, -1000},
        {0.00005, 0},
        {0.00015, 2},
        {0.00025, 2},
        {-0.00035, -4},
        {2.00005, 20000},
        {2.00015, 20002},
        {7.12345, 71234},
        {7.12355, 71236},
        {1234567.89, 12345678900},
        {0.28575, 2858},
        {19.99995, 200000},
        {0.000049999, 0},
        {33.33333333, 333333},
        {99999999.00005, 999999990000},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Currency::fromDouble(row.value).scaled(), row.scaled) << row.value;
}

TEST(Currency, RefusesWhatDoesNotFit) {
    const auto nan = std::numeric_limits<double>::quiet_NaN();
    for (const double value : {922337203685477.6, -922337203685478.0, 1e300, HUGE_VAL, -HUGE_VAL, nan})
        EXPECT_EQ(errorOf([&] { return Currency::fromDouble(value); }), 6) << value;
    EXPECT_EQ(errorOf([] { return Currency::fromInteger(922337203685478); }), 6);
    EXPECT_EQ(Currency::fromInteger(-922337203685477).scaled(), -9223372036854770000);
    EXPECT_EQ(errorOf([] { return scaled(largest) + scaled(1); }), 6);
    EXPECT_EQ(errorOf([] { return scaled(smallest) - scaled(1); }), 6);
    EXPECT_EQ(errorOf([] { return -scaled(smallest); }), 6);
    EXPECT_EQ(errorOf([] { return scaled(largest) * scaled(10001); }), 6);
    EXPECT_EQ(scaled(largest) * scaled(10000), scaled(largest));
    EXPECT_EQ(scaled(smallest) * 1, scaled(smallest));
}

TEST(Currency, AgreesWithWideArithmetic) {
    std::mt19937_64 random(4711);
    for (int i = 0; i < 200000; ++i) {
        const qint64 a = static_cast<qint64>(random()) >> (random() % 64);
        const qint64 b = static_cast<qint64>(random()) >> (random() % 64);
        const auto check = [&](Wide exact, auto act, const char* what) {
            const bool fits = exact >= smallest && exact <= largest;
            try {
                const Currency result = act();
                ASSERT_TRUE(fits && result.scaled() == exact)
                    << a << what << b << " gave " << result.scaled();
            } catch (const RuntimeError& error) {
                ASSERT_TRUE(!fits && error.Number == 6) << a << what << b;
            }
        };
        check(
            Wide{a} + b, [&] { return scaled(a) + scaled(b); }, " + ");
        check(
            Wide{a} - b, [&] { return scaled(a) - scaled(b); }, " - ");
        // Half to even, found by comparing both neighbours instead of by a rest.
        const Wide product = Wide{a} * b;
        Wide best = product / 10000 - 1;
        for (Wide candidate = best; candidate <= product / 10000 + 1; ++candidate) {
            const Wide far = product - candidate * 10000, near = product - best * 10000;
            const Wide farSize = far < 0 ? -far : far, nearSize = near < 0 ? -near : near;
            if (farSize < nearSize || (farSize == nearSize && candidate % 2 == 0)) best = candidate;
        }
        check(
            best, [&] { return scaled(a) * scaled(b); }, " * ");
    }
}

TEST(Currency, SurvivesTheWayThroughDouble) {
    std::mt19937_64 random(42);
    for (int i = 0; i < 100000; ++i) {
        // 15 digits are what a double holds for certain.
        const qint64 value = static_cast<qint64>(random() % 2'000'000'000'000'000) - 1'000'000'000'000'000;
        ASSERT_EQ(Currency::fromDouble(scaled(value).toDouble()), scaled(value));
    }
}
