#include "Till.h"

// The list, its total, and what follows the selected line.

namespace {

class BasketTest : public Till {
  protected:
    BasketTest() {
        shop.article(u"1"_s, u"Tee"_s, 9.99,
                     {{u"SteuerSatz"_s, 19},
                      {u"LagerAktiv"_s, true},
                      {u"IstBestand"_s, 10},
                      {u"SollBestand"_s, 7},
                      {u"EKPreis"_s, Currency::fromDouble(4)}});
        shop.article(u"2"_s, u"Buch"_s, 20);
    }
    [[nodiscard]] till::StockLabel stock() { return reg->basket().Bestand(); }
};

TEST_F(BasketTest, ThirdDecimalMayDifferAfterAReload) {
    gDecimalStellen = 3;
    gFormatPreis = u"###0.000"_s;
    type(u"1000*"_s);
    scan(u"1"_s);
    EXPECT_EQ(u"9990,000"_s, reg->basket().Gesamt());
    reg->LoadBestellungen();
    EXPECT_EQ(u"1|Tee|1000|1 Stück|9,990|9990,050"_s, line(0));
    EXPECT_EQ(u"9990,050"_s, reg->basket().Gesamt()); // the total is what the list shows
    reg->cmdPlus_Click();
    EXPECT_EQ(u"9999,990"_s, reg->basket().Gesamt());
}

TEST_F(BasketTest, TotalSumsTheRoundedLines) {
    shop.article(u"3"_s, u"Klammer"_s, 0.005);
    scan(u"3"_s);
    scan(u"3"_s);
    EXPECT_EQ(u"0,01"_s, reg->basket().cell(0, till::Basket::GPreis));
    EXPECT_EQ(u"0,02"_s, reg->basket().Gesamt());
    gDecimalStellen = 0;
    gFormatPreis = u"###0."_s;
    reg->LoadBestellungen();
    scan(u"2"_s);
    EXPECT_EQ(u"20,"_s, reg->basket().Gesamt());
}

TEST_F(BasketTest, TakeBackArticleEntersWithNegativePrices) {
    writeFile(u"artikel.ini"_s, "[GLOBAL]\r\n1=1\r\n2=0\r\n");
    scan(u"1"_s);
    scan(u"2"_s);
    EXPECT_EQ((QStringList{u"4|-9,99|-9,99"_s, u"0|20|20"_s}),
              shop.rows(u"SELECT EKPreis, VKPreis, VKPreis_Rabatt FROM Bestellung ORDER BY ID"_s));
    EXPECT_EQ(u"10,01"_s, reg->basket().Gesamt());
}

TEST_F(BasketTest, PriceNoteOfVolumeArticles) {
    shop.article(u"4"_s, u"Nüsse"_s, 12.99, {{u"VolumenAngabe"_s, true}, {u"Einheit"_s, u"kg"_s}});
    const auto asItIs = [] { gArtikel.Ergebnis = 1; };
    screen.expect(till::Dialog::VolumenAngabe, asItIs);
    scan(u"4"_s);
    scan(u"2"_s);
    EXPECT_EQ((QStringList{u"1 kg=12,99"_s, u""_s}),
              shop.rows(u"SELECT PreisInfo FROM Bestellung ORDER BY ID"_s));
    shop.article(
        u"5"_s, u"Safran"_s, 9e13,
        {{u"VolumenAngabe"_s, true}, {u"Menge"_s, 0.12345678901234}, {u"Einheit"_s, QString(20, u'g')}});
    screen.expect(till::Dialog::VolumenAngabe, asItIs);
    scan(u"5"_s);
    EXPECT_EQ(u"0,12345678901234 gggggggggggggggggggg=900000000000"_s,
              shop.value(u"SELECT PreisInfo FROM Bestellung ORDER BY ID DESC"_s).toText());
}

TEST_F(BasketTest, StockLabelOfTheSelectedLine) {
    EXPECT_FALSE(stock().visible);
    type(u"3*"_s);
    scan(u"1"_s);
    EXPECT_EQ((till::StockLabel{u" aktueller Bestand: 7 Stück"_s, false, true}), stock());
    shop.db().Execute(u"INSERT INTO Bestellung (Maschine, ArtikelNummer, Buchungs_Menge, Menge) "
                      u"VALUES ('KASSE-2', '1', 4, 0.5)"_s);
    scan(u"1"_s); // the figure counts all tills, the colour this line alone
    EXPECT_EQ((till::StockLabel{u" aktueller Bestand: 4 Stück"_s, false, true}), stock());
    type(u"3+"_s);
    EXPECT_EQ((till::StockLabel{u" aktueller Bestand: 1 Stück"_s, true, true}), stock());
    scan(u"2"_s);
    EXPECT_EQ((till::StockLabel{u" keine Lagerhaltung..."_s, false, true}), stock());
    gShowLagerBestand = false;
    reg->ItemClick(0);
    EXPECT_FALSE(stock().visible);
}

TEST_F(BasketTest, PictureNameAndBasePriceOfTheSelectedLine) {
    writeFile(u"artimg_2.bmp"_s, "BM");
    shop.article(u"77"_s, u"Bergkäse"_s, 7.49, {{u"Menge"_s, 0.312}, {u"Einheit"_s, u"kg"_s}});
    scan(u"77"_s);
    EXPECT_EQ((till::ArticlePicture{{}, u"Kein Artikelbild verfügbar"_s, u"Bergkäse"_s, u"24,01 € / kg"_s}),
              reg->basket().Bild());
    scan(u"2"_s);
    EXPECT_EQ(shop.folder() + u"artimg_2.bmp"_s, reg->basket().Bild().file);
    EXPECT_EQ(QString(), reg->basket().Bild().caption);
    EXPECT_EQ(shop.folder() + u"artimg_2.bmp"_s, gArtikel.Bild);
    reg->cmdStorno_Click();
    reg->cmdStorno_Click();
    EXPECT_EQ(till::ArticlePicture{}, reg->basket().Bild());
}

TEST_F(BasketTest, LineDeletedByAnotherTill) {
    scan(u"1"_s);
    scan(u"2"_s);
    shop.db().Execute(u"DELETE FROM Bestellung WHERE ArtikelNummer='1'"_s);
    dialogs.expectMsgBox(u"Das System konnte die angeforderten Daten nicht finden. Wahrscheinlich wurden "
                         u"diese durch einen anderen "
                         u"Benutzer gelöscht, oder es liegt ein Datenbankproblem vor."_s,
                         MsgIcon::Critical);
    reg->MoveSelection(-1);
    EXPECT_EQ(QStringList{u"2|Buch|1|1 Stück|20,00|20,00"_s}, list());
    EXPECT_EQ(u"20,00"_s, reg->basket().Gesamt());
}

TEST_F(BasketTest, FailedLineLeavesNothing) {
    scan(u"2"_s);
    gArtikel.Nummer = QString(31, u'9');
    dialogs.expectError(3163);
    EXPECT_FALSE(reg->AddArtikelToBestellung());
    EXPECT_EQ(1, shop.count(u"Bestellung"_s));
    EXPECT_EQ(1, reg->basket().rowCount());
    EXPECT_EQ(u"20,00"_s, reg->basket().Gesamt());
    type(u"2147483647*"_s);
    gFormatPreis = u"0.00"_s;
    shop.article(u"6"_s, u"Gold"_s, 9e8); // the amount of the line leaves the range of money
    dialogs.expectMsgBox(u"Eine Menge von 2147483647...*"_s, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectError(6);
    scan(u"6"_s);
    EXPECT_EQ(1, shop.count(u"Bestellung"_s));
    scan(u"2"_s);
    EXPECT_EQ(u"40,00"_s, reg->basket().Gesamt());
}

TEST_F(BasketTest, SelectionStopsAtTheEnds) {
    QList<int> selected;
    QObject::connect(&reg->basket(), &till::Basket::SelectedChanged, [&](int row) { selected << row; });
    reg->MoveSelection(1);
    scan(u"1"_s);
    scan(u"2"_s);
    reg->MoveSelection(1);
    reg->MoveSelection(-1);
    reg->MoveSelection(-1);
    reg->ItemClick(9);
    EXPECT_EQ((QList<int>{0, 1, 0}), selected);
}

TEST_F(BasketTest, LoadSurvivesWhatIsMissing) {
    QFile::remove(shop.folder() + u"karten.txt"_s);
    shop.insert(u"ShortCutGroup"_s, {{u"GroupNumber"_s, 9}, {u"GroupName"_s, u"Neun"_s}});
    scan(u"2"_s);
    dialogs.expectError(53);
    dialogs.expectError(340);
    open();
    EXPECT_EQ(1, reg->basket().rowCount()); // the open sale is there all the same
}

} // namespace
