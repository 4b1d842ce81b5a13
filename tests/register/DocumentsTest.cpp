#include "InterruptedSale.h"
#include "ServerTill.h"

#include <register/Documents.h>
#include <register/IncompleteReceipts.h>

#include <QDir>
#include <QFile>

// The menu of the orders: invoices on credit, offers, delivery notes, and one invoice for several notes.

namespace {

using till::Papier;

class Documents : public Till {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {14, 5}));
        gShowWechselgeldDialog = false;
        gKFAngebotsHistorie = gKFLieferscheinHistorie = true;
        stockShop();
        Till::SetUp();
    }
    void stockShop() {
        const TempShop::Fields kept{{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 100}};
        shop.article(u"1"_s, u"Tee"_s, 10.70, kept);
        TempShop::Fields juice = kept;
        juice.emplace_back(u"Menge"_s, 0.5);
        juice.emplace_back(u"LangText"_s, u"naturtrüb;\r\n\"Streuobst\""_s);
        shop.article(u"2"_s, u"Saft"_s, 1.99, juice);
        shop.insert(u"ArtikelLieferanten"_s,
                    {{u"ArtikelNummer"_s, u"1"_s}, {u"LieferantID"_s, 1}, {u"BestellNummer"_s, u"T-7"_s}});
        customer = shop.insert(
            u"Kunden"_s,
            {{u"KundenNummer"_s, u"1001"_s}, {u"Name_1"_s, u"Müller & Sohn"_s}, {u"Rabatt"_s, 0}});
    }
    void chooseCustomer() {
        gKunde.KundenID = customer;
        gKunde.Name_1 = u"Müller & Sohn"_s;
    }
    /// 1 tea and 3 bottles of juice: 10,70 + 3 × 1,99 = 16,67. Out of stock go 1 tea and 3 × 0,5 juice.
    void scanSale() {
        scan(u"1"_s);
        scan(u"3*2"_s);
        ASSERT_EQ(reg->basket().Gesamt(), u"16,67"_s);
        chooseCustomer();
    }
    void bookNote() {
        scanSale();
        dialogs.expectMsgBox(u"Möchten Sie den Lieferschein jetzt ausdrucken?"_s, MsgIcon::Question,
                             MsgAnswer::No, u"Lieferschein drucken..."_s);
        reg->documents().BookLieferschein();
        ASSERT_TRUE(reg->basket().isEmpty());
    }
    [[nodiscard]] QStringList stock() {
        return shop.rows(u"SELECT IstBestand FROM Artikel WHERE LagerAktiv=-1 ORDER BY Nummer"_s);
    }
    /// In the dialog of the notes (or offers) the cashier loads one and leaves.
    void load(Papier papier, int id, bool loads = true) {
        const bool notes = papier == Papier::Lieferung;
        screen.expect(notes ? till::Dialog::Lieferungen : till::Dialog::Angebote, [this, papier, id, loads] {
            EXPECT_EQ(reg->documents().history(papier).AddToOrder(id), loads);
        });
        notes ? reg->documents().ShowLieferungen() : reg->documents().ShowAngebote();
    }
    void restart() {
        reg.reset();
        shop.reopen();
        open();
    }

    int customer = 0;
};

TEST_F(Documents, TheStandardCustomerGetsNoPaperAndTheSaleStays) {
    for (const auto act : {&till::Documents::BookRechnungOffen, &till::Documents::BookAngebot,
                           &till::Documents::BookLieferschein})
        (reg->documents().*act)(); // nothing on an empty list
    scan(u"1"_s);
    const std::pair<void (till::Documents::*)(), QString> acts[] = {
        {&till::Documents::BookRechnungOffen, u"die Rechnung"_s},
        {&till::Documents::BookAngebot, u"das Angebot"_s},
        {&till::Documents::BookLieferschein, u"den Lieferschein"_s}};
    for (const auto& [act, what] : acts) {
        dialogs.expectMsgBox(u"Sie müssen ein Kunden für %1 auswählen."_s.arg(what), MsgIcon::Critical,
                             MsgAnswer::OK, u"Systemmeldung..."_s);
        (reg->documents().*act)();
        EXPECT_EQ(list(), QStringList{u"1|Tee|1|1 Stück|10,70|10,70"_s});
    }
    EXPECT_EQ(shop.count(u"Rechnung"_s) + shop.count(u"Angebote"_s) + shop.count(u"Lieferung"_s), 0);
}

