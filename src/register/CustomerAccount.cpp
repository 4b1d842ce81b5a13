#include "Sale.h"
#include "WaitingLines.h"

#include <register/CustomerAccount.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace till {

void CustomerAccount::BookToKundenKonto() {
    m_sale.Trap([this] {
        if (!m_sale.isBooking && m_sale.Settle()) put();
    });
}

void CustomerAccount::LoadKundenKonto() {
    m_sale.Trap([this] {
        if (!m_sale.isBooking && m_sale.Settle()) fetch();
    });
}

void CustomerAccount::put() {
    Basket& basket = m_sale.basket;
    if (basket.isEmpty()) {
        MsgBox(u"Es sind keine Positionen vorhanden die auf ein Kundenkonto gebucht werden können."_s);
        return;
    }
    m_sale.ChooseKunde();
    if (gKunde.KundenID == 0) {
        MsgBox(
            u"Sie müssen ein gültigen Kunden auswählen. Ein Kundenkonto für den Standardkunde kann nicht erstellt "
            "werden."_s);
        return;
    }
    if (!basket.IsAsStored()) return;
    {
        auto interrupted = qScopeGuard([this] { m_sale.LookBack(); });
        const auto account = gDB->OpenRecordset(u"KundenKontoOrder"_s);
        Recordset& rs = basket.rsBestellung();
        for (rs.Requery(); !rs.Eof(); rs.MoveNext())
            CopyLine(rs, *account, {{u"Zeit", rs.Field(u"Datum")}, {u"KundenNummer", gKunde.KundenID}});
        m_sale.ResetKunde();
        basket.DeleteRows();
        interrupted.dismiss();
    }
    m_sale.LinesMoved();
}

void CustomerAccount::fetch() {
    Basket& basket = m_sale.basket;
    if (!basket.isEmpty()) {
        MsgBox(
            u"Sie müssen zuerst die aktuelle Bestellung abrechnen, bevor Sie das Kundenkonto abrufen können."_s);
        return;
    }
    m_sale.ChooseKunde();
    if (gKunde.KundenID == 0) {
        MsgBox(
            u"Sie müssen ein gültigen Kunden auswählen. Ein Kundenkonto für den Standardkunde existiert nicht."_s);
        return;
    }
    const QString ofCustomer =
        u" FROM KundenKontoOrder WHERE KundenNummer="_s + sql::number(gKunde.KundenID) + u';';
    const auto account = gDB->OpenRecordset(u"SELECT *"_s + ofCustomer);
    if (account->Eof()) {
        MsgBox(u"Es konnten keine Buchungen auf dem Kundenkonto gefunden werden."_s);
        m_sale.ResetKunde();
        return;
    }
    {
        auto interrupted = qScopeGuard([this] { m_sale.LookBack(); });
        for (; !account->Eof(); account->MoveNext())
            CopyLine(*account, basket.rsBestellung(),
                     {{u"Maschine", gMaschine}, {u"PersonalNummer", gKassenUser.ID}});
        interrupted.dismiss();
    }
    m_sale.RebuildTitle(true);
    m_sale.LinesMoved();
    if (AskYesNo(
            u"Möchten Sie die Bestellungen aus dem Kundenkonto jetzt löschen?\n\nHINWEIS: Diese würden "
            "ansonsten nach der Abrechnung weiterhin im Kundenkonto verbleiben und beim nächsten Aufruf mit in die "
            "aktuelle Bestellung aufgenommen werden."_s))
        gDB->Execute(u"DELETE"_s + ofCustomer);
}

} // namespace till
