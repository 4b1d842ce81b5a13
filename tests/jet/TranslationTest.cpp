#include "Printer.h"
#include "Shop.h"

#include <text/RuntimeError.h>

#include <QFile>

#include <gtest/gtest.h>

namespace {

const char* const encodingNames[] = {"",       "boolean",  "byte",  "short", "long",      "single",
                                     "double", "currency", "date",  "text",  "like-from", "like-to",
                                     "like",   "alike",    "today", "time",  "now",       "timer"};

QByteArray describe(const jet::Statement& s) {
    QByteArray text = s.sql;
    for (std::size_t i = 0; i < s.parameters.size(); ++i) {
        if (s.parameters[i].encoding == jet::Encoding::AsIs) continue;
        text += " | " + QByteArray::number(qulonglong(i + 1)) + ' ' +
                encodingNames[std::size_t(s.parameters[i].encoding)];
    }
    return text;
}

struct Row {
    int line = 0;
    QString jet;
    QByteArray sqlite, postgres;
};

// Three lines each: the text of the dialect, then that of each engine and how its parameters are encoded.
std::vector<Row> readTable() {
    QFile file(QStringLiteral(TEST_DATA "/translations.txt"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<Row> rows;
    for (int line = 1; !file.atEnd(); ++line) {
        const QByteArray text = file.readLine().trimmed();
        if (text.isEmpty() || text.startsWith('#')) continue;
        const QByteArray sqlite = file.readLine().trimmed(), postgres = file.readLine().trimmed();
        rows.push_back({line, QString::fromUtf8(text), sqlite, postgres});
        line += 2;
    }
    EXPECT_GT(rows.size(), 40u);
    return rows;
}

class Translation : public testing::Test {
  protected:
    ShopCatalogue shop;
    jet::Translator translator{shop, jet::sqliteEmitter()};
    jet::Translator postgres{shop, jet::postgresEmitter()};

    int errorOf(const QString& text, qsizetype* place = nullptr, QString* words = nullptr) {
        try {
            const auto s = translator.translate(text);
            ADD_FAILURE() << "no error for " << qPrintable(text) << ": " << s->sql.constData();
        } catch (const RuntimeError& e) {
            if (place) *place = e.Place;
            if (words) *words = e.Description;
            return e.Number;
        }
        return 0;
    }
};

TEST_F(Translation, GivesTheEnginesTexts) {
    for (const Row& row : readTable()) {
        EXPECT_EQ(describe(*translator.translate(row.jet)).toStdString(), row.sqlite.toStdString())
            << "line " << row.line;
        EXPECT_EQ(describe(*postgres.translate(row.jet)).toStdString(), row.postgres.toStdString())
            << "line " << row.line;
    }
}

// What the tree prints means what was read: it translates to the same text, and printing is its own fixed
// point.
TEST_F(Translation, SurvivesPrinting) {
    for (const Row& row : readTable()) {
        const QString once = jet::printed(row.jet);
        EXPECT_EQ(jet::printed(once), once) << "line " << row.line;
        EXPECT_EQ(describe(*translator.translate(once)).toStdString(), row.sqlite.toStdString())
            << "line " << row.line << ": " << qPrintable(once);
    }
    // A number of money keeps its four decimals, whatever stands behind them.
    for (const QString& text :
         {u"SELECT Name FROM Ware WHERE Preis > 1.99990"_s, u"SELECT Name FROM Ware WHERE Preis > 15e-1"_s,
          u"SELECT Name FROM Ware WHERE Preis > 1.99999"_s})
        EXPECT_EQ(translator.translate(jet::printed(text))->sql, translator.translate(text)->sql)
            << qPrintable(text);
}

// A cached translation serves every text of its shape, so it must not depend on what was lifted out.
TEST_F(Translation, HangsOnTheShapeAlone) {
    const std::pair<QString, QString> alike[] = {
        {u"SELECT Name FROM Ware WHERE Nummer='1' AND Preis>1.5"_s,
         u"SELECT Name FROM Ware WHERE Nummer='it''s' AND Preis>20.25"_s},
        {u"SELECT Name FROM Ware WHERE Name LIKE 'a*'"_s, u"SELECT Name FROM Ware WHERE Name LIKE 'bc'"_s},
        {u"SELECT Name FROM Ware WHERE Seit=#1/2/2026#"_s,
         u"SELECT Name FROM Ware WHERE Seit=#2026-03-04 10:00#"_s},
        {u"SELECT TOP 3 Left(Name,4) FROM Ware ORDER BY 1"_s,
         u"SELECT TOP 3 Left(Name,9) FROM Ware ORDER BY 1"_s},
    };
    const std::pair<QString, QString> different[] = {
        {u"SELECT Name FROM Ware WHERE Preis>1.5"_s, u"SELECT Name FROM Ware WHERE Preis>1.50001"_s},
        {u"SELECT Name FROM Ware WHERE Name LIKE 'a*'"_s, u"SELECT Name FROM Ware WHERE Name LIKE '*a'"_s},
        {u"SELECT TOP 3 Name FROM Ware"_s, u"SELECT TOP 4 Name FROM Ware"_s},
        {u"SELECT Name, Preis FROM Ware ORDER BY 1"_s, u"SELECT Name, Preis FROM Ware ORDER BY 2"_s},
    };
    jet::Lifted a, b;
    for (const auto& [one, other] : alike) {
        jet::lift(one, a);
        jet::lift(other, b);
        EXPECT_EQ(a.shape, b.shape);
        EXPECT_EQ(describe(*translator.translate(one)), describe(*translator.translate(other)));
    }
    for (const auto& [one, other] : different) {
        jet::lift(one, a);
        jet::lift(other, b);
        EXPECT_NE(a.shape, b.shape) << qPrintable(one);
    }
}

TEST_F(Translation, TellsTheTypesOfItsColumns) {
    const auto s = translator.translate(
        u"SELECT w.*, Preis*2, Preis*Menge AS Wert, Seit-1, Date()-Seit, Aktiv AND True, Name & 1, Sum(1) FROM Ware w "
        u"GROUP BY w.ID, Nummer, Name, Preis, Menge, Bestand, Aktiv, Seit, Notiz, GruppeID"_s);
    std::vector<Type> types;
    for (const auto& c : s->columns)
        types.push_back(c.type);
    using enum Type;
    EXPECT_EQ(types, (std::vector<Type>{Long, Text, Text, Currency, Double, Long, Boolean, Date, Memo, Long,
                                        Currency, Double, Date, Double, Boolean, Text, Long}));
    EXPECT_EQ(s->columns[3].table, u"Ware"_s);
    EXPECT_EQ(s->columns[3].column, u"Preis"_s);
    EXPECT_EQ(s->columns[10].name, u"Ausdr1010"_s);
    EXPECT_TRUE(s->columns[10].column.isEmpty());
    const auto doubled = translator.translate(u"SELECT Ware.ID, Gruppe.ID, Name, Name FROM Ware, Gruppe"_s);
    EXPECT_EQ(doubled->columns[0].name, u"Ware.ID"_s);
    EXPECT_EQ(doubled->columns[1].name, u"Gruppe.ID"_s);
    EXPECT_NE(doubled->columns[2].name, doubled->columns[3].name);
}

TEST_F(Translation, TellsErrorsWithNumberAndPlace) {
    struct Fault {
        const char16_t* text;
        int number;
        qsizetype place;
        const char16_t* words = u"";
    };
    const Fault faults[] = {
        {u"SELEC * FROM Ware", 3075, 0, u"'SELEC * FROM Ware'"},
        {u"", 3075, 0, u"am Ende"},
        {u"SELECT FROM Ware", 3075, 7},
        {u"SELECT Name FROM Ware WHERE", 3075, 27, u"am Ende des Textes"},
        {u"SELECT Name FROM Ware WHERE Nummer = = 1", 3075, 37},
        {u"SELECT Name FROM Ware WHERE Nummer='O'Neil'", 3075, 42, u"Anführungszeichen"},
        {u"SELECT Name FROM Ware WHERE (Preis > 1", 3075, 38, u"Klammer"},
        {u"SELECT Name FROM Ware WHERE Seit = #99/99/2026#", 3075, 35, u"Datum"},
        {u"SELECT Name FROM Ware WHERE Preis > 1,5 x", 3075, 37},
        {u"SELECT Name Preis Menge FROM Ware", 3075, 18},
        {u"SELECT [Name FROM Ware", 3075, 7, u"]"},
        {u"SELECT TOP x Name FROM Ware", 3075, 13},
        {u"SELECT Name FROM Ware ORDER BY 3", 3075, 31},
        {u"SELECT Left(Name) FROM Ware", 3075, 7, u"'Left'"},
        {u"SELECT Name FROM Waren", 3078, 17, u"'Waren'"},
        {u"SELECT Nahme, Breis FROM Ware", 3061, 7, u"'Nahme' (Stelle 8), 'Breis' (Stelle 15)"},
        {u"UPDATE Ware SET Nix=1", 3061, 16},
        {u"SELECT Quatsch(1)", 3085, 7, u"'Quatsch'"},
        {u"SELECT ID FROM Ware, Gruppe", 3079, 7},
        {u"SELECT Name, Count(*) FROM Ware", 3122, 7, u"'Name'"},
        {u"SELECT Name FROM Ware WHERE Count(*)=1", 3096, 28},
        {u"INSERT INTO Ware (Nummer, Nix) VALUES (1, 2)", 3127, 26},
        {u"INSERT INTO Ware (Nummer, Name) VALUES (1)", 3346, 40},
        {u"SELECT Name FROM Ware UNION SELECT ID, Steuer FROM Gruppe", 3307, 28},
        {u"SELECT (SELECT ID, Name FROM Ware)", 3306, 8},
        {u"CREATE TABLE Ware (x LONG)", 3010, 13},
        {u"CREATE TABLE Neu (x BLAH)", 3075, 20},
        {u"DROP TABLE Weg", 3376, 11},
    };
    for (const Fault& f : faults) {
        qsizetype place = -1;
        QString words;
        const QString text = QString::fromUtf16(f.text);
        EXPECT_EQ(errorOf(text, &place, &words), f.number) << qPrintable(text) << ": " << qPrintable(words);
        EXPECT_EQ(place, f.place) << qPrintable(text);
        EXPECT_TRUE(words.contains(QString::fromUtf16(f.words))) << qPrintable(words);
    }
}

TEST_F(Translation, GivesThePiecesOfADynaset) {
    const auto s = translator.translate(
        u"SELECT Nummer, Name AS N FROM Ware AS w WHERE Preis < 5 ORDER BY N, ID DESC"_s);
    ASSERT_TRUE(s->dynaset);
    EXPECT_EQ(s->dynaset->table, u"Ware"_s);
    EXPECT_EQ(s->dynaset->from, "\"Ware\" AS \"w\"");
    EXPECT_EQ(s->dynaset->key, "\"w\"._rowid_");
    EXPECT_EQ(s->dynaset->where, "\"w\".\"Preis\" < ?1");
    // Nothing else tells rows apart that a counter does not.
    EXPECT_EQ(s->dynaset->orderBy, "\"w\".\"Name\", \"w\".\"ID\" DESC");
    EXPECT_EQ(translator.translate(u"SELECT ID FROM Ware ORDER BY Name DESC"_s)->dynaset->orderBy,
              "\"Ware\".\"Name\" DESC, \"Ware\"._rowid_");
    EXPECT_EQ(s->dynaset->columns, "\"w\".\"Nummer\", \"w\".\"Name\"");

    const auto found = translator.translateFind(*s, 1, u"Name LIKE 'Bio*' AND Bestand='3'");
    EXPECT_EQ(found->sql,
              "SELECT \"w\"._rowid_ FROM \"Ware\" AS \"w\" WHERE (\"w\".\"Preis\" < ?1) AND "
              "((\"w\".\"Name\" >= ?2 AND \"w\".\"Name\" < ?3 AND jet_like('ss', \"w\".\"Name\", ?4)) AND "
              "(\"w\".\"Bestand\" = ?5)) ORDER BY \"w\".\"Name\", \"w\".\"ID\" DESC LIMIT 1");
    ASSERT_EQ(found->parameters.size(), 5u);
    EXPECT_EQ(found->parameters[0].literal, 0);
    EXPECT_EQ(found->parameters[1].literal, 1);
    EXPECT_EQ(found->parameters[4].literal, 2);

    for (const QString& fixed :
         {u"SELECT Count(*) FROM Ware"_s, u"SELECT DISTINCT Name FROM Ware"_s,
          u"SELECT a.ID FROM Ware a, Gruppe"_s, u"SELECT ID FROM Ware UNION SELECT ID FROM Gruppe"_s})
        EXPECT_FALSE(translator.translate(fixed)->dynaset) << qPrintable(fixed);
    EXPECT_TRUE(translator.translate(u"Ware"_s)->dynaset);
}

TEST_F(Translation, GivesThePiecesOfADynasetOnAServer) {
    const auto s = postgres.translate(
        u"SELECT Nummer, Format(Seit, 'yyyy') FROM Ware AS w WHERE Preis < 5 ORDER BY Aktiv DESC"_s);
    ASSERT_TRUE(s->dynaset);
    EXPECT_EQ(s->dynaset->key, "\"w\"._rowid_");
    EXPECT_EQ(s->dynaset->orderBy, "\"w\".\"Aktiv\" DESC NULLS LAST, \"w\"._rowid_");
    EXPECT_TRUE(s->dynaset->columnsBind);
    EXPECT_FALSE(postgres.translate(u"SELECT ID FROM Ware WHERE Preis < 5"_s)->dynaset->columnsBind);
    const auto found = postgres.translateFind(*s, 2, u"Seit = Date() AND Nummer = 7"_s);
    EXPECT_TRUE(
        found->sql.endsWith("AND ((\"w\".\"Seit\" = $3::double precision) AND (\"w\".\"Nummer\" = "
                            "$4::text)) ORDER BY \"w\".\"Aktiv\" DESC NULLS LAST, \"w\"._rowid_ LIMIT 1"))
        << found->sql.constData();
    ASSERT_EQ(found->parameters.size(), 4u);
    EXPECT_EQ(found->parameters[2].literal, -1); // the clock's
    EXPECT_EQ(found->parameters[3].literal, 2);
    EXPECT_EQ(found->parameters[3].type, Type::Text);
}

TEST_F(Translation, KeepsWithinTheLimitsOfAServer) {
    const QString name = u"ä"_s.repeated(40);
    const QByteArray first = jet::postgresName(QString(name + u"1"_s)),
                     second = jet::postgresName(QString(name + u"2"_s));
    EXPECT_NE(first, second);
    EXPECT_LE(first.size(), 65); // with the quotes
    EXPECT_EQ(QString::fromUtf8(first).count(QChar(0xFFFD)), 0);
    EXPECT_EQ(jet::postgresName(u"a\"b"), "\"a\"\"b\"");

    const auto many =
        postgres.translate(u"SELECT ID FROM Ware WHERE ID IN (1"_s + u", 2"_s.repeated(70'000) + u")"_s);
    EXPECT_EQ(many->parameters.size(), 65'000u);
    EXPECT_FALSE(many->reusable); // the rest of the numbers stands in it
    EXPECT_THROW(
        static_cast<void>(postgres.translate(
            u"TRANSFORM Count(*) SELECT ID FROM Ware GROUP BY ID PIVOT Name IN ('a"_s + QChar(0) + u"')"_s)),
        RuntimeError);
}

// Where two groups differ in a literal alone, the values tell which of them the select list means.
TEST_F(Translation, TellsGroupsApartByTheirLiterals) {
    const auto one =
        postgres.translate(u"SELECT Left(Name, 2) FROM Ware GROUP BY Left(Name, 1), Left(Name, 2)"_s);
    const auto other =
        postgres.translate(u"SELECT Left(Name, 1) FROM Ware GROUP BY Left(Name, 1), Left(Name, 2)"_s);
    EXPECT_NE(one->sql, other->sql);
    EXPECT_FALSE(one->reusable);
    EXPECT_TRUE(postgres.translate(u"SELECT Left(Name, 1) FROM Ware GROUP BY Left(Name, 1)"_s)->reusable);
}

TEST_F(Translation, ReadsChangesOfStructure) {
    const auto made = translator.translate(
        u"CREATE TABLE Neu (ID COUNTER PRIMARY KEY, Kurz TEXT(5) NOT NULL, Lang VARCHAR, Riesig TEXT(2000), Ja YESNO "
        u"DEFAULT True, Wann DATETIME DEFAULT (Now()), Wert NUMERIC(8,3), CONSTRAINT k UNIQUE (Kurz, Wert))"_s);
    ASSERT_TRUE(made->ddl);
    const auto& add = made->ddl->add;
    ASSERT_EQ(add.size(), 7u);
    EXPECT_TRUE(add[0].autoNumber);
    EXPECT_EQ(add[1].size, 5);
    EXPECT_TRUE(add[1].required);
    EXPECT_EQ(add[2].size, 255);
    EXPECT_EQ(add[3].type, Type::Memo);
    EXPECT_EQ(add[4].defaultText, u"True"_s);
    EXPECT_EQ(add[5].defaultText, u"(Now())"_s);
    EXPECT_EQ(add[6].type, Type::Double);
    ASSERT_EQ(made->ddl->indexes.size(), 2u);
    EXPECT_TRUE(made->ddl->indexes[0].primary);
    EXPECT_EQ(made->ddl->indexes[1].columns, (std::vector<QString>{u"Kurz"_s, u"Wert"_s}));

    const auto index =
        translator.translate(u"CREATE UNIQUE INDEX ix ON ware (Nummer, Name DESC) WITH DISALLOW NULL"_s);
    EXPECT_EQ(index->ddl->table, u"Ware"_s);
    EXPECT_TRUE(index->ddl->unique);
    EXPECT_TRUE(index->ddl->indexColumns[1].second);
    EXPECT_EQ(translator.translate(u"ALTER TABLE Ware DROP COLUMN Notiz, Menge"_s)->ddl->drop.size(), 2u);
    EXPECT_TRUE(translator.translate(u"ALTER TABLE Ware ALTER COLUMN Name TEXT(90)"_s)->ddl->alterColumn);
    EXPECT_EQ(jet::printed(u"create table a (b short not null, c text(3) default 'x', primary key(b))"_s),
              u"CREATE TABLE [a] ([b] SHORT NOT NULL, [c] TEXT(3) DEFAULT 'x', PRIMARY KEY ([b]))"_s);
}

} // namespace
