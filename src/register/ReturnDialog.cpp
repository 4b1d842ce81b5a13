#include "Advice.h"
#include "Sale.h"

#include <devices/CashDrawer.h>
#include <printing/Beleg.h>
#include <register/Prices.h>
#include <register/ReturnDialog.h>
#include <register/gMaschine.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace till {

namespace {

Currency worth(const ReturnPosition& position, double quantity) {
    return Currency::fromDouble(quantity * position.VKPreis_Brutto.toDouble());
}

ReturnPosition read(const Recordset& rs) {
    return {.KundenNummer = rs.Long(u"KundenNummer"),
            .Kunde = rs.Text(u"Kunde"),
            .ArtikelNummer = rs.Text(u"ArtikelNummer"),
            .ArtikelName = rs.Text(u"ArtikelName"),
            .Buchungs_Menge = rs.Number(u"Buchungs_Menge"),
            .Menge = rs.Number(u"Menge"),
            .Einheit = rs.Text(u"Einheit"),
            .EKPreis = rs.Money(u"EKPreis"),
            .VKPreis_Brutto = rs.Money(u"VKPreis_Brutto"),
            .VKPreis_Netto = rs.Number(u"VKPreis_Netto"),
            .SteuerSatz = rs.Number(u"SteuerSatz"),
            .SNNummer = rs.Text(u"SNNummer"),
            .WarenGruppe = rs.Text(u"WarenGruppe")};
}

/// The quantity that was typed; nothing, which is told, unless a part of the booked one comes back.
bool takeQuantity(ReturnPosition& position, const QString& typed) {
    double quantity = 0;
    if (IsNumeric(typed)) quantity = CDbl(Value(typed));
    if (std::abs(quantity) > std::abs(position.Buchungs_Menge)) {
        MsgBox(u"Sie können nicht mehr Artikel zurückbuchen, als tatsächlich gebucht wurden."_s);
        return false;
    }
    // A line that was booked with a negative quantity comes back with one.
    if (quantity == 0 || std::signbit(quantity) != std::signbit(position.Buchungs_Menge)) {
        MsgBox(u"\"%1\" ist keine Anzahl, die zurückgegeben werden kann. Gebucht sind %2. Es wurde nichts "
               "zurückgebucht."_s.arg(typed, NumberText(position.Buchungs_Menge)));
        return false;
    }
    position.Rueckgabe = quantity;
    return true;
}

} // namespace

bool ReturnDialog::Search(const QString& RechnungID) {
    m_positions.clear();
    m_heading.clear();
    int number = 0;
    try {
        number = CLng(Value(RechnungID));
    } catch (const RuntimeError&) {
        MsgBox(u"Sie müssen eine gültige Belegnummer eingeben."_s);
        return false;
    }
    if (sql::count(*gDB, u"Rechnung WHERE RechnungID="_s + sql::number(number) +
                             u" AND ZahlArt='RUECKGABE'"_s) > 0) {
        MsgBox(u"Aktion nicht möglich. Dieser Beleg wurde bereits zurückgebucht."_s);
        return false;
    }
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM RechnungsDetail WHERE RechnungID="_s +
                                       sql::number(number) + u" ORDER BY ArtikelNummer ASC;"_s);
    for (; !rs->Eof(); rs->MoveNext())
        m_positions.push_back(read(*rs));
    m_heading =
        m_positions.empty() ? u"Zu Beleg %1 ist nichts gebucht."_s.arg(number) : u"Beleg %1"_s.arg(number);
    return true;
}

bool ReturnDialog::SearchSerienNummer(const QString& SNNummer) {
    m_positions.clear();
    m_heading.clear();
    if (SNNummer.isEmpty()) {
        MsgBox(u"Sie müssen eine Seriennummer eingeben."_s);
        return false;
    }
    const auto rs = gDB->OpenRecordset(u"SELECT RechnungID FROM RechnungsDetail WHERE SNNummer="_s +
                                       sql::text(SNNummer) + u';');
    if (!rs->Eof()) return Search(QString::number(rs->Long(u"RechnungID")));
    m_heading = u"Die Seriennummer %1 steht auf keinem Beleg."_s.arg(SNNummer);
    return true;
}

QString ReturnDialog::Heading() const { return m_heading; }

void ReturnDialog::Tick(int row) {
    if (row < 0 || row >= int(m_positions.size())) return;
    bool& ticked = m_positions[size_t(row)].ticked;
    ticked = !ticked;
}

Currency ReturnDialog::TickedSum() const {
    Currency sum;
    for (const ReturnPosition& position : m_positions)
        if (position.ticked) sum += worth(position, position.Buchungs_Menge);
    return sum;
}

bool ReturnDialog::askQuantities() {
    for (ReturnPosition& position : m_positions) {
        if (!position.ticked) continue;
        const auto typed = InputBox(u"Geben Sie die Anzahl der Rückgabe für den Artikel: "_s +
                                        position.ArtikelName + u" ein."_s,
                                    u"Warenrückgabe..."_s, NumberText(position.Buchungs_Menge));
        if (!typed || typed->isEmpty() || !takeQuantity(position, *typed)) return false;
    }
    return true;
}

