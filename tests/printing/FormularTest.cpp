#include "Paper.h"

#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/gAngaben.h>
#include <session/gKunde.h>
#include <support/ScriptedDialogs.h>

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;

namespace {

const QString noTemplate = u"Das Formular kann nicht gedruckt werden, da das System die dafür nötige "
                           "Druckvorlage nicht finden, oder öffnen konnte."_s;

class Formular : public testing::Test, protected PaperShop {
  protected:
    Formular() { vorlage(u"Rechnung.pld"_s, TemplateKind::Form); }

    QStringList printed(int id, const QString& fileName = u"Rechnung.pld"_s, int kind = 0) {
        printers.jobs.clear();
        Print_Formular(id, fileName, kind, {});
        if (printers.jobs.size() != 1) {
            ADD_FAILURE() << printers.jobs.size() << " documents";
            return {};
        }
        return pdfLines(printers.jobs.front().pdf);
    }
    /// Two pieces at 7 %, one at 19 %: 2,14 + 11,90.
    int invoice(const TempShop::Fields& more = {}) {
        const int id = receipt(14.04, more);
        line(id, u"Äpfel"_s, 1.07, {{u"Buchungs_Menge"_s, 2}, {u"BestellNummer"_s, u"B-1"_s}});
        line(id, u"Käse"_s, 11.9, {{u"SteuerSatz"_s, 19}, {u"VKPreis_Netto"_s, 10}, {u"Menge"_s, 0.5}});
        return id;
    }
    ScriptedDialogs dialogs;
};

TEST_F(Formular, NetInvoiceFromTheFirstLineToTheLast) {
    const QStringList lines = printed(invoice({{u"KundenNummer"_s, customer()}}));
    // The blocks beside each other share lines, so the address and the info block are looked at by
    // themselves.
    EXPECT_THAT(lines.mid(0, 4), ElementsAre(u"Müller & Söhne"_s, u"Am Anger 1"_s, u"Tel. 0123"_s,
                                             u"Hofladen, Am Anger 1, 01235 Erlental"_s));
    const QString beside = lines.mid(4, 12).join(u'\n');
    for (const QString& text :
         {u"Firma"_s, u"Gasthof Linde"_s, u"Küche"_s, u"Lindenstraße 17"_s, u"50667 Köln"_s, u"Österreich"_s,
          u"Beleg Nr: 1"_s, u"Kunden Nr: K-77"_s, u"Kd Rabatt: 5,0 %"_s, u"Bearbeiter: Jonas Weber"_s,
          u"Datum: 22.11.2026"_s, u"Steuernr.: 12/345"_s})
        EXPECT_TRUE(beside.contains(text)) << qPrintable(text + u" in\n"_s + beside);
    const auto title = lines.indexOf(u"Beleg"_s);
    ASSERT_GT(title, 0) << qPrintable(lines.join(u'\n'));
    EXPECT_THAT(lines.mid(title + 1),
                ElementsAre(u"Bestell-Nr Anz Einheit Artikelname Einzelpreis MwSt Gesamtpreis"_s,
                            u"B-1 2 1 Stück Äpfel 1,00 € 7,0 % 2,00 €"_s,
                            u"1 0,5 Stück Käse 10,00 € 19,0 % 10,00 €"_s, u"Zwischensumme Netto 12,00 €"_s,
                            u"Gesamt Netto 12,00 €"_s, u"zzgl. 7,0 % MwSt auf 2,00 € 0,14 €"_s,
                            u"zzgl. 19,0 % MwSt auf 10,00 € 1,90 €"_s, u"Gesamtbetrag 14,04 €"_s,
                            u"Danke für 14,04 €, zahlbar am 02.12.2026"_s));
    EXPECT_EQ(printers.jobs[0].printer, u"Laser"_s);
    EXPECT_EQ(printers.jobs[0].title, u"Rechnung 1"_s);
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
}

TEST_F(Formular, GrossPricesRoundingAndZeroTax) {
    gPrintBruttoToFormular = gPrintSteuerNull = true;
    gFormatPreis = u"###0.000"_s;
    gDecimalStellen = 3;
    const int id = invoice();
    line(id, u"Pfand"_s, 1234.5, {{u"SteuerSatz"_s, 0}, {u"VKPreis_Netto"_s, 1234.5}});
    QStringList lines = printed(id);
    EXPECT_THAT(lines, Contains(u"B-1 2 1 Stück Äpfel 1,070 € 7,0 % 2,140 €"_s));
    EXPECT_THAT(lines, Contains(u"Zwischensumme Brutto 1248,540 €"_s));
    EXPECT_THAT(lines, Contains(u"Gesamt Netto 1246,500 €"_s));
    EXPECT_THAT(lines, Contains(u"zzgl. 0,0 % MwSt auf 1234,500 € 0,000 €"_s));
    gRoundDecimal = true;
    gPrintSteuerNull = false;
    lines = printed(id);
    EXPECT_THAT(lines, Contains(u"Zwischensumme Brutto 1.248,54 €"_s));
    EXPECT_TRUE(lines.filter(u"zzgl. 0,0"_s).isEmpty());
}

TEST_F(Formular, EmptyHeaderLinesKeepTheirPlaceHereAndNotOnReceipts) {
    const int id = invoice();
    vorlage(u"Kassenbon.pld"_s, TemplateKind::Bon);
    // The empty third line stands between these two.
    const auto distance = [&] {
        const PdfPages pages = ReadPdf(printers.jobs.back().pdf);
        const auto inHeader = [&](const QString& text) {
            return std::ranges::find(pages.words, text, &PdfWord::text)->area.top();
        };
        return inHeader(u"Tel."_s) - inHeader(u"Anger"_s);
    };
    (void)printed(id);
    const double onForm = distance();
    Print_BON(id);
    const double onReceipt = distance();
    EXPECT_NEAR(onForm, 2 * onReceipt, 0.1);
}

TEST_F(Formular, AddressOfACustomer) {
    const auto addressOf = [&](int customerId) {
        QStringList lines = printed(invoice({{u"KundenNummer"_s, customerId}}));
        for (QString& text : lines) // beside it stands the info block
            text.remove(
                QRegularExpression(u" ?(Beleg Nr|Kunden Nr|Kd Rabatt|Bearbeiter|Datum|Steuernr\\.):.*"_s));
        lines.removeAll(QString());
        const auto from = lines.indexOf(u"Hofladen, Am Anger 1, 01235 Erlental"_s) + 1;
        return lines.mid(from, lines.indexOf(u"Beleg"_s) - from);
    };
    EXPECT_THAT(addressOf(customer()), ElementsAre(u"Firma"_s, u"Gasthof Linde"_s, u"Küche"_s,
                                                   u"Lindenstraße 17"_s, u"50667 Köln"_s, u"Österreich"_s));
    EXPECT_THAT(
        addressOf(customer({{u"Name_2"_s, u" "_s}})),
        ElementsAre(u"Firma"_s, u"Gasthof Linde"_s, u"Lindenstraße 17"_s, u"50667 Köln"_s, u"Österreich"_s));
    EXPECT_THAT(addressOf(0), ElementsAre());
}

TEST_F(Formular, VehicleOfTheCustomerOnInvoicesOnly) {
    const int kunde = customer();
    shop.insert(u"KundenKFZInfo"_s, {{u"KundenID"_s, kunde}, {u"Kennzeichen"_s, u"K-LI 17"_s}});
    shop.insert(u"KundenKFZInfo"_s, {{u"KundenID"_s, kunde}, {u"Kennzeichen"_s, u"K-LI 18"_s}});
    const int id = invoice({{u"KundenNummer"_s, kunde}});
    const int offer = shop.insert(u"Angebote"_s, {{u"KundenNummer"_s, kunde}});
    vorlage(u"Angebot.pld"_s, TemplateKind::Form);
    EXPECT_TRUE(printed(id).filter(u"Amtl. Kennz."_s).isEmpty());
    gShowKundenKFZInfo = true;
    const QStringList rows = printed(id).filter(u"Amtl. Kennz.:"_s);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_TRUE(rows[0].endsWith(u"Amtl. Kennz.: K-LI 17"_s)) << qPrintable(rows[0]);
    EXPECT_TRUE(printed(offer, u"Angebot.pld"_s, 1).filter(u"Amtl. Kennz."_s).isEmpty());
    EXPECT_EQ(gKunde.Kennzeichen, u""_s);
}

TEST_F(Formular, OffersAndDeliveryNotesHaveTablesOfTheirOwn) {
    gAskSchlussText = true; // of invoices only
    const auto day = DateTime::fromQDate(QDate(2026, 3, 15));
    const int offer = shop.insert(u"Angebote"_s, {{u"Datum"_s, day},
                                                  {u"KundenNummer"_s, customer()},
                                                  {u"Betrag_Gesamt"_s, Currency::fromDouble(2.14)}});
    line(offer, u"Birnen"_s, 1.07, {{u"Buchungs_Menge"_s, 2}}, u"AngebotsDetail"_s, u"AngebotID"_s);
    const int note = shop.insert(u"Lieferung"_s, {{u"Datum"_s, day},
                                                  {u"KundenNummer"_s, 0},
                                                  {u"Betrag_Gesamt"_s, Currency::fromDouble(1.07)},
                                                  {u"Zusatz"_s, u"Abladen an der Rampe\r\nbis 8 Uhr"_s}});
    line(note, u"Pflaumen"_s, 1.07, {}, u"LieferungDetail"_s, u"LieferungID"_s);
    vorlage(u"Angebot.pld"_s, TemplateKind::Form);
    vorlage(u"Lieferschein.pld"_s, TemplateKind::Form);

    QStringList lines = printed(offer, u"Angebot.pld"_s, 1);
    EXPECT_THAT(lines, Contains(u"2 1 Stück Birnen 1,00 € 7,0 % 2,00 €"_s));
    EXPECT_EQ(lines.last(), u"Danke für 2,14 €, zahlbar am 25.03.2026"_s);
    EXPECT_EQ(printers.jobs[0].title, u"Angebot 1"_s);

    lines = printed(note, u"Lieferschein.pld"_s, 2);
    EXPECT_THAT(lines, Contains(u"1 1 Stück Pflaumen 1,00 € 7,0 % 1,00 €"_s));
    EXPECT_THAT(lines.mid(lines.size() - 3), ElementsAre(u"Danke für 1,07 €, zahlbar am 25.03.2026"_s,
                                                         u"Abladen an der Rampe"_s, u"bis 8 Uhr"_s));
}

TEST_F(Formular, LongTextsWrapOverPagesAndTheHeadComesAgain) {
    vorlage(u"Rechnung.pld"_s, TemplateKind::Form,
            [](PropertiesList& list) { list.setValue(u"tabelle_printlangtext", true); });
    const int id = receipt(10);
    QString text;
    for (int i = 1; i <= 40; ++i)
        text += u"Satz %1 über Grünkohl. "_s.arg(i);
    for (int i = 0; i < 4; ++i)
        line(id, u"Buch"_s, 1, {{u"LangText"_s, text}});
    const QStringList lines = printed(id);
    const QStringList pages = PdfText(printers.jobs[0].pdf).split(u'\f');
    EXPECT_GT(pages.size(), 3);
    for (const QString& page : pages)
        EXPECT_EQ(page.contains(u"Satz"_s), page.contains(u"Einzelpreis"_s));
    EXPECT_EQ(lines.filter(u"1 1 Stück Buch"_s).size(), 4);
    EXPECT_EQ(lines.join(u' ').count(u"Satz 40"_s), 4);
}

TEST_F(Formular, ATemplateWithoutTheOrderNumberPrints) {
    const PropertiesList present = testVorlage(TemplateKind::Form);
    PropertiesList lean;
    for (const Property& property : present.properties())
        if (property.key != u"tabelle_bestellnummer_width"_s) lean.insert({}, property);
    ASSERT_TRUE(lean.Save(shop.folder() + u"Rechnung.pld"_s));
    EXPECT_THAT(printed(invoice()), Contains(u"2 1 Stück Äpfel 1,00 € 7,0 % 2,00 €"_s));
}

TEST_F(Formular, TotalsAndClosingTextStayTogether) {
    // From a table that leaves them room to one that leaves none, they are on the last page, and both on it.
    for (int lines = 22; lines <= 28; ++lines) {
        const int id = receipt(lines);
        for (int i = 0; i < lines; ++i)
            line(id, u"Brot"_s, 1);
        (void)printed(id);
        const QString last = PdfText(printers.jobs[0].pdf).trimmed().section(u'\f', -1);
        EXPECT_TRUE(last.contains(u"Zwischensumme"_s) && last.contains(u"Gesamtbetrag"_s) &&
                    last.contains(u"Danke für"_s))
            << lines << " lines, last page:\n"
            << qPrintable(last);
    }
}

TEST_F(Formular, ATemplateThatCannotHoldTheAmountsIsTold) {
    const int id = invoice();
    const auto tell = [&](const QString& fault) {
        dialogs.expectMsgBox(u"Mit der Druckvorlage \"Rechnung.pld\" kann nicht gedruckt werden. "_s + fault,
                             MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
        Print_Formular(id, u"Rechnung.pld"_s, 0, {});
        dialogs.verify();
    };
    vorlage(u"Rechnung.pld"_s, TemplateKind::Voucher);
    tell(u"Es fehlt \"tabelle_gpreis_width\" (Breite Gesamtpreis)."_s);
    vorlage(u"Rechnung.pld"_s, TemplateKind::Form,
            [](PropertiesList& list) { list.setValue(u"tabelle_epreis_width", 9.0); });
    tell(u"Über das Papier hinaus reicht \"tabelle_epreis_width\" (Breite Einzelpreis)."_s);
    EXPECT_TRUE(printers.jobs.empty());
}

class SchlussText : public Formular {
  protected:
    SchlussText() { gAskSchlussText = true; }
    /// Prints while the dialog answers one after the other; true when all were asked for.
    bool print(int id, std::vector<VorlagenAuswahl> answers) {
        printers.jobs.clear();
        gDruckerKopies = 3;
        std::size_t asked = 0;
        Print_Formular(id, u"Rechnung.pld"_s, 0,
                       {.ShowRechnungsVorlage = [&] { gVorlagenAuswahl = answers.at(asked++); }});
        return asked == answers.size();
    }
    [[nodiscard]] QString last(std::size_t job) const { return pdfLines(printers.jobs.at(job).pdf).last(); }
};

TEST_F(SchlussText, IsChosenForEachCopy) {
    const int id = invoice();
    ASSERT_TRUE(print(id, {{1, u"nicht dies"_s}, {2, u"Bitte [SUMME] bis DateAdd[1]"_s}, {2, u""_s}}));
    ASSERT_EQ(printers.jobs.size(), 3U);
    EXPECT_EQ(last(0), u"Danke für 14,04 €, zahlbar am 02.12.2026"_s);
    EXPECT_EQ(last(1), u"Bitte 14,04 € bis 23.11.2026"_s);
    EXPECT_EQ(last(2), u"Gesamtbetrag 14,04 €"_s);
}

TEST_F(SchlussText, CancellingEndsTheDocumentOfThatCopy) {
    const int id = invoice({{u"KundenNummer"_s, customer()}});
    ASSERT_TRUE(print(id, {{1, u""_s}, {0, u""_s}, {2, u"Danke"_s}}));
    ASSERT_EQ(printers.jobs.size(), 2U);
    EXPECT_EQ(last(0), u"Danke für 14,04 €, zahlbar am 02.12.2026"_s);
    EXPECT_EQ(last(1), u"Danke"_s);
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), 2);
}

