#include "Paper.h"

#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/WaitScreen.h>
#include <session/gKunde.h>
#include <support/FixedClock.h>
#include <support/ScriptedDialogs.h>

#include <QBuffer>
#include <QFile>
#include <QThread>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

class Bon : public testing::Test, protected PaperShop {
  protected:
    Bon() { vorlage(u"Kassenbon.pld"_s, TemplateKind::Bon); }
    /// The lines of the only page that this prints.
    QStringList printed(int id) {
        printers.jobs.clear();
        Print_BON(id);
        if (printers.jobs.size() != 1) {
            ADD_FAILURE() << printers.jobs.size() << " documents";
            return {};
        }
        return pdfLines(printers.jobs.front().pdf);
    }
    ScriptedDialogs dialogs;
};

TEST_F(Bon, CashSaleFromTheFirstLineToTheLast) {
    const int id = receipt(14.04, {{u"Betrag_Gegeben"_s, Currency::fromInteger(20)},
                                   {u"Betrag_Zurueck"_s, Currency::fromDouble(5.96)}});
    line(id, u"Äpfel"_s, 1.07, {{u"Buchungs_Menge"_s, 2}});
    line(id, u"Käse | am Stück"_s, 11.9, {{u"SteuerSatz"_s, 19}, {u"VKPreis_Netto"_s, 10}});
    line(receipt(1), u"anderer Bon"_s, 1.07);
    EXPECT_THAT(printed(id),
                ElementsAre(u"Müller & Söhne"_s, u"Am Anger 1"_s, u"Tel. 0123"_s, u"Beleg Nr: 1"_s,
                            u"Bearbeiter: Jonas Weber"_s, u"Datum: 22.11.2026"_s, u"Steuernr.: 12/345"_s,
                            u"Anz Artikelname MwSt G-Preis"_s, u"2 Äpfel (je 1,07) 7,0 2,14 €"_s,
                            u"1 Käse | am Stück 19,0 11,90 €"_s, u"Summe 14,04 €"_s, u"BAR 20,00 €"_s,
                            u"Rückgeld 5,96 €"_s, u"Enthaltene MwSt"_s, u"MwSt Netto"_s,
                            u"7,0 % 0,14 € 2,00 €"_s, u"19,0 % 1,90 € 10,00 €"_s, u"Netto 12,00 €"_s,
                            u"Danke für 14,04 €, zahlbar am 02.12.2026"_s));
    EXPECT_EQ(printers.jobs[0].printer, u"Bondrucker"_s);
    EXPECT_EQ(printers.jobs[0].title, u"Kassenbon"_s);
}

