#include "LineText.h"
#include "PageLayout.h"

#include <page/VSPrinter.h>
#include <printing/Layout.h>
#include <session/Globals.h>
#include <templates/PropertiesList.h>
#include <text/Convert.h>
#include <text/Value.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace layout;

namespace {

class FormularLayout {
  public:
    FormularLayout(VSPrinter& printer, const PropertiesList& vorlage, const FormularDaten& formular)
        : m_printer(printer)
        , m_vorlage(vorlage)
        , m_formular(formular)
        , m_bestell(Width(vorlage, u"tabelle_bestellnummer_width"))
        , m_anzahl(Width(vorlage, u"tabelle_anzahl_width"))
        , m_einheit(Width(vorlage, u"tabelle_einheit_width"))
        , m_name(Width(vorlage, u"tabelle_artikelname_width"))
        , m_einzel(Width(vorlage, u"tabelle_epreis_width"))
        , m_steuer(Width(vorlage, u"tabelle_steuer_width"))
        , m_gesamt(Width(vorlage, u"tabelle_gpreis_width")) {}

    void render(const QString& docName, const QString& schlussText) {
        StartDocument(m_printer, m_vorlage, docName);
        header();
        Logo(m_printer, m_vorlage);
        sender();
        address();
        info();
        title();
        lines();
        // A last page with the closing text alone would look like one that came here by mistake.
        m_printer.KeepTogether([&] {
            totals();
            closing(schlussText);
        });
        m_printer.EndDoc();
    }

  private:
    void header() {
        if (!m_vorlage.Flag(u"kopfzeile_visible")) return;
        const int left = Position(m_vorlage, u"kopfzeile_left");
        m_printer.CurrentX(left);
        m_printer.CurrentY(Position(m_vorlage, u"kopfzeile_top"));
        m_printer.Font(m_vorlage.Font(u"kopfzeile_font1"));
        m_printer.Paragraph(FirstHeaderLine(m_formular.Firma));
        m_printer.Font(m_vorlage.Font(u"kopfzeile_font"));
        // An empty line keeps its place, so that the lines stand where the sheet was designed for them.
        for (auto line = m_formular.Firma.Kopf.begin() + 1; line != m_formular.Firma.Kopf.end(); ++line)
            textAt(left, *line);
    }

    void sender() {
        if (!m_vorlage.Flag(u"absenderzeile_visible")) return;
        m_printer.CurrentY(Position(m_vorlage, u"absenderzeile_top"));
        m_printer.Font(m_vorlage.Font(u"absenderzeile_font"));
        m_printer.FontUnderline(m_vorlage.Flag(u"absenderzeile_underline"));
        textAt(Position(m_vorlage, u"absenderzeile_left"), m_vorlage.Text(u"absenderzeile_text"));
        m_printer.FontUnderline(false);
    }

    void address() {
        if (!m_vorlage.Flag(u"adressfenster_visible")) return;
        const int left = Position(m_vorlage, u"adressfenster_left");
        const KundeRecord& kunde = m_formular.Kunde;
        m_printer.CurrentY(Position(m_vorlage, u"adressfenster_top"));
        m_printer.Font(m_vorlage.Font(u"adressfenster_font"));
        textAt(left, kunde.Anrede);
        textAt(left, kunde.Name_1);
        if (!kunde.Name_2.trimmed().isEmpty()) textAt(left, kunde.Name_2);
        textAt(left, kunde.Strasse);
        if (m_vorlage.Flag(u"adressfenster_leerzeile")) textAt(left, {});
        m_printer.FontBold(true);
        textAt(left, kunde.PLZ + u' ' + kunde.Ort);
        textAt(left, kunde.Land);
        m_printer.FontBold(false);
    }

    /// It stands at the right margin, beside the address window.
    void info() {
        m_printer.CurrentY(Position(m_vorlage, u"infofeld_top"));
        m_printer.Font(m_vorlage.Font(u"infofeld_font"));
        m_printer.TextAlign(1);
        InfoBlock block(m_printer, m_vorlage, m_formular);
        block.number();
        if (m_vorlage.Flag(u"infofeld_kundennr_visible")) {
            block.row(u"Kunden Nr:"_s, m_formular.Kunde.KundenNummer);
            if (gShowKundenKFZInfo && m_formular.Art == FormularArt::Rechnung)
                block.row(u"Amtl. Kennz.:"_s, m_formular.Kunde.Kennzeichen);
        }
        if (m_vorlage.Flag(u"infofeld_kundenrabatt_visible"))
            block.row(u"Kd Rabatt:"_s, Percent(m_formular.Kunde.Rabatt));
        block.clerk();
        block.date();
        block.taxNumber();
        m_printer.TextAlign(0);
    }

    void title() {
        m_printer.CurrentY(Position(m_vorlage, u"formulartitel_top"));
        m_printer.Font(m_vorlage.Font(u"formulartitel_font"));
        textAt(Position(m_vorlage, u"formulartitel_left"), m_vorlage.Text(u"formulartitel_text"));
    }

