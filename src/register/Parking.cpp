#include "Sale.h"
#include "WaitingLines.h"

#include <register/CustomerSearch.h>
#include <register/Parking.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace till {

namespace {

QString parkedRows() { return u"TMPOrder WHERE Maschine="_s + sql::text(gMaschine); }

QString firstText(const QString& query) { return sql::firstTexts(*gDB, query).value(0); }

} // namespace

void Parking::ParkBestellung() {
    m_sale.Trap([this] {
        if (gKFBestellungParken && !m_sale.isBooking && m_sale.Settle()) park();
    });
}

void Parking::LoadParkedBestellung() {
    m_sale.Trap([this] {
        if (gKFBestellungParken && !m_sale.isBooking && m_sale.Settle()) fetch();
    });
}

void Parking::park() {
    Basket& basket = m_sale.basket;
    if (basket.isEmpty()) {
        MsgBox(u"Es sind keine Positionen vorhanden die geparkt werden können."_s);
        return;
    }
    if (sql::count(*gDB, parkedRows()) > 0) {
        MsgBox(u"Funktion kann nich ausgeführt werden, da bereits eine Bestellung geparkt ist."_s);
        return;
    }
    if (!basket.IsAsStored()) return;
    {
        auto interrupted = qScopeGuard([this] { m_sale.LookBack(); });
        const auto parked = gDB->OpenRecordset(u"TMPOrder"_s);
        Recordset& rs = basket.rsBestellung();
        for (rs.Requery(); !rs.Eof(); rs.MoveNext())
            CopyLine(rs, *parked, {{u"Zeit", rs.Field(u"Datum")}});
        m_sale.ResetKunde();
        basket.DeleteRows();
        interrupted.dismiss();
    }
    m_sale.panel.TellParked(Now());
    m_sale.LinesMoved();
    ShowParked();
}

void Parking::fetch() {
    Basket& basket = m_sale.basket;
    if (sql::count(*gDB, parkedRows()) == 0) {
        MsgBox(u"Es sind keine geparkte Bestellungen vorhanden."_s);
        return;
    }
    if (!basket.isEmpty()) {
        MsgBox(
            u"Sie müssen zuerst die aktuelle Bestellung abrechnen, bevor Sie die geparkte Bestellung abrufen können."_s);
        return;
    }
    {
        auto interrupted = qScopeGuard([this] { m_sale.LookBack(); });
        int customer = 0;
        const auto parked = gDB->OpenRecordset(u"SELECT * FROM "_s + parkedRows() + u';');
        for (; !parked->Eof(); parked->MoveNext()) {
            if (customer == 0) customer = parked->Long(u"KundenNummer");
            CopyLine(*parked, basket.rsBestellung());
        }
        CustomerSearch::Load(customer);
        m_sale.RebuildTitle(true);
        gDB->Execute(u"DELETE FROM "_s + parkedRows() + u';');
        interrupted.dismiss();
    }
    m_sale.LinesMoved();
    ShowParked();
}

void Parking::ShowParked() {
    m_sale.Trap([this] {
        int lines = 0, customer = 0, cashier = 0;
        Currency total;
        std::optional<DateTime> day;
        const auto rs = gDB->OpenRecordset(u"SELECT * FROM "_s + parkedRows() + u';');
        for (; !rs->Eof(); rs->MoveNext()) {
            ++lines;
            // As the list of the sale sums it.
            total += ReadMoney(MoneyText(rs->Money(u"VKPreis_Rabatt") *
                                         Currency::fromDouble(rs->Number(u"Buchungs_Menge"))));
            if (customer == 0) customer = rs->Long(u"KundenNummer");
            cashier = rs->Long(u"PersonalNummer");
            day = rs->Date(u"Datum");
        }
        if (lines == 0) return m_sale.panel.DropParked();
        m_sale.panel.ShowParked(
            {day ? day->date() : Today(), lines, total,
             firstText(u"SELECT Name_1 FROM Kunden WHERE KundenID="_s + sql::number(customer) + u';'),
             firstText(u"SELECT Vorname FROM Personal WHERE ID="_s + sql::number(cashier) + u';')});
    });
}

} // namespace till
