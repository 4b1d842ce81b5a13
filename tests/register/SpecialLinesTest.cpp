#include "Till.h"

#include <register/NumberDialogs.h>
#include <register/PfandDialog.h>
#include <register/SerienNummernDialog.h>
#include <register/SpecialLines.h>

// Lines that are more than an article and a number: deposits, weights and volumes, serial numbers, credit
// notes.

namespace {

class SpecialLines : public Till {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {14, 5}));
        gVollerSteuerSatz = 19;
        gKFGutschrift = gKFLangText = gKFMinusBuchung = gKassenUser.R_Rabatt = true;
        gShowWechselgeldDialog = false;
        shop.article(u"1"_s, u"Brot"_s, 4.05, {{u"SteuerSatz"_s, 7}});
        // 12,99 a kilogram in the first group, 12,345 in the second, none of its own in the third; bought at
        // 8
        shop.article(u"K"_s, u"Käse"_s, 12.99,
                     {{u"VolumenAngabe"_s, true},
                      {u"Einheit"_s, u"kg"_s},
                      {u"VKPreis2"_s, Currency::fromDouble(12.345)},
                      {u"EKPreis"_s, Currency::fromDouble(8)},
                      {u"SteuerSatz"_s, 7},
                      {u"Rabatt"_s, false},
                      {u"LagerAktiv"_s, true},
                      {u"IstBestand"_s, 20}});
        shop.article(u"R"_s, u"Radio"_s, 49.9, {{u"SNAngabe"_s, true}});
        Till::SetUp();
    }
    void deposit(int pieces, double amount) {
        screen.expect(till::Dialog::Pfand, [=] {
            gPfandAngabe = {false, pieces, Currency::fromDouble(amount)};
        });
        reg->special().cmdPfand_Click();
    }
    void weigh(const QString& volume) {
        screen.expect(till::Dialog::VolumenAngabe, [volume] {
            QString text = volume;
            EXPECT_TRUE(till::NumberDialog(till::NumberDialog::Volumen).Confirm(text));
        });
        scan(u"K"_s);
    }
    void serial(const QString& number) {
        screen.expect(till::Dialog::SNAngabe, [number] {
            QString text = number;
            EXPECT_TRUE(till::SerienNummernDialog::Confirm(text));
        });
        scan(u"R"_s);
    }
    QStringList serials() {
        return shop.rows(
            u"SELECT SNNummer, RechnungID, VKDatum FROM ArtikelSerienNummern ORDER BY SNNummer"_s);
    }
    QStringList columns(const QString& names, const QString& table = u"Bestellung"_s) {
        return shop.rows(u"SELECT "_s + names + u" FROM "_s + table);
    }
};

TEST_F(SpecialLines, DepositsGoAndComeBackInASaleOfTwoRates) {
    type(u"2*"_s);
    scan(u"1"_s);
    deposit(3, 0.25);
    deposit(1, -1.5);
    deposit(1, 0);
    EXPECT_EQ((QStringList{u"1|Brot|2|1 Stück|4,05|8,10"_s, u"400-Pfand|Pfand|3|1 Stück|0,25|0,75"_s,
                           u"400-Pfand|Pfand|1|1 Stück|-1,50|-1,50"_s}),
              list());
    EXPECT_EQ(u"7,35"_s, reg->basket().Gesamt());
    EXPECT_EQ((QStringList{u"Leergut Pfand|19|0|0,25"_s, u"Leergut Pfand|19|0|-1,5"_s}),
              columns(u"WarenGruppe, SteuerSatz, EKPreis, VKPreis"_s,
                      u"Bestellung WHERE ArtikelNummer='400-Pfand'"_s));
    reg->cmdTotal_Click();
    EXPECT_EQ(QStringList{u"BAR|7,35"_s}, columns(u"ZahlArt, Betrag_Gesamt"_s, u"Rechnung"_s));
}

