#include "Advice.h"
#include "Sale.h"

#include <printing/Beleg.h>
#include <register/IncompleteReceipts.h>
#include <register/ReceiptHistory.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <text/Convert.h>

#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr int askForReceipt = 3;

QString withID(int RechnungID) { return u" WHERE RechnungID="_s + sql::number(RechnungID); }

} // namespace

sql::Query ReceiptHistory::List(std::optional<QDate> day) {
    const QString select = u"SELECT RechnungID, Datum, Zeit, Kunde, ZahlArt, Betrag_Gesamt FROM Rechnung"_s;
    return {day ? select + u" WHERE Datum="_s + sql::date(*day) : select, u"RechnungID DESC"_s};
}

std::optional<QDate> ReceiptHistory::DayOf(int RechnungID) {
    const auto rs = gDB->OpenRecordset(u"SELECT Datum FROM Rechnung"_s + withID(RechnungID) + u';');
    if (rs->Eof()) return std::nullopt;
    const auto day = rs->Date(u"Datum");
    return day ? day->date() : QDate();
}

void ReceiptHistory::Print(int RechnungID) {
    const auto rs = gDB->OpenRecordset(u"SELECT ZahlArt FROM Rechnung"_s + withID(RechnungID) + u';');
    const QString kind = rs->Eof() ? QString() : rs->Text(u"ZahlArt");
    const QScopedValueRollback customer(gKunde);
    const QScopedValueRollback oneCopy(gDruckerKopies, 1);
    if (kind.startsWith(u"RECHNUNG"))
        return Print_Formular(RechnungID, u"Rechnung.pld"_s, 0, m_sale.printDialogs());
    const QScopedValueRollback mode(gPrintMode, askForReceipt);
    m_sale.PrintReceipt(RechnungID, kind == u"KARTE" ? BelegArt::Karte : BelegArt::Kasse);
}

bool ReceiptHistory::Delete(int RechnungID) {
    if (!gKassenUser.R_RechnungEdit) {
        MsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen."_s);
        return false;
    }
    if (MsgBox(
            u"ACHTUNG: Diese Aktion könnte Ihr Betriebsergebnis verfälschen. Auch müssen Sie sich über die "
            "rechtlichen Folgen im klaren sein.\n\nMöchten Sie diesen Beleg wirklich löschen?"_s,
            MsgIcon::Question, MsgButtons::YesNo, u"Beleg löschen..."_s, MsgAnswer::No) != MsgAnswer::Yes)
        return false;
    bool lines = false;
    WithAdvice(
        [&] {
            gDB->Execute(u"DELETE FROM RechnungsDetail"_s + withID(RechnungID) + u';');
            lines = true;
            gDB->Execute(u"DELETE FROM Rechnung"_s + withID(RechnungID) + u';');
        },
        [&] {
            return lines
                       ? u"Die Zeilen von Beleg %1 sind gelöscht, sein Kopf steht noch da. Bitte löschen Sie ihn "
                         "noch einmal."_s.arg(RechnungID)
                       : QString();
        });
    return true;
}

bool ReceiptHistory::IsIncomplete(int RechnungID) {
    return std::ranges::any_of(IncompleteReceipts(),
                               [&](const IncompleteReceipt& one) { return one.RechnungID == RechnungID; });
}

bool ReceiptHistory::Settle(int RechnungID) {
    if (!AskYesNo(
            u"Die Buchung von Beleg %1 wurde unterbrochen. Haben Sie geprüft, welche Zeilen und Bestände fehlen, "
            "und soll der Vermerk jetzt verschwinden?"_s.arg(RechnungID),
            u"Unvollständiger Beleg..."_s))
        return false;
    SettleIncompleteReceipt(RechnungID);
    return true;
}

} // namespace till
