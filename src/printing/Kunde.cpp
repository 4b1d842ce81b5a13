#include "Kunde.h"

#include <session/Globals.h>
#include <session/KundenFields.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

void LoadBelegKunde(int KundenID) {
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM Kunden WHERE KundenID="_s + sql::number(KundenID) + u';');
    gKunde = {};
    gKunde.KundenNummer = u"0"_s;
    if (rs->Eof()) return;
    load(*rs, KundenFields(), gKunde);
    if (!gShowKundenKFZInfo) return;
    // A customer with several vehicles is known by the one that was entered first.
    const auto vehicles = gDB->OpenRecordset(u"SELECT Kennzeichen FROM KundenKFZInfo WHERE KundenID="_s +
                                             sql::number(KundenID) + u" ORDER BY ID;"_s);
    if (!vehicles->Eof()) gKunde.Kennzeichen = vehicles->Text(u"Kennzeichen");
}
