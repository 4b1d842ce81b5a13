#include <access/KassenStart.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

namespace {

void loadKassenBestand(const WechselGeldFrage& AskWechselGeld) {
    if (!gAbfrageKassenBestand) return;
    const QString maschine = gSystem->ComputerName();
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM KassenBestand WHERE Maschine="_s + sql::text(maschine));
    if (!rs->Eof()) {
        gKassenBestand = rs->Money(u"Bestand");
        return;
    }
    AskWechselGeld();
    rs->AddNew();
    rs->Set(u"Maschine", maschine);
    rs->Set(u"Bestand", gKassenBestand);
    rs->Update();
}

} // namespace

void CopyUserToKassenUser() {
    static_cast<Rechte&>(gKassenUser) = gUser;
    gKassenUser.Result = 0;
    gKassenUser.ID = gUser.ID;
    gKassenUser.Name = gUser.Name;
    gKassenUser.Vorname = gUser.Vorname;
    gKassenUser.PIN = gUser.PIN;
    gKassenUser.Gesperrt = gUser.Gesperrt;
}

void PrepareStartKasse(const WechselGeldFrage& AskWechselGeld) {
    CopyUserToKassenUser();
    loadKassenBestand(AskWechselGeld);
}

bool PrepareOpenKasse(const WechselGeldFrage& AskWechselGeld) {
    CopyUserToKassenUser();
    if (gKassenUser.Gesperrt) {
        MsgBox(u"Ihr Konto ist im Moment gesperrt. Wenden Sie sich an den dafür zuständigen Mitarbeiter."_s);
        return false;
    }
    loadKassenBestand(AskWechselGeld);
    return true;
}
