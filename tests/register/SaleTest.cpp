#include "FakeTerminal.h"
#include "Till.h"

#include <printing/Beleg.h>
#include <support/TestPrinters.h>
#include <templates/Shipped.h>

// From the first scan to the booked document.

namespace {

class Sale : public Till {
  protected:
    Sale() {
        shop.article(u"2000000000017"_s, u"Äpfel Elstar"_s, 1.99,
                     {{u"LagerAktiv"_s, true},
                      {u"IstBestand"_s, 10},
                      {u"SollBestand"_s, 2},
                      {u"EKPreis"_s, Currency::fromDouble(1)},
                      {u"WarenGruppe"_s, u"Obst"_s},
                      {u"LangText"_s, u"Kiste"_s},
                      {u"Zusatz1"_s, u"Z1"_s}});
        shop.article(u"2000000000024"_s, u"Wein"_s, 7.5,
                     {{u"SteuerSatz"_s, 19}, {u"Rabatt"_s, false}, {u"IstBestand"_s, 4}});
        shop.article(
            u"2000000000031"_s, u"Öl"_s, 4.2,
            {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 8}, {u"Menge"_s, 0.5}, {u"Einheit"_s, u"l"_s}});
        shop.insert(u"ArtikelLieferanten"_s,
                    {{u"ArtikelNummer"_s, u"2000000000017"_s}, {u"BestellNummer"_s, u"B-17"_s}});
        shop.insert(u"ArtikelSerienNummern"_s,
                    {{u"ArtikelNummer"_s, u"2000000000024"_s}, {u"SNNummer"_s, u"77"_s}});
    }
    [[nodiscard]] double stock(const QString& number) {
        return shop.value(u"SELECT IstBestand FROM Artikel WHERE Nummer='"_s + number + u"'"_s).toDouble();
    }
};

TEST_F(Sale, StandsWhenThePrinterIsGoneAndPrintsLater) {
    for (const QString& name : {u"Kassenbon.pld"_s, u"Quittung.pld"_s})
        writeFile(name, shippedTemplate(name));
    TestPrinters printers;
    gBonDrucker = gFormularDrucker = u"Epos"_s;
    gDruckerKopies = 1;
    for (const int mode : {1, 2}) {
        gPrintMode = mode;
        scan(u"2000000000017"_s);
        screen.expect(till::Dialog::KasseTotal, [] {
            gZahlung.Ergebnis = 1;
            gZahlung.ZahlArt = u"BAR"_s;
        });
        dialogs.expectError(482);
        reg->cmdTotal_Click();
        EXPECT_EQ(shop.count(u"Rechnung"_s), mode);
        EXPECT_TRUE(list().isEmpty()) << "the next customer can come";
    }
    EXPECT_EQ(stock(u"2000000000017"_s), 8);
    printers.present = {u"Epos"_s};
    Print_BON(1);
    Print_Formular(2, u"Quittung.pld"_s, 0, {});
    EXPECT_EQ(printers.jobs.size(), 2U);
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), 2);
}

