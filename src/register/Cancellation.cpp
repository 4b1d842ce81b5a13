#include "Cancellation.h"

#include "Sale.h"
#include "Undo.h"

#include <register/Register.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Closing goes on whatever fails: a till that cannot be left is worse than a row that stays.
template <typename Step>
void regardless(Step&& step) {
    try {
        step();
    } catch (const RuntimeError&) { // told nowhere: the cashier is leaving
    }
}

QString ofThisTill(const QString& table) { return table + u" WHERE Maschine="_s + sql::text(gMaschine); }

} // namespace

void Cancellation::deleteVoucher(const QString& number) {
    gDB->Execute(u"DELETE FROM Gutscheine WHERE GutscheinID="_s + sql::number(CLng(Value(number))) + u';');
}

void Cancellation::record(Recordset& stornos, const Recordset& line) {
    stornos.AddNew();
    stornos.Set(u"Maschine", line.Field(u"Maschine"));
    stornos.Set(u"PersonalNummer", gKassenUser.ID);
    stornos.Set(u"PersonalName", gKassenUser.Vorname + u' ' + gKassenUser.Name);
    for (const char16_t* column :
         {u"ArtikelNummer", u"ArtikelName", u"WarenGruppe", u"Buchungs_Menge", u"Menge", u"Einheit"})
        stornos.Set(column, line.Field(QStringView(column)));
    stornos.Update();
}

void Cancellation::Storno() {
    if (m_sale.basket.isEmpty()) return;
    Recordset& rs = m_sale.basket.rsBestellung();
    if (rs.Text(u"ArtikelNummer") == SonderArtikel::Gutschein) {
        // A redemption that was not booked has no number: it took nothing from its voucher, which stays.
        if (const QString number = rs.Text(u"SNNummer"); !number.isEmpty()) {
            deleteVoucher(number);
            MsgBox(u"Der Gutschein mit der Nummer "_s + number + u" wurde gelöscht."_s);
        }
    }
    Undo::Line line = Undo::Read(rs);
    record(*gDB->OpenRecordset(u"Stornos"_s), rs);
    rs.Delete();
    rs.Requery();
    m_sale.screen.Yield();
    const bool deliveryNote = m_sale.basket.IsLieferscheinBon;
    m_sale.basket.LoadBestellungen();
    m_undo.Cancelled(std::move(line), deliveryNote);
}

void Cancellation::deleteVouchers(const QString& table) {
    const auto rs = gDB->OpenRecordset(u"SELECT SNNummer FROM "_s + ofThisTill(table) +
                                       u" AND ArtikelNummer="_s + sql::text(SonderArtikel::Gutschein) + u';');
    for (; !rs->Eof(); rs->MoveNext())
        regardless([&] { deleteVoucher(rs->Text(u"SNNummer")); });
}

void Cancellation::recordAll() {
    const auto stornos = gDB->OpenRecordset(u"Stornos"_s);
    const auto lines =
        gDB->OpenRecordset(u"SELECT * FROM "_s + ofThisTill(u"Bestellung"_s) + u" ORDER BY ID ASC;"_s);
    for (; !lines->Eof(); lines->MoveNext())
        regardless([&] { record(*stornos, *lines); });
}

Unload Cancellation::QueryUnload() {
    if (!m_sale.basket.isEmpty()) {
        if (!AskYesNo(
                u"Es sind noch nicht abgerechnete Buchungen vorhanden. Möchten Sie diese jetzt stornieren?"_s))
            return Unload::Stay;
        regardless([] { deleteVouchers(u"Bestellung"_s); });
        regardless([] { recordAll(); });
        regardless([&] { m_sale.basket.DeleteRows(); });
    }
    int parked = 0;
    regardless([&] { parked = sql::count(*gDB, ofThisTill(u"TMPOrder"_s)); });
    if (parked > 0) {
        if (!AskYesNo(u"Es sind noch geparkte Bestellungen vorhanden. Möchten Sie diese jetzt stornieren?"_s))
            return Unload::CloseWithParked;
        regardless([] { deleteVouchers(u"TMPOrder"_s); });
        regardless([] { gDB->Execute(u"DELETE FROM "_s + ofThisTill(u"TMPOrder"_s) + u";"_s); });
    }
    regardless([&] { m_sale.display.ShowDefault(); });
    regardless([&] { m_sale.display.Close(); });
    return Unload::Close;
}

} // namespace till
