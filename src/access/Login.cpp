#include <access/Login.h>
#include <session/Globals.h>
#include <session/Keys.h>
#include <session/MsgBox.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>

using namespace Qt::StringLiterals;

namespace {

std::vector<LoginEntry> entries(const QString& source) {
    std::vector<LoginEntry> list;
    const auto personal = gDB->OpenRecordset(source);
    for (; !personal->Eof(); personal->MoveNext()) {
        list.push_back({u"ID"_s + QString::number(personal->Long(u"ID")),
                        personal->Text(u"Vorname") + u' ' + personal->Text(u"Name")});
    }
    return list;
}

void readRights(const Recordset& rs, Rechte& r) {
    r.R_Artikel = rs.Flag(u"R_Artikel");
    r.R_Kunden = rs.Flag(u"R_Kunden");
    r.R_Personal = rs.Flag(u"R_Personal");
    r.R_Berichte = rs.Flag(u"R_Berichte");
    r.R_Rabatt = rs.Flag(u"R_Rabatt");
    r.R_Setup = rs.Flag(u"R_Setup");
    r.R_KassenAbschluss = rs.Flag(u"R_KassenAbschluss");
    r.R_RechnungEdit = rs.Flag(u"R_RechnungEdit");
    r.R_SystemExit = rs.Flag(u"R_SystemExit");
}

/// The person's row as it is now, also when they were blocked after the list was filled; nullptr when it is
/// gone.
std::unique_ptr<Recordset> find(const QString& Key) {
    auto rs =
        gDB->OpenRecordset(u"SELECT * FROM Personal WHERE ID="_s + QString::number(GetKeyID(Key, 2)) + u';');
    if (rs->Eof()) rs.reset();
    return rs;
}

void tellBlocked() {
    MsgBox(u"Das System konnte Sie nicht anmelden, da Ihr Konto im Moment gesperrt ist. Wenden Sie sich an "
           "den dafür zuständigen Mitarbeiter."_s,
           MsgIcon::Critical);
}

} // namespace

std::vector<LoginEntry> LoadActiveUsers() { return entries(u"SELECT * FROM Personal WHERE Gesperrt=0;"_s); }

LoginResult Anmelden(const QString& Key, const QString& PIN) {
    const auto found = find(Key);
    if (!found) {
        MsgBox(
            u"Die angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich wurden diese durch einen "
            "anderen Benutzer gelöscht.\n\nDas System aktualisiert jetzt Ihre Ansicht."_s);
        return LoginResult::NotFound;
    }
    const Recordset& rs = *found;
    gUser.ID = rs.Long(u"ID");
    gUser.Name = rs.Text(u"Name");
    gUser.Vorname = rs.Text(u"Vorname");
    gUser.Strasse = rs.Text(u"Strasse");
    gUser.PLZ = rs.Text(u"PLZ");
    gUser.Ort = rs.Text(u"Ort");
    gUser.Telefon = rs.Text(u"Telefon");
    gUser.Mobil = rs.Text(u"Mobil");
    gUser.EMail = rs.Text(u"EMail");
    gUser.PIN = rs.Text(u"PIN");
    gUser.Gesperrt = rs.Flag(u"Gesperrt");
    readRights(rs, gUser);

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

std::vector<LoginEntry> LoadAllUsers() { return entries(u"Personal"_s); }

LoginResult KassenAnmelden(const QString& Key, const QString& PIN) {
    const auto found = find(Key);
    if (!found) {
        MsgBox(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich wurden "
               u"diese durch "
               "einen anderen Benutzer gelöscht.\n\nDas System aktualisiert jetzt Ihre Ansicht."_s);
        return LoginResult::NotFound;
    }
    const Recordset& rs = *found;
    if (rs.Flag(u"Gesperrt")) {
        tellBlocked();
        gKassenUser.Result = 0;
        return LoginResult::Blocked;
    }
    if (PIN != rs.Text(u"PIN")) {
        MsgBox(u"Sie haben eine falsche PIN eingeben."_s, MsgIcon::Critical);
        gKassenUser.Result = 0;
        return LoginResult::WrongPin;
    }
    gKassenUser.ID = rs.Long(u"ID");
    gKassenUser.Name = rs.Text(u"Name");
    gKassenUser.Vorname = rs.Text(u"Vorname");
    gKassenUser.PIN = rs.Text(u"PIN");
    gKassenUser.Gesperrt = rs.Flag(u"Gesperrt");
    readRights(rs, gKassenUser);
    gKassenUser.Result = 1;
    return LoginResult::Done;
}