TEST_F(Bon, TextsOfALine) {
    const int id = receipt(1);
    line(id, u"Nüsse"_s, 1, {{u"Menge"_s, 250}, {u"Einheit"_s, u"g"_s}});
    line(id, u"Saft"_s, 1, {{u"Buchungs_Menge"_s, 3}, {u"Menge"_s, 6}, {u"Einheit"_s, u"x"_s}});
    line(id, u"Mehl"_s, 1, {{u"Buchungs_Menge"_s, 0.5}, {u"Menge"_s, 2}, {u"PreisInfo"_s, u" Aktion "_s}});
    line(id, u"Rad"_s, 1,
         {{u"ArtikelNummer"_s, u"4711"_s},
          {u"SNNummer"_s, u"S-9"_s},
          {u"LangText"_s, u"erste\r\nzweite"_s},
          {u"Zusatz1"_s, u"rot"_s},
          {u"Zusatz2"_s, u"28"_s},
          {u"BestellNummer"_s, u"B-5"_s}});
    line(id, u"Erlös"_s, -1,
         {{u"ArtikelNummer"_s, u"401-Gutschein"_s},
          {u"SNNummer"_s, u"12"_s},
          {u"LangText"_s, u"Rest: 20,00 €"_s}});
    EXPECT_THAT(printed(id).mid(8, 9),
                ElementsAre(u"1 Nüsse 250 g 7,0 1,00 €"_s, u"3 Saft 6 x (je 1,00) 7,0 3,00 €"_s,
                            u"0,5 Mehl 7,0 0,50 €"_s, u"Aktion"_s, u"1 Rad 7,0 1,00 €"_s, u"SN: S-9"_s,
                            u"1 Erlös 7,0 -1,00 €"_s, u"Gutschein Nr.: 12"_s, u"Rest: 20,00 €"_s));

    gPrintSpecialBon = gHeron = gPrintZusatzInfo = true;
    vorlage(u"Kassenbon.pld"_s, TemplateKind::Bon,
            [](PropertiesList& list) { list.setValue(u"tabelle_printlangtext", true); });
    const QStringList lines = printed(id);
    const auto rad = lines.indexOf(u"1 Rad rot 7,0 1,00 €"_s);
    ASSERT_GE(rad, 0) << qPrintable(lines.join(u'\n'));
    EXPECT_THAT(lines.mid(rad + 1, 5), ElementsAre(u"ArtNr. 4711"_s, u"Verkäufer Nr: B-5 rot 28"_s,
                                                   u"SN: S-9"_s, u"erste"_s, u"zweite"_s));
    EXPECT_EQ(lines.count(u"Rest: 20,00 €"_s), 1) << "a voucher shows its text once, long texts or not";
}

TEST_F(Bon, WhatBelongsTogetherIsNeverParted) {
    vorlage(u"Kassenbon.pld"_s, TemplateKind::Bon, [](PropertiesList& list) {
        list.setValue(u"tabelle_artikelname_width", 1.7); // "(je 1234567,50)" does not fit
        list.setValue(u"tabelle_gpreis_width", 1.5);
    });
    const int id = receipt(2469135);
    line(id, u"Gut"_s, 1234567.5, {{u"Buchungs_Menge"_s, 2}});
    const QStringList lines = printed(id);
    EXPECT_THAT(lines, Contains(u"(je 1234567,50)"_s)) << qPrintable(lines.join(u'\n'));
    EXPECT_THAT(lines, Contains(u"2 Gut 7,0 2469135,00 €"_s)) << qPrintable(lines.join(u'\n'));
    EXPECT_THAT(lines, Contains(u"Danke für 2469135,00 €, zahlbar am 02.12.2026"_s));
}

TEST_F(Bon, ACustomersAddressMovesTheTable) {
    const int kunde = customer();
    const int id = receipt(1, {{u"KundenNummer"_s, kunde}});
    const int anonymous = receipt(1);
    const QStringList address{u"Kunden Nr: K-77"_s, u"Kunde: Gasthof Linde"_s, u"Strasse: Lindenstraße 17"_s,
                              u"PLZ/Ort: 50667 Köln"_s, u"Kd Rabatt: 5,0 %"_s};
    EXPECT_EQ(printed(id).mid(7, 5), address);
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);

    const auto tableTop = [&] { return ReadPdf(printers.jobs[0].pdf).word(u"Artikelname"_s).area.top(); };
    const double moved = tableTop();
    EXPECT_THAT(printed(anonymous), Not(Contains(u"Kunde: Gasthof Linde"_s)));
    const double plain = tableTop();
    EXPECT_NEAR(moved - plain, 1.5 * 544 / 1440 * 25.4, 0.1);

    vorlage(u"Kassenbon.pld"_s, TemplateKind::Bon,
            [](PropertiesList& list) { list.setValue(u"infofeld_kundennr_visible", false); });
    EXPECT_EQ(printed(id).at(7), u"Kd Rabatt: 5,0 %"_s);
    EXPECT_DOUBLE_EQ(tableTop(), plain) << "without an address the table stays";
}

