#include <access/Login.h>
#include <access/PersonalRecord.h>
#include <session/Globals.h>
#include <session/Keys.h>
#include <session/MsgBox.h>
#include <session/RowGone.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The person's row as it is now, also when they were blocked after the list was filled; nothing, with the
/// loss told, when it is gone.
std::optional<PersonalRecord> find(const QString& Key, RowGone wording) {
    const auto rs =
        OpenRow(u"SELECT * FROM Personal WHERE ID="_s + sql::number(GetKeyID(Key, 2)) + u';', wording);
    if (!rs) return std::nullopt;
    PersonalRecord person;
    load(*rs, PersonalFields(), person);
    return person;
}

void tellBlocked() {
    MsgBox(u"Das System konnte Sie nicht anmelden, da Ihr Konto im Moment gesperrt ist. Wenden Sie sich an "
           "den dafür zuständigen Mitarbeiter."_s,
           MsgIcon::Critical);
}

} // namespace

std::vector<LoginEntry> LoadActiveUsers() {
    std::vector<LoginEntry> list;
    const auto personal = gDB->OpenRecordset(u"SELECT * FROM Personal WHERE Gesperrt=0;"_s);
    for (; !personal->Eof(); personal->MoveNext()) {
        list.push_back({u"ID"_s + QString::number(personal->Long(u"ID")),
                        personal->Text(u"Vorname") + u' ' + personal->Text(u"Name")});
    }
    return list;
}

LoginResult Anmelden(const QString& Key, const QString& PIN) {
    const auto found = find(Key, RowGone::Daten);
    if (!found) return LoginResult::NotFound;
    static_cast<Rechte&>(gUser) = *found;
    gUser.ID = found->ID;
    gUser.Name = found->Name;
    gUser.Vorname = found->Vorname;
    gUser.Strasse = found->Strasse;
    gUser.PLZ = found->PLZ;
    gUser.Ort = found->Ort;
    gUser.Telefon = found->Telefon;
    gUser.Mobil = found->Mobil;
    gUser.EMail = found->EMail;
    gUser.PIN = found->PIN;
    gUser.Gesperrt = found->Gesperrt;

    if (gUser.Gesperrt) {
        tellBlocked();
        return LoginResult::Blocked;
    }
    if (PIN != gUser.PIN) {
        MsgBox(u"Sie haben eine ungültige PIN eingegeben."_s, MsgIcon::Critical);
        return LoginResult::WrongPin;
    }
    return LoginResult::Done;
}

LoginResult KassenAnmelden(const QString& Key, const QString& PIN) {
    const auto found = find(Key, RowGone::IhreDaten);
    if (!found) return LoginResult::NotFound;
    if (found->Gesperrt) {
        tellBlocked();
        gKassenUser.Result = 0;
        return LoginResult::Blocked;
    }
    if (PIN != found->PIN) {
        MsgBox(u"Sie haben eine falsche PIN eingeben."_s, MsgIcon::Critical);
        gKassenUser.Result = 0;
        return LoginResult::WrongPin;
    }
    static_cast<Rechte&>(gKassenUser) = *found;
    gKassenUser.ID = found->ID;
    gKassenUser.Name = found->Name;
    gKassenUser.Vorname = found->Vorname;
    gKassenUser.PIN = found->PIN;
    gKassenUser.Gesperrt = found->Gesperrt;
    gKassenUser.Result = 1;
    return LoginResult::Done;
}
