#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>

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

void printForm(int RechnungID) { Print_Formular(RechnungID, u"Quittung.pld"_s); }

} // namespace

void PrintBeleg(int RechnungID, BelegArt art, const std::function<void()>& showPrintDlg) {
    if (gPrintMode == ask) {
        const KeepPrintMode keep;
        if (!Handle("frmKassePrintDlg", showPrintDlg)) return;
        if (gPrintMode == asForm) printForm(RechnungID);
        if (gPrintMode == asReceipt) {
            if (art == BelegArt::Kasse && gPrintDirectIO)
                Print_BON_Direct(RechnungID);
            else
                Print_BON(RechnungID);
        }
    } else if (gPrintMode == asForm) {
        printForm(RechnungID);
    } else if (gPrintMode == asReceipt) {
        // The direct route is not taken here whatever gPrintDirectIO says: it is reached through the dialog
        // only.
        Print_BON(RechnungID);
    }
}

// No template can be opened while pages cannot be laid out, so both routes end where a missing template ends.

void Print_BON(int) {
    Handle("frmKasse", [] {
        MsgBox(u"Der Bon kann nicht gedruckt werden, da das System die Druckvorlage für den Kassenbon nicht "
               u"finden "
               "konnte."_s);
    });
}

void Print_Formular(int, const QString&) {
    Handle("frmKasse", [] {
        MsgBox(u"Das Formular kann nicht gedruckt werden, da das System die dafür nötige Druckvorlage nicht "
               u"finden, "
               "oder öffnen konnte."_s);
    });
}
