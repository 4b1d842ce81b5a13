#pragma once

namespace till {

class RegisterScreen;

/// Whether a receipt chosen in the print dialog may go out byte by byte; card payments always print a page.
enum class DirectRoute { Allowed, Never };

/// Prints a booked document as gPrintMode says, asking for mode 3; the mode is as before afterwards. Failures are
/// reported here: the sale is booked whatever becomes of the paper.
void PrintReceipt(RegisterScreen& screen, int RechnungID, DirectRoute direct);

} // namespace till
