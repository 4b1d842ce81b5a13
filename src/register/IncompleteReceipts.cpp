#include "BookingMark.h"

#include <register/IncompleteReceipts.h>
#include <register/Prices.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QStringList>

using namespace Qt::StringLiterals;

namespace till {

std::vector<IncompleteReceipt> IncompleteReceipts() {
    std::vector<IncompleteReceipt> receipts;
    if (!BookingMark::isKept()) return receipts;
    const auto rs = gDB->OpenRecordset(
        u"SELECT *, (SELECT COUNT(*) FROM Rechnung AS r WHERE r.RechnungID=m.RechnungID) AS Kopf, "
        "(SELECT COUNT(*) FROM RechnungsDetail AS d WHERE d.RechnungID=m.RechnungID) AS Gebucht "
        "FROM BuchungsMarke AS m WHERE m.Unvollstaendig=-1 ORDER BY m.RechnungID;"_s);
    for (; !rs->Eof(); rs->MoveNext())
        receipts.push_back({rs->Long(u"RechnungID"), rs->Text(u"Maschine"), receiptTime(*rs),
                            rs->Long(u"PersonalNummer"), rs->Text(u"ZahlArt"), rs->Money(u"Betrag_Gesamt"),
                            rs->Long(u"Zeilen"), rs->Long(u"Gebucht"), rs->Long(u"Bestand"),
                            rs->Long(u"Kopf") > 0});
    return receipts;
}

QString IncompleteReceiptsText(const std::vector<IncompleteReceipt>& receipts) {
    if (receipts.empty()) return u"Alle Belege sind vollständig gebucht."_s;
    constexpr std::size_t shown = 15;
    QStringList lines{u"Diese Belege sind unvollständig geblieben:\n"_s};
    for (std::size_t i = 0; i < receipts.size() && i < shown; ++i) {
        const IncompleteReceipt& one = receipts[i];
        lines << u"Beleg %1 über %2 € (%3), %4 an %5: gebucht %6 von %7 Zeilen, im Bestand %8."_s
                     .arg(one.RechnungID)
                     .arg(MoneyText(one.Betrag_Gesamt), one.ZahlArt, whenText(one.at), one.Maschine)
                     .arg(one.Gebucht)
                     .arg(one.Zeilen)
                     .arg(one.Bestand);
    }
    if (receipts.size() > shown) lines << u"und %1 weitere"_s.arg(receipts.size() - shown);
    return lines.join(u'\n');
}

void SettleIncompleteReceipt(int RechnungID) {
    gDB->Execute(u"DELETE FROM BuchungsMarke WHERE Unvollstaendig=-1 AND RechnungID="_s +
                 sql::number(RechnungID) + u';');
}

QString whenText(const QDateTime& at) {
    const QString time = at.time().toString(u"hh:mm"_s);
    return at.date() == Today() ? u"um "_s + time
                                : u"am %1 um %2"_s.arg(at.date().toString(u"dd.MM.yyyy"_s), time);
}

QDateTime receiptTime(const Recordset& row) {
    const auto day = row.Date(u"Datum"), time = row.Date(u"Zeit");
    return {day ? day->date() : QDate(), time ? time->time() : QTime(0, 0)};
}

} // namespace till
