#include "Till.h"

// What the one decision routine makes of an entry.

namespace {

class Entry : public Till {
  protected:
    Entry() {
        shop.article(u"5"_s, u"Brot"_s, 3.2);
        shop.article(u"4140000000000"_s, u"Tageszeitung"_s, 2.1);
        shop.article(u"@@214"_s, u"Käse"_s, 0, {{u"WarenGruppe"_s, u"Theke"_s}, {u"Aktiv"_s, false}});
    }
    void refused() {
        EXPECT_EQ(u""_s, reg->Input());
        EXPECT_EQ(u""_s, reg->Mal());
        EXPECT_TRUE(reg->basket().isEmpty());
        EXPECT_EQ(0, shop.count(u"Bestellung"_s));
    }
};

TEST_F(Entry, EmptyEntryKeepsTheMultiplier) {
    type(u"4*"_s);
    scan(u"  "_s);
    EXPECT_EQ(u"4"_s, reg->Mal());
    EXPECT_TRUE(reg->basket().isEmpty());
    reg->cmdClear_Click();
    EXPECT_EQ(u""_s, reg->Mal());
}

TEST_F(Entry, MultiplierBeforeOrBehindTheStar) {
    reg->cmdMal_Click(); // a star alone is no multiplier
    EXPECT_EQ(u""_s, reg->Mal());
    reg->cmdNumber_Click(3);
    reg->cmdMal_Click();
    EXPECT_EQ(u"3"_s, reg->Mal());
    type(u"-2*"_s);
    EXPECT_EQ(u"-2"_s, reg->Mal());
    scan(u"5"_s);
    EXPECT_EQ(u"5|Brot|-2|1 Stück|3,20|-6,40"_s, line(0));
    gKFMinusBuchung = false;
    type(u"-2*"_s);
    EXPECT_EQ(u"2"_s, reg->Mal());
    reg->SetMal(u"x"_s);
    dialogs.expectError(13);
    scan(u"5"_s);
    EXPECT_EQ(u"5"_s, reg->Input()); // kept, so that it can be corrected
    EXPECT_EQ(1, reg->basket().rowCount());
}

TEST_F(Entry, QuantityKeysWorkOnTheSelectedLine) {
    type(u"+"_s); // on an empty list
    EXPECT_EQ(u""_s, reg->Input());
    type(u"7"_s);
    reg->cmdPlus_Click(); // adds nothing and empties the box
    EXPECT_EQ(u""_s, reg->Input());
    type(u"2-"_s);
    EXPECT_EQ(u"2-"_s, reg->Input());
    reg->cmdClear_Click();

    scan(u"5"_s);
    type(u"+"_s);
    type(u"12"_s);
    reg->cmdPlus_Click(); // one more, whatever stands in the box
    EXPECT_EQ(u""_s, reg->Input());
    type(u"3+"_s);
    EXPECT_EQ(u"5|Brot|6|1 Stück|3,20|19,20"_s, line(0));
    type(u"4-"_s);
    EXPECT_EQ(u"5|Brot|2|1 Stück|3,20|6,40"_s, line(0));
    EXPECT_EQ(u"6,40"_s, reg->basket().Gesamt());
    dialogs.expectMsgBox(u"Die Anzahl konnte nicht veringert werden, da nur 2 Aritkel gebucht sind."_s);
    type(u"2-"_s);
    EXPECT_EQ(u""_s, reg->Input());
    dialogs.expectError(13);
    type(u"a+"_s);
    EXPECT_EQ(u"a+"_s, reg->Input());
    reg->cmdClear_Click();
    type(u"1,5-"_s); // the number as it stands
    EXPECT_EQ(u"5|Brot|0,5|1 Stück|3,20|1,60"_s, line(0));
    dialogs.expectMsgBox(u"Die Anzahl konnte nicht veringert werden, da nur 0,5 Aritkel gebucht sind."_s);
    type(u"0,5-"_s);
    type(u"1,5+"_s); // a whole number, half to even
    EXPECT_EQ(u"2,5"_s, reg->basket().cell(0, till::Basket::Anz));
    type(u"0,5-"_s);
    EXPECT_EQ(QStringList{u"2"_s}, shop.rows(u"SELECT Buchungs_Menge FROM Bestellung"_s));

    shop.db().Execute(u"UPDATE Bestellung SET ArtikelNummer='401-Gutschein'"_s);
    reg->LoadBestellungen();
    type(u"1+"_s);
    type(u"1-"_s);
    EXPECT_EQ(u""_s, reg->Input());
    EXPECT_EQ(u"2"_s, reg->basket().cell(0, till::Basket::Anz));
    reg->cmdPlus_Click(); // the key does not look at the kind of the line
    EXPECT_EQ(u"3"_s, reg->basket().cell(0, till::Basket::Anz));
}

TEST_F(Entry, FreeAmount) {
    shop.setIni(u"SERVICE"_s, u"ShowManualArtikelDialog"_s, u"0"_s);
    type(u"2*"_s);
    scan(u" 5, "_s);
    EXPECT_EQ(u"400-Diverses|Diverser Artikel|2|1 Stück|5,00|10,00"_s, line(0));
    EXPECT_EQ(QStringList{u"5|5|19|Falsch|Diverses"_s},
              shop.rows(u"SELECT EKPreis, VKPreis, SteuerSatz, IsRabatt, WarenGruppe FROM Bestellung"_s));
    EXPECT_EQ(u"19"_s, shop.ini(u"SERVICE"_s, u"LastSteuerSatz"_s));

    // The first use of a fresh till asks, and from then on always; the rate is remembered.
    shop.setIni(u"SERVICE"_s, u"ShowManualArtikelDialog"_s, u""_s);
    screen.expect(till::Dialog::FreierArtikel, [] {
        EXPECT_EQ(u"Diverser Artikel"_s, gFreierArtikel.Name);
        gFreierArtikel = {1, u"Kerze"_s, u"Deko"_s, 7.5};
    });
    scan(u"2,50"_s);
    EXPECT_EQ(u"1"_s, shop.ini(u"SERVICE"_s, u"ShowManualArtikelDialog"_s));
    EXPECT_EQ(u"400-Diverses|Kerze|1|1 Stück|2,50|2,50"_s, line(1));
    type(u"3*"_s);
    screen.expect(till::Dialog::FreierArtikel,
                  [] { EXPECT_DOUBLE_EQ(7.5, gFreierArtikel.SteuerSatz); }); // cancelled
    scan(u"2,50"_s);
    EXPECT_EQ(u""_s, reg->Mal());
    EXPECT_EQ(2, reg->basket().rowCount());
}

TEST_F(Entry, AFreeAmountIsSoldAlthoughTheIniFileCannotBeWritten) {
    QFile::remove(KonfigIni());
    ASSERT_TRUE(QDir().mkpath(KonfigIni()));
    dialogs.expectMsgBox(u"Einstellungen dieser Kasse können nicht gespeichert werden....*"_s,
                         MsgIcon::Exclamation);
    screen.expect(till::Dialog::FreierArtikel, [] { gFreierArtikel = {1, u"Kerze"_s, u"Deko"_s, 7}; });
    scan(u"2,50"_s);
    screen.expect(till::Dialog::FreierArtikel,
                  [] { EXPECT_DOUBLE_EQ(7, gFreierArtikel.SteuerSatz); }); // cancelled
    scan(u"3,50"_s);
    EXPECT_EQ(u"400-Diverses|Kerze|1|1 Stück|2,50|2,50"_s, line(0));
    EXPECT_EQ(1, reg->basket().rowCount());
}

TEST_F(Entry, NegativeFreeAmountNeedsTheSwitch) {
    shop.setIni(u"SERVICE"_s, u"ShowManualArtikelDialog"_s, u"0"_s);
    gKFMinusBuchung = false;
    dialogs.expectMsgBox(
        u"Sie können keine Minusbuchungen vornehmen. Bitte wenden Sie sich an Ihren Administrator."_s);
    scan(u"-5,00"_s);
    refused();
    gKFMinusBuchung = true;
    scan(u"-5,00"_s);
    EXPECT_EQ(u"-5,00"_s, reg->basket().Gesamt());
}

TEST_F(Entry, AScanBehindAnAmountIsNoAmount) {
    shop.setIni(u"SERVICE"_s, u"ShowManualArtikelDialog"_s, u"0"_s);
    dialogs.expectMsgBox(u"5,502005000000171 ist kein Betrag...*"_s, MsgIcon::Exclamation);
    scan(u"5,50"_s + u"2005000000171"_s);
    refused();
    scan(u"5,5025"_s); // as many digits as money has
    EXPECT_EQ(u"5,50"_s, reg->basket().cell(0, till::Basket::EPreis));
}

TEST_F(Entry, FiguresBeyondTheirLimitsAreAskedAbout) {
    shop.setIni(u"SERVICE"_s, u"ShowManualArtikelDialog"_s, u"0"_s);
    const auto ask = [this](const QString& question, MsgAnswer answer) {
        dialogs.expectMsgBox(question + u"...*"_s, MsgIcon::Question, answer);
    };
    const QString amount = u"Ein Preis von 100.000,01 € ist ungewöhnlich hoch."_s,
                  pieces = u"Eine Menge von 10000 ist ungewöhnlich groß."_s;
    ask(amount, MsgAnswer::No);
    scan(u"100000,01"_s);
    refused();
    dialogs.expectMsgBox(u"Der Betrag 99999999999999999999,00 ist zu groß...*"_s, MsgIcon::Exclamation);
    scan(u"99999999999999999999,00"_s);
    refused();
    type(u"10000*"_s);
    ask(pieces, MsgAnswer::No);
    scan(u"5"_s);
    refused();
    type(u"2005000000171*"_s);
    dialogs.expectMsgBox(u"Die Menge 2005000000171 ist zu groß und wird nicht gebucht."_s,
                         MsgIcon::Exclamation);
    scan(u"5"_s);
    refused();

    type(u"9999*"_s);
    scan(u"5"_s);
    ask(pieces, MsgAnswer::No);
    reg->cmdPlus_Click();
    dialogs.expectMsgBox(u"Die Menge 2005000000171 ist zu groß und wird nicht gebucht."_s,
                         MsgIcon::Exclamation);
    type(u"2005000000171+"_s); // a "+" behind a scan
    EXPECT_EQ(u""_s, reg->Input());
    EXPECT_EQ(u"9999"_s, reg->basket().cell(0, till::Basket::Anz));
    ask(pieces, MsgAnswer::Yes);
    type(u"1+"_s);
    EXPECT_EQ(u"10000"_s, reg->basket().cell(0, till::Basket::Anz));
    ask(amount, MsgAnswer::Yes);
    scan(u"100000,01"_s);
    EXPECT_EQ(2, reg->basket().rowCount());
}

TEST_F(Entry, UnknownCodesOnlySound) {
    for (const bool ask : {true, false}) {
        gDisabledAskForNewArtikel = !ask;
        type(u"2*"_s);
        scan(u"99"_s);
        refused();
    }
    scan(u"1,2,3"_s);         // a comma, but no amount
    scan(u"201234567890"_s);  // 12 digits: no press code, no template
    scan(u"2991234567890"_s); // 13 digits without a template
    // 13 characters that are no number, also where a press code or a template has its price
    for (const QString& code : {u"41412345 4503"_s, u"419ABCDEFGHIJ"_s, u"2140000,1,34X"_s})
        scan(code);
    EXPECT_EQ(8, screen.sounds);
    refused();
    // Where the number of a code begins, letters are an error; the entry can be corrected.
    for (const QString& code : {u"ABC1234567890"_s, u"Euro-Palette."_s}) {
        dialogs.expectError(13);
        scan(code);
        EXPECT_EQ(code, reg->Input());
        reg->cmdClear_Click();
    }
    EXPECT_EQ(8, screen.sounds);
}

TEST_F(Entry, ACodeNeverCarriesSql) {
    shop.person(u"Lena"_s, u"Brandt"_s, u"0012"_s);
    for (const QString& code :
         {u"O'Neill"_s, u"x' OR '1'='1"_s, u"5'; DELETE FROM Artikel"_s, u"123456789012'"_s,
          u"x' OR EXISTS (SELECT ID FROM Personal WHERE PIN='0012') OR '1'='2"_s}) {
        dialogs.expectError(3075);
        scan(code);
        dialogs.verify();
        EXPECT_TRUE(dialogs.lastMessage.contains(
            u"enthält ein Hochkomma (') und kann deshalb nicht gesucht werden"_s))
            << qPrintable(dialogs.lastMessage);
        EXPECT_EQ(code, reg->Input()); // to be corrected
        reg->cmdClear_Click();
    }
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(0, screen.sounds); // nobody was asked
    scan(u"x'' OR ''1''=''1"_s); // stays a code, if a strange one
    EXPECT_EQ(1, screen.sounds);
    scan(u"5"_s);
    EXPECT_EQ(u"3,20"_s, reg->basket().Gesamt());
}

TEST_F(Entry, PressCodesCarryTheirPrice) {
    type(u"2*"_s);
    scan(u"4141234504503"_s);
    EXPECT_EQ(u"4141234504503|Zeitschrift|2|1 Stück|4,50|9,00"_s, line(0));
    scan(u"4190000012309"_s);
    EXPECT_EQ((QStringList{u"19|Zeitungen / Zeitschriften"_s, u"7|Zeitungen / Zeitschriften"_s}),
              shop.rows(u"SELECT SteuerSatz, WarenGruppe FROM Bestellung ORDER BY ID"_s));
    EXPECT_EQ(u"12,30"_s, reg->basket().cell(1, till::Basket::EPreis));
    // On file it is the stored article, whose price follows the code only when that is wanted.
    scan(u"4140000000000"_s);
    EXPECT_EQ(u"2,10"_s, reg->basket().cell(2, till::Basket::EPreis));
    shop.article(u"4190000002505"_s, u"Wochenblatt"_s, 2);
    gAutoPresseUpdate = true;
    scan(u"4190000002505"_s);
    EXPECT_EQ(u"2,50"_s, reg->basket().cell(3, till::Basket::EPreis));
    EXPECT_EQ(Currency::fromDouble(2.5),
              shop.value(u"SELECT VKPreis FROM Artikel WHERE Nummer='4190000002505'"_s).toCurrency());
}

TEST_F(Entry, PriceTemplate) {
    type(u"2*"_s);
    scan(u"2140000012344"_s); // digits 8 to 10 are euros, 11 and 12 cents; an inactive template sells as well
    EXPECT_EQ(u"@@214|Käse|2|1 Stück|12,34|24,68"_s, line(0));
    EXPECT_EQ(QStringList{u"12,34|12,34|Theke"_s},
              shop.rows(u"SELECT EKPreis, VKPreis, WarenGruppe FROM Bestellung"_s));
}

TEST_F(Entry, OrderNumbersOfSuppliers) {
    for (const auto& [order, article] :
         {std::pair{u"L1"_s, u"5"_s}, {u"L2"_s, u"5"_s}, {u"L2"_s, u"4140000000000"_s}, {u"L3"_s, u"L3"_s}})
        shop.insert(u"ArtikelLieferanten"_s, {{u"BestellNummer"_s, order}, {u"ArtikelNummer"_s, article}});
    type(u"3*"_s);
    scan(u"L1"_s);
    EXPECT_EQ(u"5|Brot|3|1 Stück|3,20|9,60"_s, line(0));
    screen.expect(till::Dialog::ArtikelLieferanten, [] {
        EXPECT_EQ(u"L2"_s, gBestellNummerWahl.BestellNummer);
        gBestellNummerWahl.ArtikelNummer = u"4140000000000"_s;
    });
    scan(u"L2"_s);
    EXPECT_EQ(u"Tageszeitung"_s, reg->basket().cell(1, till::Basket::Artikelname));
    type(u"3*"_s);
    screen.expect(till::Dialog::ArtikelLieferanten, [] {});
    scan(u"L2"_s);
    EXPECT_EQ(u""_s, reg->Mal());
    EXPECT_EQ(0, screen.sounds);
    scan(u"L3"_s); // leads to itself: the search runs once an entry
    EXPECT_EQ(1, screen.sounds);
    gEnabledOrderSearch = false;
    scan(u"L1"_s);
    EXPECT_EQ(2, screen.sounds);
    EXPECT_EQ(2, reg->basket().rowCount());
}

TEST_F(Entry, LinkedArticlesGoOneLevelDeep) {
    shop.article(u"10"_s, u"Kasten"_s, 9.9);
    shop.article(u"11"_s, u"Pfandflasche"_s, 0.08, {{u"SteuerSatz"_s, 19}});
    shop.article(u"12"_s, u"Pfandkiste"_s, 1.5);
    const auto link = [this](const QString& from, const QString& to, int count) {
        shop.insert(u"VerbundArtikel"_s,
                    {{u"SourceArtikelNummer"_s, from}, {u"DestArtikelNummer"_s, to}, {u"Anzahl"_s, count}});
    };
    link(u"10"_s, u"11"_s, 20);
    link(u"10"_s, u"weg"_s, 1);
    link(u"10"_s, u"12"_s, 1);
    link(u"12"_s, u"5"_s, 1);
    type(u"3*"_s);
    scan(u"10"_s);
    EXPECT_EQ((QStringList{u"10|Kasten|3|1 Stück|9,90|29,70"_s, u"11|Pfandflasche|60|1 Stück|0,08|4,80"_s,
                           u"12|Pfandkiste|3|1 Stück|1,50|4,50"_s}),
              list());
    EXPECT_EQ(1, screen.sounds);
    EXPECT_FALSE(reg->IsVerbundBuchung());
    scan(u"12"_s);
    EXPECT_EQ(5, reg->basket().rowCount());
}

TEST_F(Entry, InactiveArticleIsRefused) {
    shop.article(u"6"_s, u"Saisonware"_s, 1, {{u"Aktiv"_s, false}});
    dialogs.expectMsgBox(
        u"Der von Ihnen gewünschte Artikel wurde als nicht Aktiv markiert und kann zur Zeit nicht verkauft werden."_s);
    scan(u"6"_s);
    refused();
}

TEST_F(Entry, PriceAskedAtSale) {
    shop.article(u"7"_s, u"Blumen"_s, 10,
                 {{u"PreisAngabe"_s, true}, {u"VKPreis2"_s, Currency::fromDouble(8)}});
    screen.expect(till::Dialog::PreisAngabe, [] {
        EXPECT_EQ(Currency::fromDouble(10), gArtikel.VKPreis);
        EXPECT_EQ(0, gArtikel.Ergebnis);
    });
    scan(u"7"_s);
    refused();
    const auto twelve = [] {
        gArtikel.VKPreis = Currency::fromDouble(12);
        gArtikel.Ergebnis = 1;
    };
    screen.expect(till::Dialog::PreisAngabe, twelve);
    scan(u"7"_s);
    EXPECT_EQ(u"12,00"_s, reg->basket().Gesamt());
    gKunde.PreisGruppe = 1; // a group with a price of its own does not follow
    screen.expect(till::Dialog::PreisAngabe, twelve);
    scan(u"7"_s);
    EXPECT_EQ(u"20,00"_s, reg->basket().Gesamt());
    screen.expect(till::Dialog::PreisAngabe, [] { throw RuntimeError(5, u"kein Fenster"_s); });
    scan(u"7"_s); // a dialog that cannot come up counts as cancelled
    EXPECT_EQ(2, reg->basket().rowCount());
}

TEST_F(Entry, ArticleKeys) {
    shop.insert(u"ShortCutGroup"_s, {{u"GroupNumber"_s, 0}, {u"GroupName"_s, u"Obst"_s}});
    shop.insert(u"ShortCutGroup"_s, {{u"GroupNumber"_s, 1}, {u"GroupName"_s, u"Brot"_s}});
    const auto key = [this](int group, int number, const QString& article) {
        shop.insert(u"ShortCut"_s, {{u"GroupNumber"_s, group},
                                    {u"Number"_s, number},
                                    {u"Name"_s, u"Taste "_s + article},
                                    {u"ArtikelNummer"_s, article}});
    };
    key(0, 0, u"4140000000000"_s);
    key(0, 19, u"99"_s);
    key(1, 0, u"5"_s);
    open();
    EXPECT_EQ(u"Schnellwahltasten - Obst..."_s, reg->keys().title());
    type(u"2*"_s);
    reg->cmdArtikel_Click(0);
    EXPECT_EQ(u"4140000000000|Tageszeitung|2|1 Stück|2,10|4,20"_s, line(0));
    reg->cmdGruppe_Click(1);
    EXPECT_EQ(u"Taste 5"_s, reg->keys().key(0).caption);
    EXPECT_EQ(u"99"_s, reg->keys().key(19).artikelNummer); // of the group before
    type(u"2*"_s);
    reg->cmdArtikel_Click(7); // no number: as an empty entry
    reg->cmdArtikel_Click(20);
    EXPECT_EQ(u"2"_s, reg->Mal());
    key(1, 20, u"5"_s);
    dialogs.expectError(340);
    reg->cmdGruppe_Click(1);
    dialogs.expectError(340);
    reg->cmdGruppe_Click(5);
}

} // namespace
