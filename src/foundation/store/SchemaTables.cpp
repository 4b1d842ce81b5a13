#include <store/Schema.h>

namespace schema {

namespace {

ColumnRow counter(const char16_t* name) { return {name, Type::Long, 0, u"", true}; }
ColumnRow text(const char16_t* name, int size, const char16_t* fallback = u"") {
    return {name, Type::Text, size, fallback};
}
ColumnRow memo(const char16_t* name) { return {name, Type::Memo}; }
// Numbers and truth values begin at 0, so that sums and comparisons never meet a Null in a new row.
ColumnRow whole(const char16_t* name) { return {name, Type::Long, 0, u"0"}; }
ColumnRow small(const char16_t* name) { return {name, Type::Short, 0, u"0"}; }
ColumnRow real(const char16_t* name) { return {name, Type::Double, 0, u"0"}; }
ColumnRow money(const char16_t* name) { return {name, Type::Currency, 0, u"0"}; }
ColumnRow flag(const char16_t* name) { return {name, Type::Boolean, 0, u"0"}; }
ColumnRow date(const char16_t* name, const char16_t* fallback = u"") {
    return {name, Type::Date, 0, fallback};
}
ColumnRow today(const char16_t* name = u"Datum") { return date(name, u"Date()"); }
ColumnRow timeOfDay() { return date(u"Zeit", u"Time()"); }

std::vector<TableRow> masterData() {
    return {
        {u"Artikel",
         {text(u"Nummer", 30),  text(u"Name", 100),   memo(u"LangText"),    text(u"WarenGruppe", 50),
          text(u"Zusatz1", 20), text(u"Zusatz2", 20), real(u"Menge"),       text(u"Einheit", 20),
          real(u"SteuerSatz"),  money(u"EKPreis"),    money(u"VKPreis"),    money(u"VKPreis2"),
          money(u"VKPreis3"),   real(u"SollBestand"), real(u"IstBestand"),  flag(u"Aktiv"),
          flag(u"LagerAktiv"),  flag(u"Rabatt"),      flag(u"PreisAngabe"), flag(u"VolumenAngabe"),
          flag(u"SNAngabe"),    text(u"FreiFeld", 50)},
         {{{u"Nummer"}, true}, {{u"Name"}}, {{u"WarenGruppe"}}, {{u"SteuerSatz"}}}},
        {u"ArtikelLieferanten",
         {text(u"ArtikelNummer", 30), whole(u"LieferantID"), text(u"BestellNummer", 50), money(u"EKPreis")},
         {{{u"ArtikelNummer"}}, {{u"LieferantID"}}, {{u"BestellNummer"}}}},
        {u"ArtikelSerienNummern",
         {text(u"ArtikelNummer", 30), text(u"SNNummer", 50), whole(u"RechnungID"), text(u"VKDatum", 30),
          text(u"EKDatum", 30)},
         {{{u"ArtikelNummer"}}, {{u"SNNummer"}}, {{u"RechnungID"}}}},
        {u"AktionsPreise",
         {text(u"ArtikelNummer", 30), text(u"ArtikelName", 100), money(u"VKPreis"), date(u"Von"),
          date(u"Bis"), money(u"AktionsPreis")},
         {{{u"ArtikelNummer"}}, {{u"Bis"}}}},
        {u"VerbundArtikel",
         {text(u"SourceArtikelNummer", 30), text(u"DestArtikelNummer", 30), text(u"ArtikelName", 100),
          small(u"Anzahl")},
         {{{u"SourceArtikelNummer"}}, {{u"DestArtikelNummer"}}}},
        {u"Lieferanten",
         {counter(u"LieferantID"), text(u"KundenNummer", 30), text(u"Anrede", 30), text(u"Name_1", 50),
          text(u"Name_2", 50), text(u"Strasse", 100), text(u"PLZ", 5), text(u"Ort", 100),
          text(u"Telefon", 20), text(u"Telefax", 20), text(u"EMail", 255), text(u"Internet", 255),
          text(u"Land", 100, u"\"Deutschland\""), text(u"Bank", 100), text(u"BLZ", 20), text(u"Konto", 20)},
         {{{u"Name_1"}}}},
        {u"Kunden",
         {counter(u"KundenID"), text(u"KundenNummer", 30), text(u"Anrede", 30), text(u"Name_1", 50),
          text(u"Name_2", 50), text(u"Strasse", 100), text(u"PLZ", 10), text(u"Ort", 100),
          text(u"Land", 100, u"\"Deutschland\""), text(u"Telefon", 30), text(u"Telefax", 30),
          text(u"Mobil", 30), text(u"EMail", 255), real(u"Rabatt"), small(u"PreisGruppe"), flag(u"EKPreis"),
          flag(u"Gesperrt"), text(u"FreiFeld", 100), memo(u"LangText")},
         {{{u"KundenNummer"}}, {{u"Name_1"}}, {{u"Ort"}}}},
        {u"KundenKFZInfo",
         {counter(u"ID"), whole(u"KundenID"), text(u"Kennzeichen", 15), memo(u"Halter"), text(u"TUEV", 7),
          text(u"AU", 7), text(u"Schluessel2", 4), text(u"Schluessel3", 3), text(u"Marke", 20),
          text(u"Typ", 20), text(u"FahrgestellNr", 17), text(u"KW", 7), text(u"Hubraum", 4),
          today(u"Erstzulassung")},
         {{{u"KundenID"}}}},
        {u"Personal",
         {counter(u"ID"),      text(u"Name", 50),          text(u"Vorname", 50),    text(u"Strasse", 100),
          text(u"PLZ", 10),    text(u"Ort", 100),          text(u"Telefon", 30),    text(u"Mobil", 30),
          text(u"EMail", 255), text(u"PIN", 20),           flag(u"Gesperrt"),       flag(u"R_Artikel"),
          flag(u"R_Kunden"),   flag(u"R_Personal"),        flag(u"R_Berichte"),     flag(u"R_Rabatt"),
          flag(u"R_Setup"),    flag(u"R_KassenAbschluss"), flag(u"R_RechnungEdit"), flag(u"R_SystemExit")},
         {{{u"Name"}}}},
        {u"ShortCut",
         {whole(u"GroupNumber"), whole(u"Number"), text(u"Name", 100), text(u"ArtikelNummer", 30)},
         {{{u"GroupNumber", u"Number"}}, {{u"ArtikelNummer"}}}},
        {u"ShortCutGroup", {whole(u"GroupNumber"), text(u"GroupName", 50)}, {{{u"GroupNumber"}}}},
        {u"Colors",
         {counter(u"ID"), text(u"Name", 50), whole(u"BC"), whole(u"PBC"), whole(u"TBC"), whole(u"FC"),
          flag(u"Aktiv")},
         {}},
    };
}

std::vector<TableRow> openSales() {
    return {
        {u"Bestellung",
         {counter(u"ID"),
          text(u"Maschine", 50),
          today(),
          timeOfDay(),
          whole(u"KundenNummer"),
          whole(u"PersonalNummer"),
          text(u"ArtikelNummer", 30),
          text(u"ArtikelName", 100),
          real(u"Buchungs_Menge"),
          real(u"Menge"),
          text(u"Einheit", 20),
          money(u"EKPreis"),
          money(u"VKPreis"),
          money(u"VKPreis_Rabatt"),
          real(u"SteuerSatz"),
          flag(u"IsRabatt"),
          text(u"SNNummer", 50),
          text(u"WarenGruppe", 50),
          memo(u"LangText"),
          text(u"Zusatz1", 20),
          text(u"Zusatz2", 20),
          text(u"PreisInfo", 50)},
         {{{u"Maschine"}}, {{u"ArtikelNummer"}}}},
        {u"TMPOrder",
         {text(u"Maschine", 50),     date(u"Datum"),           date(u"Zeit"),
          whole(u"KundenNummer"),    whole(u"PersonalNummer"), text(u"ArtikelNummer", 30),
          text(u"ArtikelName", 100), real(u"Buchungs_Menge"),  real(u"Menge"),
          text(u"Einheit", 20),      money(u"EKPreis"),        money(u"VKPreis"),
          money(u"VKPreis_Rabatt"),  real(u"SteuerSatz"),      flag(u"IsRabatt"),
          text(u"SNNummer", 50),     text(u"WarenGruppe", 50), text(u"PreisInfo", 50),
          memo(u"LangText"),         text(u"Zusatz1", 20),     text(u"Zusatz2", 20)},
         {{{u"Maschine"}}}},
        {u"KundenKontoOrder",
         {date(u"Datum"),
          date(u"Zeit"),
          whole(u"KundenNummer"),
          whole(u"PersonalNummer"),
          text(u"ArtikelNummer", 100),
          text(u"ArtikelName", 100),
          real(u"Buchungs_Menge"),
          real(u"Menge"),
          text(u"Einheit", 255),
          money(u"EKPreis"),
          money(u"VKPreis"),
          money(u"VKPreis_Rabatt"),
          real(u"SteuerSatz"),
          flag(u"IsRabatt"),
          text(u"SNNummer", 50),
          text(u"WarenGruppe", 50),
          text(u"Zusatz1", 20),
          text(u"Zusatz2", 20),
          memo(u"LangText"),
          text(u"PreisInfo", 50)},
         {{{u"KundenNummer"}}}},
    };
}

std::vector<TableRow> documents() {
    return {
        {u"Rechnung",
         {counter(u"RechnungID"), text(u"Maschine", 50), date(u"Datum"), date(u"Zeit"),
          whole(u"PersonalNummer"), whole(u"KundenNummer"), text(u"Kunde", 101), text(u"ZahlArt", 30),
          money(u"Betrag_Gesamt"), money(u"Betrag_Gegeben"), money(u"Betrag_Zurueck"),
          text(u"KartenTyp", 100), flag(u"Abschluss"), whole(u"AbschlussID"), flag(u"UpdateKassenBuch"),
          memo(u"Zusatz")},
         {{{u"Maschine", u"Abschluss"}},
          {{u"Datum"}},
          {{u"KundenNummer"}},
          {{u"PersonalNummer"}},
          {{u"AbschlussID"}}}},
        {u"RechnungsDetail",
         {whole(u"RechnungID"),
          text(u"Maschine", 50),
          date(u"Datum"),
          date(u"Zeit"),
          whole(u"PersonalNummer"),
          whole(u"KundenNummer"),
          text(u"Kunde", 101),
          text(u"ArtikelNummer", 30),
          text(u"ArtikelName", 100),
          real(u"Buchungs_Menge"),
          real(u"Menge"),
          text(u"Einheit", 20),
          money(u"EKPreis"),
          money(u"VKPreis_Brutto"),
          real(u"VKPreis_Netto"),
          money(u"VKPreisOrg"),
          real(u"SteuerSatz"),
          text(u"SNNummer", 50),
          text(u"WarenGruppe", 50),
          memo(u"LangText"),
          text(u"Zusatz1", 20),
          text(u"Zusatz2", 20),
          text(u"PreisInfo", 50),
          text(u"BestellNummer", 50)},
         {{{u"RechnungID"}}, {{u"Datum"}}, {{u"KundenNummer"}}, {{u"ArtikelNummer"}}, {{u"SNNummer"}}}},
        {u"Angebote",
         {counter(u"AngebotID"), text(u"Maschine", 50), today(), timeOfDay(), whole(u"PersonalNummer"),
          whole(u"KundenNummer"), text(u"Kunde", 101), money(u"Betrag_Gesamt")},
         {{{u"Datum"}}, {{u"KundenNummer"}}}},
        {u"AngebotsDetail",
         {whole(u"AngebotID"), text(u"ArtikelNummer", 30), text(u"ArtikelName", 100), real(u"Buchungs_Menge"),
          real(u"Menge"), text(u"Einheit", 20), money(u"VKPreis_Brutto"), real(u"VKPreis_Netto"),
          real(u"SteuerSatz"), text(u"SNNummer", 50), money(u"EKPreis"), text(u"WarenGruppe", 50),
          memo(u"LangText"), text(u"Zusatz1", 20), text(u"Zusatz2", 20), text(u"PreisInfo", 50),
          text(u"BestellNummer", 50)},
         {{{u"AngebotID"}}}},
        {u"Lieferung",
         {counter(u"LieferungID"), text(u"Maschine", 50), today(), timeOfDay(), whole(u"PersonalNummer"),
          whole(u"KundenNummer"), text(u"Kunde", 101), money(u"Betrag_Gesamt"), flag(u"InRechnung"),
          money(u"Betrag_Gegeben"), money(u"Betrag_Zurueck"), text(u"ZahlArt", 30), text(u"KartenTyp", 100),
          flag(u"Abschluss"), memo(u"Zusatz")},
         {{{u"Datum"}}, {{u"KundenNummer"}}}},
        {u"LieferungDetail",
         {whole(u"LieferungID"), text(u"ArtikelNummer", 30), text(u"ArtikelName", 100),
          real(u"Buchungs_Menge"), real(u"Menge"), text(u"Einheit", 20), money(u"VKPreis_Brutto"),
          real(u"VKPreis_Netto"), real(u"SteuerSatz"), text(u"SNNummer", 50), money(u"EKPreis"),
          text(u"WarenGruppe", 50), memo(u"LangText"), text(u"Zusatz1", 20), text(u"Zusatz2", 20),
          text(u"PreisInfo", 50), text(u"BestellNummer", 50)},
         {{{u"LieferungID"}}}},
    };
}

std::vector<TableRow> tillMovements() {
    return {
        {u"Gutscheine",
         {counter(u"GutscheinID"), today(), timeOfDay(), money(u"Betrag"), real(u"SteuerSatz"),
          text(u"WarenGruppe", 50), text(u"Name", 100)},
         {}},
        {u"Stornos",
         {text(u"Maschine", 50), today(), timeOfDay(), whole(u"PersonalNummer"), text(u"PersonalName", 100),
          text(u"ArtikelNummer", 30), text(u"ArtikelName", 100), text(u"WarenGruppe", 50),
          real(u"Buchungs_Menge"), real(u"Menge"), text(u"Einheit", 20), flag(u"Abschluss"),
          whole(u"AbschlussID")},
         {{{u"Maschine", u"Abschluss"}}, {{u"AbschlussID"}}}},
        // What a till is booking: named before the first write of a receipt, gone with the lines of the sale.
        // One that was left unfinished stays for the owner.
        {u"BuchungsMarke",
         {text(u"Maschine", 50), whole(u"RechnungID"), date(u"Datum"), date(u"Zeit"),
          whole(u"PersonalNummer"), whole(u"KundenNummer"), text(u"Kunde", 101), text(u"ZahlArt", 30),
          money(u"Betrag_Gesamt"), money(u"Betrag_Gegeben"), money(u"Betrag_Zurueck"),
          text(u"KartenTyp", 100), flag(u"IsLieferschein"), whole(u"LetzteZeile"), whole(u"Zeilen"),
          whole(u"Bestand"), flag(u"Unvollstaendig")},
         {}},
        {u"KassenBestand", {text(u"Maschine", 50), money(u"Bestand")}, {{{u"Maschine"}}}},
        {u"KassenAbschluss",
         {counter(u"AbschlussID"), text(u"Maschine", 50), today(), timeOfDay(), whole(u"PersonalNummer"),
          text(u"PersonalName", 100), money(u"WechselGeld"), money(u"KassenBestand"), flag(u"Abschluss")},
         {{{u"Datum"}}}},
    };
}

} // namespace

const std::vector<TableRow>& tables() {
    static const std::vector<TableRow> all = [] {
        std::vector<TableRow> list = masterData();
        for (const auto& part : {openSales(), documents(), tillMovements()})
            list.insert(list.end(), part.begin(), part.end());
        return list;
    }();
    return all;
}

} // namespace schema
