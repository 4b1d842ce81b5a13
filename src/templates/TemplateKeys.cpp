#include <templates/TemplateKeys.h>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using enum PropertyType;

constexpr TemplateKey keys[] = {
    {u"page_size", Choice, u"FABGK", u"Papierformat", u"A4, A5 oder ein freies Format wie eine Bonrolle"},
    {u"page_width", Cm, u"FABGK", u"Papierbreite",
     u"Breite des freien Formats; 10,0 sind 8,5 cm auf dem Papier"},
    {u"page_height", Cm, u"FABGK", u"Papierhöhe",
     u"Höhe des freien Formats; eine Rolle endet mit dem Inhalt"},
    {u"page_margintop", Cm, u"FABGK", u"Rand oben", u"Abstand des Drucks von der oberen Papierkante"},
    {u"page_marginbottom", Cm, u"FABGK", u"Rand unten", u"Abstand des Drucks von der unteren Papierkante"},
    {u"page_marginleft", Cm, u"FABGK", u"Rand links", u"Abstand des Drucks von der linken Papierkante"},
    {u"page_marginright", Cm, u"FABGK", u"Rand rechts", u"Abstand des Drucks von der rechten Papierkante"},
    {u"page_useprinterfont", Boolean, u"BGK", u"Druckerschrift verwenden",
     u"Mit der eigenen Schrift des Druckers drucken: schneller, aber ohne Fettdruck und ohne Logo"},
    {u"page_font", Font, u"BGK", u"Schriftart",
     u"Schrift der ganzen Seite, wenn nicht die des Druckers gilt"},
    {u"page_fontname", Text, u"BGK", u"Druckerschrift", u"Name der Schrift des Druckers"},
    {u"page_fontsize", Point, u"BGK", u"Größe der Druckerschrift",
     u"Schriftgröße der Druckerschrift in Punkt"},
    {u"page_align", Choice, u"K", u"Ausrichtung", u"Ausrichtung der Texte auf Beleg und Bericht"},

    {u"kopfzeile_visible", Boolean, u"FABG", u"Kopfzeile drucken",
     u"Die Zeilen mit Name und Anschrift des Ladens drucken"},
    {u"kopfzeile_left", Cm, u"FA", u"Abstand links", u"Linke Kante der Kopfzeilen auf dem Blatt"},
    {u"kopfzeile_top", Cm, u"FABG", u"Abstand oben", u"Oberkante der Kopfzeilen auf dem Blatt"},
    {u"kopfzeile_align", Choice, u"BG", u"Ausrichtung", u"Ausrichtung der Kopfzeilen"},
    {u"kopfzeile_font1", Font, u"FA", u"Schriftart Zeile 1", u"Schrift der ersten Kopfzeile"},
    {u"kopfzeile_font", Font, u"FA", u"Schriftart", u"Schrift der übrigen Kopfzeilen"},
    {u"kopfzeile_logo", Picture, u"FABG", u"Logo",
     u"Bild des Ladens; gedruckt wird es in seiner natürlichen Größe"},
    {u"kopfzeile_logo_left", Cm, u"FABG", u"Logo Abstand links", u"Linke Kante des Logos auf dem Blatt"},
    {u"kopfzeile_logo_top", Cm, u"FABG", u"Logo Abstand oben", u"Oberkante des Logos auf dem Blatt"},

    {u"absenderzeile_visible", Boolean, u"FA", u"Absenderzeile drucken",
     u"Die kleine Zeile über dem Adressfenster drucken"},
    {u"absenderzeile_left", Cm, u"FA", u"Abstand links", u"Linke Kante der Absenderzeile"},
    {u"absenderzeile_top", Cm, u"FA", u"Abstand oben", u"Oberkante der Absenderzeile"},
    {u"absenderzeile_font", Font, u"FA", u"Schriftart", u"Schrift der Absenderzeile"},
    {u"absenderzeile_underline", Boolean, u"FA", u"Unterstrichen", u"Die Absenderzeile unterstreichen"},
    {u"absenderzeile_text", Text, u"FA", u"Text", u"Name und Anschrift in einer Zeile"},

    {u"adressfenster_visible", Boolean, u"FA", u"Adresse drucken", u"Die Anschrift des Kunden drucken"},
    {u"adressfenster_left", Cm, u"FA", u"Abstand links", u"Linke Kante der Anschrift"},
    {u"adressfenster_top", Cm, u"FA", u"Abstand oben", u"Oberkante der Anschrift"},
    {u"adressfenster_font", Font, u"FA", u"Schriftart", u"Schrift der Anschrift"},
    {u"adressfenster_leerzeile", Boolean, u"FA", u"Leerzeile vor dem Ort",
     u"Eine leere Zeile zwischen Straße und Ort"},

    {u"infofeld_top", Cm, u"FABG", u"Abstand oben", u"Oberkante des Infofelds"},
    {u"infofeld_align", Choice, u"BG", u"Ausrichtung", u"Ausrichtung des Infofelds"},
    {u"infofeld_font", Font, u"FA", u"Schriftart", u"Schrift des Infofelds"},
    {u"infofeld_width", Cm, u"FABG", u"Breite der Werte",
     u"Breite der rechten Spalte; die linke ist immer 2,5 cm breit"},
    {u"infofeld_auftragnr_visible", Boolean, u"FBG", u"Belegnummer", u"Die Nummer des Belegs drucken"},
    {u"infofeld_kundennr_visible", Boolean, u"FAB", u"Kundennummer",
     u"Die Nummer des Kunden drucken, auf dem Kassenbon auch seine Anschrift"},
    {u"infofeld_kundenrabatt_visible", Boolean, u"FB", u"Kundenrabatt", u"Den Rabatt des Kunden drucken"},
    {u"infofeld_bearbeiter_visible", Boolean, u"FABG", u"Bearbeiter",
     u"Den Namen dessen drucken, der kassiert hat"},
    {u"infofeld_datum_visible", Boolean, u"FABG", u"Datum", u"Das Datum des Belegs drucken"},
    {u"infofeld_ust_visible", Boolean, u"FABG", u"Steuernummer", u"Die Steuernummer des Ladens drucken"},
    {u"infofeld_ust_text", Text, u"FABG", u"Text der Steuernummer", u"Was vor der Steuernummer steht"},

    {u"formulartitel_left", Cm, u"FA", u"Abstand links", u"Linke Kante des Titels"},
    {u"formulartitel_top", Cm, u"FA", u"Abstand oben", u"Oberkante des Titels"},
    {u"formulartitel_font", Font, u"FA", u"Schriftart", u"Schrift des Titels"},
    {u"formulartitel_fontsize", Point, u"G", u"Schriftgröße", u"Schriftgröße des Titels"},
    {u"formulartitel_text", Text, u"FABG", u"Text",
     u"Titel des Belegs; steht auch vor der Belegnummer im Infofeld"},
    {u"gutschein_fontsize", Point, u"G", u"Schriftgröße", u"Schriftgröße von Name und Wert des Gutscheins"},

    {u"tabelle_top", Cm, u"FAB", u"Abstand oben", u"Oberkante der Tabelle"},
    {u"tabelle_font", Font, u"FA", u"Schriftart", u"Schrift der Tabelle"},
    {u"tabelle_anzahl_width", Cm, u"FAB", u"Breite Anzahl", u"Breite des Feldes Anzahl"},
    {u"tabelle_bestellnummer_width", Cm, u"F", u"Breite Bestell-Nr", u"Breite des Feldes Bestellnummer"},
    {u"tabelle_einheit_width", Cm, u"FA", u"Breite Einheit", u"Breite des Feldes Einheit"},
    {u"tabelle_artikelname_width", Cm, u"FAB", u"Breite Artikelname", u"Breite des Feldes Artikelname"},
    {u"tabelle_epreis_width", Cm, u"FA", u"Breite Einzelpreis", u"Breite des Feldes Einzelpreis"},
    {u"tabelle_steuer_width", Cm, u"FB", u"Breite Steuer", u"Breite des Feldes Steuersatz"},
    {u"tabelle_gpreis_width", Cm, u"FAB", u"Breite Gesamtpreis", u"Breite des Feldes Gesamtpreis"},
    {u"tabelle_printlangtext", Boolean, u"FB", u"Langtext drucken",
     u"Den Langtext des Artikels unter seinen Namen drucken"},

    {u"schlusstext_align", Choice, u"FABG", u"Ausrichtung", u"Ausrichtung des Schlusstextes"},
    {u"schlusstext_font", Font, u"FA", u"Schriftart", u"Schrift des Schlusstextes"},
    {u"schlusstext_text", Text, u"FABG", u"Text",
     u"[SUMME] wird der Betrag, DateAdd[14] das Datum 14 Tage nach dem des Belegs"},

    {u"table_warengruppe_visible", Boolean, u"K", u"Warengruppen drucken",
     u"Die Umsätze der Warengruppen drucken"},
    {u"table_warengruppe_name", Cm, u"K", u"Breite Warengruppe", u"Breite der Spalte mit den Namen"},
    {u"table_warengruppe_summe", Cm, u"K", u"Breite Summe", u"Breite der Spalte mit den Summen"},
    {u"table_steuer", Cm, u"K", u"Breite Steuersatz", u"Breite der Spalte Steuersatz"},
    {u"table_netto", Cm, u"K", u"Breite Netto", u"Breite der Spalte Netto"},
    {u"table_ust", Cm, u"K", u"Breite Steuer", u"Breite der Spalte Steuerbetrag"},
    {u"table_brutto", Cm, u"K", u"Breite Brutto", u"Breite der Spalte Brutto"},
};

