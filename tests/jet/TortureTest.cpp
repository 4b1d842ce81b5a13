#include "Shop.h"

#include <text/RuntimeError.h>

#include <gtest/gtest.h>
#include <random>

namespace {

class Torture : public testing::Test {
  protected:
    ShopCatalogue shop;
    jet::Translator translator{shop, jet::sqliteEmitter()};
    jet::Translator postgres{shop, jet::postgresEmitter()};

    static int outcome(const jet::Translator& engine, const QString& text) {
        try {
            static_cast<void>(engine.translate(text));
        } catch (const RuntimeError& e) {
            return e.Number;
        }
        return 0;
    }
    /// 0 when the text translates, else the number of its error; the same for both engines.
    int outcome(const QString& text) {
        const int number = outcome(translator, text);
        EXPECT_EQ(outcome(postgres, text), number) << qPrintable(text.left(80));
        return number;
    }
};

QString nested(const QString& open, const QString& core, const QString& close, int depth) {
    return open.repeated(depth) + core + close.repeated(depth);
}

TEST_F(Torture, NestingHasALimitAndAnError) {
    const std::pair<QString, QString> shells[] = {
        {u"("_s, u")"_s},
        {u"Abs("_s, u")"_s},
        {u"IIf(True, "_s, u", 0)"_s},
        {u"(SELECT "_s, u")"_s},
        {u"(1 + "_s, u")"_s},
        {u"NOT ("_s, u")"_s},
        {u"1 IN ("_s, u")"_s},
        {u"EXISTS (SELECT "_s, u")"_s},
        {u"-(1 ^ -"_s, u")"_s},
        {u"(1 + 1 + 1 + 1 + 1 + 1 + (2) - "_s, u")"_s},
    };
    for (const auto& [open, close] : shells) {
        EXPECT_EQ(outcome(u"SELECT "_s + nested(open, u"1"_s, close, 50)), 0) << qPrintable(open);
        for (int depth : {1000, 20'000}) {
            const QString text = nested(open, u"1"_s, close, depth);
            EXPECT_EQ(outcome(u"SELECT "_s + text), 3360) << qPrintable(open);
            EXPECT_EQ(outcome(u"SELECT ID FROM Ware WHERE "_s + text), 3360) << qPrintable(open);
            EXPECT_EQ(outcome(u"SELECT "_s + open.repeated(depth)), 3360) << qPrintable(open);
        }
    }
    EXPECT_EQ(outcome(u"SELECT * FROM "_s + nested(u"(SELECT * FROM "_s, u"Ware"_s, u")"_s, 20)), 0);
    EXPECT_EQ(outcome(u"SELECT * FROM "_s + nested(u"(SELECT * FROM "_s, u"Ware"_s, u")"_s, 1000)), 3360);
    EXPECT_EQ(outcome(u"SELECT * FROM "_s + u"("_s.repeated(1000) + u"Ware"_s), 3360);
    EXPECT_EQ(outcome(nested(u"("_s, u"SELECT 1"_s, u")"_s, 1000)), 3360);
}

TEST_F(Torture, LongRowsWorkOrAreRefused) {
    const QString many = u" OR Nummer = 'x'"_s.repeated(20'000);
    EXPECT_EQ(outcome(u"SELECT ID FROM Ware WHERE ID = 1"_s + many), 0);
    EXPECT_EQ(outcome(u"SELECT ID FROM Ware WHERE ID IN (1"_s + u", 2"_s.repeated(200'000) + u")"_s), 0);
    EXPECT_EQ(outcome(u"SELECT 1"_s + u" + 1"_s.repeated(200)), 0);
    EXPECT_EQ(outcome(u"SELECT 1"_s + u" + 1"_s.repeated(250'000)), 3360);
    EXPECT_EQ(outcome(u"SELECT 'a'"_s + u" & 'b'"_s.repeated(200'000)), 3360);
    EXPECT_EQ(outcome(u"SELECT 1"_s + u" = 1"_s.repeated(200'000)), 3360);
    EXPECT_EQ(outcome(u"SELECT "_s + u"NOT "_s.repeated(200'000) + u"True"_s), 0);
    EXPECT_EQ(outcome(u"SELECT "_s + u"-"_s.repeated(500'000) + u"1"_s), 0);
    EXPECT_EQ(outcome(u"SELECT 1"_s + u" UNION ALL SELECT 1"_s.repeated(50'000)), 3360);
    EXPECT_EQ(outcome(u"SELECT a.ID FROM Ware a"_s + u" INNER JOIN Gruppe ON True"_s.repeated(20'000)), 3360);
    EXPECT_EQ(outcome(u"SELECT Name"_s + u", Name"_s.repeated(3'000) + u" FROM Ware"_s), 0);
    EXPECT_EQ(outcome(u"SELECT a.ID FROM Ware a"_s + u", Gruppe"_s.repeated(3)), 3012);
    const auto numbered = translator.translate(u"SELECT 'a?7', Name & ' ?' FROM Ware WHERE ID IN (0"_s +
                                               u", 1"_s.repeated(300) + u")"_s);
    EXPECT_TRUE(numbered->sql.contains(" IN (" + QByteArray("?, ").repeated(300) + "?)"));
    EXPECT_EQ(outcome(u"SELECT ID FROM Ware WHERE Name = '"_s + QString(1'000'000, u'x') + u"'"_s), 0);
    // Columns that are named by one another must not multiply.
    QString names = u"SELECT 1 AS a0"_s;
    for (int i = 1; i < 100; ++i)
        names += u", a%1 + a%1 + a%1 AS a%2"_s.arg(i - 1).arg(i);
    EXPECT_EQ(outcome(names), 3360);
    EXPECT_EQ(outcome(u"SELECT a AS b, b AS a FROM Ware"_s), 3061);
}

// Every text gets an answer: a translation, or an error of the dialect.
TEST_F(Torture, NonsenseIsAnswered) {
    const QString pieces[] = {
        u"SELECT"_s, u"FROM"_s,       u"WHERE"_s,  u"Ware"_s,      u"Name"_s,    u"("_s,      u")"_s,
        u","_s,      u"."_s,          u"*"_s,      u"="_s,         u"'a'"_s,     u"1"_s,      u"1.5"_s,
        u"AND"_s,    u"NOT"_s,        u"IN"_s,     u"LIKE"_s,      u"BETWEEN"_s, u"IS"_s,     u"NULL"_s,
        u"UNION"_s,  u"ORDER"_s,      u"BY"_s,     u"GROUP"_s,     u"INNER"_s,   u"JOIN"_s,   u"ON"_s,
        u"UPDATE"_s, u"SET"_s,        u"DELETE"_s, u"INSERT"_s,    u"INTO"_s,    u"VALUES"_s, u"Sum("_s,
        u"IIf("_s,   u"#1/1/2026#"_s, u"[ID]"_s,   u"&"_s,         u"+"_s,       u"-"_s,      u"^"_s,
        u"TOP"_s,    u"EXISTS"_s,     u"PIVOT"_s,  u"TRANSFORM"_s, u"CREATE"_s,  u"TABLE"_s,  u"TEXT"_s,
        u"AS"_s,     u";"_s,          u"!"_s,      u"ALTER"_s,     u"DROP"_s,    u"Gruppe"_s, u"LEFT"_s};
    std::mt19937 random(20261122);
    std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - 1), length(1, 25);
    const QString starts[] = {u""_s,
                              u"SELECT "_s,
                              u"SELECT Name FROM Ware WHERE "_s,
                              u"UPDATE Ware SET "_s,
                              u"INSERT INTO Ware "_s,
                              u"SELECT Name FROM Ware ORDER BY "_s,
                              u"CREATE TABLE "_s};
    int good = 0;
    for (int i = 0; i < 10'000; ++i) {
        QString text = starts[std::size_t(i) % std::size(starts)];
        for (std::size_t n = length(random); n > 0; --n)
            text += pieces[piece(random)] + u' ';
        const int number = outcome(text);
        good += number == 0;
        EXPECT_TRUE(number == 0 || number >= 3000 || number == 6 || number == 13)
            << number << " " << qPrintable(text);
    }
    EXPECT_GT(good, 0);
    for (const QString& text : {u"\u0000"_s, QString(u"SELECT "_s + QChar(0xD800)), u"SELECT 'a\uFFFF'"_s,
                                QString(1000, u'\u00A0')})
        static_cast<void>(outcome(text));
}

} // namespace
