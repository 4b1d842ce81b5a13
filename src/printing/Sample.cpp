#include "BookedData.h"

#include <printing/KassenBericht.h>
#include <printing/Layout.h>
#include <printing/Sample.h>
#include <session/Globals.h>
#include <session/SonderArtikel.h>
#include <text/RuntimeError.h>

#include <map>

using namespace Qt::StringLiterals;

namespace {

const QDate sampleDay(2026, 11, 23);

/// Lets a sample show money and tax where the settings have not been read.
class SampleSettings {
  public:
    SampleSettings() {
        set(gFormatPreis, u"###0.00"_s);
        set(gWaehrungsSymbol, u"€"_s);
        set(gSteuerText, u"MwSt"_s);
    }
    ~SampleSettings() {
        for (QString* setting : m_changed)
            setting->clear();
    }
    SampleSettings(const SampleSettings&) = delete;
    SampleSettings& operator=(const SampleSettings&) = delete;

  private:
    void set(QString& setting, const QString& value) {
        if (!setting.isEmpty()) return;
        setting = value;
        m_changed.push_back(&setting);
    }
    std::vector<QString*> m_changed;
};

BelegKopf sampleKopf(int number) {
    FirmaDaten firma = SessionFirma();
    if (firma.Kopf == FirmaDaten().Kopf)
        firma = {{u"Naturkost Haselbusch"_s, u"Karin Haseloff"_s, u"Am Holunderweg 4"_s, u"01235 Erlental"_s,
                  u"Telefon 0123 450000"_s},
                 u"12/345/67890"_s};
    return {number, sampleDay, u"Jonas Weber"_s, firma};
}

KundeRecord sampleKunde() {
    KundeRecord kunde;
    kunde.KundenID = 1;
    kunde.KundenNummer = u"1017"_s;
    kunde.Anrede = u"Firma"_s;
    kunde.Name_1 = u"Gasthof Zur Linde"_s;
    kunde.Name_2 = u"Küche, Frau Özdal"_s;
    kunde.Strasse = u"Lindenstraße 17"_s;
    kunde.PLZ = u"01235"_s;
    kunde.Ort = u"Erlental"_s;
    kunde.Land = u"Deutschland"_s;
    kunde.Rabatt = 5;
    return kunde;
}

struct SampleLine {
    double count;
    const char16_t *number, *name;
    double content;
    const char16_t* unit;
    double price, listPrice, tax;
    const char16_t *info, *longText;
};

constexpr SampleLine sampleLines[] = {
    {1, u"101", u"Dinkelvollkornbrot 750 g", 1, u"Stück", 4.05, 4.05, 7, u"", u""},
    {2, u"2003000000016", u"Frische Vollmilch 3,8 %", 1, u"l", 1.79, 1.79, 7, u"", u""},
    {1, u"2006000000208", u"Haferflocken Großblatt", 500, u"g", 1.39, 1.39, 7, u"", u""},
    {6, u"2005000000034", u"Apfelsaft naturtrüb", 0.7, u"l", 2.29, 2.49, 19, u"Aktionspreis", u""},
    {6, SonderArtikel::Pfand.utf16(), u"Pfand Flasche", 1, u"Stück", 0.15, 0.15, 19, u"", u""},
    {0.385, u"2101002000000", u"Bergkäse vom Stück, zwölf Monate gereift", 1, u"kg", 24.9, 24.9, 7, u"", u""},
    {1, u"2010000000038", u"Kochbuch Suppen", 1, u"Stück", 19.95, 19.95, 7, u"",
     u"Gebunden, 192 Seiten, mit einem Register der Zutaten nach der Jahreszeit."},
};

std::vector<BelegZeile> zeilen() {
    std::vector<BelegZeile> all;
    for (const SampleLine& line : sampleLines) {
        BelegZeile& zeile = all.emplace_back();
        zeile.ArtikelNummer = QString::fromUtf16(line.number);
        zeile.ArtikelName = QString::fromUtf16(line.name);
        zeile.Buchungs_Menge = line.count;
        zeile.Menge = line.content;
        zeile.Einheit = QString::fromUtf16(line.unit);
        zeile.VKPreis_Brutto = Currency::fromDouble(line.price);
        zeile.VKPreisOrg = Currency::fromDouble(line.listPrice);
        zeile.VKPreis_Netto = line.price / (1 + line.tax / 100);
        zeile.SteuerSatz = line.tax;
        zeile.PreisInfo = QString::fromUtf16(line.info);
        zeile.LangText = QString::fromUtf16(line.longText);
        zeile.BestellNummer = u"7550%1"_s.arg(all.size(), 2, 10, QChar(u'0'));
    }
    return all;
}

/// Lines with their sums.
void fill(BelegDaten& beleg) {
    beleg.Zeilen = zeilen();
    std::map<double, SteuerZeile> rates;
    for (const BelegZeile& zeile : beleg.Zeilen) {
        const double gross = zeile.VKPreis_Brutto.toDouble() * zeile.Buchungs_Menge;
        const double net = zeile.VKPreis_Netto * zeile.Buchungs_Menge;
        beleg.Betrag_Gesamt += Currency::fromDouble(gross);
        SteuerZeile& rate = rates[zeile.SteuerSatz];
        rate.SteuerSatz = zeile.SteuerSatz;
        rate.Netto += net;
        rate.Steuer += gross - net;
    }
    for (const auto& [percent, rate] : rates)
        beleg.Steuern.push_back(rate);
}

void renderBon(VSPrinter& printer, const PropertiesList& vorlage) {
    BonDaten bon{{sampleKopf(1284), {}, {}, {}, {}}, u"BAR"_s, {}, Currency::fromInteger(70), {}};
    fill(bon);
    bon.Betrag_Zurueck = bon.Betrag_Gegeben - bon.Betrag_Gesamt;
    RenderBon(printer, vorlage, bon);
}

void renderForm(VSPrinter& printer, const PropertiesList& vorlage, FormularArt art) {
    FormularDaten formular{{sampleKopf(1284), sampleKunde(), {}, {}, {}}, art, {}};
    if (art == FormularArt::Ankauf) {
        BelegZeile ware;
        ware.ArtikelName = u"Getreidemühle, gebraucht, mit Mahlwerk aus Korund"_s;
        ware.Einheit = u"Stück"_s;
        ware.VKPreis_Brutto = Currency::fromInteger(85);
        ware.VKPreis_Netto = 85;
        formular.Zeilen = {ware};
        formular.Betrag_Gesamt = ware.VKPreis_Brutto;
    } else {
        fill(formular);
    }
    RenderFormular(printer, vorlage, formular, u"Muster"_s);
}

BerichtZeile amounts(double percent, double gross, const QString& card = {}) {
    const double net = gross / (1 + percent / 100);
    return {percent, net, gross - net, gross, card};
}

void renderReport(VSPrinter& printer, const PropertiesList& vorlage) {
    KassenBericht bericht;
    bericht.Titel = u"Kassenabschluss Nr.: 128"_s;
    bericht.Bearbeiter = u"Jonas Weber"_s;
    bericht.Maschine = u"KASSE-1"_s;
    bericht.Zeitpunkt = {sampleDay, QTime(18, 32)};
    bericht.StatistikTitel = u"Statistik:"_s;
    bericht.Stornos = 2;
    bericht.KundenAnzahl = 87;
    bericht.Umsatz = Currency::fromDouble(1642.6);
    bericht.WarenGruppen = {{u"Backwaren"_s, 312.4},
                            {u"Getränke"_s, 428.7},
                            {u"Käse und Milch"_s, 506.55},
                            {u"Obst und Gemüse"_s, 394.95}};
    bericht.Einlage = {amounts(0, 100)};
    bericht.Entnahme = {amounts(0, 250)};
    bericht.Bar = {amounts(7, 802.35), amounts(19, 241.9)};
    bericht.Karte = {amounts(7, 398.45, u"girocard"_s), amounts(19, 96.3, u"girocard"_s),
                     amounts(7, 41.2, u"Kreditkarte"_s)};
    bericht.Rechnung = {amounts(7, 62.4)};
    bericht.Zaehlung = {Currency::fromDouble(1093.75), Currency::fromInteger(200)};
    RenderKassenBericht(printer, vorlage, bericht);
}

} // namespace

void RenderSample(VSPrinter& printer, const PropertiesList& vorlage, TemplateKind kind) {
    const SampleSettings settings;
    switch (kind) {
    case TemplateKind::Form:
        return renderForm(printer, vorlage, FormularArt::Rechnung);
    case TemplateKind::Bon:
        return renderBon(printer, vorlage);
    case TemplateKind::Voucher:
        return RenderGutschein(printer, vorlage,
                               {sampleKopf(57), u"Geschenkgutschein"_s, Currency::fromInteger(50)});
    case TemplateKind::Closing:
        return renderReport(printer, vorlage);
    case TemplateKind::Purchase:
        return renderForm(printer, vorlage, FormularArt::Ankauf);
    }
    RaiseInvalidCall();
}
