#include "Till.h"

#include <register/BetragDialog.h>
#include <register/CashMovements.h>
#include <register/gMaschine.h>

// Money that moves without a sale, and what the till says was taken.

namespace {

class CashMovements : public Till {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {8, 0}));
        gKFKasseneinlage = gKFKassenentnahme = gKFKassenBestand = gKassenUser.R_Setup = true;
        shop.article(u"1"_s, u"Brot"_s, 4.05);
        Till::SetUp();
    }
    void enter(double amount, const QString& group = u"Wechselgeld"_s, double rate = 0) {
        screen.expect(till::Dialog::KassenBuchung, [=] {
            gKassenBuchung.WarenGruppe = group;
            gKassenBuchung.Betrag = Currency::fromDouble(amount);
            gKassenBuchung.SteuerSatz = rate;
            gKassenBuchung.Ergebnis = 1;
        });
    }
    void einlage(double amount) {
        enter(amount);
        reg->movements().BookEinlage();
    }
    void entnahme(double amount) {
        enter(amount);
        reg->movements().BookEntnahme();
    }
    QStringList receipts() {
        return shop.rows(u"SELECT ZahlArt, Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck, KundenNummer FROM "
                         "Rechnung ORDER BY RechnungID"_s);
    }
};

TEST_F(CashMovements, AreBookedAsReceiptsOfOneLineForTheStandardCustomer) {
    gKunde.KundenID = 12; // of the sale before
    gKunde.EKPreis = true;
    einlage(200);
    enter(49.5, u"Putzmittel"_s, 19);
    reg->movements().BookEntnahme();
    EXPECT_EQ((QStringList{u"EINLAGE|200|0|0|0"_s, u"ENTNAHME|49,5|0|0|0"_s}), receipts());
    EXPECT_EQ(
        (QStringList{u"401-Einlage|Einlage|Wechselgeld|1|1|x|0|200|200|0"_s,
                     u"401-Entnahme|Entnahme|Putzmittel|1|1|x|0|49,5|41,5966386554622|19"_s}),
        shop.rows(u"SELECT ArtikelNummer, ArtikelName, WarenGruppe, Buchungs_Menge, Menge, Einheit, EKPreis, "
                  "VKPreis_Brutto, VKPreis_Netto, SteuerSatz FROM RechnungsDetail ORDER BY RechnungID"_s));
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));
    EXPECT_EQ(0, shop.count(u"BuchungsMarke"_s));
}

TEST_F(CashMovements, AreRefusedBesideAnOpenSaleAndLeftByCancelAndSwitch) {
    scan(u"1"_s);
    dialogs.expectMsgBox(u"Diese Aktion ist nur möglich, wenn keine aktiven Buchungen vorhanden sind."_s);
    reg->movements().BookEinlage();
    dialogs.expectMsgBox(u"Diese Aktion ist nur möglich, wenn keine aktiven Buchungen vorhanden sind."_s);
    reg->movements().BookEntnahme();
    EXPECT_EQ(1, reg->basket().rowCount());
    reg->cmdStorno_Click();
    screen.expect(till::Dialog::KassenBuchung, [] {
        EXPECT_TRUE(gKassenBuchung.IsEinlage);
        EXPECT_EQ(u"Einlage"_s, gKassenBuchung.Name);
    });
    reg->movements().BookEinlage();
    gKFKasseneinlage = gKFKassenentnahme = false;
    reg->movements().BookEinlage();
    reg->movements().BookEntnahme();
    EXPECT_EQ(QStringList{}, receipts());
}

TEST_F(CashMovements, PrintWhatIsAskedFor) {
    gPrintMode = 1; // whatever it is but 0, the dialog asks
    enter(10);
    screen.expect(till::Dialog::PrintDlg, [] { gPrintMode = 0; });
    reg->movements().BookEinlage();
    EXPECT_EQ(1, gPrintMode);
    gPrintMode = 0;
    einlage(20);
    gPrintMode = 3;
    enter(30);
    screen.expect(till::Dialog::PrintDlg, [] { gPrintMode = 2; });
    dialogs.expectMsgBox(u"Das Formular kann nicht gedruckt werden...*"_s);
    reg->movements().BookEinlage();
    EXPECT_EQ(3, gPrintMode);
    EXPECT_EQ(3, receipts().size());
}

