#include "Till.h"

#include <support/TestPrinters.h>
#include <templates/Shipped.h>

// What stands beside the list: counts and marks of the lines, an unknown code, the change of the last sale.

namespace {

using till::Basket;

class SalePanelTest : public Till {
  protected:
    SalePanelTest() {
        shop.article(u"1"_s, u"Wasser"_s, 0.5);
        shop.article(u"2"_s, u"Pfand"_s, 0.15);
        shop.article(u"3"_s, u"Käse"_s, 1.79);
        link(u"1"_s, u"2"_s);
    }
    void link(const QString& source, const QString& dest) {
        shop.insert(u"VerbundArtikel"_s,
                    {{u"SourceArtikelNummer"_s, source}, {u"DestArtikelNummer"_s, dest}, {u"Anzahl"_s, 1}});
    }
    [[nodiscard]] QStringList marks(int role) {
        QStringList all;
        for (int row = 0; row < reg->basket().rowCount(); ++row)
            all << reg->basket().index(row, Basket::Artikelname).data(role).toString();
        return all;
    }
    void discount(MsgAnswer all, int percent) {
        dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, all);
        screen.expect(till::Dialog::Rabatt, [percent] {
            gRabattAngabe.Prozent = Currency::fromInteger(percent);
            gRabattAngabe.Ergebnis = 1;
        });
        reg->cmdRabatt_Click();
    }
    [[nodiscard]] const till::SalePanel& panel() { return reg->panel(); }
};

TEST_F(SalePanelTest, CountsLinesAndPieces) {
    EXPECT_EQ(u""_s, reg->basket().Zaehler());
    scan(u"3"_s);
    EXPECT_EQ(u"1 Zeile · 1 Artikel"_s, reg->basket().Zaehler());
    type(u"24*"_s);
    scan(u"1"_s);
    type(u"2+"_s);
    EXPECT_EQ(u"3 Zeilen · 51 Artikel"_s, reg->basket().Zaehler());
    reg->LoadBestellungen();
    EXPECT_EQ(u"3 Zeilen · 51 Artikel"_s, reg->basket().Zaehler());
    reg->cmdStorno_Click();
    EXPECT_EQ(u"2 Zeilen · 25 Artikel"_s, reg->basket().Zaehler());
}

TEST_F(SalePanelTest, IndentsWhatCameWithAnotherLineAlsoAfterARestart) {
    scan(u"1"_s);
    scan(u"2"_s); // an empty bottle that was scanned
    scan(u"1"_s);
    const QStringList linked{u"false"_s, u"true"_s, u"false"_s, u"false"_s, u"true"_s};
    EXPECT_EQ(linked, marks(Basket::LinkedRole));
    reg->LoadBestellungen();
    EXPECT_EQ(linked, marks(Basket::LinkedRole));
    open();
    EXPECT_EQ(linked, marks(Basket::LinkedRole));
    reg->ItemClick(0);
    reg->cmdStorno_Click();
    EXPECT_EQ((linked.mid(1)), marks(Basket::LinkedRole));
}

TEST_F(SalePanelTest, MarksDiscountedLines) {
    shop.article(u"4"_s, u"Buch"_s, 20, {{u"Rabatt"_s, false}});
    for (const QString& number : {u"3"_s, u"4"_s, u"3"_s})
        scan(number);
    discount(MsgAnswer::No, 10);
    EXPECT_EQ((QStringList{u""_s, u""_s, u"−10 %"_s}), marks(Basket::MarkRole));
    discount(MsgAnswer::Yes, 33);
    EXPECT_EQ((QStringList{u"−33 %"_s, u""_s, u"−33 %"_s}), marks(Basket::MarkRole));
    screen.expect(till::Dialog::FreierPreis, [] {
        gPreisAngabe.Preis = Currency::fromInteger(1);
        gPreisAngabe.Ergebnis = 1;
    });
    reg->cmdArtikelPreis_Click();
    EXPECT_EQ((QStringList{u"−33 %"_s, u""_s, u""_s}), marks(Basket::MarkRole)) << "a price is no discount";
    open();
    EXPECT_EQ((QStringList{u"−33 %"_s, u""_s, u""_s}), marks(Basket::MarkRole));
}

TEST_F(SalePanelTest, TellsARepeatedScanAtItsOwnLine) {
    QList<int> repeated;
    QObject::connect(&reg->basket(), &Basket::Repeated, [&](int row) { repeated << row; });
    for (const QString& number : {u"3"_s, u"1"_s, u"1"_s, u"3"_s, u"3"_s})
        scan(number); // each water brings its deposit
    EXPECT_EQ((QList<int>{3, 6}), repeated);
    type(u"2+"_s);
    reg->LoadBestellungen();
    EXPECT_EQ(2, repeated.size());
}

