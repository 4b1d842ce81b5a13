#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/RowGone.h>
#include <store/Database.h>
#include <store/Recordset.h>

using namespace Qt::StringLiterals;

void TellRowGone(RowGone wording) {
    const QString gone =
        u" konnten nicht gefunden werden. Wahrscheinlich wurden diese durch einen anderen Benutzer gelöscht."_s;
    const QString somebody = gone + u"\n\nDas System aktualisiert jetzt Ihre Ansicht."_s;
    switch (wording) {
    case RowGone::Daten:
        MsgBox(u"Die angeforderten Daten"_s + somebody);
        return;
    case RowGone::IhreDaten:
        MsgBox(u"Die von Ihnen angeforderten Daten"_s + somebody);
        return;
    case RowGone::Bereich:
        MsgBox(u"Die von Ihnen angeforderten Daten"_s + gone +
               u"\nDas System aktualisiert jetzt Ihre Ansicht..."_s);
        return;
    case RowGone::Zeile:
        MsgBox(u"Das System konnte die angeforderten Daten nicht finden. Wahrscheinlich wurden diese durch "
               "einen anderen Benutzer gelöscht, oder es liegt ein Datenbankproblem vor."_s,
               MsgIcon::Critical);
    }
}

std::unique_ptr<Recordset> OpenRow(const QString& query, RowGone wording) {
    auto rs = gDB->OpenRecordset(query);
    if (!rs->Eof()) return rs;
    TellRowGone(wording);
    return nullptr;
}
