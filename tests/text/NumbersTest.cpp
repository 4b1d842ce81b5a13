#include "Printers.h"

#include <text/CodePage.h>
#include <text/Numbers.h>

#include <gtest/gtest.h>
#include <set>

using namespace Qt::StringLiterals;

namespace {

Value money(qint64 scaled) { return Currency::fromScaled(scaled); }
constexpr qint64 smallest = std::numeric_limits<qint64>::min();

} // namespace

TEST(Numbers, KeepTheShape) {
    EXPECT_EQ(vb::Int(-1.5), Value(-2.0));
    EXPECT_EQ(vb::Fix(-1.5), Value(-1.0));
    EXPECT_EQ(vb::Int(money(-15000)), money(-20000));
    EXPECT_EQ(vb::Int(money(15000)), money(10000));
    EXPECT_EQ(vb::Int(money(-20000)), money(-20000));
    EXPECT_EQ(vb::Fix(money(-15000)), money(-10000));
    EXPECT_EQ(vb::Abs(money(-1)), money(1));
    EXPECT_EQ(vb::Abs(u"-2,5"), Value(2.5));
    EXPECT_EQ(vb::Sgn(money(-1)), Value(-1));
    EXPECT_EQ(vb::Sgn(true), Value(-1));
    EXPECT_EQ(vb::Int(7), Value(7));
    EXPECT_TRUE(vb::Int(Value()).isNull());
    EXPECT_TRUE(vb::Round(Value(), 2).isNull());
}

TEST(Numbers, RoundMoneyHalfToEven) {
    const struct {
        qint64 scaled;
        int digits;
        qint64 result;
    } rows[] = {{12350, 2, 12400},   {12450, 2, 12400}, {12451, 2, 12500}, {-12350, 2, -12400},
                {-12450, 2, -12400}, {5000, 0, 0},      {15000, 0, 20000}, {-5000, 0, 0},
                {12345, 4, 12345},   {12345, 9, 12345}, {12345, 3, 12340}, {12355, 3, 12360}};
    for (const auto& row : rows)
        EXPECT_EQ(vb::Round(money(row.scaled), row.digits), money(row.result)) << row.scaled;
    EXPECT_EQ(vb::Round(2.675, 2), Value(2.68));
    EXPECT_EQ(vb::Round(7, 2), Value(7));
}

TEST(Numbers, DivideAsBasicDoes) {
    EXPECT_EQ(vb::IntegerDivide(7, 2), 3);
    EXPECT_EQ(vb::IntegerDivide(-7, 2), -3);
    EXPECT_EQ(vb::IntegerDivide(7.5, 2), 4);
    EXPECT_EQ(vb::Mod(-7, 3), -1);
    EXPECT_EQ(vb::Mod(7, -3), 1);
    EXPECT_EQ(vb::Mod(u"8,5", 3), 2);
    EXPECT_EQ(vb::Mod(smallest, -1), 0);
}

TEST(Numbers, RefuseWhatHasNoResult) {
    EXPECT_EQ(errorOf([] { return vb::Sqr(-1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Log(0); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Exp(1000); }), 6);
    EXPECT_EQ(errorOf([] { return vb::Power(-8, .5); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Power(0, -1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Power(10, 400); }), 6);
    EXPECT_DOUBLE_EQ(vb::Power(-2, 3), -8);
    EXPECT_EQ(errorOf([] { return vb::IntegerDivide(1, .4); }), 11);
    EXPECT_EQ(errorOf([] { return vb::Mod(1, 0); }), 11);
    EXPECT_EQ(errorOf([] { return vb::IntegerDivide(smallest, -1); }), 6);
    EXPECT_EQ(errorOf([] { return vb::Round(1.5, -1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Int(u"x"); }), 13);
    EXPECT_EQ(errorOf([] { return vb::Int(money(smallest)); }), 6);
    EXPECT_EQ(errorOf([] { return vb::Abs(money(smallest)); }), 6);
    EXPECT_EQ(errorOf([] { return vb::Abs(smallest); }), 6);
    EXPECT_EQ(errorOf([] { return vb::Round(money(std::numeric_limits<qint64>::max()), 0); }), 6);
}

TEST(Numbers, RandomRow) {
    const double first = vb::Rnd(-1);
    const double second = vb::Rnd();
    EXPECT_EQ(vb::Rnd(0), second);
    EXPECT_EQ(vb::Rnd(-1), first);
    EXPECT_EQ(vb::Rnd(), second);
    EXPECT_NE(vb::Rnd(-2), first);
    std::set<double> seen;
    for (int i = 0; i < 1000; ++i) {
        const double number = vb::Rnd();
        ASSERT_TRUE(number >= 0 && number < 1);
        seen.insert(number);
    }
    EXPECT_GT(seen.size(), 990U);
    EXPECT_LT(vb::Rnd(-1e300), 1);
}

TEST(CodePage, EveryByteComesBack) {
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    EXPECT_EQ(ToWindows1252(FromWindows1252(all)), all);
    EXPECT_EQ(ToWindows1252(u"Grüße 5 €, “ja” – 字"), QByteArray("Gr\xfc\xdf"
                                                                 "e 5 \x80, \x93ja\x94 \x96 ?"));
    EXPECT_TRUE(FitsWindows1252(u"Šœ™"));
    EXPECT_FALSE(FitsWindows1252(u"Łódź"));
}

TEST(CodePage, FilesTellTheirEncoding) {
    EXPECT_EQ(FromFileBytes("M\xc3\xbcsli"), u"Müsli"_s);
    EXPECT_EQ(FromFileBytes("\xef\xbb\xbfM\xc3\xbcsli"), u"Müsli"_s);
    EXPECT_EQ(FromFileBytes("M\xfcsli"), u"Müsli"_s);
    EXPECT_EQ(FromFileBytes("M\xfcsli \xc3\xbc"), u"Müsli Ã¼"_s);
    EXPECT_EQ(FromFileBytes("cut \xc3"), u"cut Ã"_s);
    EXPECT_EQ(FromFileBytes("\xed\xa0\x80"), u"í\u00a0€"_s);
    EXPECT_EQ(FromFileBytes({}), QString());
}
