#include "Printers.h"

#include <text/Convert.h>

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

Value date(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return DateTime::fromParts(y, m, d, h, mi, s);
}

} // namespace

TEST(Convert, ReadsGermanNumbers) {
    const struct {
        const char16_t* text;
        double number;
    } rows[] = {
        {u"7", 7},
        {u"  12,5  ", 12.5},
        {u"1.234,5", 1234.5},
        {u"1.234.567", 1234567},
        {u"3.14", 314},
        {u",5", .5},
        {u"5,", 5},
        {u"-8", -8},
        {u"8-", -8},
        {u"+8", 8},
        {u"- 8", -8},
        {u"(8,5)", -8.5},
        {u"€ 4", 4},
        {u"4,20 €", 4.2},
        {u"-4€", -4},
        {u"1E3", 1000},
        {u"2,5e-2", .025},
        {u"1d2", 100},
        {u"&H1F", 31},
        {u"&hff", 255},
        {u"&O17", 15},
        {u" &o7 ", 7},
        {u"&HFFFFFFFF", -1},
        {u"0000", 0},
        {u"&H10&", 16},
        {u"1.2.3", 123},
        {u"\u00a05\t", 5},
        {u"000,0001", .0001},
        {u"123456789012345678901234567890", 123456789012345678901234567890.0},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(IsNumeric(QStringView(row.text))) << shown(row.text);
        EXPECT_DOUBLE_EQ(CDbl(row.text), row.number) << shown(row.text);
    }
}

TEST(Convert, RefusesWhatIsNoNumber) {
    for (const char16_t* text : {u"",         u" ",     u"1,2,3",
                                 u"1,2.3",    u".5",    u"abc",
                                 u"12 Stück", u"1 2",   u"--1",
                                 u"-1-",      u"(1",    u"1)",
                                 u"(-1)",     u"€",     u"€1€",
                                 u"-",        u",",     u"&H",
                                 u"&HG",      u"&O8",   u"&",
                                 u"E5",       u"1E400", u"24.12.2026 10:00",
                                 u"1/2",      u"$5",    u"&H1FFFFFFFFFFFFFFFF",
                                 u"٣"}) {
        EXPECT_FALSE(IsNumeric(QStringView(text))) << shown(text);
        EXPECT_NE(errorOf([&] { return CDbl(text); }), 0) << shown(text);
    }
    EXPECT_EQ(errorOf([] { return CDbl(u"1E400"); }), 6);
    EXPECT_EQ(errorOf([] { return CDbl(u"abc"); }), 13);
}

TEST(Convert, TellsNumbersFromOtherValues) {
    for (const Value& value : {Value(true), Value(0), Value(1.5), Value(Currency()), Value(u"7")})
        EXPECT_TRUE(IsNumeric(value));
    for (const Value& value : {Value(), date(2026, 1, 1), Value(u"")})
        EXPECT_FALSE(IsNumeric(value));
}

TEST(Convert, WholeNumbersRoundHalfToEven) {
    const struct {
        double from;
        int to;
    } rows[] = {{.5, 0},    {1.5, 2},  {2.5, 2},  {-.5, 0},  {-1.5, -2},
                {-2.5, -2}, {2.51, 3}, {2.49, 2}, {-7.9, -8}};
    for (const auto& row : rows) {
        EXPECT_EQ(CInt(row.from), row.to) << row.from;
        EXPECT_EQ(CLng(row.from), row.to) << row.from;
        EXPECT_EQ(Value(row.from).toInteger(), row.to) << row.from;
        EXPECT_EQ(CLng(Currency::fromDouble(row.from)), row.to) << row.from;
        EXPECT_EQ(CLng(NumberText(row.from)), row.to) << row.from;
    }
    EXPECT_EQ(CByte(u"254,5"), 254);
    EXPECT_EQ(CLng(u"2,50000000000000000000000001"), 3);
    EXPECT_EQ(CLng(true), -1);
    EXPECT_EQ(CLng(date(1900, 1, 1, 13)), 3);
    EXPECT_EQ(Value(u"9223372036854775807").toInteger(), 9223372036854775807);
}

