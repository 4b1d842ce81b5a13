#include "Entry.h"
#include "LineWithoutArticle.h"
#include "Sale.h"

#include <register/SpecialLines.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gUser.h>
#include <store/Recordset.h>

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace till {

void SpecialLines::cmdPfand_Click() {
    m_sale.Trap([this] {
        if (m_sale.isBooking || !m_sale.Settle()) return;
        gPfandAngabe = {};
        m_sale.screen.Show(Dialog::Pfand);
        m_sale.screen.MovePointerAway();
        if (gPfandAngabe.Betrag == Currency{}) return;
        ArtikelRecord line = LineWithoutArticle(
            SonderArtikel::Pfand, gPfandAngabe.Retour ? u"Leergut Rückgabe"_s : u"Leergut Pfand"_s,
            u"Pfand"_s, gPfandAngabe.Betrag, gVollerSteuerSatz);
        line.Buchungs_Menge = gPfandAngabe.Anzahl;
        m_entry.AddAmount(std::move(line));
    });
}

void SpecialLines::BookGutschrift() {
    m_sale.Trap([this] {
        if (!gKFGutschrift) return;
        if (!gKassenUser.R_Rabatt) {
            MsgBox(u"Sie haben nicht die nötigen Rechte um Gutschriften auszustellen."_s);
            return;
        }
        if (m_sale.isBooking || !m_sale.Settle()) return;
        gArtikel.Ergebnis = 0;
        gArtikel.VKPreis = {};
        m_sale.screen.Show(Dialog::Gutschrift);
        m_sale.screen.MovePointerAway();
        if (gArtikel.Ergebnis == 0) return;
        m_entry.AddAmount(LineWithoutArticle(SonderArtikel::Gutschrift, u"Gutschrift"_s, u"Gutschrift"_s,
                                             -gArtikel.VKPreis, 0));
    });
}

void SpecialLines::EditLangText() {
    m_sale.Trap([this] {
        Basket& basket = m_sale.basket;
        if (!gKFLangText || !m_sale.Settle() || basket.isEmpty()) return;
        Recordset& rs = basket.rsBestellung();
        gLangTextAngabe = {rs.Text(u"LangText"), 0};
        m_sale.screen.Show(Dialog::LangText);
        m_sale.screen.MovePointerAway();
        if (gLangTextAngabe.Ergebnis == 0) return;
        rs.Edit();
        rs.Set(u"LangText", gLangTextAngabe.Text);
        rs.Update();
    });
}

} // namespace till
