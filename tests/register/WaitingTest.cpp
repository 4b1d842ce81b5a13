#include "Till.h"

#include <register/CustomerAccount.h>
#include <register/Parking.h>
#include <register/gMaschine.h>

// Lines that leave the open sale for a while: the parked sale and the accounts of customers.

namespace {

class Waiting : public Till {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {14, 5}));
        gKFBestellungParken = gKFKunden = gKassenUser.R_Kunden = true;
        gShowWechselgeldDialog = false;
        shop.article(u"1"_s, u"Brot"_s, 4.05, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 50}});
        shop.article(u"2"_s, u"Käse"_s, 7.495, {{u"SteuerSatz"_s, 7}, {u"Rabatt"_s, true}});
        vogt = shop.insert(u"Kunden"_s,
                           {{u"Anrede"_s, u"Frau"_s}, {u"Name_1"_s, u"Vogt & Co"_s}, {u"Rabatt"_s, 10}});
        Till::SetUp();
    }
    void choose(int customer) {
        screen.expect(till::Dialog::KundenSuche, [this, customer] {
            gKunde = KundeRecord::Standard();
            gKunde.KundenID = customer;
            if (customer == vogt) {
                gKunde.Name_1 = u"Vogt & Co"_s;
                gKunde.Rabatt = 10;
            }
            gKunde.Ergebnis = 1;
        });
    }
    QStringList open() {
        return shop.rows(
            u"SELECT ArtikelNummer, Buchungs_Menge, VKPreis, VKPreis_Rabatt FROM Bestellung WHERE "
            "Maschine='%1' ORDER BY ID"_s.arg(gMaschine));
    }
    void restart() {
        reg.reset();
        shop.reopen();
        Till::open();
    }
    int vogt = 0;
};

TEST_F(Waiting, AParkedSaleComesBackWithItsCustomerAndPrices) {
    choose(vogt);
    reg->cmdKunde_Click();
    type(u"3*"_s);
    scan(u"1"_s);
    scan(u"2"_s); // 3 x 3,645 and 6,7455
    const QStringList before = open();
    reg->parking().ParkBestellung();
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(0, gKunde.KundenID);
    EXPECT_EQ(u"Geparkt um 14:05: Vogt & Co, 2 Zeilen, 17,69 €"_s,
              reg->panel().Parked().section(u" ("_s, 0, 0));
    EXPECT_FALSE(reg->CanTakeBack());

    scan(u"1"_s); // the next customer
    reg->cmdTotal_Click();
    reg->parking().LoadParkedBestellung();
    EXPECT_EQ(before, open());
    EXPECT_EQ(u"Frau Vogt && Co  -  Rabatt: 10/100"_s, reg->Title());
    EXPECT_EQ(u"17,69"_s, reg->basket().Gesamt());
    EXPECT_EQ(u""_s, reg->panel().Parked());
    EXPECT_EQ(0, shop.count(u"TMPOrder"_s));
}

TEST_F(Waiting, OnlyOneSaleIsParkedAndOnlyAnEmptyTillFetchesIt) {
    const QString
        nothingOpen = u"Es sind keine Positionen vorhanden die geparkt werden können."_s,
        already = u"Funktion kann nich ausgeführt werden, da bereits eine Bestellung geparkt ist."_s,
        nothingParked = u"Es sind keine geparkte Bestellungen vorhanden."_s,
        busy = u"Sie müssen zuerst die aktuelle Bestellung abrechnen, bevor Sie die geparkte Bestellung "
               "abrufen können."_s;
    dialogs.expectMsgBox(nothingOpen);
    reg->parking().ParkBestellung();
    dialogs.expectMsgBox(nothingParked);
    reg->parking().LoadParkedBestellung();
    shop.insert(u"TMPOrder"_s, {{u"Maschine"_s, u"KASSE-9"_s}, {u"ArtikelNummer"_s, u"1"_s}});
    scan(u"1"_s);
    reg->parking().ParkBestellung(); // another till has its own
    scan(u"2"_s);
    dialogs.expectMsgBox(already);
    reg->parking().ParkBestellung();
    dialogs.expectMsgBox(busy);
    reg->parking().LoadParkedBestellung();
    EXPECT_EQ(1, reg->basket().rowCount());
    reg->cmdTotal_Click();
    reg->parking().LoadParkedBestellung();
    EXPECT_EQ(QStringList{u"1|1|4,05|4,05"_s}, open());
    EXPECT_EQ(u""_s, reg->panel().Parked());
    EXPECT_EQ(1, shop.count(u"TMPOrder"_s)) << "of the other till";
    gKFBestellungParken = false;
    reg->parking().ParkBestellung();
    EXPECT_EQ(1, reg->basket().rowCount());
}

