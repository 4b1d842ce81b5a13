#include <jet/Translator.h>
#include <text/RuntimeError.h>
#include <text/Sort.h>

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

Value only(const QString& literal) {
    jet::Lifted lifted;
    jet::lift(u"SELECT "_s + literal, lifted);
    EXPECT_EQ(lifted.literals.size(), 1u) << qPrintable(literal);
    return lifted.literals.empty() ? Value() : lifted.literals.front();
}

int errorOf(const QString& text) {
    jet::Lifted lifted;
    try {
        jet::lift(text, lifted);
    } catch (const RuntimeError& e) {
        return e.Number;
    }
    return 0;
}

TEST(Literals, Numbers) {
    EXPECT_EQ(only(u"0"_s), Value(0));
    EXPECT_EQ(only(u"2147483647"_s), Value(2147483647));
    EXPECT_EQ(only(u"4012345678901"_s), Value(Q_INT64_C(4012345678901)));
    EXPECT_EQ(only(u"1.5"_s), Value(1.5));
    EXPECT_EQ(only(u".25"_s), Value(0.25));
    EXPECT_EQ(only(u"1e3"_s), Value(1000.0));
    EXPECT_EQ(only(u"2.5E-3"_s), Value(0.0025));
    EXPECT_EQ(only(u"0.1234567890123456789"_s), Value(0.1234567890123456789));
    EXPECT_EQ(only(u"123456789012345678901234567890"_s), Value(123456789012345678901234567890.0));
    EXPECT_EQ(only(u"&H1F"_s), Value(31));
    EXPECT_EQ(only(u"&HFFFF"_s), Value(-1));
    EXPECT_EQ(only(u"&O17"_s), Value(15));
    EXPECT_EQ(errorOf(u"SELECT 1x"_s), 3075);
    EXPECT_EQ(errorOf(u"SELECT &H"_s), 3075);
    EXPECT_EQ(errorOf(u"SELECT 1e999"_s), 3075);
}

TEST(Literals, Texts) {
    EXPECT_EQ(only(u"'it''s'"_s), Value(u"it's"_s));
    EXPECT_EQ(only(u"\"say \"\"so\"\" it's\""_s), Value(u"say \"so\" it's"_s));
    EXPECT_EQ(only(u"''"_s), Value(u""_s));
    EXPECT_EQ(only(u"'Zeile\nzwei;--'"_s), Value(u"Zeile\nzwei;--"_s));
    EXPECT_EQ(errorOf(u"SELECT 'abc"_s), 3075);
    EXPECT_EQ(errorOf(u"SELECT '''"_s), 3075);
}

TEST(Literals, Dates) {
    const DateTime day = DateTime::fromParts(2026, 11, 22);
    for (const QString& text :
         {u"11/22/2026"_s, u"11.22.2026"_s, u"11-22-2026"_s, u"2026-11-22"_s, u"11/22/26"_s, u"22/11/2026"_s,
          u"22 Nov 2026"_s, u"November 22, 2026"_s, u"2026/11/22 0:00"_s})
        EXPECT_EQ(only(u"#"_s + text + u"#"_s), Value(day)) << qPrintable(text);
    EXPECT_EQ(only(u"#02.03.2026#"_s), Value(DateTime::fromParts(2026, 2, 3)));
    EXPECT_EQ(only(u"#1/2/30#"_s), Value(DateTime::fromParts(1930, 1, 2)));
    EXPECT_EQ(only(u"#14:30#"_s), Value(DateTime::fromQTime(QTime(14, 30))));
    EXPECT_EQ(only(u"#2:30:15 PM#"_s), Value(DateTime::fromQTime(QTime(14, 30, 15))));
    EXPECT_EQ(only(u"#12 am#"_s), Value(DateTime::fromQTime(QTime(0, 0))));
    EXPECT_EQ(only(u"#11/22/2026 11:59:59 PM#"_s), Value(DateTime::fromParts(2026, 11, 22, 23, 59, 59)));
    EXPECT_EQ(only(u"#2026-11-22T08:05:00#"_s), Value(DateTime::fromParts(2026, 11, 22, 8, 5)));
    for (const QString& text : {u"13/13/2026"_s, u"2/30/2026"_s, u"abc"_s, u""_s, u"25:00"_s,
                                u"1/1/2026 12"_s, u"13:00 PM"_s, u"1/1/99999"_s, u"2026-11"_s})
        EXPECT_EQ(errorOf(u"SELECT #"_s + text + u"#"_s), 3075) << qPrintable(text);
    EXPECT_EQ(errorOf(u"SELECT #1/1/2026"_s), 3075);
}

