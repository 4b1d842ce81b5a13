#pragma once

#include <text/Currency.h>

#include <QString>

#include <functional>

/// Printing of what is booked. It works only from the store, so it can run again at any later time. None of
/// these routines raises: a failure is reported, and the booking stands.

/// The route of `gPrintMode` 1. A card payment never takes the direct route.
enum class BelegArt { Kasse, Karte };

/// The dialogs that printing asks through; forms of the room above.
struct BelegDialoge {
    std::function<void()> ShowPrintDlg = {};         ///< frmKassePrintDlg: sets gPrintMode to 0, 1 or 2
    std::function<void()> ShowRechnungsVorlage = {}; ///< frmRechnungsVorlage: sets gVorlagenAuswahl
};

/// Prints receipt `RechnungID` by gPrintMode: 0 nothing, 1 a page on the receipt printer, 2 the form
/// "Quittung.pld", 3 what frmKassePrintDlg makes of gPrintMode, which is put back to 3 afterwards. The direct
/// route to the port is reached only through that dialog.
void PrintBeleg(int RechnungID, BelegArt art, const BelegDialoge& dialoge);

/// Prints what was booked beside the sales (cash movements, vouchers): asks by frmKassePrintDlg, unless
/// gPrintMode is 0, and prints the form `FileName` or the receipt page that the answer names. gPrintMode is
/// put back.
void PrintVorgang(int RechnungID, const QString& FileName, const BelegDialoge& dialoge);

/// Prints receipt `RechnungID` once more: as gPrintMode says, or as a receipt where that asks or prints
/// nothing. One copy, whatever gDruckerKopies says; the customer of the session stays.
void ReprintBeleg(int RechnungID, BelegArt art, const BelegDialoge& dialoge);

/// The receipt as bytes for a serial receipt printer on COM gPrintDirectIOPort, gDruckerKopies times. The
/// customer of the session is the standard customer afterwards, unless printing failed.
void Print_BON_Direct(int RechnungID);

/// The receipt as a page on gBonDrucker, laid out by "Kassenbon.pld" in gDBPath, gDruckerKopies times. The
/// customer of the session is the standard customer afterwards, unless printing failed.
void Print_BON(int RechnungID);

/// A booked document as a form on gFormularDrucker, laid out by the template `FileName` in gDBPath,
/// gDruckerKopies times. `kind` 0 is a receipt or an invoice, 1 an offer, 2 a delivery note. With
/// gAskSchlussText each copy of kind 0 asks for its closing text; cancelling gives up the document of that
/// copy alone, and the next one asks again. The customer of the session is the standard customer afterwards,
/// unless printing failed.
void Print_Formular(int ID, const QString& FileName, int kind, const BelegDialoge& dialoge);

/// A voucher on gBonDrucker, laid out by "Gutschein.pld" in gDBPath, dated today.
void Print_Gutschein(int GutscheinID, const QString& Name, Currency Betrag);