bool ReturnDialog::Confirm() {
    if (std::ranges::none_of(m_positions, &ReturnPosition::ticked)) {
        MsgBox(u"Sie müssen die Positionen markieren, welche Sie zurück buchen wollen."_s);
        return false;
    }
    if (!AskYesNo(u"Möchten Sie die markierten Artikel jetzt zurück buchen?"_s) || !askQuantities())
        return false;
    Currency sum;
    for (const ReturnPosition& position : m_positions)
        if (position.ticked) sum -= worth(position, position.Rueckgabe);
    const bool payout = AskYesNo(u"Möchten Sie eine Barauszahlung aus dem Kassenbestand vornehmen?"_s);

    WithAdvice([&] { write(payout, sum); },
               [this] {
                   m_positions.clear();
                   m_heading.clear();
                   return whatIsWritten();
               });
    if (!payout) {
        MsgBox(u"Die Artikel wurden zurück gebucht und die Lagerbestände, sowie Seriennummern wurden "
               "aktualisiert."_s);
        return true;
    }
    OpenKassenLade(DrawerOwner::Kasse);
    m_sale.screen.Yield();
    MsgBox(u"Der Artikel wurde zurück gebucht.\nZahlen Sie dem Kunden einen Betrag in Höhe von "_s +
           MoneyText(sum) + u' ' + gWaehrungsSymbol + u" aus."_s);
    // Printing takes the customer of the document; the sale that may be open keeps its own.
    const QScopedValueRollback customer(gKunde);
    m_sale.PrintReceipt(m_progress.id, BelegArt::Kasse);
    return true;
}

void ReturnDialog::write(bool payout, Currency sum) {
    m_progress = {};
    m_progress.all = int(std::ranges::count_if(m_positions, &ReturnPosition::ticked));
    const auto now = Now();
    if (payout) {
        const auto head = gDB->OpenRecordset(u"Rechnung"_s);
        const ReturnPosition& first = m_positions.front();
        head->AddNew();
        m_progress.id = head->Long(u"RechnungID");
        head->Set(u"Maschine", gMaschine);
        head->Set(u"Datum", DateTime::fromQDate(now.date()));
        head->Set(u"Zeit", DateTime::fromQTime(now.time()));
        head->Set(u"PersonalNummer", gKassenUser.ID);
        head->Set(u"KundenNummer", first.KundenNummer);
        head->Set(u"Kunde", first.Kunde);
        head->Set(u"ZahlArt", u"RUECKGABE"_s);
        for (const auto* amount : {u"Betrag_Gesamt", u"Betrag_Gegeben", u"Betrag_Zurueck"})
            head->Set(amount, sum);
        head->Set(u"Abschluss", false);
        head->Update();
        m_progress.hasHead = true;
    }
    const auto detail = payout ? gDB->OpenRecordset(u"RechnungsDetail"_s) : nullptr;
    for (const ReturnPosition& position : m_positions) {
        if (!position.ticked) continue;
        m_progress.current = position.ArtikelName;
        if (payout) {
            detail->AddNew();
            detail->Set(u"RechnungID", m_progress.id);
            detail->Set(u"Maschine", gMaschine);
            detail->Set(u"Datum", DateTime::fromQDate(now.date()));
            detail->Set(u"Zeit", DateTime::fromQTime(now.time()));
            detail->Set(u"PersonalNummer", gKassenUser.ID);
            detail->Set(u"KundenNummer", position.KundenNummer);
            detail->Set(u"Kunde", position.Kunde);
            detail->Set(u"ArtikelNummer", position.ArtikelNummer);
            detail->Set(u"ArtikelName", position.ArtikelName);
            detail->Set(u"Buchungs_Menge", -position.Rueckgabe);
            detail->Set(u"Menge", -position.Menge);
            detail->Set(u"Einheit", position.Einheit);
            detail->Set(u"EKPreis", position.EKPreis);
            detail->Set(u"VKPreis_Brutto", position.VKPreis_Brutto);
            detail->Set(u"VKPreis_Netto", position.VKPreis_Netto);
            detail->Set(u"SteuerSatz", position.SteuerSatz);
            detail->Set(u"SNNummer", position.SNNummer);
            detail->Set(u"WarenGruppe", position.WarenGruppe);
            detail->Update();
        }
        gDB->Execute(u"UPDATE Artikel SET IstBestand = (IstBestand + "_s +
                     sql::number(position.Rueckgabe * position.Menge) +
                     u") WHERE LagerAktiv=-1 AND Nummer="_s + sql::text(position.ArtikelNummer) + u';');
        gDB->Execute(u"UPDATE ArtikelSerienNummern SET VKDatum='', RechnungID='0' WHERE ArtikelNummer="_s +
                     sql::text(position.ArtikelNummer) + u" AND SNNummer="_s + sql::text(position.SNNummer) +
                     u';');
        ++m_progress.whole;
        m_progress.current.clear();
    }
}

QString ReturnDialog::whatIsWritten() const {
    const Progress& p = m_progress;
    QStringList told;
    if (p.hasHead)
        told << u"Der Rückgabebeleg hat die Nummer %1."_s.arg(p.id);
    else if (p.id != 0)
        told << u"Ob der Rückgabebeleg %1 angelegt ist, muss geprüft werden."_s.arg(p.id);
    told << u"%1 von %2 Positionen sind fertig zurückgebucht."_s.arg(p.whole).arg(p.all);
    if (!p.current.isEmpty())
        told << u"\"%1\" ist angefangen: Beleg, Bestand und Seriennummer müssen geprüft werden."_s.arg(
            p.current);
    told
        << u"Die Kassenlade wurde nicht geöffnet. Buchen Sie die Rückgabe nicht noch einmal, bevor das geprüft ist."_s;
    return told.join(u' ');
}

} // namespace till
