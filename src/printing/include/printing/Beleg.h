#pragma once

#include <QString>

#include <functional>

/// Printing of a booked receipt. It works only from what is booked, so it can run again at any later time.
/// None of these routines raises: a failure is reported, and the booking stands.

/// The route of `gPrintMode` 1. A card payment never takes the direct route.
enum class BelegArt { Kasse, Karte };

/// Prints receipt `RechnungID` by gPrintMode: 0 nothing, 1 a page on the receipt printer, 2 the form
/// "Quittung.pld", 3 what `showPrintDlg` (frmKassePrintDlg) makes of gPrintMode, which is put back to 3
/// afterwards. The direct route to the port is reached only through that dialog.
void PrintBeleg(int RechnungID, BelegArt art, const std::function<void()>& showPrintDlg);

/// The receipt as bytes for a serial receipt printer on COM gPrintDirectIOPort, gDruckerKopies times. The
/// customer of the session is the standard customer afterwards, unless printing failed.
void Print_BON_Direct(int RechnungID);
/// The receipt as a page on the receipt printer, laid out by "Kassenbon.pld" in gDBPath.
void Print_BON(int RechnungID);
/// The receipt as a form on the form printer, laid out by `Vorlage` in gDBPath.
void Print_Formular(int RechnungID, const QString& Vorlage);
