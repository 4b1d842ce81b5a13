#include "PaperInDoubt.h"

#include "LineKey.h"
#include "Sale.h"

#include <register/Papers.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <store/Database.h>
#include <store/Recordset.h>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Day and time, for comparing; 0 where a row has none.
double moment(const Recordset& rs) {
    const auto day = rs.Date(u"Datum"), time = rs.Date(u"Zeit");
    return (day ? day->days : 0) + (time ? time->days : 0);
}

bool tell(Sale& sale, const PaperKind& kind) {
    const auto head = gDB->OpenRecordset(
        u"SELECT * FROM %1 WHERE Maschine=%2 AND %3=(SELECT MAX(%3) FROM %1 WHERE Maschine=%2);"_s.arg(
            kind.head, sql::text(gMaschine), kind.key));
    if (head->Eof()) return false;
    const int id = head->Long(kind.key);
    std::vector<LineKey> written = LinesOf(
        u"SELECT * FROM %1 WHERE %2=%3;"_s.arg(kind.detail, kind.key, sql::number(id)), u"VKPreis_Brutto");
    if (written.empty()) return false;

    constexpr double second = 1.0 / 86400;
    const auto open = gDB->OpenRecordset(u"SELECT * FROM Bestellung WHERE Maschine="_s +
                                         sql::text(gMaschine) + u" ORDER BY ID ASC;"_s);
    // What came behind the paper was entered later.
    std::vector<LineKey> first;
    int lastID = 0, older = 0;
    for (; !open->Eof() && moment(*open) < moment(*head) + second / 2; open->MoveNext(), ++older) {
        if (first.size() == written.size()) continue;
        first.push_back(KeyOf(*open));
        lastID = open->Long(u"ID");
    }
    // The lines of a paper have no order of their own.
    std::sort(first.begin(), first.end());
    std::sort(written.begin(), written.end());
    if (first != written) return false;

    const QString title = u"Unterbrochener Vorgang..."_s;
    QString text = u"%1 %2 für %3 über %4 € ist geschrieben"_s.arg(kind.article)
                       .arg(id)
                       .arg(head->Text(u"Kunde"), MoneyText(head->Money(u"Betrag_Gesamt")));
    const int lineCount = int(written.size());
    if (lineCount < older) {
        text += u", aber es stehen wohl erst %1 von %2 Zeilen darauf. Alle Zeilen stehen noch im Verkauf."_s
                    .arg(lineCount)
                    .arg(older);
        if (kind.movesStock)
            text += u" Der Bestand der ersten %1 Zeilen ist schon abgebucht; ob auch der von Zeile %2, weiß "
                    "niemand."_s.arg(lineCount - 1)
                        .arg(lineCount);
        MsgBox(
            text +
                u"\n\nBitte prüfen Sie das in der Historie, bevor Sie die Zeilen noch einmal schreiben oder "
                "abrechnen."_s,
            MsgIcon::Exclamation, MsgButtons::OK, title);
        return true;
    }
    text +=
        u", und seine %1 Zeilen stehen noch im Verkauf. Wahrscheinlich wurde die Kasse unterbrochen, bevor "
        "sie verschwanden."_s.arg(lineCount);
    if (kind.movesStock)
        text += u" Ihr Bestand ist schon abgebucht, nur bei der letzten Zeile ist das nicht sicher."_s;
    text += u"\n\nSollen die Zeilen jetzt den Verkauf verlassen? Mit \"Nein\" bleiben sie offen%1."_s.arg(
        kind.movesStock
            ? u"; werden sie noch einmal geschrieben oder bezahlt, sinkt der Bestand ein zweites Mal"_s
            : QString());
    if (MsgBox(text, MsgIcon::Question, MsgButtons::YesNo, title, MsgAnswer::No) != MsgAnswer::Yes)
        return true;
    sale.RemoveLines(lastID);
    sale.basket.LoadBestellungen();
    return true;
}

} // namespace

bool TellPaperInDoubt(Sale& sale) {
    if (sale.basket.isEmpty()) return false;
    return tell(sale, KindOf(Papier::Lieferung)) || tell(sale, KindOf(Papier::Angebot));
}

} // namespace till