TEST(Literals, LeaveWhatDecidesTheTranslation) {
    jet::Lifted lifted;
    jet::lift(u"SELECT TOP 5 a & '1', b FROM [t '2'] WHERE c=3 ORDER BY 2, Left(d, 4), -5", lifted);
    EXPECT_EQ(lifted.literals, (std::vector<Value>{Value(u"1"_s), Value(3), Value(4), Value(5)}));
    EXPECT_TRUE(lifted.shape.startsWith(u"SELECT TOP 5 a & "));
    EXPECT_TRUE(lifted.shape.contains(u"[t '2']"));
    EXPECT_TRUE(lifted.shape.contains(u"ORDER BY 2, Left(d, "));
    jet::lift(u"CREATE TABLE t (a TEXT(5) DEFAULT 'x')", lifted);
    EXPECT_TRUE(lifted.literals.empty());
    EXPECT_EQ(errorOf(u"SELECT \uE000"_s), 3075);
}

TEST(Literals, AreEncodedForTheColumnTheyMeet) {
    using jet::encode;
    using jet::Encoding;
    EXPECT_EQ(encode(Value(1.99), Encoding::Currency), Value(Currency::fromScaled(19900)));
    EXPECT_EQ(encode(Value(u"1.234,5"_s), Encoding::Currency), Value(Currency::fromScaled(12345000)));
    EXPECT_EQ(encode(Value(u"2,5"_s), Encoding::Integer), Value(2));
    for (const QString& yes : {u"-1"_s, u"Wahr"_s, u"true"_s, u"5"_s})
        EXPECT_EQ(encode(Value(yes), Encoding::Boolean), Value(true)) << qPrintable(yes);
    for (const QString& no : {u"0"_s, u"Falsch"_s, u"nein"_s})
        EXPECT_EQ(encode(Value(no), Encoding::Boolean), Value(false)) << qPrintable(no);
    EXPECT_EQ(encode(Value(u"22.11.2026"_s), Encoding::Date), Value(DateTime::fromParts(2026, 11, 22)));
    EXPECT_EQ(encode(Value(1.5), Encoding::Text), Value(u"1,5"_s));
    EXPECT_EQ(encode(Value(u"ab*c"_s), Encoding::LikePrefixLow), Value(u"ab"_s));
    EXPECT_EQ(encode(Value(), Encoding::Date), Value());
    auto number = [](const Value& v, Encoding e) {
        try {
            static_cast<void>(encode(v, e));
        } catch (const RuntimeError& error) {
            return error.Number;
        }
        return 0;
    };
    EXPECT_EQ(number(Value(u"abc"_s), Encoding::Double), 3464);
    EXPECT_EQ(number(Value(u"abc"_s), Encoding::Date), 3464);
    EXPECT_EQ(number(Value(70000), Encoding::Short), 6);
    EXPECT_EQ(number(Value(300), Encoding::Byte), 6);
}

// An engine without the dialect's LIKE gets the pattern as an expression that finds the same texts.
TEST(Literals, PatternsBecomeExpressionsThatFindTheSame) {
    const QString texts[] = {u""_s,       u"Apfel"_s,    u"äpfel"_s,   u"ÄPFEL"_s, u"STRASSE"_s,
                             u"Straße"_s, u"Fässsse"_s,  u"Faßse"_s,   u"a1b"_s,   u"a*b"_s,
                             u"a\nb"_s,   u"10 % [x]"_s, u"(a.b)^2"_s, u"é-\\]"_s, u"\U0001F34E"_s,
                             u"ẞ"_s,      u"Ende."_s,    u"s"_s};
    const QString patterns[] = {u""_s,        u"*"_s,      u"apfel"_s,  u"*PFEL"_s,    u"ä*"_s,
                                u"stra?e"_s,  u"straß*"_s, u"*ss*"_s,   u"*sss*"_s,    u"faß*"_s,
                                u"a#b"_s,     u"a?b"_s,    u"a[*]b"_s,  u"a[!0-9]b"_s, u"[a-c]*"_s,
                                u"[!a-c]*"_s, u"[ä-ö]*"_s, u"*[[]x]"_s, u"(a.b)^*"_s,  u"[!]*"_s,
                                u"a[]1b"_s,   u"?"_s,      u"**e*"_s,   u"*."_s,       u"[é]-\\]"_s,
                                u"*%*"_s,     u"[s]"_s,    u"ß"_s,      u"*[^]*"_s,    u"\U0001F34E"_s};
    for (const QString& pattern : patterns) {
        const QString expression = jet::encode(Value(pattern), jet::Encoding::LikePattern).toText();
        const QRegularExpression finder(expression, QRegularExpression::DotMatchesEverythingOption);
        ASSERT_TRUE(finder.isValid()) << qPrintable(expression);
        for (const QString& text : texts)
            EXPECT_EQ(finder.match(text).hasMatch(), LikeText(text, pattern))
                << qPrintable(text) << " LIKE " << qPrintable(pattern) << ": " << qPrintable(expression);
    }
    EXPECT_THROW(static_cast<void>(jet::encode(Value(u"[a"_s), jet::Encoding::LikePattern)), RuntimeError);
    EXPECT_EQ(jet::encode(Value(u"5%_*"_s), jet::Encoding::AlikePattern).toText(), u"^5.*.[\\*]$"_s);
}

} // namespace
