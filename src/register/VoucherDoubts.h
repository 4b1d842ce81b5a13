#pragma once

#include <text/Currency.h>

#include <QString>

namespace till {

/// The rest of a voucher is written after the receipt that took from it. What interrupts the till in between
/// leaves a receipt and the old rest; the line of the receipt tells the new one. What is found is told, and
/// nothing is changed.

[[nodiscard]] QString RedemptionName(int GutscheinID);
/// LangText of a redemption, with the rest that it leaves.
[[nodiscard]] QString RedemptionText(int GutscheinID, Currency rest);
/// Name and group of what a payout books.
[[nodiscard]] QString PayoutName();

/// Tells which vouchers have more on file than the redemptions of this receipt left them. A handler of its
/// own.
void TellVoucherDoubts(int RechnungID);
/// For a receipt whose booking was interrupted: where it paid a voucher out, tells which ones it may have
/// been. The receipt does not know. A handler of its own.
void TellPayoutDoubt(int RechnungID);

/// A redemption that stands in the open lines was not booked and took nothing from its voucher. False when
/// there is none; else it is told. Raises what the store raises.
[[nodiscard]] bool TellOpenRedemptions();

} // namespace till
