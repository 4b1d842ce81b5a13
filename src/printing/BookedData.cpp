#include "BookedData.h"

#include <session/Globals.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace {

QString whereNummer(const BelegTabellen& tabellen, int nummer) {
    return u" WHERE "_s + tabellen.Schluessel + u'=' + QString::number(nummer);
}

void readCommon(BelegDaten& beleg, FormularArt art, const Recordset& kopf) {
    const BelegTabellen tabellen = TabellenOf(art);
    beleg.Nummer = kopf.Long(tabellen.Schluessel);
    if (const auto day = kopf.Date(u"Datum")) beleg.Datum = day->date();
    beleg.Bearbeiter = SessionBearbeiter();
    beleg.Firma = SessionFirma();
    beleg.Kunde = gKunde;
    beleg.Betrag_Gesamt = kopf.Money(u"Betrag_Gesamt");
    beleg.Zeilen = ReadZeilen(tabellen, beleg.Nummer);
    beleg.Steuern = ReadSteuern(tabellen, beleg.Nummer, gDecimalStellen > 2);
}

} // namespace

BelegTabellen TabellenOf(FormularArt art) {
    switch (art) {
    case FormularArt::Rechnung:
        return {u"Rechnung"_s, u"RechnungsDetail"_s, u"RechnungID"_s};
    case FormularArt::Angebot:
        return {u"Angebote"_s, u"AngebotsDetail"_s, u"AngebotID"_s};
    case FormularArt::Lieferung:
        return {u"Lieferung"_s, u"LieferungDetail"_s, u"LieferungID"_s};
    case FormularArt::Ankauf:
        break; // is not booked in tables of its own
    }
    RaiseInvalidCall();
}

std::unique_ptr<Recordset> OpenKopf(const BelegTabellen& tabellen, int nummer) {
    return gDB->OpenRecordset(u"SELECT * FROM "_s + tabellen.Kopf + whereNummer(tabellen, nummer) + u';');
}

std::vector<SteuerZeile> ReadSteuern(const BelegTabellen& tabellen, int nummer, bool fromNetto) {
    const QString gross = fromNetto ? u"((VKPreis_Netto*Buchungs_Menge) * (SteuerSatz / 100 + 1))"_s
                                    : u"(VKPreis_Brutto*Buchungs_Menge)"_s;
    const auto rs =
        gDB->OpenRecordset(u"SELECT SteuerSatz, SUM(VKPreis_Netto*Buchungs_Menge) AS Netto, SUM("_s + gross +
                           u"-(VKPreis_Netto*Buchungs_Menge)) AS Steuer FROM "_s + tabellen.Zeilen +
                           whereNummer(tabellen, nummer) + u" GROUP BY SteuerSatz;"_s);
    std::vector<SteuerZeile> steuern;
    for (; !rs->Eof(); rs->MoveNext())
        steuern.push_back({rs->Number(u"SteuerSatz"), rs->Number(u"Netto"), rs->Number(u"Steuer")});
    return steuern;
}

std::vector<BelegZeile> ReadZeilen(const BelegTabellen& tabellen, int nummer) {
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM "_s + tabellen.Zeilen + whereNummer(tabellen, nummer) + u';');
    // Offers and delivery notes keep no list price.
    const bool listPrice = rs->FieldNames().contains(u"VKPreisOrg", Qt::CaseInsensitive);
    std::vector<BelegZeile> zeilen;
    for (; !rs->Eof(); rs->MoveNext()) {
        BelegZeile& zeile = zeilen.emplace_back();
        zeile.ArtikelNummer = rs->Text(u"ArtikelNummer");
        zeile.ArtikelName = rs->Text(u"ArtikelName");
        zeile.Buchungs_Menge = rs->Number(u"Buchungs_Menge");
        zeile.Menge = rs->Number(u"Menge");
        zeile.Einheit = rs->Text(u"Einheit");
        zeile.VKPreis_Brutto = rs->Money(u"VKPreis_Brutto");
        zeile.VKPreis_Netto = rs->Number(u"VKPreis_Netto");
        if (listPrice) zeile.VKPreisOrg = rs->Money(u"VKPreisOrg");
        zeile.SteuerSatz = rs->Number(u"SteuerSatz");
        zeile.SNNummer = rs->Text(u"SNNummer");
        zeile.LangText = rs->Text(u"LangText");
        zeile.Zusatz1 = rs->Text(u"Zusatz1");
        zeile.Zusatz2 = rs->Text(u"Zusatz2");
        zeile.PreisInfo = rs->Text(u"PreisInfo");
        zeile.BestellNummer = rs->Text(u"BestellNummer");
    }
    return zeilen;
}

FirmaDaten SessionFirma() { return {{gKopf1, gKopf2, gKopf3, gKopf4, gKopf5}, gUSt}; }

QString SessionBearbeiter() { return gKassenUser.Vorname + u' ' + gKassenUser.Name; }

BonDaten ReadBon(const Recordset& kopf) {
    BonDaten bon;
    readCommon(bon, FormularArt::Rechnung, kopf);
    bon.ZahlArt = kopf.Text(u"ZahlArt");
    bon.KartenTyp = kopf.Text(u"KartenTyp");
    bon.Betrag_Gegeben = kopf.Money(u"Betrag_Gegeben");
    bon.Betrag_Zurueck = kopf.Money(u"Betrag_Zurueck");
    return bon;
}

FormularDaten ReadFormular(FormularArt art, const Recordset& kopf) {
    FormularDaten formular;
    readCommon(formular, art, kopf);
    formular.Art = art;
    if (art == FormularArt::Lieferung) formular.Zusatz = kopf.Text(u"Zusatz");
    return formular;
}
