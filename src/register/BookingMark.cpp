#include "BookingMark.h"

#include <register/IncompleteReceipts.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

const QString table = u"BuchungsMarke"_s;

QString ofReceipt(int id) { return u" WHERE RechnungID="_s + sql::number(id) + u';'; }

} // namespace

bool BookingMark::isKept() { return gDB->FindTableDef(table).has_value(); }

std::optional<BookingMark> BookingMark::Read() {
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM BuchungsMarke WHERE Unvollstaendig=0 AND Maschine="_s +
                                       sql::text(gMaschine) + u';');
    if (rs->Eof()) return std::nullopt;
    BookingMark mark;
    mark.RechnungID = rs->Long(u"RechnungID");
    mark.at = receiptTime(*rs);
    mark.PersonalNummer = rs->Long(u"PersonalNummer");
    mark.KundenNummer = rs->Long(u"KundenNummer");
    mark.Kunde = rs->Text(u"Kunde");
    mark.ZahlArt = rs->Text(u"ZahlArt");
    mark.Betrag_Gesamt = rs->Money(u"Betrag_Gesamt");
    mark.Betrag_Gegeben = rs->Money(u"Betrag_Gegeben");
    mark.Betrag_Zurueck = rs->Money(u"Betrag_Zurueck");
    mark.KartenTyp = rs->Text(u"KartenTyp");
    mark.IsLieferschein = rs->Flag(u"IsLieferschein");
    mark.LetzteZeile = rs->Long(u"LetzteZeile");
    mark.Zeilen = rs->Long(u"Zeilen");
    mark.Bestand = rs->Long(u"Bestand");
    return mark;
}

void BookingMark::Write() const {
    const auto rs = gDB->OpenRecordset(table);
    rs->AddNew();
    rs->Set(u"Maschine", gMaschine);
    rs->Set(u"RechnungID", RechnungID);
    rs->Set(u"Datum", DateTime::fromQDate(at.date()));
    rs->Set(u"Zeit", DateTime::fromQTime(at.time()));
    rs->Set(u"PersonalNummer", PersonalNummer);
    rs->Set(u"KundenNummer", KundenNummer);
    rs->Set(u"Kunde", Kunde);
    rs->Set(u"ZahlArt", ZahlArt);
    rs->Set(u"Betrag_Gesamt", Betrag_Gesamt);
    rs->Set(u"Betrag_Gegeben", Betrag_Gegeben);
    rs->Set(u"Betrag_Zurueck", Betrag_Zurueck);
    rs->Set(u"KartenTyp", KartenTyp);
    rs->Set(u"IsLieferschein", IsLieferschein);
    rs->Set(u"LetzteZeile", LetzteZeile);
    rs->Set(u"Zeilen", Zeilen);
    rs->Set(u"Bestand", Bestand);
    rs->Set(u"Unvollstaendig", false);
    rs->Update();
}

QString BookingMark::MovedStatement(int line) const {
    return u"UPDATE BuchungsMarke SET Bestand="_s + sql::number(line) + ofReceipt(RechnungID);
}

QString BookingMark::EndStatement() const { return u"DELETE FROM BuchungsMarke"_s + ofReceipt(RechnungID); }

void BookingMark::LeaveToOwner() const {
    gDB->Execute(u"UPDATE BuchungsMarke SET Unvollstaendig=-1"_s + ofReceipt(RechnungID));
}

void BookingMark::Drop() const { gDB->Execute(EndStatement()); }

} // namespace till
