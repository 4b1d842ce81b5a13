#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/WaitScreen.h>
#include <session/gKunde.h>
#include <support/Pty.h>
#include <support/ScriptedDialogs.h>
#include <support/TempShop.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray rule = QByteArray(40, '-') + "\r\n";
const QByteArray tableHead = "Anz Artikelname             Ust  Gesamt \r\n" + rule;
const QByteArray taxHead = "Enthaltene Ust                          \r\n";
const QByteArray foot("\x1B\x61\x01\r\nVielen Dank fuer Ihren Einkauf\r\n\x1B\x64\x0D\x1B\x56\x42\x00", 44);

class BonDirect : public testing::Test {
  protected:
    BonDirect() {
        gPrintDirectIOPort = 1;
        gDruckerKopies = 1;
        gKopf1 = u"Hofladen"_s;
        gUSt = u"12/345/67890"_s;
        gShowWechselgeldDialog = true;
        plug(m_printer);
    }
    void plug(const Pty& printer) { m_shop.setIni(u"PORTS"_s, u"COM1"_s, printer.name()); }

    int receipt(double total, double given, double back, const QString& kind = u"BAR"_s,
                const QString& card = {}, int customer = 0) {
        return m_shop.insert(u"Rechnung"_s, {{u"Datum"_s, DateTime::fromQDate(QDate(2026, 11, 22))},
                                             {u"KundenNummer"_s, customer},
                                             {u"ZahlArt"_s, kind},
                                             {u"KartenTyp"_s, card},
                                             {u"Betrag_Gesamt"_s, Currency::fromDouble(total)},
                                             {u"Betrag_Gegeben"_s, Currency::fromDouble(given)},
                                             {u"Betrag_Zurueck"_s, Currency::fromDouble(back)}});
    }
    void line(int receipt, double count, const QString& name, double tax, double net, double gross) {
        m_shop.insert(u"RechnungsDetail"_s, {{u"RechnungID"_s, receipt},
                                             {u"Buchungs_Menge"_s, count},
                                             {u"ArtikelName"_s, name},
                                             {u"SteuerSatz"_s, tax},
                                             {u"VKPreis_Netto"_s, net},
                                             {u"VKPreis_Brutto"_s, Currency::fromDouble(gross)}});
    }
    /// From the reset of the printer to the table, with one header line.
    static QByteArray head(int id, const QByteArray& header = "Hofladen\r\n") {
        return "\x1B\x40\r\n\x1B\x61\x01\r\n\x1B\x21\x01\r\n" + header + QByteArray("\x1B\x61\x00\r\n", 5) +
               "Beleg-Nr:  " + QByteArray::number(id) +
               "\r\nDatum:     22.11.2026\r\nSteuernr.: 12/345/67890\n\n" + tableHead;
    }
    void expectPrinted(int id, const QByteArray& expected) {
        Print_BON_Direct(id);
        EXPECT_EQ(m_printer.received(expected.size()).toStdString(), expected.toStdString());
    }

    TempShop m_shop;
    ScriptedDialogs m_dialogs;
    Pty m_printer;
};

} // namespace

TEST_F(BonDirect, CashSale) {
    gKopf2 = u"Müller & Söhne"_s;
    gKopf3 = u"   "_s;
    gKopf4 = u"Preise in € / zł"_s;
    gKopf5 = u"Tel. 0123"_s;
    const int id = receipt(14.04, 20, 5.96);
    line(id, 2, u"Äpfel"_s, 7, 1, 1.07);
    line(id, 1, u"Käse am Stück aus dem Allgäu"_s, 19, 10, 11.9);
    line(receipt(1, 1, 0), 1, u"anderer Bon"_s, 7, 1, 1.07);
    expectPrinted(id, head(id, "Hofladen\r\nM\xFCller & S\xF6hne\r\nPreise in \x80 / z?\r\nTel. 0123\n") +
                          "2   \xC4pfel                   7,0  2,14   \r\n"
                          "1   K\xE4se am St\xFC"
                          "ck aus dem A 19,0 11,90  \r\n" +
                          rule +
                          "Summe                            14,04  \r\n"
                          "BAR                              20,00  \r\n"
                          "Rueckgeld                        5,96   \n\r\n" +
                          taxHead +
                          "7,0               0,14           2,00   \r\n"
                          "19,0              1,90           10,00  \r\n"
                          "Netto                            12,00  \r\n" +
                          foot);
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
}

