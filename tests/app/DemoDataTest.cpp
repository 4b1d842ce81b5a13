#include <app/DemoTables.h>
#include <text/Convert.h>
#include <text/RuntimeError.h>

#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::Ge;
using testing::Le;

namespace {

/// A row by column names.
using Row = QMap<QString, QString>;

QList<Row> rowsOf(const QString& name) {
    const demo::Table table = demo::readTable(name);
    QList<Row> rows;
    for (const QStringList& cells : table.rows) {
        Row row;
        for (qsizetype i = 0; i < cells.size(); ++i)
            row.insert(table.columns[i], cells[i]);
        rows.append(row);
    }
    return rows;
}

QSet<QString> column(const QString& table, const QString& name) {
    QSet<QString> values;
    for (const Row& row : rowsOf(table))
        values.insert(row[name]);
    return values;
}

bool validEan(const QString& code) {
    int sum = 0;
    for (int i = 0; i < 13; ++i)
        sum += code[i].digitValue() * (i % 2 == 0 ? 1 : 3);
    return sum % 10 == 0;
}

qsizetype count(const QList<Row>& rows, const QString& name, const QString& value) {
    return std::count_if(rows.begin(), rows.end(), [&](const Row& row) { return row[name] == value; });
}

Currency money(const Row& row, const QString& name) { return CCur(row[name]); }

} // namespace

TEST(DemoData, ArticleNumbersAreUniqueAndScannable) {
    static const QRegularExpression shortNumber(u"^[1-9][0-9]{2,3}$"_s), inStore(u"^2[0-9]{12}$"_s),
        priceTemplate(u"^@@2[0-9]{1,6}$"_s);
    QSet<QString> seen;
    QStringList templates, codes;
    for (const Row& row : rowsOf(u"Artikel"_s)) {
        const QString number = row[u"Nummer"_s];
        SCOPED_TRACE(qPrintable(number + u' ' + row[u"Name"_s]));
        EXPECT_FALSE(seen.contains(number));
        seen.insert(number);
        if (priceTemplate.match(number).hasMatch()) {
            templates.append(number.mid(2));
        } else if (number.size() == 13) {
            EXPECT_TRUE(inStore.match(number).hasMatch() && validEan(number));
            codes.append(number);
        } else {
            EXPECT_TRUE(shortNumber.match(number).hasMatch());
        }
    }
    EXPECT_GE(seen.size(), 300);
    for (const QString& prefix : templates) {
        for (const QString& code : codes)
            EXPECT_FALSE(code.startsWith(prefix)) << qPrintable(prefix + u' ' + code);
        for (const QString& other : templates)
            EXPECT_TRUE(other == prefix || !other.startsWith(prefix));
    }
}

TEST(DemoData, PricesTaxesAndTextsArePlausible) {
    for (const Row& row : rowsOf(u"Artikel"_s)) {
        SCOPED_TRACE(qPrintable(row[u"Nummer"_s] + u' ' + row[u"Name"_s]));
        const Currency cost = money(row, u"EKPreis"_s), price = money(row, u"VKPreis"_s);
        if (row[u"WarenGruppe"_s] == u"Pfand"_s) {
            EXPECT_TRUE(cost == price) << "a deposit earns nothing";
        } else {
            EXPECT_TRUE(Currency() < cost && cost < price);
        }
        for (const QString& group : {u"VKPreis2"_s, u"VKPreis3"_s}) {
            const Currency own = money(row, group);
            EXPECT_TRUE(own.isZero() || (cost < own && own < price)) << qPrintable(group);
        }
        EXPECT_THAT(CDbl(row[u"SteuerSatz"_s]), testing::AnyOf(7.0, 19.0));
        EXPECT_GT(CDbl(row[u"Menge"_s]), 0);
        EXPECT_THAT(row[u"Name"_s].size(), AllOf(Ge(3), Le(100)));
        EXPECT_LE(row[u"Zusatz1"_s].size(), 20);
        EXPECT_LE(row[u"Zusatz2"_s].size(), 20);
    }
}

TEST(DemoData, EveryFlagAndEveryRuleOccurs) {
    const QList<Row> articles = rowsOf(u"Artikel"_s);
    EXPECT_GE(column(u"Artikel"_s, u"WarenGruppe"_s).size(), 12);
    for (const QString& flag :
         {u"Aktiv"_s, u"LagerAktiv"_s, u"Rabatt"_s, u"PreisAngabe"_s, u"VolumenAngabe"_s, u"SNAngabe"_s}) {
        EXPECT_GE(count(articles, flag, u"ja"_s), 3) << qPrintable(flag);
        EXPECT_GE(count(articles, flag, u"nein"_s), 3) << qPrintable(flag);
    }
    for (const QString& text : {u"LangText"_s, u"Zusatz1"_s, u"Zusatz2"_s, u"FreiFeld"_s}) {
        EXPECT_LT(count(articles, text, QString()), articles.size()) << qPrintable(text);
    }
    for (const QString& price : {u"VKPreis2"_s, u"VKPreis3"_s}) {
        EXPECT_LT(count(articles, price, u"0,00"_s), articles.size()) << qPrintable(price);
    }
    const QList<Row> customers = rowsOf(u"Kunden"_s);
    for (const QString& group : {u"0"_s, u"1"_s, u"2"_s})
        EXPECT_GE(count(customers, u"PreisGruppe"_s, group), 1);
    EXPECT_GE(count(customers, u"EKPreis"_s, u"ja"_s), 1);
    EXPECT_GE(count(customers, u"Gesperrt"_s, u"ja"_s), 1);
    EXPECT_LT(count(customers, u"Rabatt"_s, u"0"_s), customers.size());
    const QList<Row> staff = rowsOf(u"Personal"_s);
    EXPECT_EQ(count(staff, u"Gesperrt"_s, u"ja"_s), 1);
    EXPECT_EQ(column(u"Personal"_s, u"PIN"_s).size(), staff.size());
    for (const Row& row : staff)
        EXPECT_EQ(row[u"PIN"_s].size(), 4);
    for (const QString& right : demo::readTable(u"Personal"_s).columns.filter(u"R_"_s)) {
        EXPECT_GE(count(staff, right, u"ja"_s), 1) << qPrintable(right);
        EXPECT_GE(count(staff, right, u"nein"_s), 1) << qPrintable(right);
    }
    EXPECT_EQ(count(rowsOf(u"Colors"_s), u"Aktiv"_s, u"ja"_s), 1);
}