TEST_F(Waiting, TheParkedSaleOutlivesTheTillAndItsCustomer) {
    choose(vogt);
    reg->cmdKunde_Click();
    scan(u"2"_s);
    shop.db().Execute(
        u"UPDATE Bestellung SET SNNummer='S1', LangText='lang', Zusatz1='z', PreisInfo='1 kg=7,50'"_s);
    const QString all =
        u"SELECT Maschine, Datum, KundenNummer, PersonalNummer, ArtikelNummer, ArtikelName, "
        "Buchungs_Menge, Menge, Einheit, EKPreis, VKPreis, VKPreis_Rabatt, SteuerSatz, IsRabatt, "
        "SNNummer, WarenGruppe, Zusatz1, Zusatz2, LangText, PreisInfo FROM "_s;
    const QStringList rows = shop.rows(all + u"Bestellung"_s);
    reg->parking().ParkBestellung();
    EXPECT_EQ(rows, shop.rows(all + u"TMPOrder"_s));
    EXPECT_EQ(1, shop.count(u"SELECT 1 FROM TMPOrder WHERE Zeit=Datum"_s)) << "the time of day goes";
    restart();
    EXPECT_TRUE(reg->panel().Parked().startsWith(u"Geparkt am 23.11.2026: Vogt & Co, 1 Zeile, 6,75 €"_s))
        << qPrintable(reg->panel().Parked());
    shop.db().Execute(u"DELETE FROM Kunden"_s);
    reg->parking().LoadParkedBestellung();
    EXPECT_EQ(rows, shop.rows(all + u"Bestellung"_s));
    EXPECT_EQ(0, gKunde.KundenID) << "its customer is gone, its prices stay";
    EXPECT_EQ(u" Standardkunde  -  Rabatt: 0/100"_s, reg->Title());
}

TEST_F(Waiting, AnAccountCollectsOverDaysAndIsSettledTogether) {
    dialogs.expectMsgBox(
        u"Es sind keine Positionen vorhanden die auf ein Kundenkonto gebucht werden können."_s);
    reg->account().BookToKundenKonto();
    scan(u"1"_s);
    choose(0);
    dialogs.expectMsgBox(
        u"Sie müssen ein gültigen Kunden auswählen. Ein Kundenkonto für den Standardkunde kann nicht "
        "erstellt werden."_s);
    reg->account().BookToKundenKonto();
    EXPECT_EQ(1, reg->basket().rowCount());
    choose(vogt);
    reg->account().BookToKundenKonto();
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(50, shop.value(u"SELECT IstBestand FROM Artikel WHERE Nummer='1'"_s).toInteger())
        << "nothing moves yet";
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));

    clock.set(QDateTime({2026, 11, 25}, {9, 0}));
    shop.db().Execute(u"UPDATE Artikel SET VKPreis=5 WHERE Nummer='1'"_s);
    type(u"2*"_s);
    scan(u"1"_s);
    choose(vogt);
    reg->account().BookToKundenKonto();
    gKassenUser.ID = 7;
    const QString question =
        u"Möchten Sie die Bestellungen aus dem Kundenkonto jetzt löschen?\n\nHINWEIS: Diese...*"_s;
    for (const auto& answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        choose(vogt);
        dialogs.expectMsgBox(question, MsgIcon::Question, answer);
        reg->account().LoadKundenKonto();
        EXPECT_EQ((QStringList{u"1|1|4,05|4,05"_s, u"1|2|5|5"_s}), open()) << "at the prices of their days";
        EXPECT_EQ(u" Vogt && Co  -  Rabatt: 10/100"_s, reg->Title());
        EXPECT_EQ(2, shop.count(u"SELECT 1 FROM Bestellung WHERE PersonalNummer=7 AND Maschine='%1'"_s.arg(
                         gMaschine)));
        reg->cmdTotal_Click();
    }
    EXPECT_EQ((QStringList{u"%1|14,05"_s.arg(vogt), u"%1|14,05"_s.arg(vogt)}),
              shop.rows(u"SELECT KundenNummer, Betrag_Gesamt FROM Rechnung"_s))
        << "twice, as the cashier wanted";
    choose(vogt);
    dialogs.expectMsgBox(u"Es konnten keine Buchungen auf dem Kundenkonto gefunden werden."_s);
    reg->account().LoadKundenKonto();
    EXPECT_EQ(0, gKunde.KundenID);
    choose(0);
    dialogs.expectMsgBox(
        u"Sie müssen ein gültigen Kunden auswählen. Ein Kundenkonto für den Standardkunde existiert nicht."_s);
    reg->account().LoadKundenKonto();
    scan(u"1"_s);
    dialogs.expectMsgBox(
        u"Sie müssen zuerst die aktuelle Bestellung abrechnen, bevor Sie das Kundenkonto abrufen "
        "können."_s);
    reg->account().LoadKundenKonto();
}

