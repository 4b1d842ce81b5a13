#pragma once

#include <text/Currency.h>

#include <QDateTime>
#include <QString>

#include <vector>

class Recordset;

namespace till {

/// A receipt whose booking was interrupted and that a cashier left as it was: the books hold a part of it.
struct IncompleteReceipt {
    int RechnungID = 0;
    QString Maschine;
    QDateTime at; ///< of its booking
    int PersonalNummer = 0;
    QString ZahlArt;
    Currency Betrag_Gesamt;
    int Zeilen = 0;  ///< it should have
    int Gebucht = 0; ///< that are there
    int Bestand = 0; ///< for how many of them the stock was moved
    bool hasHead = false;
};

/// Those of all tills that the owner has not settled yet, the oldest first. Empty in a store that an older
/// program made. Raises what the store raises.
[[nodiscard]] std::vector<IncompleteReceipt> IncompleteReceipts();
/// The list as the till shows it, a sentence for each receipt.
[[nodiscard]] QString IncompleteReceiptsText(const std::vector<IncompleteReceipt>& receipts);
/// The owner has dealt with it; it leaves the list.
void SettleIncompleteReceipt(int RechnungID);

/// "um 14:05", on another day than today "am 22.11.2026 um 14:05".
[[nodiscard]] QString whenText(const QDateTime& at);
/// Datum and Zeit of a row together.
[[nodiscard]] QDateTime receiptTime(const Recordset& row);

} // namespace till
