#include "Recovery.h"

#include "Booking.h"
#include "Sale.h"
#include "VoucherDoubts.h"

#include <printing/Beleg.h>
#include <register/IncompleteReceipts.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr int noReceipt = 0, askForReceipt = 3;
constexpr qsizetype mostTold = 10;

const QString title = u"Unterbrochene Buchung..."_s;

/// "Beleg 1 über 4,60 € wurde um 14:05 gebucht und nicht abgeschlossen."
QString opening(const BookingMark& mark, const BookingState& state) {
    QString text =
        u"Beleg %1 über %2 € wurde %3 %4."_s.arg(mark.RechnungID)
            .arg(MoneyText(mark.Betrag_Gesamt), whenText(mark.at),
                 state.hasHead ? u"gebucht und nicht abgeschlossen"_s : u"bezahlt und nicht mehr gebucht"_s);
    if (mark.ZahlArt == u"KARTE")
        text += u" Bezahlt wurde mit der Karte%1."_s.arg(mark.KartenTyp.isEmpty() ? QString()
                                                                                  : u' ' + mark.KartenTyp);
    return text;
}

QString linesGo(int count) {
    return count == 1
               ? u"Seine Zeile verlässt jetzt den Verkauf und wird nicht noch einmal gebucht."_s
               : u"Seine %1 Zeilen verlassen jetzt den Verkauf und werden nicht noch einmal gebucht."_s.arg(
                     count);
}

QString missing(const BookingMark& mark, const BookingState& state) {
    QStringList lines;
    if (state.Gebucht > mark.Bestand && !mark.IsLieferschein) lines << u"im Bestand: "_s + state.last;
    lines << state.remaining.first(std::min(mostTold, state.remaining.size()));
    if (state.remaining.size() > mostTold)
        lines << u"und %1 weitere Zeilen"_s.arg(state.remaining.size() - mostTold);
    return lines.join(u'\n');
}

} // namespace

bool Recovery::Run() {
    const auto mark = BookingMark::Read();
    if (!mark) return dropMovement() || TellOpenRedemptions();
    const BookingState state = LookAtBooking(*mark);
    const bool nothing = !state.hasHead && state.Gebucht == 0;
    if ((state.isWhole(*mark) && state.open == 0) || (nothing && !state.fits)) {
        mark->Drop(); // nothing is left of it but this
        m_sale.Forget();
        return dropMovement();
    }
    if (!state.fits)
        leave(*mark, state);
    else if (state.isWhole(*mark))
        finishWhole(*mark, opening(*mark, state) + u"\n\nEr ist vollständig. "_s + linesGo(mark->Zeilen));
    else
        offerToFinish(*mark, state);
    dropMovement();
    return true;
}

bool Recovery::dropMovement() {
    const QString lines = u" FROM Bestellung WHERE Maschine="_s + sql::text(gMaschine) +
                          u" AND ArtikelNummer IN ("_s + sql::text(SonderArtikel::Einlage) + u", "_s +
                          sql::text(SonderArtikel::Entnahme) + u");"_s;
    const auto rs = gDB->OpenRecordset(u"SELECT ArtikelName, VKPreis"_s + lines);
    if (rs->Eof()) return false;
    MsgBox(
        u"\"%1\" über %2 € wurde unterbrochen und ist nicht gebucht. Die Zeile verlässt jetzt den Verkauf; bitte "
        "zählen Sie nach, ob das Geld schon bewegt wurde, und buchen Sie den Vorgang dann noch einmal."_s.arg(
            rs->Text(u"ArtikelName"), MoneyText(rs->Money(u"VKPreis"))),
        MsgIcon::Exclamation, MsgButtons::OK, title);
    gDB->Execute(u"DELETE"_s + lines);
    m_sale.basket.LoadBestellungen();
    return true;
}

void Recovery::finishWhole(const BookingMark& mark, const QString& told) {
    // The dialog that asks how to print stands for the question whether to.
    bool print = true;
    if (gPrintMode == askForReceipt)
        MsgBox(told, MsgIcon::Information, MsgButtons::OK, title);
    else
        print = AskYesNo(told + u"\n\nSoll der Beleg jetzt gedruckt werden?"_s, title);
    Booking(m_sale).GoOn(mark); // what may be done twice
    m_sale.RemoveBooked();
    m_sale.basket.LoadBestellungen();
    TellPayoutDoubt(mark.RechnungID);
    if (!print) return;
    const QScopedValueRollback mode(gPrintMode, gPrintMode == noReceipt ? askForReceipt : gPrintMode);
    m_sale.PrintReceipt(mark.RechnungID, mark.ZahlArt == u"KARTE" ? BelegArt::Karte : BelegArt::Kasse);
}

void Recovery::offerToFinish(const BookingMark& mark, const BookingState& state) {
    const QString consequence =
        state.hasHead
            ? u"Beleg %1 bleibt dann unvollständig und wird für den Inhaber vermerkt."_s.arg(mark.RechnungID)
            : u"Sie müssen dann noch einmal bezahlt werden."_s;
    if (AskYesNo(
            opening(mark, state) + u"\n\nEs fehlen:\n"_s + missing(mark, state) +
                u"\n\nSoll der Beleg jetzt fertig gebucht werden? Was schon gebucht ist, wird nicht noch "
                "einmal gebucht. Mit \"Nein\" bleiben alle Zeilen im Verkauf offen. "_s +
                consequence,
            title)) {
        Booking(m_sale).GoOn(mark);
        finishWhole(mark, u"Beleg %1 über %2 € ist jetzt vollständig gebucht."_s.arg(mark.RechnungID)
                              .arg(MoneyText(mark.Betrag_Gesamt)));
    } else {
        if (state.hasHead)
            mark.LeaveToOwner();
        else
            mark.Drop();
        m_sale.Forget();
    }
}

void Recovery::leave(const BookingMark& mark, const BookingState& state) {
    MsgBox(
        opening(mark, state) +
            u"\n\nIm Beleg stehen %1 von %2 Zeilen, und die offenen Zeilen des Verkaufs passen nicht mehr dazu. "
            "Sie bleiben, wie sie sind. Der Beleg wird für den Inhaber vermerkt; bitte prüfen Sie, was davon "
            "noch zu bezahlen ist."_s.arg(state.Gebucht)
                .arg(mark.Zeilen),
        MsgIcon::Exclamation, MsgButtons::OK, title);
    mark.LeaveToOwner();
}

} // namespace till
