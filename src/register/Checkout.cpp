#include "Checkout.h"

#include "Advice.h"
#include "Booking.h"
#include "Sale.h"

#include <printing/Beleg.h>
#include <register/Prices.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gZVT.h>
#include <session/gZahlung.h>
#include <store/Trouble.h>
#include <text/Convert.h>
#include <text/Format.h>

#include <exception>

using namespace Qt::StringLiterals;

namespace till {

bool Checkout::Begin() {
    if (m_sale.isBooking || !m_sale.Settle()) return false;
    m_booking.emplace(m_sale.isBooking, true);
    return true;
}

void Checkout::ShowTotal(bool rounded) {
    // Told when it fails, but a display does not keep a customer from paying.
    Handle("frmKasse", [&] { m_sale.display.ShowTotal(m_sale.basket.Gesamt(), rounded); });
}

bool Checkout::AskAmount() {
    m_sale.screen.Show(Dialog::KasseTotal);
    if (gZahlung.Ergebnis != 0) return true;
    Basket& basket = m_sale.basket;
    if (basket.isEmpty())
        basket.SetLCDDefault();
    else
        basket.ItemClick(basket.selected());
    return false;
}

bool Checkout::ConfirmKarte(const QString& KartenName) {
    if (gZVTEnabled && gZVT) {
        m_sale.screen.MovePointerAway();
        const double due = RoundHalfEven(gZahlung.Betrag_Gesamt.toDouble(), 2);
        if (!gZVT->Bezahlen(Currency::fromDouble(due))) {
            m_sale.basket.LoadBestellungen();
            return false;
        }
        gZahlung.KartenTyp = gZVT->KartenName();
        return true;
    }
    if (MsgBox(
            u"OK, Zahlung erfolgt mit Kreditkarte!\n\nGesamtsumme: "_s + MoneyText(gZahlung.Betrag_Gesamt) +
                u" €\n\nBuchen Sie diesen Betrag jetzt über das Zahlungsverkehrsterminal. Warten Sie bis der "
                u"Betrag gebucht wurde und bestätigen Sie mit OK."_s,
            MsgIcon::Information, MsgButtons::OKCancel, u"Kreditkartenbuchung..."_s) != MsgAnswer::OK)
        return false;
    gZahlung.KartenTyp = KartenName;
    return true;
}

int Checkout::Book() {
    // The lines may have changed while the cashier was asked.
    if (!m_sale.basket.IsAsStored(gZahlung.ZahlArt == u"KARTE" ? u"Die Karte ist schon belastet."_s
                                                               : QString()))
        return 0;
    int id = 0;
    CreateRechnung(id);
    m_sale.screen.Yield();
    if (id == 0) {
        MsgBox(u"Beim Erstellen der Rechnung ist ein Fehler aufgetreten."_s);
        m_sale.basket.LoadBestellungen();
    }
    return id;
}

void Checkout::RemoveLines() {
    WithAdvice(
        [this] { m_sale.RemoveBooked(); },
        [this] {
            return u"Der Verkauf ist unter der Belegnummer %1 gebucht. Seine Zeilen verschwinden mit der "
                   "nächsten Eingabe, sobald die Datenbank wieder da ist; sie werden nicht noch einmal gebucht."_s
                       .arg(m_sale.Rechnung());
        });
}

void Checkout::EndMovement() {
    if (m_sale.Rechnung() != 0) {
        RemoveLines();
    } else {
        m_sale.LookBack(); // if its line cannot go now
        m_sale.basket.DeleteRows();
        Booking(m_sale).GiveUp();
    }
    m_sale.basket.rsBestellung().Requery();
    m_sale.RebuildTitle(true); // printing leaves the standard customer
    m_sale.screen.MovePointerAway();
    m_sale.basket.LoadBestellungen();
    if (gAbfrageLoginProOrder) m_sale.ChangeUser();
}

void Checkout::Finish(const QString& lastTotal) {
    RemoveLines();
    nextCustomer(lastTotal);
}

void Checkout::FinishPaper(const QString& told) {
    WithAdvice(
        [this] { m_sale.RemoveLines(m_sale.basket.lastID()); },
        [&] {
            return told +
                   u" Die Zeilen verschwinden mit der nächsten Eingabe, sobald die Datenbank wieder da "
                   "ist; bitte schreiben Sie sie nicht noch einmal."_s;
        });
    nextCustomer({});
}

void Checkout::nextCustomer(const QString& lastTotal) {
    m_sale.basket.rsBestellung().Requery();
    m_sale.ResetKunde();
    m_sale.screen.MovePointerAway();
    m_sale.screen.Yield();
    m_sale.basket.LoadBestellungen();
    if (gAbfrageLoginProOrder) m_sale.ChangeUser();
    if (!lastTotal.isEmpty()) m_sale.basket.ShowGesamt(lastTotal);
    m_sale.screen.Yield();
    m_sale.screen.FocusInput();
}

void Checkout::CreateRechnung(int& RechnungID) {
    RechnungID = 0;
    Booking booking(m_sale);
    const auto write = [&] {
        try {
            booking.Begin();
        } catch (const RuntimeError& error) {
            // Nobody knows whether the last write arrived; the mark and the receipt do.
            if (error.Number != store::outcomeUnknown || !m_sale.keepsMarks() ||
                booking.mark().RechnungID == 0)
                throw;
            const std::exception_ptr doubt = std::current_exception();
            try {
                booking.GoOn(booking.mark());
            } catch (const RuntimeError& second) {
                if (second.Number == store::notConnected) std::rethrow_exception(doubt); // it stays
                throw;
            }
        }
        RechnungID = booking.mark().RechnungID;
    };
    const auto advice = [&]() -> QString {
        if (!booking.hasHead()) return {};
        const QString stands = u"Unter der Belegnummer %1 sind %2 von %3 Zeilen fertig gebucht. "_s
                                   .arg(booking.mark().RechnungID)
                                   .arg(booking.booked())
                                   .arg(m_sale.basket.rowCount());
        if (gZahlung.ZahlArt == u"EINLAGE" || gZahlung.ZahlArt == u"ENTNAHME")
            return stands +
                   u"Dieser Beleg ist unvollständig und für den Inhaber vermerkt. Bitte buchen Sie den Vorgang "
                   "noch einmal."_s;
        const QString finish =
            u"Der Beleg lässt sich fertig buchen, wenn Sie die Kasse mit F12 schließen. "_s;
        return stands +
               u"Alle Zeilen stehen noch im Verkauf. %2Wird er noch einmal bezahlt, entsteht ein neuer, "
               "vollständiger Beleg; Beleg %1 ist dann zu viel und muss geprüft werden."_s
                   .arg(booking.mark().RechnungID)
                   .arg(m_sale.keepsMarks() ? finish : QString());
    };
    Handle(
        "frmKasse", [&] { WithAdvice(write, advice); }, [&] { booking.CancelEdits(); });
}

} // namespace till
