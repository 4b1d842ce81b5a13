#include "Payment.h"

#include "Checkout.h"
#include "Sale.h"

#include <devices/CashDrawer.h>
#include <printing/Beleg.h>
#include <register/Prices.h>
#include <session/Globals.h>
#include <session/gZahlung.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace till {

void Payment::Total() {
    Basket& basket = m_sale.basket;
    Checkout checkout(m_sale);
    if (!checkout.Begin() || basket.isEmpty() || !basket.IsAsStored()) return;
    m_sale.screen.MovePointerAway();
    Currency total = ReadMoney(basket.Gesamt());
    if (gRoundDecimal) total = ReadMoney(Format(Value(total), u"###0.00"));
    gZahlung = {};
    gZahlung.Betrag_Gesamt = total;
    checkout.ShowTotal(gRoundDecimal);
    OpenKassenLade(DrawerOwner::Kasse);
    if (!gShowWechselgeldDialog) {
        m_sale.screen.Yield();
        gZahlung.Betrag_Gesamt = gZahlung.Betrag_Gegeben = ReadMoney(basket.Gesamt());
        gZahlung.ZahlArt = u"BAR"_s;
    } else if (!checkout.AskAmount()) {
        return;
    }
    const int id = checkout.Book();
    if (id == 0) return;
    m_sale.PrintReceipt(id, BelegArt::Kasse);
    checkout.Finish(gEnabledAutoClose ? MoneyText(total) : QString());
}

void Payment::ByKarte(const QString& KartenName) {
    Basket& basket = m_sale.basket;
    Checkout checkout(m_sale);
    if (!checkout.Begin() || basket.isEmpty() || !basket.IsAsStored()) return;
    gZahlung = {};
    gZahlung.Betrag_Gesamt = gZahlung.Betrag_Gegeben = ReadMoney(basket.Gesamt());
    gZahlung.ZahlArt = u"KARTE"_s;
    checkout.ShowTotal(false);
    if (!checkout.ConfirmKarte(KartenName)) return;
    const int id = checkout.Book();
    if (id == 0) return;
    m_sale.PrintReceipt(id, BelegArt::Karte);
    checkout.Finish();
}

} // namespace till
