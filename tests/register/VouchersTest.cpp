#include "FakeTerminal.h"
#include "Till.h"

#include <register/BetragDialog.h>
#include <register/Vouchers.h>

// A voucher is sold, redeemed in one sale or several, and paid out; what it is worth afterwards, and what the
// books say.

namespace {

const till::BetragDialog voucherDialog(till::BetragDialog::Gutschein);

const QString numberPrompt = u"Bitte geben Sie die gewünschte Gutscheinnummer ein."_s;
const QString cashOrCard = u"Möchten Sie die eventuell anfallende Differenz als Barzahlung verbuchen?\n"
                           "Wählen Sie Nein, wenn diese per Kreditkarte verrechnet werden soll."_s;

class VoucherTill : public Till {
  protected:
    VoucherTill() {
        gKFGutscheinErstellen = gKFGutscheinEinloesen = gKFGutscheinAuszahlung = true;
        shop.article(u"1"_s, u"Tee"_s, 10); // 7 %
        shop.article(u"2"_s, u"Buch"_s, 20, {{u"SteuerSatz"_s, 19}});
    }
    int voucher(double amount) {
        return shop.insert(u"Gutscheine"_s, {{u"Betrag"_s, Currency::fromDouble(amount)},
                                             {u"SteuerSatz"_s, 19},
                                             {u"WarenGruppe"_s, u"Präsente"_s},
                                             {u"Name"_s, u"Geburtstag"_s}});
    }
    [[nodiscard]] Currency worth(int id) {
        return shop.value(u"SELECT Betrag FROM Gutscheine WHERE GutscheinID=%1"_s.arg(id)).toCurrency();
    }
    /// The cashier enters the number and says how the rest of the sale is paid.
    void redeem(int id, MsgAnswer cash = MsgAnswer::Yes) {
        dialogs.expectInput(numberPrompt, QString::number(id), u"Gutscheinnummer"_s);
        dialogs.expectMsgBox(cashOrCard, MsgIcon::Question, cash, u"Zahlart..."_s);
        reg->vouchers().RedeemGutschein();
        dialogs.verify();
    }
    void expectCash(double due, double given) {
        screen.expect(till::Dialog::KasseTotal, [due, given] {
            EXPECT_EQ(gZahlung.Betrag_Gesamt, Currency::fromDouble(due));
            EXPECT_EQ(gZahlung.Betrag_Gegeben, gZahlung.Betrag_Gesamt);
            gZahlung.Ergebnis = 1;
            gZahlung.Betrag_Gegeben = Currency::fromDouble(given);
            gZahlung.Betrag_Zurueck = gZahlung.Betrag_Gegeben - gZahlung.Betrag_Gesamt;
        });
    }
    [[nodiscard]] QStringList heads() {
        return shop.rows(u"SELECT ZahlArt, KartenTyp, Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck FROM "
                         "Rechnung ORDER BY RechnungID"_s);
    }
    /// The lines of the last receipt that are vouchers.
    [[nodiscard]] QStringList voucherLines() {
        return shop.rows(
            u"SELECT ArtikelName, VKPreis_Brutto, SteuerSatz, LangText FROM RechnungsDetail WHERE "
            "ArtikelNummer='401-Gutschein' AND RechnungID=(SELECT MAX(RechnungID) FROM Rechnung)"_s);
    }
    void expectNothingBooked(int lines) {
        EXPECT_EQ(shop.count(u"Rechnung"_s), 0);
        EXPECT_EQ(shop.count(u"Bestellung"_s), lines);
        EXPECT_EQ(reg->basket().rowCount(), lines);
    }
};

TEST_F(VoucherTill, IsValidAndPrintedBeforeItIsPaid) {
    EXPECT_EQ(voucherDialog.WarenGruppen().size(), 0) << "no group but the empty one is on file";
    using Field = till::BetragDialog::Field;
    screen.expect(till::Dialog::Gutschein, [&] {
        EXPECT_EQ(gGutscheinAngabe.WarenGruppe, u"Gutschein"_s);
        EXPECT_EQ(voucherDialog.SteuerSatz(), u"19,0"_s);
        const auto refused = [&](const QString& text, Field field, const QStringList& entry,
                                 MsgIcon icon = MsgIcon::Information) {
            dialogs.expectMsgBox(text, icon, icon == MsgIcon::Question ? MsgAnswer::No : MsgAnswer::OK);
            EXPECT_EQ(voucherDialog.Confirm(entry[0], entry[1], entry[2], entry[3]), field);
            EXPECT_EQ(gGutscheinAngabe.Ergebnis, 0);
        };
        refused(u"Sie müssen eine Warengruppe für diesen Gutschein eingeben."_s, Field::WarenGruppe,
                {u" "_s, u""_s, u""_s, u"19,0"_s});
        refused(u"Sie müssen eine Bezeichnung für diesen Gutschein eingeben."_s, Field::Name,
                {u"G"_s, u"  "_s, u""_s, u"19,0"_s});
        for (const QString& none : {u""_s, u"0,00"_s, u"-5"_s, u","_s})
            refused(u"Sie müssen ein Betrag größer 0,00 für den Gutschein eingeben."_s, Field::Betrag,
                    {u"G"_s, u"Fest"_s, none, u"19,0"_s});
        refused(u"Die Zahl 12345678901234567890 ist zu groß."_s, Field::Betrag,
                {u"G"_s, u"Fest"_s, u"12345678901234567890"_s, u"19,0"_s}, MsgIcon::Exclamation);
        refused(u"Ein Preis von 1.000.000,00 € ist...*"_s, Field::Betrag,
                {u"G"_s, u"Fest"_s, u"1000000"_s, u"19,0"_s}, MsgIcon::Question);
        refused(u"Bitte geben Sie einen Steuersatz von 0 bis 100 Prozent ein."_s, Field::SteuerSatz,
                {u"G"_s, u"Fest"_s, u"5"_s, u"viel"_s});
        EXPECT_EQ(voucherDialog.Confirm(QString(60, u'G'), u" O'Hara "_s, u"50"_s, u"7,0"_s), Field::None);
        dialogs.expectMsgBox(
            u"Der Gutschein kann nicht gedruckt werden, da das System die Druckvorlage nicht finden oder öffnen konnte."_s,
            MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
    });
    type(u"3*"_s);
    reg->vouchers().CreateGutschein();
    EXPECT_EQ(shop.rows(u"SELECT Betrag, SteuerSatz, WarenGruppe, Name FROM Gutscheine"_s),
              QStringList{u"50|7|%1|O'Hara"_s.arg(QString(50, u'G'))});
    EXPECT_EQ(list(), QStringList{u"401-Gutschein|O'Hara|1|1 Stück|50,00|50,00"_s});
    EXPECT_EQ(reg->Mal(), u""_s);

    // No quantity, no discount, no price of another kind.
    type(u"2+"_s);
    type(u"1-"_s);
    dialogs.expectMsgBox(u"Dieser Artikel kann nicht rabattiert werden."_s);
    reg->cmdArtikelPreis_Click();
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::Yes);
    screen.expect(till::Dialog::Rabatt, [] { gRabattAngabe = {Currency::fromInteger(50), 1}; });
    reg->cmdRabatt_Click();
    EXPECT_EQ(list(), QStringList{u"401-Gutschein|O'Hara|1|1 Stück|50,00|50,00"_s});

    dialogs.expectMsgBox(u"Der Gutschein mit der Nummer 1 wurde gelöscht."_s);
    reg->cmdStorno_Click();
    EXPECT_EQ(shop.count(u"Gutscheine"_s), 0);
    EXPECT_EQ(shop.count(u"Stornos"_s), 1);
    EXPECT_FALSE(reg->CanTakeBack());

    screen.expect(till::Dialog::Gutschein, [] { voucherDialog.Cancel(); });
    reg->vouchers().CreateGutschein();
    gKFGutscheinErstellen = false;
    reg->vouchers().CreateGutschein();
    EXPECT_EQ(shop.count(u"Gutscheine"_s), 0);
    expectNothingBooked(0);
}

TEST_F(VoucherTill, LargerThanTheSaleKeepsItsRestUntilItIsEmpty) {
    const int id = voucher(50);
    scan(u"1"_s);
    scan(u"2"_s);
    expectCash(0, 0);
    redeem(id); // 10 + 20 - 30
    EXPECT_EQ(heads(), QStringList{u"BAR||0|0|0"_s});
    EXPECT_EQ(
        voucherLines(),
        QStringList{u"Gutscheinerlös Nr. 1|-30|19|Erlös aus Gutschein Nr. 1\nAktuelles Guthaben: 20,00 €"_s});
    EXPECT_EQ(
        shop.rows(u"SELECT Buchungs_Menge, Menge, Einheit, EKPreis, VKPreisOrg, WarenGruppe, SNNummer FROM "
                  "RechnungsDetail WHERE ArtikelNummer='401-Gutschein'"_s),
        QStringList{u"1|1|Stück|0|-30|Präsente|"_s});
    EXPECT_EQ(worth(id), Currency::fromInteger(20));
    EXPECT_TRUE(reg->basket().isEmpty());

    scan(u"2"_s);
    expectCash(0, 0);
    redeem(id); // exactly
    EXPECT_EQ(worth(id), Currency{});
    scan(u"2"_s);
    dialogs.expectInput(numberPrompt, u"0000001"_s);
    dialogs.expectMsgBox(u"Es befindet sich auf diesen Gutschein kein Guthaben mehr."_s);
    reg->vouchers().RedeemGutschein();
    EXPECT_EQ(reg->basket().rowCount(), 1);
    EXPECT_EQ(shop.count(u"Rechnung"_s), 2);
}

TEST_F(VoucherTill, WhatASmallerOneLeavesIsPaidInCash) {
    const int id = voucher(12);
    scan(u"1"_s);
    scan(u"2"_s);
    expectCash(18, 20);
    redeem(id);
    EXPECT_EQ(heads(), QStringList{u"BAR||18|20|2"_s});
    EXPECT_EQ(worth(id), Currency{});
    // Two rates: the voucher takes off at its own, 12 / 1,19 = 10,0840.
    EXPECT_EQ(shop.rows(u"SELECT SteuerSatz, VKPreis_Brutto FROM RechnungsDetail ORDER BY VKPreis_Brutto"_s),
              (QStringList{u"19|-12"_s, u"7|10"_s, u"19|20"_s}));
    EXPECT_NEAR(shop.value(u"SELECT VKPreis_Netto FROM RechnungsDetail WHERE VKPreis_Brutto<0"_s).toDouble(),
                -10.0840, 0.0001);

    gShowWechselgeldDialog = false;
    const int other = voucher(5);
    scan(u"1"_s);
    redeem(other);
    EXPECT_EQ(heads().last(), u"BAR||5|5|0"_s);
    EXPECT_EQ(worth(other), Currency{});
}

TEST_F(VoucherTill, WhatASmallerOneLeavesIsPaidByCard) {
    const QString told = u"OK, Zahlung erfolgt mit Kreditkarte!\n\nGesamtsumme: 8,00 €...*"_s;
    int id = voucher(2);
    scan(u"1"_s);
    const auto byHand = [&](MsgAnswer answer) {
        dialogs.expectInput(numberPrompt, QString::number(id));
        dialogs.expectMsgBox(cashOrCard, MsgIcon::Question, MsgAnswer::No);
        dialogs.expectMsgBox(told, MsgIcon::Information, answer);
        reg->vouchers().RedeemGutschein();
        dialogs.verify();
    };
    byHand(MsgAnswer::Cancel);
    expectNothingBooked(1);
    EXPECT_EQ(worth(id), Currency::fromInteger(2));
    byHand(MsgAnswer::OK);
    EXPECT_EQ(heads(), QStringList{u"KARTE|sonstige Kreditkarten|8|8|0"_s});
    EXPECT_EQ(worth(id), Currency{});

    id = voucher(3);
    scan(u"1"_s);
    QStringList calls;
    auto fake = std::make_unique<FakeTerminal>(calls);
    FakeTerminal& terminal = *fake;
    gZVT = std::move(fake);
    gZVTEnabled = true;
    redeem(id, MsgAnswer::No); // refused at the terminal
    EXPECT_EQ(list(), QStringList{u"1|Tee|1|1 Stück|10,00|10,00"_s});
    EXPECT_EQ(worth(id), Currency::fromInteger(3));
    terminal.books = true;
    redeem(id, MsgAnswer::No);
    gZVTEnabled = false;
    gZVT.reset();
    EXPECT_EQ(calls, (QStringList{u"Bezahlen 70000"_s, u"Bezahlen 70000"_s}));
    EXPECT_EQ(heads().last(), u"KARTE|girocard|7|7|0"_s);
    EXPECT_EQ(worth(id), Currency{});
}

TEST_F(VoucherTill, KeepsItsValueWhenThePaymentIsGivenUp) {
    const int id = voucher(5);
    scan(u"2"_s);
    screen.expect(till::Dialog::KasseTotal, [] {});
    redeem(id);
    expectNothingBooked(1);
    EXPECT_EQ(reg->basket().Gesamt(), u"20,00"_s);
    EXPECT_EQ(worth(id), Currency::fromInteger(5));

    // Another till was quicker with the same voucher.
    dialogs.expectInput(numberPrompt, QString::number(id))
        .expectMsgBox(cashOrCard, MsgIcon::Question, MsgAnswer::Yes);
    screen.expect(till::Dialog::KasseTotal, [&] {
        shop.db().Execute(u"UPDATE Gutscheine SET Betrag=1"_s);
        gZahlung.Ergebnis = 1;
    });
    dialogs.expectMsgBox(u"Das Guthaben von Gutschein Nr. 1 hat sich gerade geändert...*"_s,
                         MsgIcon::Exclamation);
    reg->vouchers().RedeemGutschein();
    expectNothingBooked(1);
    EXPECT_EQ(worth(id), Currency::fromInteger(1));
}

TEST_F(VoucherTill, ASaleBelowNothingGoesOntoTheVoucher) {
    const int id = voucher(50);
    type(u"-1*"_s);
    scan(u"1"_s);
    ASSERT_EQ(reg->basket().Gesamt(), u"-10,00"_s);
    expectCash(0, 0);
    redeem(id);
    EXPECT_EQ(
        voucherLines(),
        QStringList{u"Gutscheinerlös Nr. 1|10|19|Erlös aus Gutschein Nr. 1\nAktuelles Guthaben: 60,00 €"_s});
    EXPECT_EQ(heads(), QStringList{u"BAR||0|0|0"_s});
    EXPECT_EQ(worth(id), Currency::fromInteger(60));
}

TEST_F(VoucherTill, CountsWithItsAmountWhateverTheCustomerPays) {
    const int id = voucher(50);
    gKunde.KundenID = 12;
    gKunde.Rabatt = 10;
    shop.db().Execute(u"UPDATE Artikel SET Rabatt=-1"_s);
    scan(u"1"_s); // 9,00
    expectCash(0, 0);
    redeem(id);
    EXPECT_EQ(worth(id), Currency::fromInteger(41));
    EXPECT_EQ(voucherLines().value(0).section(u'|', 1, 1), u"-9"_s);

    gKunde.EKPreis = true;
    gKunde.PreisGruppe = 1;
    shop.db().Execute(u"UPDATE Artikel SET EKPreis=6"_s);
    scan(u"1"_s);
    expectCash(0, 0);
    redeem(id);
    EXPECT_EQ(voucherLines().value(0).section(u'|', 1, 1), u"-6"_s);
    EXPECT_EQ(worth(id), Currency::fromInteger(35));
}

TEST_F(VoucherTill, ThreeDecimalsStayThree) {
    gDecimalStellen = 3;
    gFormatPreis = u"###0.000"_s;
    gRoundDecimal = true;
    shop.article(u"3"_s, u"Kraft"_s, 12.345);
    const int large = voucher(20), small = voucher(5);
    scan(u"3"_s);
    expectCash(0, 0);
    redeem(large);
    EXPECT_EQ(worth(large), Currency::fromDouble(7.655));
    EXPECT_EQ(voucherLines().value(0).section(u": "_s, 1), u"7,655 €"_s);
    scan(u"3"_s);
    expectCash(7.345, 7.345); // as it stands, where the total key would round
    redeem(small);
    EXPECT_EQ(heads().last(), u"BAR||7,345|7,345|0"_s);
}

TEST_F(VoucherTill, WhatIsNoNumberOfAVoucherEndsHarmlessly) {
    dialogs.expectMsgBox(
        u"Sie müssen zuerst eine Position buchen bevor Sie den Betrag von einem Gutschein abbuchen können."_s);
    reg->vouchers().RedeemGutschein();
    voucher(50);
    scan(u"1"_s);
    for (const QString& nothing : {u""_s, u"abc"_s, u"O'Hara"_s}) {
        dialogs.expectInput(numberPrompt, nothing);
        reg->vouchers().RedeemGutschein();
    }
    dialogs.expectInput(numberPrompt, std::nullopt);
    reg->vouchers().RedeemGutschein();
    for (const QString& unknown :
         {u"2"_s, u"1,5"_s, u"-1"_s, u"12345678901234567890"_s, u"4294967297"_s, u"1e0"_s}) {
        dialogs.expectInput(numberPrompt, unknown);
        dialogs.expectMsgBox(u"Der Gutschein mit der Nummer %1 konnte nicht gefunden werden."_s.arg(unknown));
        reg->vouchers().RedeemGutschein();
    }
    expectNothingBooked(1);
    gKFGutscheinEinloesen = gKFGutscheinAuszahlung = false;
    reg->vouchers().RedeemGutschein();
    reg->vouchers().PayoutGutschein();
}

TEST_F(VoucherTill, TheReceiptFormOfARedemptionHasATemplateOfItsOwn) {
    QFile::copy(QStringLiteral(DEMO_ASSETS) + u"/../vorlagen/Quittung.pld"_s,
                shop.folder() + u"Quittung.pld"_s);
    const int id = voucher(50);
    gPrintMode = 3;
    scan(u"1"_s);
    expectCash(0, 0);
    screen.expect(till::Dialog::PrintDlg, [&] {
        EXPECT_EQ(worth(id), Currency::fromInteger(50)) << "the rest comes behind the print";
        gPrintMode = 2;
    });
    dialogs.expectInput(numberPrompt, QString::number(id))
        .expectMsgBox(cashOrCard, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectMsgBox(
        u"Das Formular kann nicht gedruckt werden, da das System die dafür nötige Druckvorlage nicht finden, oder öffnen konnte."_s);
    reg->vouchers().RedeemGutschein();
    EXPECT_EQ(gPrintMode, 3);
    EXPECT_EQ(worth(id), Currency::fromInteger(40));
}

TEST_F(VoucherTill, IsPaidOutOnce) {
    const int id = voucher(50);
    scan(u"1"_s);
    dialogs.expectMsgBox(
        u"Sie müssen zuerst die Positionen abrechnen, bevor Sie den Gutschein einlösen können."_s);
    reg->vouchers().PayoutGutschein();
    reg->cmdStorno_Click();
    gKunde.EKPreis = true;
    dialogs.expectInput(numberPrompt, QString::number(id), u"Gutscheinnummer"_s);
    reg->vouchers().PayoutGutschein();
    EXPECT_EQ(heads(), QStringList{u"ENTNAHME||50|0|0"_s});
    EXPECT_EQ(
        shop.rows(
            u"SELECT ArtikelNummer, WarenGruppe, ArtikelName, VKPreis_Brutto, SteuerSatz, Einheit, LangText "
            "FROM RechnungsDetail"_s),
        QStringList{u"401-Entnahme|Gutscheinauszahlung|Gutscheinauszahlung|50|0|x|"_s});
    EXPECT_EQ(worth(id), Currency{});
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(reg->panel().Last()->caption() + u' ' + reg->panel().Last()->amount(), u"Auszahlung 50,00 €"_s);
    dialogs.expectInput(numberPrompt, QString::number(id));
    dialogs.expectMsgBox(u"Es befindet sich auf diesen Gutschein kein Guthaben mehr."_s);
    reg->vouchers().PayoutGutschein();
    EXPECT_EQ(shop.count(u"Rechnung"_s), 1);
}

TEST_F(VoucherTill, AFailedBookingIsToldAndThePayoutGoes) {
    const int id = voucher(50);
    shop.db().Execute(u"ALTER TABLE RechnungsDetail DROP COLUMN LangText"_s);
    dialogs.expectInput(numberPrompt, QString::number(id)).expectError(3265);
    dialogs.expectMsgBox(u"Beim Erstellen des Beleges ist ein Fehler aufgetreten."_s);
    reg->vouchers().PayoutGutschein();
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(shop.count(u"Bestellung"_s), 0);
    EXPECT_EQ(worth(id), Currency::fromInteger(50));

    scan(u"1"_s);
    gShowWechselgeldDialog = false;
    dialogs.expectInput(numberPrompt, QString::number(id))
        .expectMsgBox(cashOrCard, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectError(3265);
    dialogs.expectMsgBox(u"Beim Erstellen der Rechnung ist ein Fehler aufgetreten."_s);
    reg->vouchers().RedeemGutschein();
    EXPECT_EQ(reg->basket().rowCount(), 2) << "the lines stay";
    EXPECT_EQ(worth(id), Currency::fromInteger(50));

    // What stays must not be redeemed a second time, and can be cancelled; the voucher stays.
    dialogs.expectMsgBox(u"In diesem Verkauf steht noch die Zeile \"Gutscheinerlös Nr. 1\"....*"_s,
                         MsgIcon::Exclamation);
    reg->vouchers().RedeemGutschein();
    reg->cmdStorno_Click();
    EXPECT_EQ(list(), QStringList{u"1|Tee|1|1 Stück|10,00|10,00"_s});
    EXPECT_FALSE(reg->CanTakeBack());
    EXPECT_EQ(worth(id), Currency::fromInteger(50));
}

TEST_F(VoucherTill, ALeftRedemptionIsToldAtTheStartAndWhenItIsPaidAnotherWay) {
    voucher(50);
    shop.insert(u"Bestellung"_s,
                {{u"Maschine"_s, u"KASSE-1"_s},
                 {u"ArtikelNummer"_s, u"401-Gutschein"_s},
                 {u"ArtikelName"_s, u"Gutscheinerlös Nr. 1"_s},
                 {u"SNNummer"_s, u""_s},
                 {u"LangText"_s, u"Erlös aus Gutschein Nr. 1\nAktuelles Guthaben: 40,00 €"_s},
                 {u"Buchungs_Menge"_s, 1},
                 {u"VKPreis_Rabatt"_s, Currency::fromInteger(-10)}});
    reg.reset();
    shop.reopen();
    dialogs.expectMsgBox(
        u"In diesem Verkauf steht noch die Zeile \"Gutscheinerlös Nr. 1\". Die Einlösung wurde nicht zu "
        "Ende gebucht, und vom Guthaben...*"_s,
        MsgIcon::Exclamation);
    open();
    scan(u"1"_s);
    gShowWechselgeldDialog = false;
    dialogs.expectMsgBox(
        u"Beleg 1 hat Gutschein Nr. 1 eingelöst. Danach bleiben auf ihm 40,00 €, gespeichert sind aber noch 50,00 €...*"_s,
        MsgIcon::Exclamation);
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.count(u"Rechnung"_s), 1);
    EXPECT_EQ(worth(1), Currency::fromInteger(50)) << "nobody but the owner corrects it";
}

} // namespace
