#include "WaitingLines.h"

#include "LineKey.h"
#include "Sale.h"

#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr QStringView columns[] = {
    u"Maschine",       u"Datum",          u"Zeit",     u"KundenNummer", u"PersonalNummer", u"ArtikelNummer",
    u"ArtikelName",    u"Buchungs_Menge", u"Menge",    u"Einheit",      u"EKPreis",        u"VKPreis",
    u"VKPreis_Rabatt", u"SteuerSatz",     u"IsRabatt", u"SNNummer",     u"WarenGruppe",    u"Zusatz1",
    u"Zusatz2",        u"LangText",       u"PreisInfo"};
const QString title = u"Unterbrochener Vorgang..."_s;

QString ofThisTill(const QString& table) {
    return u" FROM "_s + table + u" WHERE Maschine="_s + sql::text(gMaschine);
}

/// The longest end of `account` with which `open` begins.
std::size_t commonEnd(const std::vector<LineKey>& account, const std::vector<LineKey>& open) {
    for (std::size_t n = std::min(account.size(), open.size()); n > 0; --n) {
        if (std::equal(account.end() - std::ptrdiff_t(n), account.end(), open.begin())) return n;
    }
    return 0;
}

bool mayDelete(const QString& question) {
    return MsgBox(question, MsgIcon::Question, MsgButtons::YesNo, title, MsgAnswer::No) == MsgAnswer::Yes;
}

QString told(std::size_t count, const LineKey& first) {
    return count == 1 ? u"Die Zeile \"%1\" steht"_s.arg(Shown(first))
                      : u"%1 Zeilen (die erste ist \"%2\") stehen"_s.arg(count).arg(Shown(first));
}

bool settleParked(Sale& sale, const std::vector<LineKey>& open) {
    const std::vector<LineKey> parked = LinesOf(u"SELECT *"_s + ofThisTill(u"TMPOrder"_s) + u';');
    const std::size_t both = std::min(parked.size(), open.size());
    if (both == 0 || !std::equal(parked.begin(), parked.begin() + std::ptrdiff_t(both), open.begin()))
        return false;
    // Whichever has more is the one that was there first.
    const bool keepsOpen = open.size() >= parked.size();
    const QString what =
        told(both, open.front()) +
        u" im offenen Verkauf und auch im geparkten. Vermutlich wurde das Parken oder das Abrufen "
        "unterbrochen."_s;
    if (!mayDelete(what +
                   (keepsOpen
                        ? u"\n\nSoll der geparkte Verkauf gelöscht werden? Mit \"Nein\" bleiben beide."_s
                        : u"\n\nSollen die offenen Zeilen gelöscht werden? Der geparkte Verkauf ist "
                          "vollständig und lässt sich wieder abrufen. Mit \"Nein\" bleiben beide."_s)))
        return true;
    gDB->Execute(u"DELETE"_s + ofThisTill(keepsOpen ? u"TMPOrder"_s : u"Bestellung"_s) + u';');
    sale.basket.LoadBestellungen();
    return true;
}

bool settleAccounts(const std::vector<LineKey>& open) {
    // The day of entry goes with a line: what was put on an account before is no copy of today's sale.
    const QStringList customers = sql::firstTexts(
        *gDB,
        u"SELECT KundenNummer FROM KundenKontoOrder WHERE ArtikelNummer=%1 AND Datum IN (SELECT Datum%2) GROUP "
        "BY KundenNummer ORDER BY KundenNummer ASC;"_s.arg(sql::text(std::get<0>(open.front())),
                                                           ofThisTill(u"Bestellung"_s)));
    bool asked = false;
    for (const QString& customer : customers) {
        const QString account = u"SELECT * FROM KundenKontoOrder WHERE KundenNummer="_s + customer + u';';
        const std::size_t both = commonEnd(LinesOf(account), open);
        if (both == 0) continue;
        asked = true;
        const auto name =
            gDB->OpenRecordset(u"SELECT Name_1 FROM Kunden WHERE KundenID="_s + customer + u';');
        if (!mayDelete(
                told(both, open.front()) +
                u" im offenen Verkauf und auch auf dem Kundenkonto von %1. Vermutlich wurde das Buchen auf "
                "das Konto oder das Abrufen unterbrochen.\n\nSollen sie vom Kundenkonto gelöscht werden? "
                "Mit \"Nein\" bleiben beide."_s.arg(name->Eof() ? u"Kunde "_s + customer
                                                                : name->Text(u"Name_1"))))
            continue;
        const auto rows = gDB->OpenRecordset(account);
        for (std::size_t i = 0; i < both; ++i) {
            rows->MoveLast();
            rows->Delete();
            rows->Requery();
        }
    }
    return asked;
}

} // namespace

void CopyLine(const Recordset& from, Recordset& to,
              std::initializer_list<std::pair<QStringView, Value>> instead) {
    const bool perTill = to.FieldNames().contains(u"Maschine"_s);
    auto drop = qScopeGuard([&] { to.CancelUpdate(); });
    to.AddNew();
    for (const QStringView column : columns) {
        if (column == u"Maschine" && !perTill) continue;
        const auto other = std::find_if(instead.begin(), instead.end(),
                                        [&](const auto& value) { return value.first == column; });
        to.Set(column, other == instead.end() ? from.Field(column) : other->second);
    }
    to.Update();
    drop.dismiss();
}

bool SettleInterruptedCopy(Sale& sale) {
    if (sale.basket.isEmpty()) return false;
    const std::vector<LineKey> open =
        LinesOf(u"SELECT *"_s + ofThisTill(u"Bestellung"_s) + u" ORDER BY ID ASC;"_s);
    if (open.empty()) return false;
    const bool parked = settleParked(sale, open);
    return (!sale.basket.isEmpty() && settleAccounts(open)) || parked;
}

} // namespace till