TEST_F(SpecialLines, APersonWhoBuysAtPurchasePricePaysDepositsAndGetsCreditsAll) {
    gKunde.EKPreis = true;
    deposit(2, 0.25);
    screen.expect(till::Dialog::Gutschrift, [] {
        gArtikel.VKPreis = Currency::fromDouble(0.2);
        gArtikel.Ergebnis = 1;
    });
    reg->special().BookGutschrift();
    EXPECT_EQ(u"0,30"_s, reg->basket().Gesamt());
    EXPECT_TRUE(gKunde.EKPreis);
    EXPECT_EQ(QStringList{u"Gutschrift|Gutschrift|0|Stück|-0,2"_s},
              columns(u"ArtikelName, WarenGruppe, SteuerSatz, Einheit, VKPreis"_s,
                      u"Bestellung WHERE ArtikelNummer='400-Gutschrift'"_s));
    gKassenUser.R_Rabatt = false;
    dialogs.expectMsgBox(u"Sie haben nicht die nötigen Rechte um Gutschriften auszustellen."_s);
    reg->special().BookGutschrift();
    gKFGutschrift = false;
    reg->special().BookGutschrift();
}

TEST_F(SpecialLines, AWeighedArticleIsNeverSoldAtItsBasePrice) {
    weigh(u"0,312"_s); // 12,99 x 0,312 = 4,05288
    gDecimalStellen = 2;
    EXPECT_EQ(QStringList{u"0,312|kg|4,0529|4,0529|1 kg=12,99"_s},
              columns(u"Menge, Einheit, VKPreis, VKPreis_Rabatt, PreisInfo"_s));
    EXPECT_EQ(QStringList{u"K|Käse|1|0,312 kg|4,05|4,05"_s}, list());
    for (const char16_t* nothing : {u"", u"Esc"}) {
        screen.expect(till::Dialog::VolumenAngabe, [nothing] {
            QString text;
            const till::NumberDialog dialog(till::NumberDialog::Volumen);
            if (*nothing)
                dialog.Cancel();
            else
                EXPECT_TRUE(dialog.Confirm(text));
        });
        type(u"2*"_s);
        scan(u"K"_s);
        EXPECT_EQ(u""_s, reg->Mal());
    }
    EXPECT_EQ(1, reg->basket().rowCount());
    type(u"-2*"_s);
    weigh(u"0,5"_s); // -2 x 6,495
    EXPECT_EQ(u"-8,94"_s, reg->basket().Gesamt()) << "4,05 - 12,99";
    reg->cmdTotal_Click();
    EXPECT_EQ(QStringList{u"20,688"_s}, columns(u"IstBestand"_s, u"Artikel WHERE Nummer='K'"_s))
        << "20 - 0,312 + 2 x 0,5";
}

TEST_F(SpecialLines, EachPriceGroupWeighsItsOwnPrice) {
    gKunde.PreisGruppe = 1;
    weigh(u"0,5"_s);
    gKunde.PreisGruppe = 2;
    weigh(u"0,5"_s); // no price of its own: the whole base price
    gKunde.PreisGruppe = 3;
    weigh(u"0,5"_s);
    gKunde.PreisGruppe = 1;
    gKunde.EKPreis = true;
    weigh(u"0,5"_s); // the purchase price as it is
    EXPECT_EQ((QStringList{u"6,1725|6,1725|1 kg=12,35"_s, u"12,99|12,99|1 kg=0,00"_s,
                           u"6,495|6,495|1 kg=12,99"_s, u"12,345|8|1 kg=8,00"_s}),
              columns(u"VKPreis, VKPreis_Rabatt, PreisInfo"_s));
}

TEST_F(SpecialLines, WhatIsNoWeightIsToldAndSellsNothing) {
    const till::NumberDialog dialog(till::NumberDialog::Volumen);
    screen.expect(till::Dialog::VolumenAngabe, [&] {
        EXPECT_EQ(u"Volumenangabe: Käse"_s, dialog.Title());
        EXPECT_EQ(u"1 kg  =  12,99\nBitte geben Sie die gewünschte Menge ein."_s, dialog.Description());
        EXPECT_EQ(u"1"_s, dialog.OpensWith());
        QString text = u"2005000000171"_s; // a scan
        dialogs.expectMsgBox(u"Eine Menge von 2005000000171 ist ungewöhnlich...*"_s, MsgIcon::Question,
                             MsgAnswer::No);
        EXPECT_FALSE(dialog.Confirm(text));
        text = u"1,2,3"_s;
        EXPECT_THROW((void)dialog.Confirm(text), RuntimeError);
        dialog.Cancel();
    });
    scan(u"K"_s);
    shop.db().Execute(u"UPDATE Artikel SET Menge=0 WHERE Nummer='K'"_s);
    dialogs.expectMsgBox(u"Für \"Käse\" ist keine Menge hinterlegt...*"_s, MsgIcon::Exclamation);
    weigh(u"1"_s);
    EXPECT_TRUE(reg->basket().isEmpty());
}