TEST(Convert, KeepsTheRangeOfEachType) {
    const auto wide = [](const char16_t* text) { return Value(text); };
    EXPECT_EQ(CByte(255), 255);
    EXPECT_EQ(CInt(-32768), -32768);
    EXPECT_EQ(CLng(u"-2147483648"), -2147483647 - 1);
    EXPECT_EQ(errorOf([] { return CByte(256); }), 6);
    EXPECT_EQ(errorOf([] { return CByte(-1); }), 6);
    EXPECT_EQ(errorOf([] { return CInt(32767.5); }), 6);
    EXPECT_EQ(errorOf([] { return CLng(2147483648.0); }), 6);
    EXPECT_EQ(errorOf([] { return CLng(std::nan("")); }), 6);
    EXPECT_EQ(errorOf([&] { return wide(u"9223372036854775808").toInteger(); }), 6);
    EXPECT_EQ(errorOf([] { return Value(1e19).toInteger(); }), 6);
    EXPECT_EQ(errorOf([] { return CSng(1e39); }), 6);
    EXPECT_EQ(CCur(u"922337203685477,5807").scaled(), 9223372036854775807);
    EXPECT_EQ(CCur(u"-922337203685477,5808").scaled(), -9223372036854775807 - 1);
    EXPECT_EQ(errorOf([] { return CCur(u"922337203685477,5808"); }), 6);
    EXPECT_EQ(errorOf([] { return CCur(u"1E999999999999"); }), 6);
    EXPECT_EQ(CCur(u"1E-999999999999").scaled(), 0);
    EXPECT_EQ(CCur(u"0,00005").scaled(), 0);
    EXPECT_EQ(CCur(u"0,00015").scaled(), 2);
    EXPECT_EQ(CCur(u"0,000150001").scaled(), 2);
    EXPECT_EQ(CInt(u"&HFFFF"), -1);
    EXPECT_EQ(CLng(u"&HFFFF"), 65535);
    EXPECT_EQ(errorOf([] { return CInt(u"&H10000"); }), 6);
    EXPECT_EQ(errorOf([] { return CDate(2958466); }), 6);
}

TEST(Convert, NullHasNoValue) {
    const Value null;
    EXPECT_EQ(errorOf([&] { return CBool(null); }), 94);
    EXPECT_EQ(errorOf([&] { return CByte(null); }), 94);
    EXPECT_EQ(errorOf([&] { return CLng(null); }), 94);
    EXPECT_EQ(errorOf([&] { return CDbl(null); }), 94);
    EXPECT_EQ(errorOf([&] { return CCur(null); }), 94);
    EXPECT_EQ(errorOf([&] { return CDate(null); }), 94);
    EXPECT_EQ(errorOf([&] { return CStr(null); }), 94);
    EXPECT_EQ(errorOf([&] { return Str(null); }), 94);
}

TEST(Convert, TruthValues) {
    for (const Value& value :
         {Value(-1), Value(2), Value(.1), Value(u"Wahr"), Value(u" true "), Value(u"0,5")})
        EXPECT_TRUE(CBool(value));
    for (const Value& value :
         {Value(0), Value(0.0), Value(u"Falsch"), Value(u"FALSE"), Value(u"0"), Value(Currency())})
        EXPECT_FALSE(CBool(value));
    EXPECT_EQ(errorOf([] { return CBool(u"ja"); }), 13);
    EXPECT_EQ(errorOf([] { return CBool(u""); }), 13);
}

TEST(Convert, TextOfValues) {
    const std::pair<Value, QString> rows[] = {
        {true, u"Wahr"_s},
        {false, u"Falsch"_s},
        {-42, u"-42"_s},
        {Currency::fromScaled(123405), u"12,3405"_s},
        {Currency::fromScaled(-5000), u"-0,5"_s},
        {Currency::fromScaled(9223372036854775807), u"922337203685477,5807"_s},
        {date(2026, 11, 22), u"22.11.2026"_s},
        {date(2026, 1, 2, 7, 5, 9), u"02.01.2026 07:05:09"_s},
        {date(1899, 12, 30, 17, 4), u"17:04:00"_s},
        {u"wie es ist ", u"wie es ist "_s},
    };
    for (const auto& [value, text] : rows)
        EXPECT_EQ(CStr(value), text);
}