TEST_F(Bon, ThreeDecimalsCountFromTheNetPrice) {
    gDecimalStellen = 3;
    gFormatPreis = u"###0.000"_s;
    const int id = receipt(3.703);
    line(id, u"Schraube"_s, 1.234, {{u"Buchungs_Menge"_s, 3}, {u"VKPreis_Netto"_s, 1.15344}});
    const QStringList fine = printed(id);
    EXPECT_THAT(fine, Contains(u"3 Schraube (je 1,234) 7,0 3,703 €"_s));
    EXPECT_THAT(fine, Contains(u"Summe 3,703 €"_s));
    EXPECT_THAT(fine, Contains(u"7,0 % 0,242 € 3,460 €"_s));
    gRoundDecimal = true;
    const QStringList rounded = printed(id);
    EXPECT_THAT(rounded, Contains(u"3 Schraube (je 1,234) 7,0 3,70 €"_s));
    EXPECT_THAT(rounded, Contains(u"Summe 3,70 €"_s));
    EXPECT_THAT(rounded, Contains(u"Netto 3,46 €"_s));
}

TEST_F(Bon, DiscountChangeAndZeroTax) {
    const int id = receipt(9, {{u"ZahlArt"_s, u"KARTE"_s}, {u"KartenTyp"_s, u"girocard"_s}});
    line(id, u"Brot"_s, 4.5, {{u"VKPreisOrg"_s, Currency::fromInteger(5)}});
    line(id, u"Pfand"_s, 4.5,
         {{u"VKPreisOrg"_s, Currency::fromDouble(4.5)}, {u"SteuerSatz"_s, 0}, {u"VKPreis_Netto"_s, 4.5}});
    QStringList lines = printed(id);
    EXPECT_THAT(lines, Contains(u"KARTE girocard 9,00 €"_s));
    EXPECT_THAT(lines, Contains(u"Rückgeld 0,00 €"_s));
    EXPECT_THAT(lines, Contains(u"Rabattinfo 0,50 €"_s));
    EXPECT_THAT(lines, Not(Contains(u"0,0 % 0,00 € 4,50 €"_s)));
    EXPECT_THAT(lines, Contains(u"Netto 8,71 €"_s)) << "what is not printed still counts";

    gPrintSteuerNull = true;
    gShowWechselgeldDialog = false;
    // The list price counts once however many were sold, so several pieces can hide a discount.
    const int several = receipt(9);
    line(several, u"Brot"_s, 4.5, {{u"Buchungs_Menge"_s, 2}, {u"VKPreisOrg"_s, Currency::fromInteger(5)}});
    line(id, u"Tüte"_s, 0, {{u"SteuerSatz"_s, 0}, {u"VKPreis_Netto"_s, 0}});
    lines = printed(id);
    EXPECT_THAT(lines, Contains(u"0,0 % 0,00 € 4,50 €"_s));
    EXPECT_THAT(lines, Not(Contains(u"Rückgeld 0,00 €"_s)));
    EXPECT_THAT(printed(several), Not(Contains(u"Rabattinfo 1,00 €"_s)));
}

TEST_F(Bon, ThePrintersOwnFontIsNeverBoldAndTakesNoLogo) {
    QByteArray logo;
    QBuffer buffer(&logo);
    QImage black(40, 40, QImage::Format_Grayscale8);
    black.fill(Qt::black);
    ASSERT_TRUE(black.save(&buffer, "PNG"));
    const int id = receipt(1);
    const auto with = [&](bool printerFont) {
        vorlage(u"Kassenbon.pld"_s, TemplateKind::Bon, [&](PropertiesList& list) {
            list.setValue(u"kopfzeile_logo", logo);
            list.setValue(u"page_useprinterfont", printerFont);
        });
        (void)printed(id);
        return printers.jobs.front().pdf;
    };
    const auto logoAt = [](const QByteArray& pdf) {
        const double unit = 544.0 / 1440 * 50; // a centimetre of the template in pixels
        return qGray(PdfImage(pdf, 0, 50).pixel(qRound(15 * unit) + 5, qRound(unit) + 5));
    };
    const QByteArray drawn = with(false), byPrinter = with(true);
    EXPECT_LT(logoAt(drawn), 50);
    EXPECT_GT(logoAt(byPrinter), 200);
    EXPECT_TRUE(PdfFonts(drawn).join(u'\n').contains(u"Bold"_s));
    EXPECT_FALSE(PdfFonts(byPrinter).join(u'\n').contains(u"Bold"_s));
}