TEST_F(SpecialLines, ASerialNumberIsSoldOnce) {
    for (const QString& number : {u"S-1"_s, u"S-2"_s})
        shop.insert(u"ArtikelSerienNummern"_s, {{u"ArtikelNummer"_s, u"R"_s}, {u"SNNummer"_s, number}});
    serial(u" S-1 "_s);
    const QString invalid = u"Seriennummer ungülig!\n\n"_s;
    const auto refused = [&](const QString& number, const QString& told) {
        screen.expect(till::Dialog::SNAngabe, [&, number] {
            dialogs.expectMsgBox(told, MsgIcon::Critical);
            QString text = number;
            EXPECT_FALSE(till::SerienNummernDialog::Confirm(text));
            EXPECT_EQ(u""_s, text);
            EXPECT_EQ(0, gArtikel.Ergebnis);
            till::SerienNummernDialog::Cancel();
        });
        scan(u"R"_s);
    };
    refused(u"S-1"_s,
            invalid + u"Diese Serien- Vertragsnummer ist bereits auf der aktiven Bestellung vorhanden."_s);
    refused(QString(51, u'9'), u"Eine Seriennummer hat höchstens 50 Zeichen."_s);
    refused(u"O'Brien"_s, u"Eine Seriennummer enthält kein Hochkomma (')."_s);
    serial(u"S-9"_s); // nobody has recorded it
    EXPECT_EQ(2, reg->basket().rowCount());
    reg->cmdStorno_Click();
    reg->cmdTotal_Click();
    EXPECT_EQ((QStringList{u"S-1|1|23.11.2026"_s, u"S-2|0|Null"_s, u"S-9|0|"_s}), serials())
        << "a recorded number stays, also without a sale";
    refused(u"S-1"_s,
            invalid +
                u"Diese Serien- Vertragsnummer wurde bereits am 23.11.2026 mit der Beleg-Nr. 1 verkauft."_s);
    screen.expect(till::Dialog::SNAngabe, [] {
        EXPECT_EQ((QStringList{u"S-2"_s, u"S-9"_s}), till::SerienNummernDialog::Free());
        QString text;
        EXPECT_TRUE(till::SerienNummernDialog::Confirm(text));
    });
    scan(u"R"_s);
    EXPECT_TRUE(reg->basket().isEmpty());
}

TEST_F(SpecialLines, AnArticleMayAskThreeTimesAlsoWhenItComesWithAnother) {
    shop.article(u"M"_s, u"Mix"_s, 2,
                 {{u"PreisAngabe"_s, true},
                  {u"VolumenAngabe"_s, true},
                  {u"SNAngabe"_s, true},
                  {u"Einheit"_s, u"l"_s}});
    shop.insert(u"VerbundArtikel"_s,
                {{u"SourceArtikelNummer"_s, u"1"_s}, {u"DestArtikelNummer"_s, u"M"_s}, {u"Anzahl"_s, 2}});
    screen.expect(till::Dialog::PreisAngabe, [] {
        gArtikel.VKPreis = Currency::fromInteger(3);
        gArtikel.Ergebnis = 1;
    });
    screen.expect(till::Dialog::VolumenAngabe, [] {
        QString text = u"1,5"_s;
        EXPECT_TRUE(till::NumberDialog(till::NumberDialog::Volumen).Confirm(text));
    });
    screen.expect(till::Dialog::SNAngabe, [] {
        QString text = u"X"_s;
        EXPECT_TRUE(till::SerienNummernDialog::Confirm(text));
    });
    scan(u"1"_s);
    EXPECT_EQ((QStringList{u"1|1|4,05|"_s, u"M|2|4,5|X"_s}),
              columns(u"ArtikelNummer, Buchungs_Menge, VKPreis, SNNummer"_s));
    screen.expect(till::Dialog::PreisAngabe, [] { gArtikel.Ergebnis = 1; });
    screen.expect(till::Dialog::VolumenAngabe, [] { gArtikel.Ergebnis = 0; });
    scan(u"M"_s);
    EXPECT_EQ(2, reg->basket().rowCount());
    EXPECT_EQ(u""_s, reg->Input());
}

