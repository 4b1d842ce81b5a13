#include "Till.h"

#include <register/Returns.h>
#include <register/gMaschine.h>

// Goods come back against a receipt: what is paid out, what is booked, and what is in stock again.

namespace {

const QString paidBack = u"Möchten Sie eine Barauszahlung aus dem Kassenbestand vornehmen?"_s;

class Returns : public Till {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {9, 30}));
        gKFWarenrueckgabe = gKassenUser.R_RechnungEdit = true;
        gKassenUser.ID = 4;
        for (const auto& [number, name, price] :
             {std::tuple{u"1"_s, u"Brot"_s, 4.05}, {u"2"_s, u"Kamera"_s, 199.9}, {u"3"_s, u"Draht"_s, 1.255}})
            shop.article(number, name, price, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 10}});
        shop.insert(u"ArtikelSerienNummern"_s, {{u"ArtikelNummer"_s, u"2"_s},
                                                {u"SNNummer"_s, u"SN-7"_s},
                                                {u"RechnungID"_s, 1},
                                                {u"VKDatum"_s, u"01.11.2026"_s}});
        Till::SetUp();
        sold = receipt(u"KASSE-9"_s, true);
        line(u"3"_s, u"Draht"_s, 2, 0.5, 1.255, 19);
        line(u"1"_s, u"Brot"_s, 3, 1, 4.05, 7);
        line(u"2"_s, u"Kamera"_s, 1, 1, 199.9, 19, u"SN-7"_s);
    }
    /// Of another till, and closed already.
    int receipt(const QString& machine, bool closed) {
        return shop.insert(u"Rechnung"_s,
                           {{u"Maschine"_s, machine}, {u"ZahlArt"_s, u"KARTE"_s}, {u"Abschluss"_s, closed}});
    }
    void line(const QString& number, const QString& name, double booked, double unit, double price,
              double rate, const QString& serial = u""_s) {
        shop.insert(u"RechnungsDetail"_s, {{u"RechnungID"_s, sold},
                                           {u"KundenNummer"_s, 12},
                                           {u"Kunde"_s, u"Weber"_s},
                                           {u"ArtikelNummer"_s, number},
                                           {u"ArtikelName"_s, name},
                                           {u"Buchungs_Menge"_s, booked},
                                           {u"Menge"_s, unit},
                                           {u"VKPreis_Brutto"_s, Currency::fromDouble(price)},
                                           {u"VKPreis_Netto"_s, price / (1 + rate / 100)},
                                           {u"SteuerSatz"_s, rate},
                                           {u"SNNummer"_s, serial}});
    }
    /// The list is sorted by the number of the article: Brot, Kamera, Draht.
    till::ReturnDialog ticked(std::initializer_list<int> rows) {
        till::ReturnDialog dialog = reg->returns().NewDialog();
        EXPECT_TRUE(dialog.Search(QString::number(sold)));
        for (const int row : rows)
            dialog.Tick(row);
        return dialog;
    }
    void expectYes() {
        dialogs.expectMsgBox(u"Möchten Sie die markierten Artikel jetzt zurück buchen?"_s, MsgIcon::Question,
                             MsgAnswer::Yes);
    }
    void expectQuantity(const QString& article, const QString& typed) {
        dialogs.expectInput(u"Geben Sie die Anzahl der Rückgabe für den Artikel: %1 ein."_s.arg(article),
                            typed, u"Warenrückgabe..."_s);
    }
    QStringList documents() {
        return shop.rows(
            u"SELECT Maschine, PersonalNummer, KundenNummer, Kunde, Betrag_Gesamt, "
            "Betrag_Gegeben, Betrag_Zurueck, Abschluss FROM Rechnung WHERE ZahlArt='RUECKGABE'"_s);
    }
    QStringList stock() { return shop.rows(u"SELECT IstBestand FROM Artikel ORDER BY Nummer"_s); }
    QStringList serials() { return shop.rows(u"SELECT RechnungID, VKDatum FROM ArtikelSerienNummern"_s); }
    const QStringList untouched{u"10"_s, u"10"_s, u"10"_s};
    int sold = 0;
};