TEST_F(Documents, AnInvoiceOnCreditIsBookedUnpaidAndTakesTheGoods) {
    scanSale();
    dialogs.expectMsgBox(u"Möchten Sie die Rechnung jetzt ausdrucken?"_s, MsgIcon::Question, MsgAnswer::No,
                         u"Rechnung drucken..."_s);
    reg->documents().BookRechnungOffen();
    EXPECT_EQ(shop.rows(u"SELECT KundenNummer, Kunde, ZahlArt, KartenTyp, Betrag_Gesamt, Betrag_Gegeben, "
                        "Betrag_Zurueck FROM Rechnung"_s),
              QStringList{u"%1|Müller & Sohn|RECHNUNG_OFFEN||16,67|16,67|0"_s.arg(customer)});
    EXPECT_EQ(stock(), (QStringList{u"99"_s, u"98,5"_s}));
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(gKunde.KundenID, 0);
    EXPECT_EQ(shop.count(u"Bestellung"_s) + shop.count(u"BuchungsMarke"_s), 0);
}

TEST_F(Documents, AnOfferKeepsEveryLineMovesNoStockAndBecomesASale) {
    gAbfrageLoginProOrder = gKFBenutzerWechsel = true;
    scanSale();
    dialogs.expectMsgBox(u"Möchten Sie das Angebot jetzt ausdrucken?"_s, MsgIcon::Question, MsgAnswer::No,
                         u"Angebot drucken..."_s);
    screen.expect(till::Dialog::DesktopLogin, [] {});
    reg->documents().BookAngebot();
    gAbfrageLoginProOrder = false;
    EXPECT_EQ(shop.rows(u"SELECT AngebotID, Maschine, KundenNummer, Kunde, Betrag_Gesamt FROM Angebote"_s),
              QStringList{u"1|KASSE-1|%1|Müller & Sohn|16,67"_s.arg(customer)});
    // Without 7 % tax: 10,70 / 1,07 = 10.
    EXPECT_EQ(
        shop.rows(
            u"SELECT AngebotID, ArtikelNummer, Buchungs_Menge, Menge, VKPreis_Brutto, BestellNummer FROM "
            "AngebotsDetail ORDER BY ArtikelNummer"_s),
        (QStringList{u"1|1|1|1|10,7|T-7"_s, u"1|2|3|0,5|1,99|nicht verfügbar"_s}));
    EXPECT_DOUBLE_EQ(
        shop.value(u"SELECT VKPreis_Netto FROM AngebotsDetail WHERE ArtikelNummer='1'"_s).toDouble(), 10);
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(stock(), (QStringList{u"100"_s, u"100"_s}));

    load(Papier::Angebot, 1);
    EXPECT_EQ(list(), (QStringList{u"1|Tee|1|1 Stück|10,70|10,70"_s, u"2|Saft|3|0,5 Stück|1,99|5,97"_s}));
    EXPECT_EQ(reg->Title(), u" Müller && Sohn  -  Rabatt: 0/100"_s);
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.rows(u"SELECT KundenNummer, Betrag_Gesamt FROM Rechnung"_s),
              QStringList{u"%1|16,67"_s.arg(customer)});
    EXPECT_EQ(stock(), (QStringList{u"99"_s, u"98,5"_s}));
}

TEST_F(Documents, ANoteTakesTheGoodsOnceAndPaidAtTheTillItMarksNoteOneOnly) {
    bookNote();
    bookNote();
    EXPECT_EQ(stock(), (QStringList{u"98"_s, u"97"_s}));
    load(Papier::Lieferung, 2);
    EXPECT_TRUE(reg->basket().IsLieferscheinBon);
    EXPECT_EQ(reg->basket().LieferungNummer, 2);
    scan(u"1"_s); // what is added to such a sale moves no stock either
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.value(u"SELECT Betrag_Gesamt FROM Rechnung"_s).toText(), u"27,37"_s) << "16,67 + 10,70";
    EXPECT_EQ(stock(), (QStringList{u"98"_s, u"97"_s}));
    EXPECT_EQ(shop.rows(u"SELECT LieferungID, InRechnung FROM Lieferung ORDER BY 1"_s),
              (QStringList{u"1|Wahr"_s, u"2|Falsch"_s}));
    EXPECT_FALSE(reg->basket().IsLieferscheinBon);
    EXPECT_EQ(reg->basket().LieferungNummer, 0);

    dialogs.expectMsgBox(u"Der von Ihnen gewählte Lieferschein wurde bereits als Rechnung erstellt."_s,
                         MsgIcon::Information, MsgAnswer::OK, u"Aktion nicht möglich..."_s);
    load(Papier::Lieferung, 1, false);
    scan(u"1"_s);
    dialogs.expectMsgBox(u"Im Verkauf stehen noch 1 offene Zeilen. ...*"_s, MsgIcon::Question, MsgAnswer::No);
    load(Papier::Lieferung, 2, false);
    EXPECT_EQ(reg->basket().rowCount(), 1);
    EXPECT_FALSE(reg->basket().IsLieferscheinBon);
}