TEST_F(CashMovements, AFailedBookingIsToldAndItsLineIsNotSold) {
    shop.db().Execute(u"ALTER TABLE RechnungsDetail DROP COLUMN PreisInfo"_s);
    dialogs.expectError(3265);
    dialogs.expectMsgBox(u"Beim Erstellen des Beleges ist ein Fehler aufgetreten."_s);
    einlage(80);
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));
    EXPECT_TRUE(reg->HasIncompleteReceipts());
    scan(u"1"_s); // and the till goes on
    EXPECT_EQ(1, reg->basket().rowCount());
}

TEST_F(CashMovements, ALineThatWasNeverBookedIsNotSoldAfterARestart) {
    // Killed between the line and the first write of its booking.
    shop.insert(u"Bestellung"_s, {{u"Maschine"_s, gMaschine},
                                  {u"ArtikelNummer"_s, u"401-Entnahme"_s},
                                  {u"ArtikelName"_s, u"Bank"_s},
                                  {u"Buchungs_Menge"_s, 1},
                                  {u"Menge"_s, 1},
                                  {u"VKPreis"_s, Currency::fromDouble(300)},
                                  {u"VKPreis_Rabatt"_s, Currency::fromDouble(300)}});
    reg.reset();
    shop.reopen();
    dialogs.expectMsgBox(u"\"Bank\" über 300,00 € wurde unterbrochen und ist nicht gebucht...*"_s,
                         MsgIcon::Exclamation);
    open();
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(QStringList{}, receipts());
}

TEST_F(CashMovements, TheTurnoverIsWhatThisTillTookSinceItsClosing) {
    const auto told = [](const QString& bar, const QString& karte, const QString& entnahme,
                         const QString& einlage) {
        return u"Folgende Beträge wurden seit dem letzten Kassenabschluss gebucht:\n\nBAR:\t\t%1 €\nKarte:\t\t%2 "
               "€\n401-Entnahme:\t%3 €\n401-Einlage:\t%4 €"_s.arg(bar, karte, entnahme, einlage);
    };
    const QString zero = u"0,00"_s;
    dialogs.expectMsgBox(told(zero, zero, zero, zero), MsgIcon::Information, MsgAnswer::OK,
                         u"Umsatzabfrage..."_s);
    reg->movements().ShowUmsatzAbfrage();

    const auto booked = [&](const QString& kind, const QString& number, double price, double amount,
                            const QString& machine, bool closed = false) {
        const int id = shop.insert(
            u"Rechnung"_s, {{u"Maschine"_s, machine}, {u"ZahlArt"_s, kind}, {u"Abschluss"_s, closed}});
        shop.insert(u"RechnungsDetail"_s, {{u"RechnungID"_s, id},
                                           {u"ArtikelNummer"_s, number},
                                           {u"VKPreis_Brutto"_s, Currency::fromDouble(price)},
                                           {u"Buchungs_Menge"_s, amount}});
    };
    einlage(200);
    entnahme(50);
    booked(u"BAR"_s, u"1"_s, 4.05, 3, gMaschine);               // 12,15
    booked(u"BAR"_s, u"401-Gutschein"_s, -10, 1, gMaschine);    // a voucher redeemed
    booked(u"RUECKGABE"_s, u"1"_s, 4.05, -1, gMaschine);        // -4,05
    booked(u"KARTE"_s, u"2"_s, 1.255, 2, gMaschine);            // 2,51
    booked(u"ENTNAHME"_s, u"401-Entnahme"_s, 25, 1, gMaschine); // a voucher paid out
    booked(u"RECHNUNG_OFFEN"_s, u"1"_s, 99, 1, gMaschine);
    booked(u"BAR"_s, u"1"_s, 1000, 1, u"KASSE-9"_s);
    booked(u"BAR"_s, u"1"_s, 1000, 1, gMaschine, true);
    dialogs.expectMsgBox(told(u"-1,90"_s, u"2,51"_s, u"75,00"_s, u"200,00"_s), MsgIcon::Information,
                         MsgAnswer::OK, u"Umsatzabfrage..."_s);
    reg->movements().ShowUmsatzAbfrage();

    gKassenUser.R_Setup = false;
    dialogs.expectMsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen."_s);
    reg->movements().ShowUmsatzAbfrage();
    gKFKassenBestand = false;
    reg->movements().ShowUmsatzAbfrage();
}

