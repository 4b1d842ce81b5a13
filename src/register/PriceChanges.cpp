#include "PriceChanges.h"

#include "Sale.h"
#include "Undo.h"

#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>

using namespace Qt::StringLiterals;

namespace till {

bool PriceChanges::mayChange() const {
    if (gKassenUser.R_Rabatt) return true;
    MsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s);
    return false;
}

bool PriceChanges::lineMayBeDiscounted() const {
    if (m_sale.basket.rsBestellung().Flag(u"IsRabatt")) return true;
    MsgBox(u"Dieser Artikel kann nicht rabattiert werden."_s);
    return false;
}

bool PriceChanges::askRabatt() const {
    gRabattAngabe = {};
    m_sale.screen.MovePointerAway();
    m_sale.screen.Show(Dialog::Rabatt);
    return gRabattAngabe.Ergebnis != 0;
}

void PriceChanges::Rabatt() {
    if (!gKFRabatt || !m_sale.Settle() || m_sale.basket.isEmpty() || !mayChange()) return;
    if (gKunde.Rabatt >= 1) {
        MsgBox(u"Diese Aktion ist nicht möglich, da der ausgewählte Kunde bereits rabattiert wurde."_s);
        return;
    }
    if (AskYesNo(u"Möchten Sie alle Artikel rabattieren?"_s, u"Rabatt auf alles..."_s))
        discountAll();
    else
        discountLine();
}

void PriceChanges::discountLine() {
    if (!lineMayBeDiscounted() || !askRabatt()) return;
    const auto before = Undo::ReadPrices();
    Recordset& rs = m_sale.basket.rsBestellung();
    rs.Edit();
    rs.Set(u"VKPreis_Rabatt", Discounted(rs.Money(u"VKPreis"), gRabattAngabe.Prozent));
    rs.Update();
    m_sale.basket.ShowPrices();
    m_sale.basket.RefreshGesamt();
    m_undo.Repriced(u"Rabatt"_s, before);
}

void PriceChanges::discountAll() {
    if (!askRabatt()) return;
    const auto before = Undo::ReadPrices();
    gDB->Execute(u"UPDATE Bestellung SET VKPreis_Rabatt = VKPreis - (VKPreis / 100 * "_s +
                 sql::number(gRabattAngabe.Prozent) + u") WHERE IsRabatt=-1 AND Maschine="_s +
                 sql::text(gMaschine) + u';');
    m_sale.basket.LoadBestellungen();
    m_sale.basket.RefreshGesamt();
    m_undo.Repriced(u"Rabatt"_s, before);
}

void PriceChanges::ArtikelPreis() {
    if (!gKFFreierArtikelPreis || !m_sale.Settle() || m_sale.basket.isEmpty() || !mayChange() ||
        !lineMayBeDiscounted())
        return;
    Recordset& rs = m_sale.basket.rsBestellung();
    gPreisAngabe = {0, rs.Money(u"VKPreis")};
    m_sale.screen.Show(Dialog::FreierPreis);
    m_sale.screen.MovePointerAway();
    if (gPreisAngabe.Ergebnis == 0) return;
    gPreisAngabe.Ergebnis = 0;
    const auto before = Undo::ReadPrices();
    rs.Edit();
    rs.Set(u"VKPreis", gPreisAngabe.Preis);
    rs.Set(u"VKPreis_Rabatt", gPreisAngabe.Preis);
    rs.Update();
    m_sale.basket.ShowPrices();
    m_sale.basket.RefreshGesamt();
    m_undo.Repriced(u"Preis"_s, before);
}

} // namespace till