TEST_F(BonDirect, CardWithoutChangeLineAndOverflowingFields) {
    gShowWechselgeldDialog = false;
    const int id = receipt(1234.56, 1234.56, 0, u"KARTE"_s, u"American Express"_s);
    line(id, 1000.5, u"Nüsse lose, das Kilo zu zweit"_s, 7, 1.1531, 1.2339);
    line(id, -1, u"Leergut"_s, 7, 0.1, 0.107);
    const double total = 1.1531 * 1000.5 * 1.07;
    ASSERT_GT(total, 1234.0); // eight characters
    expectPrinted(id, head(id) +
                          "1000N\xFCsse lose, das Kilo zu 7,0  1.234,4\r\n"
                          "-1  Leergut                 7,0  -0,11  \r\n" +
                          rule +
                          "Summe                            1.234,5\r\n"
                          "KARTEAmerican Express            1.234,5\r\n" +
                          taxHead +
                          "7,0               80,83          1.153,5\r\n"
                          "Netto                            1.153,5\r\n" +
                          foot);
}

TEST_F(BonDirect, AZeroRateCountsInTheNetSumPrintedOrNot) {
    const int id = receipt(3, 3, 0);
    line(id, 1, u"Pfand"_s, 0, 2, 2);
    line(id, 1, u"Brot"_s, 7, 0.9346, 1);
    const QByteArray before = head(id) +
                              "1   Pfand                   0,0  2,00   \r\n"
                              "1   Brot                    7,0  1,00   \r\n" +
                              rule +
                              "Summe                            3,00   \r\n"
                              "BAR                              3,00   \r\n"
                              "Rueckgeld                        0,00   \n\r\n" +
                              taxHead;
    const QByteArray after = "7,0               0,07           0,93   \r\n"
                             "Netto                            2,93   \r\n" +
                             foot;
    expectPrinted(id, before + after);
    gPrintSteuerNull = true;
    expectPrinted(id, before + "0,0               0,00           2,00   \r\n" + after);
}

TEST_F(BonDirect, CopiesAndAnEmptyReceipt) {
    const int id = receipt(0, 0, 0);
    const QByteArray once = head(id) + rule +
                            "Summe                            0,00   \r\n"
                            "BAR                              0,00   \r\n"
                            "Rueckgeld                        0,00   \n\r\n" +
                            taxHead + "Netto                            0,00   \r\n" + foot;
    gDruckerKopies = 2;
    expectPrinted(id, once + once);
    for (const int none : {0, -1}) {
        gDruckerKopies = none;
        gKunde.Name_1 = u"Meier"_s;
        expectPrinted(id, "");
        EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
    }
}

TEST_F(BonDirect, TheCustomerOfTheReceiptStaysWhenPrintingFails) {
    const int customer = m_shop.insert(u"Kunden"_s, {{u"KundenNummer"_s, u"K-77"_s},
                                                     {u"Name_1"_s, u"Gasthof Linde"_s},
                                                     {u"Ort"_s, u"Köln"_s},
                                                     {u"Rabatt"_s, 12.5},
                                                     {u"EKPreis"_s, true},
                                                     {u"PreisGruppe"_s, 2}});
    const int id = receipt(1, 1, 0, u"BAR"_s, {}, customer);
    m_shop.setIni(u"PORTS"_s, u"COM1"_s, u"/dev/no-such-printer"_s);
    m_dialogs.expectError(68);
    Print_BON_Direct(id);
    EXPECT_EQ(gKunde.KundenID, customer);
    EXPECT_EQ(gKunde.KundenNummer, u"K-77"_s);
    EXPECT_EQ(gKunde.Name_1, u"Gasthof Linde"_s);
    EXPECT_EQ(gKunde.Ort, u"Köln"_s);
    EXPECT_EQ(gKunde.Rabatt, 12);
    EXPECT_TRUE(gKunde.EKPreis);
    EXPECT_EQ(gKunde.PreisGruppe, 2);

    gPrintDirectIOPort = 0;
    m_dialogs.expectError(52);
    Print_BON_Direct(receipt(1, 1, 0));
    EXPECT_EQ(gKunde.Name_1, u""_s) << "a receipt without a customer clears the record";
    EXPECT_EQ(gKunde.KundenNummer, u"0"_s);
    EXPECT_EQ(gKunde.PreisGruppe, 0);

    // The printer is pulled out in the middle; the next receipt goes through again.
    Pty pulled(100);
    plug(pulled);
    gPrintDirectIOPort = 1;
    gKopf1 = QString(300000, u'x'); // more than the line holds, so that it breaks in the middle
    m_dialogs.expectError(57);
    Print_BON_Direct(id);
    m_dialogs.verify();
    plug(m_printer);
    gKopf1 = u"Hofladen"_s;
    Print_BON_Direct(id);
    EXPECT_TRUE(m_printer.received(300).endsWith(foot));
    EXPECT_EQ(m_shop.count(u"Rechnung"_s), 2) << "a booking stands whatever the printer does";
}

