#include "Sale.h"

#include <register/Returns.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gUser.h>

using namespace Qt::StringLiterals;

namespace till {

void Returns::ShowReklamation() {
    m_sale.Trap([this] {
        if (!gKFWarenrueckgabe) return;
        if (!gKassenUser.R_RechnungEdit) {
            MsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s,
                   MsgIcon::Information, MsgButtons::OK, u"Systemmedlung..."_s);
            return;
        }
        if (m_sale.isBooking || !m_sale.Settle()) return;
        m_sale.screen.Show(Dialog::Reklamation);
        m_sale.screen.MovePointerAway();
    });
}

} // namespace till