TEST_F(Sale, FromScanToBookedDocument) {
    clock.set(QDateTime({2026, 11, 22}, {14, 5}));
    scan(u"2000000000017"_s);
    type(u"3*"_s);
    EXPECT_EQ(u"3"_s, reg->Mal());
    scan(u"2000000000031"_s);
    EXPECT_EQ(u""_s, reg->Mal());
    scan(u"2000000000024"_s);
    EXPECT_EQ(
        (QStringList{u"2000000000017|Äpfel Elstar|1|1 Stück|1,99|1,99"_s,
                     u"2000000000031|Öl|3|0,5 l|4,20|12,60"_s, u"2000000000024|Wein|1|1 Stück|7,50|7,50"_s}),
        list());
    EXPECT_EQ(u"22,09"_s, reg->basket().Gesamt());

    // Two more apples, then a tenth off them.
    reg->MoveSelection(-1);
    reg->MoveSelection(-1);
    reg->MoveSelection(-1);
    EXPECT_EQ(0, reg->basket().selected());
    type(u"2+"_s);
    EXPECT_EQ(u""_s, reg->Input());
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::No,
                         u"Rabatt auf alles..."_s);
    screen.expect(till::Dialog::Rabatt, [] { gRabattAngabe = {Currency::fromInteger(10), 1}; });
    reg->cmdRabatt_Click();
    EXPECT_EQ(u"2000000000017|Äpfel Elstar|3|1 Stück|1,79|5,37"_s, line(0));
    EXPECT_EQ(u"25,47"_s, reg->basket().Gesamt());

    clock.advance(90);
    payCash(30);
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(u"0,00"_s, reg->basket().Gesamt());
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));
    EXPECT_GE(screen.focused, 1);
    EXPECT_EQ(
        QStringList{u"KASSE-1|22.11.2026|3|0|Standardkunde|BAR|25,47|30|4,53||Falsch"_s},
        shop.rows(u"SELECT Maschine, Datum, PersonalNummer, KundenNummer, Kunde, ZahlArt, Betrag_Gesamt, "
                  u"Betrag_Gegeben, Betrag_Zurueck, KartenTyp, Abschluss FROM Rechnung"_s));
    EXPECT_EQ(
        (QStringList{u"2000000000017|3|1|1|1,791|1,99|7|Obst|Kiste|Z1|B-17"_s,
                     u"2000000000031|3|0,5|0|4,2|4,2|7||||nicht verfügbar"_s,
                     u"2000000000024|1|1|0|7,5|7,5|19||||nicht verfügbar"_s}),
        shop.rows(
            u"SELECT ArtikelNummer, Buchungs_Menge, Menge, EKPreis, VKPreis_Brutto, VKPreisOrg, SteuerSatz, "
            u"WarenGruppe, LangText, Zusatz1, BestellNummer FROM RechnungsDetail"_s));
    EXPECT_NEAR(1.791 / 1.07, shop.value(u"SELECT VKPreis_Netto FROM RechnungsDetail"_s).toDouble(), 1e-9);
    // The lines keep the time at which they were entered, the document has the time of booking.
    EXPECT_EQ(u"14:06:30"_s, shop.value(u"SELECT Zeit FROM Rechnung"_s).toText());
    EXPECT_EQ(1, shop.count(u"SELECT DISTINCT RechnungID FROM RechnungsDetail"_s));

    EXPECT_DOUBLE_EQ(7, stock(u"2000000000017"_s));
    EXPECT_DOUBLE_EQ(6.5, stock(u"2000000000031"_s));
    EXPECT_DOUBLE_EQ(4, stock(u"2000000000024"_s)); // no stock is kept
}

TEST_F(Sale, SerialNumbersOfTheLineAreMarkedSold) {
    scan(u"2000000000024"_s);
    shop.db().Execute(u"UPDATE Bestellung SET SNNummer='77'"_s);
    payCash(7.5);
    EXPECT_EQ(QStringList{u"22.11.2026|"_s + shop.value(u"SELECT RechnungID FROM Rechnung"_s).toText()},
              shop.rows(u"SELECT VKDatum, RechnungID FROM ArtikelSerienNummern"_s));
}

TEST_F(Sale, CancelledPaymentLeavesTheSaleOpen) {
    reg->cmdTotal_Click(); // nothing to pay: no dialog
    scan(u"2000000000017"_s);
    screen.expect(till::Dialog::KasseTotal, [] {
        EXPECT_EQ(Currency::fromDouble(1.99), gZahlung.Betrag_Gesamt);
        EXPECT_EQ(0, gZahlung.Ergebnis);
    });
    reg->cmdTotal_Click();
    EXPECT_EQ(1, shop.count(u"Bestellung"_s));
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    EXPECT_EQ(u"1,99"_s, reg->basket().Gesamt());
}

TEST_F(Sale, CardByHand) {
    const QString question =
        u"OK, Zahlung erfolgt mit Kreditkarte!\n\nGesamtsumme: 1,99 €\n\nBuchen Sie diesen "
        u"Betrag jetzt über das Zahlungsverkehrsterminal. Warten Sie bis der Betrag gebucht "
        u"wurde und bestätigen Sie mit OK."_s;
    EXPECT_EQ((QStringList{u"VISA"_s, u"Girocard"_s}), reg->Karten());
    reg->PayByKarte(u"VISA"_s);
    scan(u"2000000000017"_s);
    dialogs.expectMsgBox(question, MsgIcon::Information, MsgAnswer::Cancel, u"Kreditkartenbuchung..."_s);
    reg->PayByKarte(u"VISA"_s);
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    dialogs.expectMsgBox(question, MsgIcon::Information, MsgAnswer::OK);
    reg->PayByKarte(u"Girocard"_s);
    EXPECT_EQ(
        QStringList{u"KARTE|Girocard|1,99|1,99|0"_s},
        shop.rows(
            u"SELECT ZahlArt, KartenTyp, Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck FROM Rechnung"_s));
    EXPECT_TRUE(reg->basket().isEmpty());
}

TEST_F(Sale, RoundingOfTheAmountToPay) {
    gDecimalStellen = 3;
    gFormatPreis = u"###0.000"_s;
    gRoundDecimal = true;
    shop.article(u"5"_s, u"Schrauben"_s, 12.345);
    scan(u"5"_s);
    screen.expect(till::Dialog::KasseTotal,
                  [] { EXPECT_EQ(Currency::fromDouble(12.35), gZahlung.Betrag_Gesamt); });
    reg->cmdTotal_Click();
    gShowWechselgeldDialog = false; // without the dialog the amount is what the screen shows
    reg->cmdTotal_Click();
    EXPECT_EQ(QStringList{u"BAR|12,345|12,345|0"_s},
              shop.rows(u"SELECT ZahlArt, Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck FROM Rechnung"_s));
}