TEST_F(BonDirect, CancellingTheWaitForThePrinterEndsAllCopies) {
    class Impatient : public WaitScreen {
      public:
        void Begin(const QString&, const QString&) override { ++waits; }
        void Show(const QString&) override {}
        bool TakeCancel() override { return true; }
        void End() override {}
        int waits = 0;
    } cashier;
    WaitScreen* before = SetWaitScreen(&cashier);
    gBonWartezeit = 30;
    gDruckerKopies = 3;
    gKopf1 = QString(200'000, u'x'); // more than a line holds
    m_printer.hold();
    m_dialogs.expectMsgBox(u"Der Druck wurde abgebrochen. Die Buchung bleibt davon unberührt."_s);
    Print_BON_Direct(receipt(1, 1, 0));
    EXPECT_EQ(cashier.waits, 1);
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
    SetWaitScreen(before);
}

TEST_F(BonDirect, AReceiptThatIsNotThereIsTold) {
    gKunde.Name_1 = u"Meier"_s;
    m_dialogs.expectMsgBox(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden."_s,
                           MsgIcon::Critical, MsgAnswer::OK, u"Systemmeldung..."_s);
    Print_BON_Direct(4711);
    EXPECT_EQ(gKunde.Name_1, u"Meier"_s);
    EXPECT_EQ(m_printer.received(0), "");
}

TEST_F(BonDirect, RoutesOfAReceipt) {
    const QString noBon =
        u"Der Bon kann nicht gedruckt werden, da das System die Druckvorlage für den Kassenbon nicht finden konnte."_s;
    const QString noForm =
        u"Das Formular kann nicht gedruckt werden, da das System die dafür nötige Druckvorlage nicht finden, oder öffnen konnte."_s;
    const int id = receipt(1, 1, 0);
    enum Ends { Nothing, Bytes, NoBon, NoForm };
    const struct {
        int mode;
        int chosen; ///< in the dialog
        bool direct;
        BelegArt art;
        Ends ends;
    } cases[] = {
        {0, 9, true, BelegArt::Kasse, Nothing},  {1, 9, true, BelegArt::Kasse, NoBon},
        {2, 9, true, BelegArt::Kasse, NoForm},   {3, 0, true, BelegArt::Kasse, Nothing},
        {3, 1, true, BelegArt::Kasse, Bytes},    {3, 1, false, BelegArt::Kasse, NoBon},
        {3, 2, true, BelegArt::Kasse, NoForm},   {3, 1, true, BelegArt::Karte, NoBon},
        {1, 9, true, BelegArt::Karte, NoBon},    {3, 2, true, BelegArt::Karte, NoForm},
        {3, 0, false, BelegArt::Karte, Nothing}, {7, 9, true, BelegArt::Kasse, Nothing},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << "mode " << c.mode << ", chosen " << c.chosen << ", direct " << c.direct);
        gPrintMode = c.mode;
        gPrintDirectIO = c.direct;
        if (c.ends == NoBon)
            m_dialogs.expectMsgBox(noBon, MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
        if (c.ends == NoForm)
            m_dialogs.expectMsgBox(noForm, MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
        int shown = 0;
        const auto choose = [&] {
            ++shown;
            gPrintMode = c.chosen;
        };
        PrintBeleg(id, c.art, {.ShowPrintDlg = choose});
        m_dialogs.verify();
        EXPECT_EQ(shown, c.mode == 3 ? 1 : 0);
        EXPECT_EQ(gPrintMode, c.mode);
        EXPECT_EQ(m_printer.received(c.ends == Bytes ? 300 : 0).isEmpty(), c.ends != Bytes);
    }
    // A dialog that fails prints nothing and leaves the mode as it was.
    gPrintMode = 3;
    m_dialogs.expectError(5);
    const auto fail = [] {
        gPrintMode = 1;
        RaiseInvalidCall();
    };
    PrintBeleg(id, BelegArt::Kasse, {.ShowPrintDlg = fail});
    EXPECT_EQ(gPrintMode, 3);
}
