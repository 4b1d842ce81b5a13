#include "PageLayout.h"

#include <page/VSPrinter.h>
#include <printing/KassenBericht.h>
#include <session/Globals.h>
#include <session/SonderArtikel.h>
#include <templates/PropertiesList.h>
#include <text/Value.h>

#include <initializer_list>

using namespace Qt::StringLiterals;
using namespace layout;

SteuerSummen& SteuerSummen::operator+=(const SteuerSummen& other) {
    Netto += other.Netto;
    Steuer += other.Steuer;
    Brutto += other.Brutto;
    return *this;
}

SteuerSummen& SteuerSummen::operator-=(const SteuerSummen& other) {
    Netto -= other.Netto;
    Steuer -= other.Steuer;
    Brutto -= other.Brutto;
    return *this;
}

namespace {

QString amount(const Value& value) { return Amount(value, gFormatPreis); }

SteuerSummen sumOf(const std::vector<BerichtZeile>& lines) {
    SteuerSummen sum;
    for (const BerichtZeile& line : lines)
        sum += {Currency::fromDouble(line.Netto), Currency::fromDouble(line.Steuer),
                Currency::fromDouble(line.Brutto)};
    return sum;
}

/// Paper, font and alignment of everything that "Kassenabschluss.pld" lays out, and an empty line.
void start(VSPrinter& printer, const PropertiesList& vorlage, const QString& docName) {
    StartDocument(printer, vorlage, docName);
    PageFont(printer, vorlage);
    Align(printer, vorlage.Choice(u"page_align"));
    printer.Paragraph(u" "_s);
}

void boldLine(VSPrinter& printer, const PropertiesList& vorlage, const QString& text) {
    Bold(printer, vorlage, true);
    printer.Paragraph(text);
    Bold(printer, vorlage, false);
}

class BerichtLayout {
  public:
    BerichtLayout(VSPrinter& printer, const PropertiesList& vorlage, const KassenBericht& bericht)
        : m_printer(printer)
        , m_vorlage(vorlage)
        , m_bericht(bericht)
        , m_name(Width(vorlage, u"table_warengruppe_name"))
        , m_summe(Width(vorlage, u"table_warengruppe_summe"))
        , m_satz(Width(vorlage, u"table_steuer"))
        , m_netto(Width(vorlage, u"table_netto"))
        , m_ust(Width(vorlage, u"table_ust"))
        , m_brutto(Width(vorlage, u"table_brutto"))
        , m_einlage(sumOf(bericht.Einlage))
        , m_entnahme(sumOf(bericht.Entnahme))
        , m_bar(sumOf(bericht.Bar))
        , m_karte(sumOf(bericht.Karte))
        , m_rechnung(sumOf(bericht.Rechnung)) {}

    void render() {
        start(m_printer, m_vorlage, m_bericht.Titel);
        boldLine(m_printer, m_vorlage, m_bericht.Titel);
        m_printer.Paragraph(m_bericht.Bearbeiter);
        m_printer.Paragraph(u"Kasse: "_s + m_bericht.Maschine);
        m_printer.Paragraph(m_bericht.Zeitpunkt.toString(u"dd.MM.yyyy - hh:mm"_s) + u'\n');
        statistic();
        if (m_vorlage.Flag(u"table_warengruppe_visible")) groups();
        payment(u"Gesamt "_s + SonderArtikel::Einlage.toString(), m_bericht.Einlage, m_einlage);
        payment(u"Gesamt "_s + SonderArtikel::Entnahme.toString(), m_bericht.Entnahme, m_entnahme);
        payment(u"Gesamt BAR Buchungen"_s, m_bericht.Bar, m_bar);
        till();
        cards();
        payment(u"Gesamt Auf Rechnung"_s, m_bericht.Rechnung, m_rechnung);
        sums();
        m_printer.EndDoc();
    }

  private:
    void statistic() {
        head(m_bericht.StatistikTitel, m_name + m_summe);
        if (m_bericht.Stornos) pair(u"Stornos:"_s, QString::number(*m_bericht.Stornos));
        pair(u"Kundenanzahl:"_s, QString::number(m_bericht.KundenAnzahl));
        const int count = m_bericht.KundenAnzahl;
        pair(u"Durchschnitt VK Preis:"_s, amount(count == 0 ? 0.0 : m_bericht.Umsatz.toDouble() / count));
    }

    void groups() {
        head(u"Warengruppen:"_s, m_name + m_summe);
        for (const auto& [name, turnover] : m_bericht.WarenGruppen)
            pair(name, amount(turnover));
    }

    void payment(const QString& title, const std::vector<BerichtZeile>& lines, const SteuerSummen& sum) {
        head(title, taxWidth());
        for (const BerichtZeile& line : lines)
            row(Rate(line.SteuerSatz) + u'%', line.Netto, line.Steuer, line.Brutto);
        sumRow(sum);
    }

