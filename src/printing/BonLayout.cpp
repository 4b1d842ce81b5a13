#include "LineText.h"
#include "PageLayout.h"

#include <page/VSPrinter.h>
#include <printing/Layout.h>
#include <session/Globals.h>
#include <templates/PropertiesList.h>
#include <text/Convert.h>
#include <text/Format.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace layout;

namespace {

class BonLayout {
  public:
    BonLayout(VSPrinter& printer, const PropertiesList& vorlage, const BonDaten& bon)
        : m_printer(printer)
        , m_vorlage(vorlage)
        , m_bon(bon)
        , m_anzahl(Width(vorlage, u"tabelle_anzahl_width"))
        , m_name(Width(vorlage, u"tabelle_artikelname_width"))
        , m_steuer(Width(vorlage, u"tabelle_steuer_width"))
        , m_gesamt(Width(vorlage, u"tabelle_gpreis_width")) {}

    void render() {
        StartDocument(m_printer, m_vorlage, u"Kassenbon"_s);
        PageFont(m_printer, m_vorlage);
        BonHeader(m_printer, m_vorlage, m_bon.Firma);
        const bool address = info();
        // The rows above may wrap; a table that overprints them would help nobody.
        const int top = Position(m_vorlage, u"tabelle_top") + (address ? addressShift : 0);
        m_printer.CurrentY(std::max(top, m_printer.CurrentY()));
        lines();
        totals();
        taxes();
        closing();
        m_printer.EndDoc();
    }

  private:
    static constexpr int addressShift = 816; // 1.5 cm in the twips of the templates

    /// True when the customer's address was printed.
    bool info() {
        InfoBlock block(m_printer, m_vorlage, m_bon);
        block.number();
        block.clerk();
        block.date();
        block.taxNumber();
        const KundeRecord& kunde = m_bon.Kunde;
        if (kunde.KundenID == 0) return false;
        const bool address = m_vorlage.Flag(u"infofeld_kundennr_visible");
        if (address) {
            block.row(u"Kunden Nr:"_s, kunde.KundenNummer);
            block.row(u"Kunde:"_s, kunde.Name_1);
            block.row(u"Strasse:"_s, kunde.Strasse);
            block.row(u"PLZ/Ort:"_s, kunde.PLZ + u' ' + kunde.Ort);
        }
        if (m_vorlage.Flag(u"infofeld_kundenrabatt_visible"))
            block.row(u"Kd Rabatt:"_s, Percent(kunde.Rabatt));
        return address;
    }

    void lines() {
        const QString format =
            Columns({{u'<', m_anzahl}, {u'<', m_name}, {u'>', m_steuer}, {u'>', m_gesamt}});
        const bool longText = m_vorlage.Flag(u"tabelle_printlangtext");
        m_printer.StartTable();
        m_printer.AddTable(format, Cells({u"Anz"_s, u"Artikelname"_s, gSteuerText, u"G-Preis"_s}), {});
        for (const BelegZeile& zeile : m_bon.Zeilen) {
            Row(m_printer, format,
                {NumberText(zeile.Buchungs_Menge), BonText(zeile, longText), Rate(zeile.SteuerSatz),
                 lineAmount(zeile)});
            m_listPrices += zeile.VKPreisOrg;
        }
        m_printer.EndTable();
    }

    /// With more than two decimals the gross price is one that was rounded, so the net price counts.
    static QString lineAmount(const BelegZeile& zeile) {
        if (gDecimalStellen <= 2)
            return Amount(zeile.VKPreis_Brutto.toDouble() * zeile.Buchungs_Menge, gFormatPreis);
        return Amount(zeile.VKPreis_Netto * zeile.Buchungs_Menge * (zeile.SteuerSatz / 100 + 1),
                      TotalFormat());
    }

    void totals() {
        m_printer.Paragraph(u" "_s);
        Bold(m_printer, m_vorlage, true);
        total(u"Summe"_s, m_bon.Betrag_Gesamt);
        Bold(m_printer, m_vorlage, false);
        total(m_bon.ZahlArt + u' ' + m_bon.KartenTyp, m_bon.Betrag_Gegeben);
        if (gShowWechselgeldDialog) total(u"Rückgeld"_s, m_bon.Betrag_Zurueck);
        if (m_listPrices > m_bon.Betrag_Gesamt) total(u"Rabattinfo"_s, m_listPrices - m_bon.Betrag_Gesamt);
    }

    void total(const QString& label, Currency amount) {
        Row(m_printer, Columns({{u'<', m_anzahl + m_name}, {u'>', m_steuer + m_gesamt}}),
            {label, Amount(amount, TotalFormat())});
    }

    void taxes() {
        m_printer.Paragraph(u"\n"_s);
        Row(m_printer, Columns({{u'<', m_anzahl + m_name + m_steuer + m_gesamt}}),
            {u"Enthaltene "_s + gSteuerText});
        // The amounts of tax need more room than a rate does.
        const QString format =
            Columns({{u'<', m_anzahl + m_name - 20}, {u'>', m_steuer + 12}, {u'>', m_gesamt + 8}});
        const auto isPrinted = [](const SteuerZeile& steuer) {
            return steuer.SteuerSatz != 0 || gPrintSteuerNull;
        };
        if (std::ranges::any_of(m_bon.Steuern, isPrinted))
            Row(m_printer, format, {{}, gSteuerText, u"Netto"_s}); // which of the two amounts is which
        Currency netSum;
        for (const SteuerZeile& steuer : m_bon.Steuern) {
            if (isPrinted(steuer))
                Row(m_printer, format,
                    {Percent(steuer.SteuerSatz), Amount(steuer.Steuer, TotalFormat()),
                     Amount(steuer.Netto, TotalFormat())});
            netSum += Currency::fromDouble(steuer.Netto);
        }
        Row(m_printer, format, {u"Netto"_s, {}, Amount(netSum, TotalFormat())});
    }

    void closing() {
        m_printer.Paragraph(u"\n\n"_s);
        Align(m_printer, m_vorlage.Choice(u"schlusstext_align"));
        m_printer.Paragraph(
            ClosingText(m_vorlage.Text(u"schlusstext_text"), m_bon.Datum, m_bon.Betrag_Gesamt));
        m_printer.TextAlign(0);
    }

    VSPrinter& m_printer;
    const PropertiesList& m_vorlage;
    const BonDaten& m_bon;
    const double m_anzahl, m_name, m_steuer, m_gesamt; // mm
    Currency m_listPrices;
};

} // namespace

void RenderBon(VSPrinter& printer, const PropertiesList& vorlage, const BonDaten& bon) {
    BonLayout(printer, vorlage, bon).render();
}
