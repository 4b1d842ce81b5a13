#include "Reprint.h"

#include "Sale.h"

#include <printing/Beleg.h>
#include <session/MsgBox.h>

using namespace Qt::StringLiterals;

namespace till {

void Reprint::Last() {
    const auto& last = m_sale.panel.Last();
    if (!last) {
        MsgBox(u"Seit dem Öffnen der Kasse wurde noch kein Verkauf gebucht."_s);
        return;
    }
    ReprintBeleg(last->Rechnung, last->byCard() ? BelegArt::Karte : BelegArt::Kasse,
                 {{}, [this] { m_sale.screen.Show(Dialog::RechnungsVorlage); }});
}

} // namespace till