TEST_F(SalePanelTest, AnUnknownCodeStaysUntilTheNextEntry) {
    scan(u"3"_s);
    scan(u"4711"_s);
    EXPECT_EQ(u"Unbekannt: 4711"_s, panel().Unknown());
    EXPECT_EQ(1, screen.sounds);
    reg->ItemClick(0);
    reg->LoadBestellungen();
    EXPECT_EQ(u"Unbekannt: 4711"_s, panel().Unknown()) << "nobody has entered anything";
    type(u"1"_s);
    EXPECT_EQ(u""_s, panel().Unknown());
    scan(u"9"_s);
    EXPECT_EQ(u"Unbekannt: 19"_s, panel().Unknown());
    reg->cmdClear_Click();
    EXPECT_EQ(u""_s, panel().Unknown()) << "seen";

    link(u"3"_s, u"weg"_s);
    link(u"3"_s, u"fort"_s);
    link(u"3"_s, u"2"_s);
    scan(u"3"_s);
    EXPECT_EQ(u"Unbekannt: weg, fort"_s, panel().Unknown()) << "what comes with an article is one entry";
    scan(u"3"_s);
    EXPECT_EQ(u"Unbekannt: weg, fort"_s, panel().Unknown());
    reg->cmdPlus_Click();
    EXPECT_EQ(u""_s, panel().Unknown());
}

TEST_F(SalePanelTest, TheChangeStandsUntilTheNextEntry) {
    clock.set(QDateTime({2026, 11, 23}, {14, 5}));
    scan(u"3"_s);
    EXPECT_FALSE(panel().Last());
    bool told = false;
    QObject::connect(&panel(), &till::SalePanel::Changed, [&] {
        if (panel().ShowsChange()) told = !reg->basket().isEmpty();
    });
    payCash(10);
    EXPECT_TRUE(told) << "before anything is printed";
    ASSERT_TRUE(panel().Last() && panel().ShowsChange());
    const till::LastSale& last = *panel().Last();
    EXPECT_EQ(u"letzter Verkauf 14:05"_s, last.title());
    EXPECT_EQ(u"Beleg 1"_s, last.number());
    EXPECT_EQ(u"Rückgeld 8,21 € bar 10,00 von 1,79"_s,
              last.caption() + u' ' + last.amount() + u' ' + last.detail());
    reg->cmdTotal_Click(); // nothing to pay
    EXPECT_TRUE(panel().ShowsChange());
    type(u"1"_s);
    EXPECT_FALSE(panel().ShowsChange());
    EXPECT_EQ(u"Beleg 1"_s, panel().Last()->number()) << "it can still be printed";
    reg->cmdEnter_Click();

    dialogs.expectMsgBox(u"OK, Zahlung erfolgt mit Kreditkarte!...*"_s, MsgIcon::Information, MsgAnswer::OK);
    reg->PayByKarte(u"Girocard"_s);
    EXPECT_EQ(u"Karte 0,65 € Girocard"_s,
              panel().Last()->caption() + u' ' + panel().Last()->amount() + u' ' + panel().Last()->detail());

    type(u"-2*"_s);
    scan(u"3"_s);
    payCash(0);
    EXPECT_EQ(u"Auszahlung 3,58 €"_s, panel().Last()->caption() + u' ' + panel().Last()->amount());
}

TEST_F(SalePanelTest, PrintsTheLastReceiptAfterwards) {
    writeFile(u"Kassenbon.pld"_s, shippedTemplate(u"Kassenbon.pld"_s));
    TestPrinters printers({u"Epos"_s});
    gBonDrucker = u"Epos"_s;
    gDruckerKopies = 0;
    gPrintMode = 0;
    dialogs.expectMsgBox(u"Seit dem Öffnen der Kasse wurde noch kein Verkauf gebucht."_s);
    reg->PrintLast();
    scan(u"3"_s);
    payCash(10);
    EXPECT_TRUE(printers.jobs.empty());

    gKunde.Name_1 = u"Frau Vogt"_s; // the next sale has begun
    gKunde.Rabatt = 3;
    scan(u"1"_s);
    for (const int mode : {0, 1, 3}) {
        gPrintMode = mode;
        reg->PrintLast();
    }
    EXPECT_EQ(3U, printers.jobs.size()) << "one copy each, whatever is printed with a booking";
    EXPECT_EQ(u"Frau Vogt"_s, gKunde.Name_1);
    EXPECT_EQ(3, gKunde.Rabatt);
    EXPECT_EQ(0, gDruckerKopies);
    EXPECT_EQ(2, reg->basket().rowCount());
}

} // namespace
