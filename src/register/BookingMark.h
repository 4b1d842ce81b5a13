#pragma once

#include <text/Currency.h>

#include <QDateTime>
#include <QString>

#include <optional>

namespace till {

/// What this till is booking: a row of BuchungsMarke, written before the first write of the receipt and gone
/// with the lines of the sale. It says what the receipt is to become, so that another process of this till
/// can tell how far the booking came, and finish it.
///
/// The head and the lines of a receipt are found by its number. The stock of an article shows nobody's hand;
/// so each movement counts `Bestand` up in the same breath, and is there exactly when the count says so.
struct BookingMark {
    int RechnungID = 0; ///< taken for it before anything was written
    QDateTime at;
    int PersonalNummer = 0, KundenNummer = 0;
    QString Kunde, ZahlArt;
    Currency Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck;
    QString KartenTyp;
    bool IsLieferschein = false; ///< the stock has left with a delivery note
    int LetzteZeile = 0;         ///< Bestellung.ID of the last line; those up to it are the sale
    int Zeilen = 0;              ///< how many they are
    int Bestand = 0;             ///< for how many of them the stock has been moved

    /// False in a store that an older program made: bookings go without a mark there.
    [[nodiscard]] static bool isKept();
    /// The booking that this till has begun and not ended.
    [[nodiscard]] static std::optional<BookingMark> Read();
    void Write() const;
    /// The statement that goes along with the stock movement of line `line`, counted from 1.
    [[nodiscard]] QString MovedStatement(int line) const;
    /// The statement that goes along with the deletion of the lines.
    [[nodiscard]] QString EndStatement() const;
    /// The receipt stays as it is, for the owner to look at; the till has nothing to do with it any more.
    void LeaveToOwner() const;
    /// Nothing was written for it.
    void Drop() const;
};

} // namespace till