    void till() {
        head(u"Gesamt Kasse"_s, taxWidth());
        row(u"Barbuch."_s, m_bar);
        row(u"Einlage"_s, m_einlage);
        row(u"Entnahme"_s, m_entnahme);
        SteuerSummen sum = m_bar;
        sum += m_einlage;
        sum -= m_entnahme;
        sumRow(sum);
        if (m_bericht.Zaehlung) counted(*m_bericht.Zaehlung, sum.Brutto);
    }

    void counted(const KassenZaehlung& count, Currency expected) {
        const Currency actual = count.KassenBestand - count.WechselGeld;
        m_printer.CurrentY(m_printer.CurrentY() + airTwips); // the count is another matter than the bookings
        pair(u"Kassenbestand"_s, amount(count.KassenBestand));
        pair(u"davon Wechselgeld"_s, amount(count.WechselGeld));
        pair(u"Soll"_s, amount(expected));
        pair(u"Ist"_s, amount(actual));
        pair(u"Differenz"_s, amount(actual - expected));
    }

    void cards() {
        head(u"Gesamt KARTE"_s, taxWidth());
        const QString* shown = nullptr;
        for (const BerichtZeile& line : m_bericht.Karte) {
            if (shown == nullptr || *shown != line.KartenTyp) {
                shown = &line.KartenTyp;
                Row(m_printer, Columns({{u'<', taxWidth()}}),
                    {(shown->isEmpty() ? u"Sonstige Kreditkarte"_s : *shown) + u':'});
            }
            row(u"  "_s + Rate(line.SteuerSatz) + u'%', line.Netto, line.Steuer, line.Brutto);
        }
        sumRow(m_karte);
    }

    void sums() {
        head(u"Gesamtsummen"_s, taxWidth());
        Row(m_printer, taxFormat(), {{}, u"Netto"_s, u"Steuer"_s, u"Brutto"_s});
        row(u"Barbuch."_s, m_bar);
        row(u"Karte"_s, m_karte);
        row(u"Rechn."_s, m_rechnung);
        row(u"Einlage"_s, m_einlage);
        row(u"Entnahme"_s, m_entnahme);
        SteuerSummen sum = m_bar;
        for (const SteuerSummen& part : {m_karte, m_rechnung, m_einlage})
            sum += part;
        sum -= m_entnahme;
        sumRow(sum);
    }

    /// A bold line over the width of a table, set off from what stands above.
    void head(const QString& title, double width) {
        m_printer.Paragraph(u" "_s);
        Bold(m_printer, m_vorlage, true);
        Row(m_printer, Columns({{u'<', width}}), {title});
        Bold(m_printer, m_vorlage, false);
    }

    void pair(const QString& label, const QString& value) {
        Row(m_printer, Columns({{u'<', m_name}, {u'>', m_summe}}), {label, value});
    }

    void row(const QString& label, const Value& netto, const Value& steuer, const Value& brutto) {
        Row(m_printer, taxFormat(), {label, amount(netto), amount(steuer), amount(brutto)});
    }
    void row(const QString& label, const SteuerSummen& sums) {
        row(label, sums.Netto, sums.Steuer, sums.Brutto);
    }
    void sumRow(const SteuerSummen& sums) {
        Bold(m_printer, m_vorlage, true);
        row(u"Summe"_s, sums);
        Bold(m_printer, m_vorlage, false);
    }

    [[nodiscard]] QString taxFormat() const {
        return Columns({{u'<', m_satz}, {u'>', m_netto}, {u'>', m_ust}, {u'>', m_brutto}});
    }
    [[nodiscard]] double taxWidth() const { return m_satz + m_netto + m_ust + m_brutto; }

    static constexpr int airTwips = 120;

    VSPrinter& m_printer;
    const PropertiesList& m_vorlage;
    const KassenBericht& m_bericht;
    const double m_name, m_summe, m_satz, m_netto, m_ust, m_brutto; // mm
    const SteuerSummen m_einlage, m_entnahme, m_bar, m_karte, m_rechnung;
};

} // namespace

void RenderKassenBericht(VSPrinter& printer, const PropertiesList& vorlage, const KassenBericht& bericht) {
    BerichtLayout(printer, vorlage, bericht).render();
}

void RenderAbschlussBeleg(VSPrinter& printer, const PropertiesList& vorlage, const AbschlussBeleg& beleg) {
    start(printer, vorlage, u"Kassenabschlussbeleg "_s + QString::number(beleg.Nummer));
    boldLine(printer, vorlage, u"Kassenabschlussbeleg Nr.: "_s + QString::number(beleg.Nummer));
    printer.Paragraph(beleg.Bearbeiter);
    printer.Paragraph(u"Kasse: "_s + beleg.Maschine + u'\n');
    printer.Paragraph(
        u"Wählen Sie aus der Schnellstartleiste den Menüpunkt 'Kasse abrechnen' und geben Sie die "
        "Kassenabschluss Beleg Nr. ein."_s);
    printer.EndDoc();
}
