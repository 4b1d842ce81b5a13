#include "Kunde.h"

#include <session/Globals.h>
#include <session/gKunde.h>
#include <store/Database.h>
#include <store/Recordset.h>

using namespace Qt::StringLiterals;

void LoadBelegKunde(int KundenID) {
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM Kunden WHERE KundenID="_s + QString::number(KundenID) + u';');
    gKunde = {};
    gKunde.KundenNummer = u"0"_s;
    if (rs->Eof()) return;
    gKunde.Anrede = rs->Text(u"Anrede");
    gKunde.KundenID = rs->Long(u"KundenID");
    gKunde.Name_1 = rs->Text(u"Name_1");
    gKunde.Name_2 = rs->Text(u"Name_2");
    gKunde.KundenNummer = rs->Text(u"KundenNummer");
    gKunde.Ort = rs->Text(u"Ort");
    gKunde.PLZ = rs->Text(u"PLZ");
    gKunde.Land = rs->Text(u"Land");
    gKunde.Rabatt = rs->Long(u"Rabatt");
    gKunde.EKPreis = rs->Flag(u"EKPreis");
    gKunde.Strasse = rs->Text(u"Strasse");
    gKunde.PreisGruppe = rs->Long(u"PreisGruppe");
    if (!gShowKundenKFZInfo) return;
    // A customer with several vehicles is known by the one that was entered first.
    const auto vehicles = gDB->OpenRecordset(u"SELECT Kennzeichen FROM KundenKFZInfo WHERE KundenID="_s +
                                             QString::number(KundenID) + u" ORDER BY ID;"_s);
    if (!vehicles->Eof()) gKunde.Kennzeichen = vehicles->Text(u"Kennzeichen");
}
