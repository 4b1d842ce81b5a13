#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/Handle.h>

using namespace Qt::StringLiterals;

namespace {

/// Puts the route back that the dialog changed for one receipt.
class KeepPrintMode {
  public:
    KeepPrintMode() = default;
    ~KeepPrintMode() { gPrintMode = m_mode; }
    KeepPrintMode(const KeepPrintMode&) = delete;
    KeepPrintMode& operator=(const KeepPrintMode&) = delete;

  private:
    int m_mode = gPrintMode;
};

constexpr int asForm = 2, asReceipt = 1, ask = 3;

void printForm(int RechnungID, const BelegDialoge& dialoge) {
    Print_Formular(RechnungID, u"Quittung.pld"_s, 0, dialoge);
}

} // namespace

void PrintBeleg(int RechnungID, BelegArt art, const BelegDialoge& dialoge) {
    if (gPrintMode == ask) {
        const KeepPrintMode keep;
        if (!Handle("frmKassePrintDlg", dialoge.ShowPrintDlg)) return;
        if (gPrintMode == asForm) printForm(RechnungID, dialoge);
        if (gPrintMode == asReceipt) {
            if (art == BelegArt::Kasse && gPrintDirectIO)
                Print_BON_Direct(RechnungID);
            else
                Print_BON(RechnungID);
        }
    } else if (gPrintMode == asForm) {
        printForm(RechnungID, dialoge);
    } else if (gPrintMode == asReceipt) {
        // The direct route is not taken here whatever gPrintDirectIO says: it is reached through the dialog
        // only.
        Print_BON(RechnungID);
    }
}