TEST_F(Bon, CopiesAndTheCustomerOfTheSession) {
    const int id = receipt(1, {{u"KundenNummer"_s, customer()}});
    for (const int copies : {2, 1, 0, -1}) {
        printers.jobs.clear();
        gDruckerKopies = copies;
        gKunde.Name_1 = u"Meier"_s;
        Print_BON(id);
        EXPECT_EQ(printers.jobs.size(), std::size_t(std::max(copies, 0)));
        EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
    }
}

TEST_F(Bon, VeryManyCopiesAreAskedAbout) {
    const int id = receipt(1);
    struct Case {
        int copies;
        MsgAnswer answer;
        std::size_t printed;
    };
    for (const Case& c : {Case{20, MsgAnswer::OK, 20}, Case{21, MsgAnswer::Yes, 21},
                          Case{21, MsgAnswer::No, 1}, Case{1'000'000'000, MsgAnswer::No, 1}}) {
        printers.jobs.clear();
        gDruckerKopies = c.copies;
        if (c.answer != MsgAnswer::OK)
            dialogs.expectMsgBox(
                u"Eingestellt sind %1 Kopien.\n\n...*"_s.arg(c.copies == 21 ? u"21"_s : u"1.000.000.000"_s),
                MsgIcon::Question, c.answer);
        Print_BON(id);
        dialogs.verify();
        EXPECT_EQ(printers.jobs.size(), c.printed);
    }
}

TEST_F(Bon, PrintingEndsBetweenTwoCopiesWhenThePersonWishesIt) {
    class Cashier : public WaitScreen {
      public:
        void Begin(const QString&, const QString& text) override { told << text; }
        void Show(const QString& text) override { told << text; }
        bool TakeCancel() override { return told.size() == 2; }
        void End() override { ++ended; }
        QStringList told;
        int ended = 0;
    } cashier;
    WaitScreen* waitBefore = SetWaitScreen(&cashier);
    const int id = receipt(1);
    gDruckerKopies = 15;
    int taken = 0;
    const PrintSpooler before =
        SetPrintSpooler([&](const QString&, const QString&, const QByteArray&, QSizeF) {
            ++taken;
            QThread::msleep(700);
        });
    dialogs.expectMsgBox(
        u"Der Druck wurde nach 4 von 15 Kopien abgebrochen. Die Buchung bleibt davon unberührt."_s);
    Print_BON(id);
    SetPrintSpooler(before);
    SetWaitScreen(waitBefore);
    EXPECT_EQ(taken, 4);
    EXPECT_TRUE(cashier.told.value(0).startsWith(u"Kopie 4 von 15 wird gedruckt."_s)) << "after two seconds";
    EXPECT_EQ(cashier.ended, 1);
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
}

TEST_F(Bon, WhatIsMissingIsTold) {
    const int id = receipt(1);
    gKunde.Name_1 = u"Meier"_s;
    dialogs.expectMsgBox(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden."_s,
                         MsgIcon::Critical, MsgAnswer::OK, u"Systemmeldung..."_s);
    Print_BON(4711);
    const QString noTemplate =
        u"Der Bon kann nicht gedruckt werden, da das System die Druckvorlage für den Kassenbon nicht finden konnte."_s;
    QFile file(shop.folder() + u"Kassenbon.pld"_s);
    ASSERT_TRUE(file.resize(file.size() / 2));
    dialogs.expectMsgBox(noTemplate, MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
    Print_BON(id);
    ASSERT_TRUE(file.remove());
    dialogs.expectMsgBox(noTemplate, MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
    Print_BON(id);
    EXPECT_TRUE(printers.jobs.empty());
    EXPECT_EQ(gKunde.Name_1, u"Meier"_s);
}

TEST_F(Bon, APrinterThatIsGoneLeavesTheBookingForAReprint) {
    const int id = receipt(1);
    line(id, u"Brot"_s, 1);
    printers.present = {u"Laser"_s};
    dialogs.expectError(482);
    Print_BON(id);
    EXPECT_TRUE(printers.jobs.empty());
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), 1);

    // A queue that refuses the second copy.
    printers.present = {u"Bondrucker"_s};
    gDruckerKopies = 2;
    int taken = 0;
    const PrintSpooler before =
        SetPrintSpooler([&](const QString&, const QString&, const QByteArray&, QSizeF) {
            if (++taken == 2) throw RuntimeError(482, u"Druckerfehler: Papierstau"_s);
        });
    dialogs.expectError(482);
    Print_BON(id);
    SetPrintSpooler(before);
    EXPECT_EQ(taken, 2);

    gDruckerKopies = 1;
    EXPECT_THAT(printed(id), Contains(u"1 Brot 7,0 1,00 €"_s));
}

TEST_F(Bon, ALongReceiptGoesOnWithTheHeadOfItsTable) {
    const int id = receipt(120);
    for (int i = 1; i <= 120; ++i)
        line(id, u"Artikel %1"_s.arg(i), 1);
    const QStringList lines = printed(id);
    const auto pages = ReadPdf(printers.jobs[0].pdf).sizes.size();
    EXPECT_GT(pages, 2U);
    EXPECT_EQ(lines.count(u"Anz Artikelname MwSt G-Preis"_s), qsizetype(pages));
    QStringList rows = lines.filter(u"Artikel "_s);
    EXPECT_EQ(rows.size(), 120);
    EXPECT_EQ(rows.last(), u"1 Artikel 120 7,0 1,00 €"_s);
}

class Gutschein : public testing::Test, protected PaperShop {
  protected:
    ScriptedDialogs dialogs;
    FixedClock clock;
};

TEST_F(Gutschein, ShowsNumberNameAndValue) {
    vorlage(u"Gutschein.pld"_s, TemplateKind::Voucher);
    gDruckerKopies = 3; // of receipts
    gKunde.Name_1 = u"Meier"_s;
    Print_Gutschein(57, u"Für Äpfel & Birnen"_s, Currency::fromDouble(1250.5));
    ASSERT_EQ(printers.jobs.size(), 1U);
    EXPECT_EQ(printers.jobs[0].printer, u"Bondrucker"_s);
    EXPECT_THAT(pdfLines(printers.jobs[0].pdf),
                ElementsAre(u"Müller & Söhne"_s, u"Am Anger 1"_s, u"Tel. 0123"_s, u"Beleg Nr: 57"_s,
                            u"Bearbeiter: Jonas Weber"_s, u"Datum: 22.11.2026"_s, u"Steuernr.: 12/345"_s,
                            u"Beleg - Nr.57"_s, u"Für Äpfel & Birnen"_s, u"Im Wert von: 1250,50 €"_s,
                            u"Danke für 1250,50 €, zahlbar am 02.12.2026"_s));
    EXPECT_EQ(gKunde.Name_1, u"Meier"_s) << "the sale goes on with its customer";
}

TEST_F(Gutschein, AMissingTemplateIsTold) {
    dialogs.expectMsgBox(
        u"Der Gutschein kann nicht gedruckt werden, da das System die Druckvorlage nicht finden oder öffnen konnte."_s,
        MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
    Print_Gutschein(57, u"Äpfel"_s, Currency::fromInteger(1));
    EXPECT_TRUE(printers.jobs.empty());
}

} // namespace