TEST(DemoData, ReferencesPointAtArticles) {
    const QSet<QString> numbers = column(u"Artikel"_s, u"Nummer"_s);
    const QList<std::pair<QString, QString>> references{
        {u"ArtikelLieferanten"_s, u"ArtikelNummer"_s}, {u"VerbundArtikel"_s, u"SourceArtikelNummer"_s},
        {u"VerbundArtikel"_s, u"DestArtikelNummer"_s}, {u"AktionsPreise"_s, u"ArtikelNummer"_s},
        {u"ShortCut"_s, u"ArtikelNummer"_s},           {u"ArtikelSerienNummern"_s, u"ArtikelNummer"_s}};
    for (const auto& [table, name] : references) {
        EXPECT_TRUE(numbers.contains(column(table, name))) << qPrintable(table + u'.' + name);
    }
    EXPECT_FALSE(numbers.intersects(column(u"ArtikelLieferanten"_s, u"BestellNummer"_s)))
        << "an order number must not hide behind an article number";
}

TEST(DemoData, SuppliersShareArticlesAndOrderNumbers) {
    const qsizetype suppliers = rowsOf(u"Lieferanten"_s).size();
    QMap<QString, int> perArticle, perOrderNumber;
    for (const Row& row : rowsOf(u"ArtikelLieferanten"_s)) {
        EXPECT_THAT(CLng(row[u"LieferantID"_s]), AllOf(Ge(1), Le(suppliers)));
        ++perArticle[row[u"ArtikelNummer"_s]];
        ++perOrderNumber[row[u"BestellNummer"_s]];
    }
    const auto several = [](const QMap<QString, int>& counts) {
        return std::count_if(counts.begin(), counts.end(), [](int n) { return n > 1; });
    };
    EXPECT_GE(several(perArticle), 10);
    EXPECT_EQ(several(perOrderNumber), 1);
    EXPECT_EQ(perOrderNumber[u"319900"_s], 2);
}

TEST(DemoData, FiveGroupsOfTwentyKeysFillTheRegister) {
    EXPECT_EQ(column(u"ShortCutGroup"_s, u"GroupNumber"_s),
              (QSet<QString>{u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
    QSet<QString> places;
    for (const Row& row : rowsOf(u"ShortCut"_s)) {
        EXPECT_THAT(CLng(row[u"GroupNumber"_s]), AllOf(Ge(0), Le(4)));
        EXPECT_THAT(CLng(row[u"Number"_s]), AllOf(Ge(0), Le(19)));
        EXPECT_THAT(row[u"Name"_s].size(), AllOf(Ge(3), Le(18))) << "must be readable on a key";
        places.insert(row[u"GroupNumber"_s] + u'/' + row[u"Number"_s]);
    }
    EXPECT_EQ(places.size(), 100);
}

TEST(DemoData, ActionPricesAreRunningAndOver) {
    const DateTime day = CDate(u"22.11.2026 12:00:00"_s);
    int running = 0, over = 0;
    for (const Row& row : rowsOf(u"AktionsPreise"_s)) {
        const DateTime from = CDate(row[u"Von"_s]), until = CDate(row[u"Bis"_s]);
        EXPECT_TRUE(from < until);
        EXPECT_TRUE(money(row, u"AktionsPreis"_s) < money(row, u"VKPreis"_s));
        if (from <= day && day <= until) ++running;
        if (until < day) ++over;
    }
    EXPECT_GE(running, 2);
    EXPECT_GE(over, 2);
}

TEST(DemoData, TextThatIsNoTableIsRefusedWithItsLine) {
    const auto message = [](const QByteArray& text) {
        try {
            (void)demo::parseTable(u"Artikel"_s, text);
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number, 5);
            return error.Description;
        }
        return u"accepted"_s;
    };
    EXPECT_EQ(message("Nummer\tName\n1\tBrot\n2\n"), u"Artikel, Zeile 3: 1 Felder statt 2."_s);
    EXPECT_EQ(message("Nummer\tNummer\n"), u"Artikel, Zeile 1: Ein Spaltenname kommt doppelt vor."_s);
    EXPECT_EQ(message(""), u"Artikel, Zeile 1: Die Spaltennamen fehlen."_s);
    EXPECT_EQ(message("Nummer\tName\n1\t\n"), u"accepted"_s) << "an empty last cell is a cell";
    EXPECT_THROW((void)demo::readTable(u"Rechnung"_s), RuntimeError);
}
