#include "Paper.h"

#include <session/Globals.h>
#include <session/gUser.h>
#include <templates/TemplateKeys.h>

#include <gtest/gtest.h>
#include <map>

using namespace Qt::StringLiterals;

namespace {

/// Centimetres, points and choices that differ from nothing.
const std::map<QStringView, double> numbers{
    {u"page_size", 1},
    {u"page_marginleft", 2},
    {u"page_marginright", 2},
    {u"page_margintop", 1},
    {u"page_marginbottom", 2},
    {u"page_fontsize", 10},
    {u"page_align", 1},
    {u"kopfzeile_left", 2},
    {u"kopfzeile_top", 1},
    {u"kopfzeile_align", 3},
    {u"kopfzeile_logo_left", 15},
    {u"kopfzeile_logo_top", 1},
    {u"absenderzeile_left", 2},
    {u"absenderzeile_top", 5},
    {u"adressfenster_left", 2},
    {u"adressfenster_top", 6},
    {u"infofeld_top", 6},
    {u"infofeld_align", 1},
    {u"infofeld_width", 5},
    {u"formulartitel_left", 2},
    {u"formulartitel_top", 11},
    {u"formulartitel_fontsize", 18},
    {u"gutschein_fontsize", 14},
    {u"tabelle_top", 13},
    {u"tabelle_anzahl_width", 1.5},
    {u"tabelle_bestellnummer_width", 2},
    {u"tabelle_einheit_width", 2},
    {u"tabelle_artikelname_width", 5},
    {u"tabelle_epreis_width", 2.5},
    {u"tabelle_steuer_width", 1.5},
    {u"tabelle_gpreis_width", 2.5},
    {u"schlusstext_align", 1},
    {u"table_warengruppe_name", 6},
    {u"table_warengruppe_summe", 4},
    {u"table_steuer", 2.5},
    {u"table_netto", 2.5},
    {u"table_ust", 2.5},
    {u"table_brutto", 2.5},
};
const std::map<QStringView, QString> texts{
    {u"absenderzeile_text", u"Hofladen, Am Anger 1, 01235 Erlental"_s},
    {u"infofeld_ust_text", u"Steuernr.:"_s},
    {u"formulartitel_text", u"Beleg"_s},
    {u"schlusstext_text", u"Danke für [SUMME], zahlbar am DateAdd[10]"_s},
    {u"page_fontname", u"Inter"_s},
};
const QStringList off{u"page_useprinterfont"_s, u"adressfenster_leerzeile"_s, u"tabelle_printlangtext"_s};

template <typename Map>
typename Map::mapped_type valueOf(const Map& map, QStringView key) {
    const auto at = map.find(key);
    return at == map.end() ? typename Map::mapped_type{} : at->second;
}

PropertyValue startValue(const TemplateKey& key) {
    switch (key.type) {
    case PropertyType::Boolean:
        return !off.contains(key.key.toString());
    case PropertyType::Choice:
        return static_cast<int>(valueOf(numbers, key.key));
    case PropertyType::Cm:
    case PropertyType::Point:
        return valueOf(numbers, key.key);
    case PropertyType::Font:
        return QFont(u"Inter"_s, 10);
    case PropertyType::Picture:
        return QByteArray();
    case PropertyType::Text:
        break;
    }
    return valueOf(texts, key.key);
}

TempShop::Fields joined(TempShop::Fields fields, const TempShop::Fields& more) {
    fields.insert(fields.end(), more.begin(), more.end());
    return fields;
}

} // namespace

PropertiesList testVorlage(TemplateKind kind) {
    PropertiesList list;
    for (const TemplateKey& key : templateKeys())
        if (key.isUsedBy(kind))
            list.insert({}, {key.key.toString(), {}, {}, key.type, startValue(key), {}, {}});
    return list;
}

QStringList pdfLines(const QByteArray& pdf) {
    QStringList lines;
    for (const QString& line : PdfText(pdf, {u"-layout"_s}).split(u'\n', Qt::SkipEmptyParts))
        if (const QString plain = line.simplified(); !plain.isEmpty()) lines.append(plain);
    return lines;
}

PaperShop::PaperShop() {
    gBonDrucker = u"Bondrucker"_s;
    gFormularDrucker = gKassenabschlussDrucker = u"Laser"_s;
    gDruckerKopies = 1;
    gFormatPreis = u"###0.00"_s;
    gDecimalStellen = 2;
    gWaehrungsSymbol = u"€"_s;
    gSteuerText = u"MwSt"_s;
    gShowWechselgeldDialog = true;
    gKopf1 = u"Müller && Söhne"_s;
    gKopf2 = u"Am Anger 1"_s;
    gKopf4 = u"Tel. 0123"_s;
    gUSt = u"12/345"_s;
    gKassenUser.Vorname = u"Jonas"_s;
    gKassenUser.Name = u"Weber"_s;
}

void PaperShop::vorlage(const QString& fileName, TemplateKind kind,
                        const std::function<void(PropertiesList&)>& change) const {
    PropertiesList list = testVorlage(kind);
    if (change) change(list);
    ASSERT_TRUE(list.Save(shop.folder() + fileName));
}

int PaperShop::receipt(double total, const TempShop::Fields& more) {
    return shop.insert(u"Rechnung"_s, joined({{u"Datum"_s, DateTime::fromQDate(QDate(2026, 11, 22))},
                                              {u"KundenNummer"_s, 0},
                                              {u"ZahlArt"_s, u"BAR"_s},
                                              {u"KartenTyp"_s, u""_s},
                                              {u"Betrag_Gesamt"_s, Currency::fromDouble(total)},
                                              {u"Betrag_Gegeben"_s, Currency::fromDouble(total)},
                                              {u"Betrag_Zurueck"_s, Currency()}},
                                             more));
}

void PaperShop::line(int id, const QString& name, double gross, const TempShop::Fields& more,
                     const QString& table, const QString& key) {
    shop.insert(table, joined({{key, id},
                               {u"ArtikelName"_s, name},
                               {u"Buchungs_Menge"_s, 1},
                               {u"Menge"_s, 1},
                               {u"Einheit"_s, u"Stück"_s},
                               {u"SteuerSatz"_s, 7},
                               {u"VKPreis_Netto"_s, gross / 1.07},
                               {u"VKPreis_Brutto"_s, Currency::fromDouble(gross)}},
                              more));
}

int PaperShop::customer(const TempShop::Fields& more) {
    return shop.insert(u"Kunden"_s, joined({{u"KundenNummer"_s, u"K-77"_s},
                                            {u"Anrede"_s, u"Firma"_s},
                                            {u"Name_1"_s, u"Gasthof Linde"_s},
                                            {u"Name_2"_s, u"Küche"_s},
                                            {u"Strasse"_s, u"Lindenstraße 17"_s},
                                            {u"PLZ"_s, u"50667"_s},
                                            {u"Ort"_s, u"Köln"_s},
                                            {u"Land"_s, u"Österreich"_s},
                                            {u"Rabatt"_s, 5}},
                                           more));
}