/// What a kill between copying and deleting leaves: lines in two places, which nobody may sell twice unasked.
class InterruptedCopy : public Waiting {
  protected:
    void copyOpen(const QString& table, const QString& machine, int most) {
        const auto open = gDB->OpenRecordset(u"SELECT * FROM Bestellung ORDER BY ID"_s);
        for (int i = 0; i < most && !open->Eof(); ++i, open->MoveNext()) {
            TempShop::Fields fields;
            for (const QString& column :
                 {u"Datum"_s, u"ArtikelNummer"_s, u"ArtikelName"_s, u"Buchungs_Menge"_s, u"Menge"_s,
                  u"VKPreis"_s, u"VKPreis_Rabatt"_s, u"SteuerSatz"_s, u"SNNummer"_s})
                fields.emplace_back(column, open->Field(column));
            if (machine.isEmpty())
                fields.emplace_back(u"KundenNummer"_s, vogt);
            else
                fields.emplace_back(u"Maschine"_s, machine);
            shop.insert(table, fields);
        }
    }
};

TEST_F(InterruptedCopy, IsToldAtTheNextStartAndTheCopyGoesWhenTheCashierWantsIt) {
    for (const QString& code : {u"1"_s, u"2"_s, u"1"_s})
        scan(code);
    copyOpen(u"TMPOrder"_s, gMaschine, 2);
    const QString
        asked = u"2 Zeilen (die erste ist \"1  Brot, 1 × 4,05 €\") stehen im offenen Verkauf und auch im "
                "geparkten. Vermutlich...*"_s,
        title = u"Unterbrochener Vorgang..."_s;
    dialogs.expectMsgBox(asked, MsgIcon::Question, MsgAnswer::No, title);
    restart();
    EXPECT_EQ(2, shop.count(u"TMPOrder"_s));
    dialogs.expectMsgBox(asked, MsgIcon::Question, MsgAnswer::Yes, title);
    restart();
    EXPECT_EQ(0, shop.count(u"TMPOrder"_s));
    EXPECT_EQ(3, reg->basket().rowCount());

    copyOpen(u"TMPOrder"_s, gMaschine, 3);
    reg->cmdStorno_Click(); // as if the third had never been fetched
    dialogs.expectMsgBox(asked, MsgIcon::Question, MsgAnswer::Yes, title);
    restart();
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(3, shop.count(u"TMPOrder"_s)) << "the whole sale can be fetched again";
    scan(u"2"_s);
    restart(); // another sale
}

TEST_F(InterruptedCopy, OfAnAccountIsToldToo) {
    scan(u"1"_s);
    scan(u"2"_s);
    copyOpen(u"KundenKontoOrder"_s, {}, 2);
    dialogs.expectMsgBox(
        u"2 Zeilen (die erste ist \"1  Brot, 1 × 4,05 €\") stehen im offenen Verkauf und auch auf dem "
        "Kundenkonto von Vogt & Co...*"_s,
        MsgIcon::Question, MsgAnswer::Yes);
    restart();
    EXPECT_EQ(0, shop.count(u"KundenKontoOrder"_s));
    EXPECT_EQ(2, reg->basket().rowCount());
    // What was put there on another day is no copy.
    copyOpen(u"KundenKontoOrder"_s, {}, 2);
    shop.db().Execute(u"UPDATE KundenKontoOrder SET Datum=#11/20/2026#"_s);
    restart();
}

TEST_F(InterruptedCopy, AFailureLeavesNoHalfRowAndTheSaleOpen) {
    scan(u"1"_s);
    scan(u"2"_s);
    shop.db().Execute(u"ALTER TABLE TMPOrder DROP COLUMN PreisInfo"_s);
    dialogs.expectError(3265);
    reg->parking().ParkBestellung();
    EXPECT_EQ(2, reg->basket().rowCount());
    EXPECT_EQ(0, shop.count(u"TMPOrder"_s)) << "no half row";
}

} // namespace