TEST_F(SchlussText, OfManyCopiesTheRestCanBeGivenUp) {
    const int id = invoice();
    gDruckerKopies = 1'000;
    int asked = 0;
    dialogs.expectMsgBox(u"Eingestellt sind 1.000 Kopien....*"_s, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectMsgBox(u"Sollen die übrigen 999 Kopien noch gedruckt werden?"_s, MsgIcon::Question,
                         MsgAnswer::Yes);
    dialogs.expectMsgBox(u"Sollen die übrigen 997 Kopien noch gedruckt werden?"_s, MsgIcon::Question,
                         MsgAnswer::No);
    Print_Formular(id, u"Rechnung.pld"_s, 0, {.ShowRechnungsVorlage = [&] {
                       gVorlagenAuswahl = {++asked == 2 ? 1 : 0, {}};
                   }});
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(printers.jobs.size(), 1U);
}

TEST_F(Formular, WhatIsMissingIsTold) {
    const int id = invoice();
    const auto tell = [&](const QString& text, MsgIcon icon) {
        dialogs.expectMsgBox(text, icon, MsgAnswer::OK, u"Systemmeldung..."_s);
    };
    tell(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden."_s, MsgIcon::Critical);
    Print_Formular(id, u"Rechnung.pld"_s, 2, {}); // no delivery note has this number
    tell(noTemplate, MsgIcon::Information);
    Print_Formular(id, u"Quittung.pdl"_s, 0, {});
    QFile file(shop.folder() + u"Rechnung.pld"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x89PNG");
    file.close();
    tell(noTemplate, MsgIcon::Information);
    Print_Formular(id, u"Rechnung.pld"_s, 0, {});
    for (const int nonsense : {-1, 3, 4}) {
        dialogs.expectError(5);
        Print_Formular(id, u"Rechnung.pld"_s, nonsense, {});
    }
    EXPECT_TRUE(printers.jobs.empty());
}

TEST_F(Formular, APrinterThatIsGoneLeavesTheBookingForAReprint) {
    const int id = invoice();
    printers.present = {u"Bondrucker"_s};
    dialogs.expectError(482);
    Print_Formular(id, u"Rechnung.pld"_s, 0, {});
    printers.present = {u"Laser"_s};
    EXPECT_THAT(printed(id), Contains(u"Gesamtbetrag 14,04 €"_s));
}

TEST_F(Formular, CopiesOfAForm) {
    const int id = invoice();
    for (const int copies : {0, 2}) {
        printers.jobs.clear();
        gDruckerKopies = copies;
        gKunde.Name_1 = u"Meier"_s;
        Print_Formular(id, u"Rechnung.pld"_s, 0, {});
        EXPECT_EQ(printers.jobs.size(), std::size_t(copies));
        EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
    }
}

} // namespace