TEST_F(Returns, TwoPositionsOfTwoTaxRatesAreOneDocumentAndOnePayout) {
    gKunde.KundenID = 30; // whose sale waits meanwhile
    till::ReturnDialog dialog = ticked({0, 2});
    EXPECT_EQ(Currency::fromDouble(14.66), dialog.TickedSum()); // 3 x 4,05 and 2 x 1,255
    expectYes();
    expectQuantity(u"Brot"_s, u"2"_s);
    expectQuantity(u"Draht"_s, u"2"_s);
    dialogs.expectMsgBox(paidBack, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectMsgBox(
        u"Der Artikel wurde zurück gebucht.\nZahlen Sie dem Kunden einen Betrag in Höhe von -10,61 € aus."_s);
    EXPECT_TRUE(dialog.Confirm());
    // 2 x 4,05 + 2 x 1,255
    EXPECT_EQ(QStringList{gMaschine + u"|4|12|Weber|-10,61|-10,61|-10,61|Falsch"_s}, documents());
    EXPECT_EQ((QStringList{u"1|-2|-1|4,05|7"_s, u"3|-2|-0,5|1,255|19"_s}),
              shop.rows(u"SELECT ArtikelNummer, Buchungs_Menge, Menge, VKPreis_Brutto, SteuerSatz FROM "
                        "RechnungsDetail WHERE RechnungID > %1 ORDER BY ArtikelNummer"_s.arg(sold)));
    EXPECT_EQ((QStringList{u"12"_s, u"10"_s, u"11"_s}), stock());
    EXPECT_EQ(30, gKunde.KundenID);

    dialogs.expectMsgBox(u"Aktion nicht möglich. Dieser Beleg wurde bereits zurückgebucht."_s);
    EXPECT_FALSE(dialog.Search(QString::number(sold + 1)));
    EXPECT_TRUE(dialog.positions().empty());
    EXPECT_TRUE(dialog.Search(QString::number(sold))); // the receipt itself as often as one likes
}

TEST_F(Returns, WithoutPayoutOnlyStockAndSerialNumberMove) {
    till::ReturnDialog dialog = reg->returns().NewDialog();
    EXPECT_TRUE(dialog.SearchSerienNummer(u"SN-7"_s));
    ASSERT_EQ(3U, dialog.positions().size());
    dialog.Tick(1);
    expectYes();
    expectQuantity(u"Kamera"_s, u"1"_s);
    dialogs.expectMsgBox(paidBack, MsgIcon::Question, MsgAnswer::No);
    dialogs.expectMsgBox(
        u"Die Artikel wurden zurück gebucht und die Lagerbestände, sowie Seriennummern wurden aktualisiert."_s);
    EXPECT_TRUE(dialog.Confirm());
    EXPECT_EQ(QStringList{}, documents());
    EXPECT_EQ((QStringList{u"10"_s, u"11"_s, u"10"_s}), stock());
    EXPECT_EQ(QStringList{u"0|"_s}, serials());
}

TEST_F(Returns, NothingIsBookedForAQuantityThatCannotComeBack) {
    till::ReturnDialog dialog = ticked({});
    dialogs.expectMsgBox(u"Sie müssen die Positionen markieren, welche Sie zurück buchen wollen."_s);
    EXPECT_FALSE(dialog.Confirm());
    dialog.Tick(0);
    dialog.Tick(1);
    dialogs.expectMsgBox(u"Möchten Sie die markierten Artikel jetzt zurück buchen?"_s, MsgIcon::Question,
                         MsgAnswer::No);
    EXPECT_FALSE(dialog.Confirm());
    for (const QString& typed : {u"4"_s, QString(20, u'9'), u"-4"_s}) {
        expectYes();
        expectQuantity(u"Brot"_s, typed);
        dialogs.expectMsgBox(
            u"Sie können nicht mehr Artikel zurückbuchen, als tatsächlich gebucht wurden."_s);
        EXPECT_FALSE(dialog.Confirm()) << qPrintable(typed);
    }
    for (const QString& typed : {u"0"_s, u"-1"_s, u"zwei"_s, u"O'Neil"_s}) {
        expectYes();
        expectQuantity(u"Brot"_s, typed);
        dialogs.expectMsgBox(u"\"%1\" ist keine Anzahl...*"_s.arg(typed));
        EXPECT_FALSE(dialog.Confirm()) << qPrintable(typed);
    }
    expectYes(); // the second box is left empty after the first was answered
    expectQuantity(u"Brot"_s, u"3"_s);
    expectQuantity(u"Kamera"_s, u""_s);
    EXPECT_FALSE(dialog.Confirm());
    EXPECT_EQ(QStringList{}, documents());
    EXPECT_EQ(untouched, stock());
}

TEST_F(Returns, ALineThatTheCustomerWasGivenTakesItsAmountBack) {
    line(u"401-Gutschein"_s, u"Gutschein"_s, -1, 1, 25, 0);
    till::ReturnDialog dialog = ticked({0, 3});
    EXPECT_EQ(Currency::fromDouble(-12.85), dialog.TickedSum()); // 12,15 of bread, 25,00 of the voucher
    expectYes();
    expectQuantity(u"Brot"_s, u"3"_s);
    expectQuantity(u"Gutschein"_s, u"-1"_s);
    dialogs.expectMsgBox(paidBack, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectMsgBox(u"Der Artikel wurde zurück gebucht...*"_s);
    EXPECT_TRUE(dialog.Confirm());
    EXPECT_EQ(QStringList{gMaschine + u"|4|12|Weber|12,85|12,85|12,85|Falsch"_s}, documents());
}

TEST_F(Returns, AWriteThatFailsTellsWhatStandsInTheStore) {
    shop.db().Execute(u"ALTER TABLE ArtikelSerienNummern DROP COLUMN VKDatum"_s);
    till::ReturnDialog dialog = ticked({0, 1});
    expectYes();
    expectQuantity(u"Brot"_s, u"1"_s);
    expectQuantity(u"Kamera"_s, u"1"_s);
    dialogs.expectMsgBox(paidBack, MsgIcon::Question, MsgAnswer::Yes);
    QString told;
    try {
        (void)dialog.Confirm();
        FAIL() << "nothing was raised";
    } catch (const RuntimeError& error) {
        told = error.Description;
    }
    EXPECT_TRUE(told.contains(u"Der Rückgabebeleg hat die Nummer %1. 0 von 2 Positionen sind fertig "
                              "zurückgebucht. \"Brot\" ist angefangen"_s.arg(sold + 1)))
        << qPrintable(told);
    EXPECT_EQ(1, documents().size()); // what is written stays
    EXPECT_EQ((QStringList{u"11"_s, u"10"_s, u"10"_s}), stock());
    // and is not taken back again by the next press
    dialogs.expectMsgBox(u"Sie müssen die Positionen markieren, welche Sie zurück buchen wollen."_s);
    EXPECT_FALSE(dialog.Confirm());
}

TEST_F(Returns, TheSearchesTellWhatTheyCannotFind) {
    till::ReturnDialog dialog = reg->returns().NewDialog();
    for (const QString& typed : {u""_s, u"abc"_s, QString(20, u'9')}) {
        dialogs.expectMsgBox(u"Sie müssen eine gültige Belegnummer eingeben."_s);
        EXPECT_FALSE(dialog.Search(typed)) << qPrintable(typed);
    }
    dialogs.expectMsgBox(u"Sie müssen eine Seriennummer eingeben."_s);
    EXPECT_FALSE(dialog.SearchSerienNummer({}));
    EXPECT_TRUE(dialog.Search(u"4711"_s));
    EXPECT_EQ(u"Zu Beleg 4711 ist nichts gebucht."_s, dialog.Heading());
    EXPECT_TRUE(dialog.SearchSerienNummer(u"SN-8"_s));
    EXPECT_TRUE(dialog.positions().empty());
}

TEST_F(Returns, NeedSwitchAndRight) {
    screen.expect(till::Dialog::Reklamation, [] {});
    reg->returns().ShowReklamation();
    gKassenUser.R_RechnungEdit = false;
    dialogs.expectMsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s,
                         MsgIcon::Information, MsgAnswer::OK, u"Systemmedlung..."_s);
    reg->returns().ShowReklamation();
    gKFWarenrueckgabe = false;
    reg->returns().ShowReklamation();
}

} // namespace
