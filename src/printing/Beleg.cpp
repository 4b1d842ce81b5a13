#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/gKunde.h>

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {

constexpr int nothing = 0, asReceipt = 1, asForm = 2, ask = 3;

void printForm(int RechnungID, const BelegDialoge& dialoge) {
    Print_Formular(RechnungID, u"Quittung.pld"_s, 0, dialoge);
}

/// As the key of the print dialog does.
void printReceipt(int RechnungID, BelegArt art) {
    if (art == BelegArt::Kasse && gPrintDirectIO)
        Print_BON_Direct(RechnungID);
    else
        Print_BON(RechnungID);
}

} // namespace

void PrintBeleg(int RechnungID, BelegArt art, const BelegDialoge& dialoge) {
    if (gPrintMode == ask) {
        const QScopedValueRollback oneReceipt(gPrintMode);
        if (!Handle("frmKassePrintDlg", dialoge.ShowPrintDlg)) return;
        if (gPrintMode == asForm) printForm(RechnungID, dialoge);
        if (gPrintMode == asReceipt) printReceipt(RechnungID, art);
    } else if (gPrintMode == asForm) {
        printForm(RechnungID, dialoge);
    } else if (gPrintMode == asReceipt) {
        // The direct route is not taken here whatever gPrintDirectIO says: it is reached through the dialog
        // only.
        Print_BON(RechnungID);
    }
}

void PrintVorgang(int RechnungID, const QString& FileName, const BelegDialoge& dialoge) {
    if (gPrintMode == nothing) return;
    const QScopedValueRollback oneReceipt(gPrintMode);
    if (!Handle("frmKassePrintDlg", dialoge.ShowPrintDlg)) return;
    if (gPrintMode == asForm) Print_Formular(RechnungID, FileName, 0, dialoge);
    if (gPrintMode == asReceipt) Print_BON(RechnungID);
}

void ReprintBeleg(int RechnungID, BelegArt art, const BelegDialoge& dialoge) {
    // A sale may be open: printing must not change whose it is.
    const QScopedValueRollback customer(gKunde);
    const QScopedValueRollback oneCopy(gDruckerKopies, 1);
    if (gPrintMode == asForm)
        printForm(RechnungID, dialoge);
    else if (gPrintMode == asReceipt)
        Print_BON(RechnungID);
    else
        printReceipt(RechnungID, art);
}