TEST(Convert, NumberTextHasFifteenDigits) {
    const std::pair<double, QString> rows[] = {
        {0, u"0"_s},
        {-0.0, u"0"_s},
        {1234.5, u"1234,5"_s},
        {0.1 + 0.2, u"0,3"_s},
        {1.0 / 3, u"0,333333333333333"_s},
        {2.0 / 3, u"0,666666666666667"_s},
        {1.0 / 30, u"3,33333333333333E-02"_s},
        {0.0001, u"0,0001"_s},
        {1e-15, u"0,000000000000001"_s},
        {1e-16, u"1E-16"_s},
        {-1.5e-20, u"-1,5E-20"_s},
        {999999999999999, u"999999999999999"_s},
        {1e15, u"1E+15"_s},
        {123456789012345678, u"1,23456789012346E+17"_s},
        {1.7976931348623157e308, u"1,79769313486232E+308"_s},
        {4.9406564584124654e-324, u"4,94065645841247E-324"_s},
        {100, u"100"_s},
        {9.9999999999999999, u"10"_s},
        {120.05, u"120,05"_s},
    };
    for (const auto& [number, text] : rows)
        EXPECT_EQ(NumberText(number), text);
}

TEST(Convert, NumberTextReadsBack) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 50000; ++i) {
        // No more than 15 digits, any magnitude.
        const double number = static_cast<double>(random() % 1'000'000'000'000'000) *
                              std::pow(10.0, static_cast<int>(random() % 60) - 45);
        const double shown = NumberText(number).replace(u',', u'.').toDouble();
        ASSERT_EQ(CDbl(NumberText(number)), shown);
        ASSERT_NEAR(shown, number, std::abs(number) * 1e-14);
        ASSERT_EQ(NumberText(shown), NumberText(number));
    }
}

TEST(Convert, DatesAsPeopleWriteThem) {
    const std::pair<const char16_t*, Value> rows[] = {
        {u"22.11.2026", date(2026, 11, 22)},
        {u"22.11.26", date(2026, 11, 22)},
        {u"2.1.99", date(1999, 1, 2)},
        {u"22/11/2026", date(2026, 11, 22)},
        {u"11/22/2026", date(2026, 11, 22)},
        {u"2/1/2026", date(2026, 1, 2)},
        {u"2026-11-22", date(2026, 11, 22)},
        {u"2026-11-22 14:07:09", date(2026, 11, 22, 14, 7, 9)},
        {u"2026-11-22T14:07", date(2026, 11, 22, 14, 7)},
        {u"99.11.22", date(1999, 11, 22)},
        {u"22. November 2026", date(2026, 11, 22)},
        {u"Sonntag, 22. November 2026", date(2026, 11, 22)},
        {u"22 nov 26", date(2026, 11, 22)},
        {u"1. März 2026", date(2026, 3, 1)},
        {u"1-Mrz-26", date(2026, 3, 1)},
        {u"November 22, 2026", date(2026, 11, 22)},
        {u"May 2026", date(2026, 5, 1)},
        {u"  22.11.2026   8:30 ", date(2026, 11, 22, 8, 30)},
        {u"8:30 22.11.2026", date(2026, 11, 22, 8, 30)},
        {u"14:07", date(1899, 12, 30, 14, 7)},
        {u"2:07:09 PM", date(1899, 12, 30, 14, 7, 9)},
        {u"12:30 am", date(1899, 12, 30, 0, 30)},
        {u"12 pm", date(1899, 12, 30, 12)},
        {u"29.2.2024", date(2024, 2, 29)},
        {u"31.12.9999 23:59:59", date(9999, 12, 31, 23, 59, 59)},
        {u"24.12.", date(QDate::currentDate().year(), 12, 24)},
    };
    for (const auto& [text, value] : rows) {
        EXPECT_TRUE(IsDate(text)) << shown(text);
        EXPECT_EQ(errorOf([&, t = text] { return CDate(t); }), 0) << shown(text);
        if (IsDate(text)) {
            EXPECT_EQ(CDate(text), value.toDate()) << shown(text);
        }
    }
    EXPECT_EQ(CDate(46348.75), date(2026, 11, 22, 18).toDate());
    for (const char16_t* text : {u"",          u"200",         u"abc",         u"29.2.2026",
                                 u"32.1.2026", u"13.13.2026",  u"24:00",       u"12:60",
                                 u"1:2:60",    u"14:",         u"1.2.3.4",     u"22.11.2026 22.11.2026",
                                 u"8:30 9:30", u"22.11.20266", u"0.0.0",       u"13 am",
                                 u"1.1.99999", u"November",    u"22.11.2026,", u"Sonntag",
                                 u"1,5",       u"22.11-2026"}) {
        EXPECT_FALSE(IsDate(text)) << shown(text);
        EXPECT_EQ(errorOf([&] { return CDate(text); }), 13) << shown(text);
    }
    EXPECT_FALSE(IsDate(46348));
    EXPECT_TRUE(IsDate(date(2026, 1, 1)));
}