    void lines() {
        const QString format = Columns({{u'<', m_bestell},
                                        {u'<', m_anzahl},
                                        {u'<', m_einheit},
                                        {u'<', m_name},
                                        {u'>', m_einzel},
                                        {u'>', m_steuer},
                                        {u'>', m_gesamt}});
        const bool longText = m_vorlage.Flag(u"tabelle_printlangtext");
        m_printer.CurrentY(Position(m_vorlage, u"tabelle_top"));
        m_printer.Font(m_vorlage.Font(u"tabelle_font"));
        m_printer.StartTable();
        m_printer.FontBold(true);
        m_printer.AddTable(format,
                           Cells({u"Bestell-Nr"_s, u"Anz"_s, u"Einheit"_s, u"Artikelname\n "_s,
                                  u"Einzelpreis"_s, gSteuerText, u"Gesamtpreis"_s}),
                           {});
        m_printer.FontBold(false);
        for (const BelegZeile& zeile : m_formular.Zeilen) {
            const double brutto = zeile.VKPreis_Brutto.toDouble();
            const double preis = gPrintBruttoToFormular ? brutto : zeile.VKPreis_Netto;
            Row(m_printer, format,
                {zeile.BestellNummer, NumberText(zeile.Buchungs_Menge),
                 NumberText(zeile.Menge) + u' ' + zeile.Einheit, FormularText(zeile, longText), amount(preis),
                 Percent(zeile.SteuerSatz), amount(preis * zeile.Buchungs_Menge)});
            m_net += Currency::fromDouble(zeile.VKPreis_Netto * zeile.Buchungs_Menge);
            m_gross += Currency::fromDouble(brutto * zeile.Buchungs_Menge);
        }
        m_printer.EndTable();
    }

    /// They stand below the right half of the table; a line break in both cells keeps label and amount on one
    /// line.
    void totals() {
        if (m_formular.Art != FormularArt::Ankauf) {
            if (gPrintBruttoToFormular)
                total(u" \nZwischensumme Brutto"_s, u" \n"_s + amount(m_gross));
            else
                total(u" \nZwischensumme Netto"_s, u" \n"_s + amount(m_net));
            total(u"Gesamt Netto\n "_s, amount(m_net));
            taxes();
        }
        m_printer.FontBold(true);
        total(u" \nGesamtbetrag"_s, u" \n"_s + amount(m_formular.Betrag_Gesamt));
        m_printer.FontBold(false);
    }

    void total(const QString& label, const QString& value) {
        Row(m_printer,
            Columns({{u'<', indent()}, {u'<', labelWidth() + m_einzel + m_steuer}, {u'>', m_gesamt}}),
            {{}, label, value});
    }

    void taxes() {
        const QString format =
            Columns({{u'<', indent()}, {u'<', labelWidth()}, {u'>', m_einzel + m_steuer}, {u'>', m_gesamt}});
        for (const SteuerZeile& steuer : m_formular.Steuern) {
            if (steuer.SteuerSatz == 0 && !gPrintSteuerNull) continue;
            Row(m_printer, format,
                {{},
                 u"zzgl. "_s + Percent(steuer.SteuerSatz) + u' ' + gSteuerText + u" auf"_s,
                 amount(steuer.Netto),
                 amount(steuer.Steuer)});
        }
    }

    // The labels begin within the name column.
    [[nodiscard]] double labelWidth() const { return std::min(m_name, widestLabel); }
    [[nodiscard]] double indent() const { return m_bestell + m_anzahl + m_einheit + m_name - labelWidth(); }

    void closing(const QString& schlussText) {
        m_printer.Paragraph(u"\n\n"_s);
        m_printer.Font(m_vorlage.Font(u"schlusstext_font"));
        Align(m_printer, m_vorlage.Choice(u"schlusstext_align"));
        m_printer.Paragraph(ClosingText(schlussText, m_formular.Datum, m_formular.Betrag_Gesamt));
        if (m_formular.Art != FormularArt::Rechnung && !m_formular.Zusatz.trimmed().isEmpty())
            m_printer.Paragraph(u"\n\n"_s + m_formular.Zusatz);
    }

    void textAt(int left, const QString& text) {
        m_printer.CurrentX(left);
        m_printer.Paragraph(text);
    }

    static QString amount(const Value& value) { return Amount(value, TotalFormat()); }

    static constexpr double widestLabel = 45; // mm

    VSPrinter& m_printer;
    const PropertiesList& m_vorlage;
    const FormularDaten& m_formular;
    const double m_bestell, m_anzahl, m_einheit, m_name, m_einzel, m_steuer, m_gesamt; // mm
    Currency m_net, m_gross;
};

} // namespace

void RenderFormular(VSPrinter& printer, const PropertiesList& vorlage, const FormularDaten& formular,
                    const QString& docName, const std::optional<QString>& schlussText) {
    FormularLayout(printer, vorlage, formular)
        .render(docName, schlussText.value_or(vorlage.Text(u"schlusstext_text")));
}