constexpr std::array<std::pair<QStringView, QStringView>, 10> groups{{
    {u"page", u"Seite"},
    {u"kopfzeile", u"Kopfzeile"},
    {u"absenderzeile", u"Absenderzeile"},
    {u"adressfenster", u"Adressfenster"},
    {u"infofeld", u"Infofeld"},
    {u"formulartitel", u"Titel"},
    {u"gutschein", u"Gutscheintext"},
    {u"tabelle", u"Tabelle"},
    {u"schlusstext", u"Schlusstext"},
    {u"table", u"Bericht"},
}};

constexpr QStringView orderNumberWidth = u"tabelle_bestellnummer_width";

constexpr TemplateKind allKinds[] = {TemplateKind::Form, TemplateKind::Purchase, TemplateKind::Bon,
                                     TemplateKind::Voucher, TemplateKind::Closing};

} // namespace

bool TemplateKey::isUsedBy(TemplateKind kind) const {
    switch (kind) {
    case TemplateKind::Form:
        return uses.contains(u'F');
    case TemplateKind::Purchase:
        return uses.contains(u'A');
    case TemplateKind::Bon:
        return uses.contains(u'B');
    case TemplateKind::Voucher:
        return uses.contains(u'G');
    case TemplateKind::Closing:
        return uses.contains(u'K');
    }
    return false;
}