TEST_F(CashMovements, TheDialogTakesWhatIsMeant) {
    using Field = till::BetragDialog::Field;
    gKassenBuchung = {};
    const till::BetragDialog dialog(till::BetragDialog::KassenBuchung);
    shop.article(u"7"_s, u"Brot"_s, 4, {{u"SteuerSatz"_s, 7}, {u"WarenGruppe"_s, u"Backwaren"_s}});
    EXPECT_TRUE(dialog.WarenGruppen().contains(u"Backwaren"_s));
    EXPECT_FALSE(dialog.WarenGruppen().contains(QString()));
    EXPECT_TRUE(dialog.SteuerSaetze().contains(u"7,0"_s));
    EXPECT_EQ(QChar(u','), till::BetragDialog::AcceptKey(Field::Betrag, u'.'));
    EXPECT_EQ(QChar(u'-'), till::BetragDialog::AcceptKey(Field::Betrag, u'-'));
    EXPECT_TRUE(till::BetragDialog::AcceptKey(Field::SteuerSatz, u'-').isNull());
    EXPECT_TRUE(till::BetragDialog::AcceptKey(Field::Betrag, u'x').isNull());

    const QString group = u"Sie müssen eine Warengruppe für diesen Vorgang eingeben."_s,
                  name = u"Sie müssen eine Bezeichnung für diesen Vorgang eingeben."_s,
                  amount = u"Bitte geben Sie einen Betrag > Null ein."_s;
    dialogs.expectMsgBox(group);
    EXPECT_EQ(Field::WarenGruppe, dialog.Confirm(u" "_s, u""_s, u""_s, u""_s));
    dialogs.expectMsgBox(name);
    EXPECT_EQ(Field::Name, dialog.Confirm(u"Bank"_s, u"  "_s, u""_s, u""_s));
    for (const QString& wrong : {u""_s, u"0"_s, u"-5"_s, u"5,5,5"_s, u"-"_s}) {
        dialogs.expectMsgBox(amount);
        EXPECT_EQ(Field::Betrag, dialog.Confirm(u"Bank"_s, u"Geld"_s, wrong, u"0,0"_s)) << qPrintable(wrong);
    }
    dialogs.expectMsgBox(u"Die Zahl 99999999999999999999 ist zu groß."_s, MsgIcon::Exclamation);
    EXPECT_EQ(Field::Betrag, dialog.Confirm(u"Bank"_s, u"Geld"_s, QString(20, u'9'), u"0,0"_s));
    for (const QString& wrong : {u""_s, u"7,0,0"_s, u"101"_s}) {
        dialogs.expectMsgBox(u"Bitte geben Sie einen Steuersatz von 0 bis 100 Prozent ein."_s);
        EXPECT_EQ(Field::SteuerSatz, dialog.Confirm(u"Bank"_s, u"Geld"_s, u"5"_s, wrong))
            << qPrintable(wrong);
    }
    EXPECT_EQ(0, gKassenBuchung.Ergebnis);
    EXPECT_EQ(Field::None, dialog.Confirm(QString(60, u'g'), u"  O'Brien "_s, u"1234,567"_s, u"7,0"_s));
    EXPECT_EQ(50, gKassenBuchung.WarenGruppe.size());
    EXPECT_EQ(u"O'Brien"_s, gKassenBuchung.Name);
    EXPECT_EQ(Currency::fromDouble(1234.567), gKassenBuchung.Betrag);
    EXPECT_EQ(7, gKassenBuchung.SteuerSatz);
    EXPECT_EQ(1, gKassenBuchung.Ergebnis);
}

} // namespace
