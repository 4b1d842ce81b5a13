#include "Support.h"

#include <store/SqlText.h>
#include <support/Print.h>

#include <limits>

namespace {

class SqlTextTest : public StoreTest {
  protected:
    SqlTextTest() {
        makeSample();
        db = open();
    }
    std::unique_ptr<Database> db;
};

/// What a statement raises, without its place in it.
QString sentence(const std::function<void()>& act) {
    try {
        act();
    } catch (const RuntimeError& error) {
        return QString::number(error.Number) + error.Description.section(u':', -1);
    }
    return u"nichts"_s;
}

} // namespace

TEST_F(SqlTextTest, ATextNeverLeavesItsLiteral) {
    const QString lone = sentence([&] { db->Execute(u"DELETE FROM T WHERE Nummer='O'Neil'"_s); });
    EXPECT_TRUE(lone.startsWith(u"3075"_s)) << qPrintable(lone);
    for (const QString& typed : {u"'"_s, u"O'Neil"_s, u"x' OR '1'='1"_s, u"x'''"_s, u"''' OR 1=1 --"_s,
                                 u"'; DELETE FROM T"_s, u"x'' OR 'a"_s}) {
        EXPECT_EQ(sentence([&] { (void)sql::text(typed); }), lone) << qPrintable(typed);
        EXPECT_EQ(sentence([&] { (void)sql::containing(typed); }), lone) << qPrintable(typed);
        EXPECT_EQ(sentence([&] { (void)sql::startingWith(typed); }), lone) << qPrintable(typed);
    }
    // A pair is one apostrophe of the text, wherever it stands; what else looks like SQL is text.
    for (const QString& typed : {u"''"_s, u"''x''''"_s, u"[T]; -- \" #"_s, u"%1 \\"_s, QString()}) {
        QString kept = typed;
        EXPECT_EQ(single(*db, u"SELECT "_s + sql::text(typed)), kept.replace(u"''"_s, u"'"_s));
    }
    try {
        (void)sql::text(u"x' OR '1'='1"_s);
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Place, 1);
        EXPECT_EQ(error.Description,
                  u"Syntaxfehler bei '' OR '1'='1' (Stelle 2): Das abschließende Anführungszeichen fehlt."_s);
    }
}

TEST_F(SqlTextTest, PatternsFindAnywhereAndAtTheStart) {
    EXPECT_EQ(sql::count(*db, u"T WHERE Nummer LIKE "_s + sql::containing(u"2"_s)), 1);
    EXPECT_EQ(sql::count(*db, u"T WHERE Nummer LIKE "_s + sql::startingWith(u"2"_s)), 0);
    EXPECT_EQ(sql::count(*db, u"T WHERE Nummer LIKE "_s + sql::startingWith(u"C"_s)), 1);
    EXPECT_EQ(sql::count(*db, u"T"_s), 3);
}

TEST_F(SqlTextTest, NumbersAndDatesComeBackAsTheyWent) {
    const auto back = [&](const QString& literal) {
        return db->OpenRecordset(u"SELECT "_s + literal)->Field(0);
    };
    for (const double value : {0.1, -1234567.891, 1e20, 1e-7, 0.0})
        EXPECT_EQ(back(sql::number(value)).toDouble(), value);
    EXPECT_EQ(errorOf([] { (void)sql::number(std::numeric_limits<double>::infinity()); }), 6);
    const Currency most = Currency::fromScaled(std::numeric_limits<qint64>::max());
    EXPECT_EQ(sql::number(most), u"922337203685477.5807"_s);
    EXPECT_EQ(back(u"CCur('0')+"_s + sql::number(Currency::fromScaled(-12345))).toCurrency(),
              Currency::fromScaled(-12345));
    EXPECT_EQ(back(sql::number(-7)), Value(-7));
    for (const DateTime moment :
         {DateTime::fromParts(2026, 2, 1), DateTime::fromParts(2026, 12, 31, 23, 59, 58),
          DateTime::fromParts(100, 1, 1)})
        EXPECT_EQ(back(sql::date(moment)), Value(moment));
    EXPECT_EQ(sql::date(QDate(2026, 2, 1)), u"#02.01.2026#"_s);
    EXPECT_EQ(errorOf([] { (void)sql::date(QDate()); }), 5);
    EXPECT_EQ(sql::count(*db, u"T WHERE Aktiv="_s + sql::flag(true)), 2);
}

TEST_F(SqlTextTest, AComboBoxGetsWhatIsThere) {
    EXPECT_EQ(sql::firstTexts(*db, u"SELECT Notiz FROM T ORDER BY ID"_s), QStringList{u"eins"_s});
    EXPECT_EQ(sql::firstColumn(*db, u"SELECT Preis FROM T GROUP BY Preis ORDER BY Preis DESC"_s).front(),
              Value(Currency::fromInteger(20)));
    EXPECT_TRUE(sql::firstColumn(*db, u"SELECT Preis FROM T WHERE 1=0"_s).empty());
}