TEST_F(SpecialLines, TheDepositDialogTakesPiecesAndAmounts) {
    namespace rules = till::PfandDialog;
    gPfandAngabe = {};
    EXPECT_EQ(u"0|1"_s, rules::Betrag() + u'|' + rules::Anzahl());
    EXPECT_EQ(QChar(u','), rules::AcceptKey(u'.'));
    EXPECT_TRUE(rules::AcceptKey(u'-').isNull());
    QString input = u"12*"_s, pieces = u"1"_s;
    EXPECT_TRUE(rules::MoveFactor(input, pieces));
    EXPECT_EQ(u"|12"_s, input + u'|' + pieces);
    input = u"99999999*"_s;
    dialogs.expectMsgBox(u"Die Zahl 99999999 ist zu groß."_s, MsgIcon::Exclamation);
    EXPECT_TRUE(rules::MoveFactor(input, pieces));
    EXPECT_EQ(u"12"_s, pieces);
    input = u"0,25"_s;
    EXPECT_FALSE(rules::MoveFactor(input, pieces));
    EXPECT_TRUE(rules::Confirm(input, pieces, true));
    EXPECT_EQ(Currency::fromDouble(-0.25), gPfandAngabe.Betrag);
    EXPECT_EQ(12, gPfandAngabe.Anzahl);
    EXPECT_TRUE(rules::Confirm(input, u""_s, false));
    EXPECT_EQ(1, gPfandAngabe.Anzahl);
    input = u"10000"_s;
    dialogs.expectMsgBox(u"Sind Sie sicher, dass Sie Leergut über 10000,00 € buchen möchten?"_s,
                         MsgIcon::Question, MsgAnswer::No);
    EXPECT_FALSE(rules::Confirm(input, u"1"_s, true));
    EXPECT_EQ(u""_s, input);
    EXPECT_TRUE(rules::Confirm(input, u"1"_s, true));
    EXPECT_EQ(Currency(), gPfandAngabe.Betrag);
    rules::Cancel();
    EXPECT_EQ(0, gPfandAngabe.Anzahl);

    const till::NumberDialog credit(till::NumberDialog::Gutschrift);
    input = u"12000"_s;
    dialogs.expectMsgBox(u"Sind Sie sicher, dass Sie eine Gutschrift über 12000,00 € erstellen möchten?"_s,
                         MsgIcon::Question, MsgAnswer::No);
    EXPECT_FALSE(credit.Confirm(input));
    EXPECT_EQ(u""_s, input);
    EXPECT_TRUE(credit.Confirm(input));
    EXPECT_EQ(0, gArtikel.Ergebnis);
}

TEST_F(SpecialLines, TheLongTextGoesWithTheLine) {
    reg->special().EditLangText(); // nothing selected
    scan(u"1"_s);
    scan(u"1"_s);
    reg->ItemClick(0);
    screen.expect(till::Dialog::LangText, [] {
        EXPECT_EQ(u""_s, gLangTextAngabe.Text);
        gLangTextAngabe = {u"Für Frau O'Brien\n2. Zeile"_s, 1};
    });
    reg->special().EditLangText();
    screen.expect(till::Dialog::LangText, [] { gLangTextAngabe = {u"verworfen"_s, 0}; });
    reg->special().EditLangText();
    reg->cmdTotal_Click();
    EXPECT_EQ((QStringList{u"Für Frau O'Brien\n2. Zeile"_s, u""_s}),
              columns(u"LangText"_s, u"RechnungsDetail ORDER BY LangText DESC"_s));
    gKFLangText = false;
    scan(u"1"_s);
    reg->special().EditLangText();
}

} // namespace