TEST_F(Documents, DeletingANoteGivesTheGoodsBackWhenWantedAndDropsItsVouchers) {
    bookNote();
    bookNote();
    const int voucher = shop.insert(u"Gutscheine"_s, {{u"Betrag"_s, 20}});
    shop.insert(u"LieferungDetail"_s, {{u"LieferungID"_s, 1},
                                       {u"ArtikelNummer"_s, u"401-Gutschein"_s},
                                       {u"SNNummer"_s, QString::number(voucher)}});
    till::PaperHistory notes = reg->documents().history(Papier::Lieferung);
    const auto ask = [&](MsgAnswer really, std::optional<MsgAnswer> stockBack) {
        dialogs.expectMsgBox(u"Möchten Sie diese Lieferung wirklich löschen?"_s, MsgIcon::Question, really,
                             u"Löschen..."_s);
        if (stockBack)
            dialogs.expectMsgBox(u"Möchten Sie die Positionen in den Lagerbestand zurück buchen?"_s,
                                 MsgIcon::Question, *stockBack, u"Lagerbestand aktualisieren..."_s);
    };
    ask(MsgAnswer::No, {});
    EXPECT_FALSE(notes.Delete(1));
    EXPECT_EQ(shop.count(u"Gutscheine"_s), 1);
    ask(MsgAnswer::Yes, MsgAnswer::No);
    EXPECT_TRUE(notes.Delete(1));
    EXPECT_EQ(stock(), (QStringList{u"98"_s, u"97"_s}));
    EXPECT_EQ(shop.count(u"Gutscheine"_s), 0);
    ask(MsgAnswer::Yes, MsgAnswer::Yes);
    EXPECT_TRUE(notes.Delete(2));
    EXPECT_EQ(stock(), (QStringList{u"99"_s, u"98,5"_s}));
    EXPECT_EQ(shop.count(u"Lieferung"_s) + shop.count(u"LieferungDetail"_s), 0);
}

TEST_F(Documents, TheDeliveryFileIsWholeOrNotWritten) {
    bookNote();
    till::PaperHistory notes = reg->documents().history(Papier::Lieferung);
    const QString file = shop.folder() + u"lieferung.csv"_s;
    dialogs.expectFile(u"Lieferschein speichern"_s, file);
    dialogs.expectMsgBox(u"Ihre Lieferschein wurde ordnungsgemäß erstellt."_s);
    notes.SaveCsv(1);
    EXPECT_EQ(dialogs.lastFile.name, u"unbenannt.csv"_s);
    EXPECT_EQ(dialogs.lastFile.filter, u"CSV Datei    (*.csv)|*.csv"_s);
    QFile saved(file);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), QByteArray("CSV_LIEF_40\r\n"
                                          "1;Tee;;;;;1;1;St\xFC"
                                          "ck;7;0;10,7\r\n"
                                          "2;Saft;naturtr\xFC"
                                          "b, Streuobst;;;;3;0,5;St\xFC"
                                          "ck;7;0;1,99\r\n"));
    dialogs.expectFile(u"Lieferschein speichern"_s, shop.folder() + u"nirgends/x.csv"_s);
    EXPECT_THROW(notes.SaveCsv(1), RuntimeError);
    dialogs.expectFile(u"Lieferschein speichern"_s, {});
    notes.SaveCsv(1);
}

