#include "Paper.h"

#include <page/PageDocument.h>
#include <page/VSPrinter.h>
#include <printing/KassenBericht.h>
#include <printing/Sample.h>
#include <session/Globals.h>
#include <templates/TemplateKeys.h>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;

namespace {

class Bericht : public testing::Test, protected PaperShop {
  protected:
    static QStringList laidOut(const KassenBericht& bericht,
                               const PropertiesList& vorlage = testVorlage(TemplateKind::Closing)) {
        VSPrinter printer;
        RenderKassenBericht(printer, vorlage, bericht);
        return pdfLines(printer.Document().toPdf());
    }
    static KassenBericht interim() {
        KassenBericht bericht;
        bericht.Titel = u"Zwischenbericht"_s;
        bericht.Bearbeiter = u"Jonas Weber"_s;
        bericht.Maschine = u"KASSE-1"_s;
        bericht.Zeitpunkt = {QDate(2026, 11, 22), QTime(18, 5)};
        bericht.StatistikTitel = u"Kundenstatistik:"_s;
        return bericht;
    }
};

TEST_F(Bericht, ADayWithAllWaysOfPayment) {
    KassenBericht bericht = interim();
    bericht.KundenAnzahl = 3;
    bericht.Umsatz = Currency::fromInteger(100);
    bericht.WarenGruppen = {{u"Käse | lose"_s, 1234.5}};
    bericht.Einlage = {{0, 50, 0, 50, {}}};
    bericht.Entnahme = {{0, 20, 0, 20, {}}};
    bericht.Bar = {{7, 100, 7, 107, {}}, {19, 10, 1.9, 11.9, {}}};
    bericht.Karte = {
        {7, 1, 0.07, 1.07, {}}, {7, 2, 0.14, 2.14, u"girocard"_s}, {19, 10, 1.9, 11.9, u"girocard"_s}};
    bericht.Rechnung = {{7, 200, 14, 214, {}}};
    EXPECT_THAT(
        laidOut(bericht),
        ElementsAre(
            u"Zwischenbericht"_s, u"Jonas Weber"_s, u"Kasse: KASSE-1"_s, u"22.11.2026 - 18:05"_s,
            u"Kundenstatistik:"_s, u"Kundenanzahl: 3"_s, u"Durchschnitt VK Preis: 33,33 €"_s,
            u"Warengruppen:"_s, u"Käse | lose 1234,50 €"_s, u"Gesamt 401-Einlage"_s,
            u"0,0% 50,00 € 0,00 € 50,00 €"_s, u"Summe 50,00 € 0,00 € 50,00 €"_s, u"Gesamt 401-Entnahme"_s,
            u"0,0% 20,00 € 0,00 € 20,00 €"_s, u"Summe 20,00 € 0,00 € 20,00 €"_s, u"Gesamt BAR Buchungen"_s,
            u"7,0% 100,00 € 7,00 € 107,00 €"_s, u"19,0% 10,00 € 1,90 € 11,90 €"_s,
            u"Summe 110,00 € 8,90 € 118,90 €"_s, u"Gesamt Kasse"_s, u"Barbuch. 110,00 € 8,90 € 118,90 €"_s,
            u"Einlage 50,00 € 0,00 € 50,00 €"_s, u"Entnahme 20,00 € 0,00 € 20,00 €"_s,
            u"Summe 140,00 € 8,90 € 148,90 €"_s, u"Gesamt KARTE"_s, u"Sonstige Kreditkarte:"_s,
            u"7,0% 1,00 € 0,07 € 1,07 €"_s, u"girocard:"_s, u"7,0% 2,00 € 0,14 € 2,14 €"_s,
            u"19,0% 10,00 € 1,90 € 11,90 €"_s, u"Summe 13,00 € 2,11 € 15,11 €"_s, u"Gesamt Auf Rechnung"_s,
            u"7,0% 200,00 € 14,00 € 214,00 €"_s, u"Summe 200,00 € 14,00 € 214,00 €"_s, u"Gesamtsummen"_s,
            u"Netto Steuer Brutto"_s, u"Barbuch. 110,00 € 8,90 € 118,90 €"_s,
            u"Karte 13,00 € 2,11 € 15,11 €"_s, u"Rechn. 200,00 € 14,00 € 214,00 €"_s,
            u"Einlage 50,00 € 0,00 € 50,00 €"_s, u"Entnahme 20,00 € 0,00 € 20,00 €"_s,
            u"Summe 353,00 € 25,01 € 378,01 €"_s));
}

TEST_F(Bericht, AnEmptyDayAndACountedTill) {
    KassenBericht bericht = interim();
    PropertiesList vorlage = testVorlage(TemplateKind::Closing);
    vorlage.setValue(u"table_warengruppe_visible", false);
    QStringList lines = laidOut(bericht, vorlage);
    EXPECT_THAT(lines, Contains(u"Durchschnitt VK Preis: 0,00 €"_s));
    EXPECT_FALSE(lines.contains(u"Warengruppen:"_s));
    EXPECT_EQ(lines.count(u"Summe 0,00 € 0,00 € 0,00 €"_s), 7);
    EXPECT_TRUE(lines.filter(u"Stornos"_s).isEmpty() && lines.filter(u"Differenz"_s).isEmpty());

    bericht.Stornos = 2;
    bericht.Bar = {{7, 100, 7, 107, {}}};
    bericht.Zaehlung = {Currency::fromDouble(306.5), Currency::fromInteger(200)};
    lines = laidOut(bericht, vorlage);
    EXPECT_THAT(lines, Contains(u"Stornos: 2"_s));
    EXPECT_THAT(lines.mid(lines.indexOf(u"Kassenbestand 306,50 €"_s), 5),
                ElementsAre(u"Kassenbestand 306,50 €"_s, u"davon Wechselgeld 200,00 €"_s, u"Soll 107,00 €"_s,
                            u"Ist 106,50 €"_s, u"Differenz -0,50 €"_s));
}

TEST_F(Bericht, OnlySumsAreRoundedToMoney) {
    KassenBericht bericht = interim();
    bericht.Bar = {{7, 10.00496, 0.70034, 10.7053, {}}, {19, 10.00496, 1.90094, 11.9059, {}}};
    const QStringList lines = laidOut(bericht);
    EXPECT_THAT(lines, Contains(u"7,0% 10,00 € 0,70 € 10,71 €"_s));
    EXPECT_THAT(lines, Contains(u"19,0% 10,00 € 1,90 € 11,91 €"_s));
    EXPECT_THAT(lines, Contains(u"Summe 20,01 € 2,60 € 22,61 €"_s)) << "10,0050 twice";
}

TEST_F(Bericht, SumsAreBoldAndTheCountStandsApart) {
    KassenBericht bericht = interim();
    bericht.Zaehlung = {Currency::fromInteger(300), Currency::fromInteger(200)};
    VSPrinter printer;
    RenderKassenBericht(printer, testVorlage(TemplateKind::Closing), bericht);
    double previous = 0, above = 0, below = 0;
    for (const PageDocument::Item& item : printer.Document().pages[0].items) {
        const auto* text = std::get_if<PageDocument::Text>(&item);
        if (text == nullptr || text->glyphs.isEmpty()) continue;
        const bool bold = text->glyphs[0].rawFont().weight() >= QFont::Bold;
        if (text->text == u"Summe" || text->text == u"Barbuch.") {
            EXPECT_EQ(bold, text->text == u"Summe");
        }
        if (text->text == u"Kassenbestand") above = text->baseline.y() - previous;
        if (text->text == u"davon Wechselgeld") below = text->baseline.y() - previous;
        previous = text->baseline.y();
    }
    EXPECT_GT(above, below * 1.3);
}

TEST_F(Bericht, TheSlipOfAClosing) {
    VSPrinter printer;
    RenderAbschlussBeleg(printer, testVorlage(TemplateKind::Closing), {7, u"Jonas Weber"_s, u"KASSE-1"_s});
    EXPECT_EQ(pdfLines(printer.Document().toPdf()).join(u' '),
              u"Kassenabschlussbeleg Nr.: 7 Jonas Weber Kasse: KASSE-1 Wählen Sie aus der Schnellstartleiste "
              "den Menüpunkt 'Kasse abrechnen' und geben Sie die Kassenabschluss Beleg Nr. ein."_s);
}

TEST(Sample, ShowsEveryKindWithoutAShop) {
    ResetSession();
    const std::pair<TemplateKind, QStringList> kinds[] = {
        {TemplateKind::Form, {u"Gasthof Zur Linde"_s, u"Zwischensumme Netto"_s, u"zzgl. 19,0 % MwSt auf"_s}},
        {TemplateKind::Bon, {u"Naturkost Haselbusch"_s, u"Rabattinfo"_s, u"Enthaltene MwSt"_s}},
        {TemplateKind::Voucher, {u"Beleg - Nr.57"_s, u"Im Wert von: 50,00 €"_s}},
        {TemplateKind::Closing, {u"Warengruppen:"_s, u"Gesamtsummen"_s, u"Differenz"_s}},
        {TemplateKind::Purchase, {u"Getreidemühle"_s, u"Gesamtbetrag"_s}},
    };
    for (const auto& [kind, texts] : kinds) {
        VSPrinter printer;
        RenderSample(printer, testVorlage(kind), kind);
        const QString page = pdfLines(printer.Document().toPdf()).join(u'\n');
        for (const QString& text : texts)
            EXPECT_TRUE(page.contains(text)) << qPrintable(text + u" in\n"_s + page);
        EXPECT_EQ(page.contains(u"MwSt"_s), kind == TemplateKind::Form || kind == TemplateKind::Bon);
    }
    EXPECT_EQ(gFormatPreis, u""_s) << "a sample changes no setting";
    VSPrinter bare;
    RenderSample(bare, PropertiesList(), TemplateKind::Form); // nothing to lay it out with
    EXPECT_EQ(bare.Document().pageCount(), 1);
}

} // namespace