TEST_F(Sale, OnlyWhatStandsOnTheScreenIsBooked) {
    scan(u"2000000000017"_s);
    scan(u"2000000000024"_s);
    const auto change = [this](const QString& sql) { shop.db().Execute(sql); };
    const QString lead = u"Der Verkauf ist in der Datenbank ein anderer, als er hier stand:\n\n"_s;
    // Before the payment: nobody is asked for money that is not due.
    change(u"UPDATE Bestellung SET Buchungs_Menge=3 WHERE ArtikelNummer='2000000000024'"_s);
    dialogs.expectMsgBox(lead + u"geändert: 3 × Wein, 22,50 €\n\n...*"_s, MsgIcon::Exclamation);
    reg->cmdTotal_Click();
    EXPECT_EQ(reg->basket().Gesamt(), u"24,49"_s);
    // While the cashier is asked: one goes, one comes, with the same sum.
    screen.expect(till::Dialog::KasseTotal, [&] {
        gZahlung.Ergebnis = 1;
        change(u"DELETE FROM Bestellung WHERE ArtikelNummer='2000000000017'"_s);
        change(
            u"INSERT INTO Bestellung (Maschine, ArtikelNummer, ArtikelName, Buchungs_Menge, VKPreis_Rabatt) "
            "VALUES ('KASSE-1', '9', 'Rest', 1, 1.99)"_s);
    });
    dialogs.expectMsgBox(
        lead + u"neu in der Liste: 1 × Rest, 1,99 €\nnicht mehr da: 1 × Äpfel Elstar, 1,99 €\n\n...*"_s,
        MsgIcon::Exclamation);
    reg->cmdTotal_Click();
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    EXPECT_EQ(2, reg->basket().rowCount());
    gZVTEnabled = false;
    change(u"UPDATE Bestellung SET VKPreis_Rabatt=2 WHERE ArtikelNummer='9'"_s);
    dialogs.expectMsgBox(lead + u"geändert: 1 × Rest, 2,00 €\n\n...*"_s, MsgIcon::Exclamation);
    reg->PayByKarte(u"VISA"_s);
    payCash(30);
    EXPECT_EQ(1, shop.count(u"Rechnung"_s));
    EXPECT_EQ(2, shop.count(u"RechnungsDetail"_s));
}

TEST_F(Sale, WhatTheTillChangedItselfIsNoDifference) {
    gDecimalStellen = 3;
    gFormatPreis = u"###0.000"_s;
    type(u"7*"_s);
    scan(u"2000000000031"_s); // an amount that a reload would round otherwise
    reg->cmdPlus_Click();
    type(u"2-"_s);
    scan(u"2000000000017"_s);
    screen.expect(till::Dialog::FreierPreis, [] { gPreisAngabe = {1, Currency::fromDouble(1.2345)}; });
    reg->cmdArtikelPreis_Click();
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::Yes);
    screen.expect(till::Dialog::Rabatt, [] { gRabattAngabe = {Currency::fromInteger(7), 1}; });
    reg->cmdRabatt_Click();
    payCash(100);
    EXPECT_EQ(2, shop.count(u"RechnungsDetail"_s));
}

TEST_F(Sale, AfterTheSaleLoginAndLastTotal) {
    gAbfrageLoginProOrder = gEnabledAutoClose = true;
    gKunde.KundenID = 12;
    gKunde.Name_1 = u"Müller & Sohn"_s;
    QString user;
    QObject::connect(reg.get(), &till::Register::UserChanged, [&](const QString& text) { user = text; });
    scan(u"2000000000017"_s);
    screen.expect(till::Dialog::KasseTotal, [] { gZahlung.Ergebnis = 1; });
    screen.expect(till::Dialog::DesktopLogin, [] {
        EXPECT_TRUE(gLoginPflicht);
        gKassenUser.ID = 4;
        gKassenUser.Vorname = u"Uwe"_s;
    });
    reg->cmdTotal_Click();
    EXPECT_FALSE(gLoginPflicht);
    EXPECT_EQ(u"Uwe Koch"_s, user);
    EXPECT_EQ(u"1,99"_s, reg->basket().Gesamt()); // the finished sale over an empty list
    EXPECT_EQ(u" Standardkunde  -  Rabatt: 0/100"_s, reg->Title());
    EXPECT_EQ(QStringList{u"12|Müller & Sohn"_s}, shop.rows(u"SELECT KundenNummer, Kunde FROM Rechnung"_s));
    scan(u"2000000000017"_s);
    EXPECT_EQ(u"1,99"_s, reg->basket().Gesamt());
    EXPECT_EQ(QStringList{u"4|0"_s}, shop.rows(u"SELECT PersonalNummer, KundenNummer FROM Bestellung"_s));
}