TEST_F(Documents, SeveralNotesBecomeOneInvoiceWithoutMovingStockAgain) {
    bookNote();
    bookNote();
    bookNote();
    till::CollectiveInvoice invoice = reg->documents().collectiveInvoice();
    ASSERT_EQ(invoice.Customers().size(), 1U);
    EXPECT_EQ(invoice.Customers()[0].key, u"ID_%1"_s.arg(customer));
    EXPECT_EQ(invoice.FirstTaken({1, 3}), 0);
    const int id = invoice.Create(customer, {1, 3});
    EXPECT_EQ(
        shop.rows(u"SELECT RechnungID, Maschine, KundenNummer, Kunde, ZahlArt, Betrag_Gesamt, "
                  "Betrag_Gegeben, Betrag_Zurueck, KartenTyp, Abschluss, Zusatz FROM Rechnung"_s),
        QStringList{u"%1|KASSE-1|%2|Müller & Sohn|RECHNUNG_OFFEN|33,34|33,34|0||Falsch|In dieser "
                    "Rechnung sind folgende Lieferungen enthalten:  Lf - Nr.1 vom: 23.11.2026,  Lf - Nr.3 "
                    "vom: 23.11.2026"_s.arg(id)
                        .arg(customer)});
    EXPECT_EQ(
        shop.rows(u"SELECT ArtikelNummer, SUM(Buchungs_Menge), SUM(VKPreis_Brutto * Buchungs_Menge), "
                  "BestellNummer FROM RechnungsDetail GROUP BY ArtikelNummer, BestellNummer ORDER BY 1"_s),
        (QStringList{u"1|2|21,4|T-7"_s, u"2|6|11,94|nicht verfügbar"_s}));
    EXPECT_EQ(shop.rows(u"SELECT LieferungID, InRechnung FROM Lieferung ORDER BY 1"_s),
              (QStringList{u"1|Wahr"_s, u"2|Falsch"_s, u"3|Wahr"_s}));
    EXPECT_EQ(stock(), (QStringList{u"97"_s, u"95,5"_s}));
    EXPECT_EQ(invoice.FirstTaken({2, 3}), 3) << "another till was faster";
}

TEST_F(Documents, AFailureTellsWhatWasWrittenAndKeepsTheLines) {
    scanSale();
    shop.db().Execute(u"ALTER TABLE Artikel DROP COLUMN LagerAktiv"_s);
    dialogs.expectError(3061);
    dialogs.expectMsgBox(u"Beim Erstellen des Lieferscheins ist ein Fehler aufgetreten."_s);
    dialogs.expectError(3061); // the stock of the selected line
    reg->documents().BookLieferschein();
    EXPECT_EQ(reg->basket().rowCount(), 2);
    EXPECT_EQ(shop.count(u"Lieferung"_s), 1) << "the head stays";
    EXPECT_EQ(shop.count(u"LieferungDetail"_s), 1);
    shop.db().Execute(u"ALTER TABLE Artikel ADD COLUMN LagerAktiv BIT"_s);
    shop.db().Execute(u"UPDATE Artikel SET LagerAktiv=-1"_s);
    clock.set(QDateTime({2026, 11, 23}, {15, 0}));
    dialogs.expectMsgBox(
        u"Der Lieferschein 1 für Müller & Sohn über 16,67 € ist geschrieben, aber es stehen wohl erst 1 von 2 "
        "Zeilen darauf. ...*"_s,
        MsgIcon::Exclamation);
    restart();
    EXPECT_EQ(reg->basket().rowCount(), 2);
}

TEST_F(Documents, ANoteOfAKilledTillIsToldBeforeItsLinesMoveTheStockAgain) {
    struct Killed {};
    scanSale();
    screen.onYield = [&] {
        if (shop.count(u"LieferungDetail"_s) == 2) throw Killed();
    };
    EXPECT_THROW(reg->documents().BookLieferschein(), Killed);
    screen.onYield = {};
    clock.set(QDateTime({2026, 11, 23}, {15, 0}));
    const QString told =
        u"Der Lieferschein 1 für Müller & Sohn über 16,67 € ist geschrieben, und seine 2 Zeilen "
        "stehen noch im Verkauf. ...*"_s;
    dialogs.expectMsgBox(told, MsgIcon::Question, MsgAnswer::No, u"Unterbrochener Vorgang..."_s);
    restart();
    EXPECT_EQ(reg->basket().rowCount(), 2);
    scan(u"1"_s); // belongs to the next sale
    dialogs.expectMsgBox(told, MsgIcon::Question, MsgAnswer::Yes);
    restart();
    EXPECT_EQ(list(), QStringList{u"1|Tee|1|1 Stück|10,70|10,70"_s});
    reg->cmdStorno_Click();
    EXPECT_EQ(stock(), (QStringList{u"99"_s, u"98,5"_s}));

    // The same lines once more are another sale.
    scan(u"1"_s);
    scan(u"3*2"_s);
    restart();
    EXPECT_EQ(reg->basket().rowCount(), 2);
}

} // namespace