std::span<const TemplateKey> templateKeys() { return keys; }

const TemplateKey* findTemplateKey(QStringView key) {
    const auto at = std::ranges::find(keys, key, &TemplateKey::key);
    return at == std::end(keys) ? nullptr : at;
}

QString formatOf(PropertyType type) {
    switch (type) {
    case Cm:
        return u"0.0 cm"_s;
    case Point:
        return u"0.0 pt"_s;
    default:
        return {};
    }
}

QStringList choicesOf(const TemplateKey& key) {
    if (key.type != Choice) return {};
    if (key.key == u"page_size") return {u"A4"_s, u"A5"_s, u"Freies Format"_s};
    return {u"Links"_s, u"Rechts"_s, u"Zentriert"_s};
}

QString groupOf(QStringView key) {
    const QStringView prefix = key.first(std::max(key.indexOf(u'_'), qsizetype{0}));
    const auto at = std::ranges::find(groups, prefix, &std::pair<QStringView, QStringView>::first);
    return at == groups.end() ? u"Sonstiges"_s : at->second.toString();
}

std::optional<TemplateKind> kindOfKeys(const PropertiesList& list) {
    std::optional<TemplateKind> best;
    std::ptrdiff_t most = 0;
    for (const TemplateKind kind : allKinds) {
        const auto isOfKind = [kind](const TemplateKey& key) { return key.isUsedBy(kind); };
        const std::ptrdiff_t count = std::ranges::count_if(keys, isOfKind);
        const bool complete = std::ranges::all_of(keys, [&](const TemplateKey& key) {
            return !isOfKind(key) || list.find(key.key) != nullptr || key.key == orderNumberWidth;
        });
        if (complete && count > most) {
            best = kind;
            most = count;
        }
    }
    return best;
}

bool isInForce(const PropertiesList& list, QStringView key) {
    if (key == u"page_width" || key == u"page_height") return list.Choice(u"page_size") == 3;
    if (key == u"page_font") return !list.Flag(u"page_useprinterfont");
    if (key == u"page_fontname" || key == u"page_fontsize") return list.Flag(u"page_useprinterfont");
    return true;
}

bool addOrderNumberWidth(PropertiesList& list) {
    const TemplateKey& added = *findTemplateKey(orderNumberWidth);
    if (list.find(added.key) != nullptr) return false;
    list.insert(u"tabelle_anzahl_width", Property{added.key.toString(),
                                                  added.caption.toString(),
                                                  added.description.toString(),
                                                  added.type,
                                                  0.0,
                                                  formatOf(added.type),
                                                  {}});
    return true;
}