TEST_F(Sale, SecondTotalKeyWhileBookingBooksNothing) {
    scan(u"2000000000017"_s);
    screen.onYield = [this] {
        screen.onYield = {};
        reg->cmdTotal_Click();
        reg->PayByKarte(u"VISA"_s);
    };
    payCash(2);
    EXPECT_EQ(1, shop.count(u"Rechnung"_s));
    EXPECT_EQ(1, shop.count(u"RechnungsDetail"_s));
}

TEST_F(Sale, FailureInTheLoopLeavesWhatWasWritten) {
    scan(u"2000000000017"_s);
    scan(u"2000000000031"_s);
    shop.db().Execute(
        u"ALTER TABLE Artikel DROP COLUMN LagerAktiv"_s); // the stock statement fails from now on
    dialogs.expectError(3061);
    dialogs.expectMsgBox(u"Beim Erstellen der Rechnung ist ein Fehler aufgetreten."_s);
    dialogs.expectError(3061); // the stock label
    payCash(20);
    EXPECT_EQ(1, shop.count(u"Rechnung"_s));
    EXPECT_EQ(1, shop.count(u"RechnungsDetail"_s));
    EXPECT_EQ(2, shop.count(u"Bestellung"_s));
    EXPECT_EQ(2, reg->basket().rowCount());
    EXPECT_EQ(u"6,19"_s, reg->basket().Gesamt());
}

TEST_F(Sale, DeliveryNoteSaleMovesNoStock) {
    shop.insert(u"Lieferung"_s, {});
    shop.insert(u"Lieferung"_s, {});
    scan(u"2000000000017"_s);
    reg->basket().IsLieferscheinBon = true;
    payCash(1.99);
    EXPECT_DOUBLE_EQ(10, stock(u"2000000000017"_s));
    EXPECT_EQ(1, shop.value(u"SELECT LieferungID FROM Lieferung WHERE InRechnung=-1"_s).toLong());
    EXPECT_FALSE(reg->basket().IsLieferscheinBon);
}

TEST_F(Sale, RestartBringsTheOpenSaleBack) {
    gKunde.KundenID = 12;
    gKunde.Name_1 = u"Müller"_s;
    scan(u"2000000000017"_s);
    scan(u"2000000000024"_s);
    shop.db().Execute(u"INSERT INTO Bestellung (Maschine, ArtikelNummer, VKPreis_Rabatt, Buchungs_Menge) "
                      u"VALUES ('KASSE-2', '9', 5, 1)"_s);
    const QStringList before = list();
    reg.reset();
    shop.reopen();
    open();
    EXPECT_EQ(before, list());
    EXPECT_EQ(u"9,49"_s, reg->basket().Gesamt());
    EXPECT_EQ(1, reg->basket().selected());
    EXPECT_EQ(u" Standardkunde  -  Rabatt: 0/100"_s, reg->Title());
    payCash(9.49);
    EXPECT_EQ(2, shop.count(u"RechnungsDetail"_s));
    EXPECT_EQ(1, shop.count(u"Bestellung"_s)); // the other till's line
}

TEST_F(Sale, CardAtTheTerminal) {
    QStringList calls;
    auto fake = std::make_unique<FakeTerminal>(calls);
    FakeTerminal& terminal = *fake;
    gZVT = std::move(fake);
    gZVTEnabled = true;
    reg->cmdKarte_Click();
    EXPECT_EQ(QStringList(), calls) << "nothing to pay";
    scan(u"2000000000017"_s);
    reg->cmdKarte_Click();
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    EXPECT_EQ(u"1,99"_s, reg->basket().Gesamt());
    terminal.books = true;
    reg->cmdKarte_Click();
    EXPECT_EQ((QStringList{u"Bezahlen 19900"_s, u"Bezahlen 19900"_s}), calls);
    EXPECT_EQ(u"girocard"_s, shop.value(u"SELECT KartenTyp FROM Rechnung WHERE ZahlArt='KARTE'"_s).toText());
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));

    using Act = till::Register::TerminalAct;
    calls.clear();
    reg->TerminalFunction(Act::Storno);
    reg->TerminalFunction(Act::KassenSchnitt);
    dialogs.expectError(51);
    reg->TerminalFunction(Act::Gutschrift);
    gZVTEnabled = false;
    reg->TerminalFunction(Act::Storno);
    EXPECT_EQ((QStringList{u"Storno"_s, u"Kassenschnitt"_s}), calls);
    gZVT.reset();
}

} // namespace