TEST(Convert, ValTakesTheNumberInFront) {
    const std::pair<const char16_t*, double> rows[] = {
        {u"12 Stück", 12}, {u" 1 6 4 th", 164}, {u"3.75 Euro", 3.75}, {u"3,75", 3}, {u"-.5x", -.5},
        {u"1e2z", 100},    {u"1e", 1},          {u"abc", 0},          {u"-", 0},    {u"", 0},
        {u"&H1F", 31},     {u"&HFFFF", -1},     {u"&HFFFF&", 65535},  {u"&O10", 8}, {u"&", 0},
        {u"1.2.3", 1.2},   {u"+7", 7},          {u"&HZ", 0},
    };
    for (const auto& [text, number] : rows)
        EXPECT_DOUBLE_EQ(Val(text), number) << shown(text);
    EXPECT_TRUE(std::isfinite(Val(u"1e999")));
    EXPECT_TRUE(std::isfinite(Val(QString(100000, u'9'))));
    EXPECT_TRUE(std::isfinite(Val(u"&HFFFFFFFFFFFFFFFFFFFFFF")));
}

TEST(Convert, StrIsMadeForVal) {
    const std::pair<Value, QString> rows[] = {
        {7, u" 7"_s},      {-7, u"-7"_s},         {.5, u" .5"_s},
        {-.25, u"-.25"_s}, {u"12,5", u" 12.5"_s}, {1234.5, u" 1234.5"_s},
        {0, u" 0"_s},      {1e20, u" 1E+20"_s},   {Currency::fromScaled(19900), u" 1.99"_s},
        {true, u"True"_s},
    };
    for (const auto& [value, text] : rows)
        EXPECT_EQ(Str(value), text);
    EXPECT_EQ(errorOf([] { return Str(u"abc"); }), 13);
}

TEST(Convert, RoundsTheDigitsThatPeopleSee) {
    const struct {
        double value;
        int digits;
        double result;
    } rows[] = {{2.5, 0, 2},      {3.5, 0, 4},   {-2.5, 0, -2},
                {2.675, 2, 2.68}, {1.005, 2, 1}, {1.015, 2, 1.02},
                {0.5, 0, 0},      {0.51, 0, 1},  {1234.5678, 3, 1234.568},
                {1450, -2, 1400}, {0.05, 0, 0},  {99.995, 2, 100},
                {1e20, 2, 1e20},  {7, 5, 7},     {-0.0005, 3, 0}};
    for (const auto& row : rows)
        EXPECT_DOUBLE_EQ(RoundHalfEven(row.value, row.digits), row.result) << row.value;
}
