#include "Sale.h"

#include "PaperInDoubt.h"
#include "Recovery.h"
#include "VoucherDoubts.h"
#include "WaitingLines.h"

#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace till {

void Sale::ResetKunde() {
    gKunde = KundeRecord::Standard();
    RebuildTitle(false);
}

void Sale::RebuildTitle(bool doubleAmpersand) {
    QString name = gKunde.Name_1;
    if (doubleAmpersand) name.replace(u"&"_s, u"&&"_s);
    m_title = gKunde.Anrede + u' ' + name + u"  -  Rabatt: "_s + QString::number(gKunde.Rabatt) + u"/100"_s;
    emit TitleChanged(m_title);
}

void Sale::ChangeUser() {
    Trap([this] {
        if (!gKFBenutzerWechsel) return;
        {
            const QScopedValueRollback forced(gLoginPflicht, true);
            screen.Show(Dialog::DesktopLogin);
        }
        emit UserChanged(UserDisplay());
    });
}

void Sale::ChooseKunde() {
    Trap([this] {
        if (!gKFKunden) return;
        if (!gKassenUser.R_Kunden) {
            MsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s);
            return;
        }
        gKunde.Ergebnis = 0;
        screen.Show(Dialog::KundenSuche);
        screen.MovePointerAway();
        if (gKunde.Ergebnis == 0) return;
        gKunde.Ergebnis = 0;
        RebuildTitle(true);
        basket.LoadBestellungen();
    });
}

void Sale::LinesMoved() {
    basket.rsBestellung().Requery();
    basket.LoadBestellungen();
    emit Closed();
}

QString Sale::UserDisplay() { return gKassenUser.Vorname + u' ' + gKassenUser.Name; }

void Sale::Booked(const BookingMark& mark) {
    m_booking = {mark, true};
    emit Closed();
    panel.TellSold({mark.RechnungID, mark.at, mark.ZahlArt, mark.KartenTyp, mark.Betrag_Gesamt,
                    mark.Betrag_Gegeben, mark.Betrag_Zurueck});
}

bool Sale::Settle() {
    if (m_settling) return false;
    const QScopedValueRollback settling(m_settling, true);
    bool shown = false;
    if (m_lookBack) {
        m_keepsMarks = BookingMark::isKept();
        if (m_keepsMarks)
            shown = Recovery(*this).Run();
        else
            MsgBox(
                u"Diese Datenbank stammt aus einer älteren Version: Nach einem Stromausfall kann die Kasse nicht "
                "sagen, was gebucht ist. Bitte starten Sie das Programm einmal mit /dbupdate."_s,
                MsgIcon::Exclamation);
        if (!shown) shown = TellPaperInDoubt(*this);
        m_lookBack = false;
        if (!shown) shown = SettleInterruptedCopy(*this);
    }
    clearPaid();
    return basket.Confirm() && !shown;
}

int Sale::Rechnung() const { return m_booking && m_booking->whole ? m_booking->mark.RechnungID : 0; }

void Sale::clearPaid() {
    if (Rechnung() == 0 && m_leaving == 0) return;
    if (Rechnung() != 0) RemoveBooked();
    if (m_leaving != 0) RemoveLines(m_leaving);
    ResetKunde();
    basket.LoadBestellungen();
}

void Sale::RemoveBooked() {
    const BookingMark& mark = m_booking.value().mark;
    const int voucherReceipt = basket.Holds(SonderArtikel::Gutschein) ? mark.RechnungID : 0;
    const QString lines = Basket::DeleteStatement(mark.LetzteZeile);
    if (m_keepsMarks)
        gDB->ExecuteTogether({lines, mark.EndStatement()});
    else
        gDB->Execute(lines);
    m_booking.reset();
    if (voucherReceipt != 0) TellVoucherDoubts(voucherReceipt);
}

void Sale::RemoveLines(int lastID) {
    m_leaving = lastID;
    gDB->Execute(Basket::DeleteStatement(lastID));
    m_leaving = 0;
    emit Closed();
}

BelegDialoge Sale::printDialogs() {
    return {[this] {
                screen.Show(Dialog::PrintDlg);
                screen.MovePointerAway();
            },
            [this] { screen.Show(Dialog::RechnungsVorlage); }};
}

void Sale::PrintReceipt(int Rechnung, BelegArt art) { PrintBeleg(Rechnung, art, printDialogs()); }

} // namespace till
