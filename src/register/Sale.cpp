#include "Sale.h"

#include <session/Clock.h>
#include <session/Globals.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZahlung.h>

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace till {

void Sale::ResetKunde() {
    gKunde = KundeRecord::Standard();
    RebuildTitle(false);
}

void Sale::RebuildTitle(bool doubleAmpersand) {
    QString name = gKunde.Name_1;
    if (doubleAmpersand) name.replace(u"&"_s, u"&&"_s);
    m_title = gKunde.Anrede + u' ' + name + u"  -  Rabatt: "_s + QString::number(gKunde.Rabatt) + u"/100"_s;
    emit TitleChanged(m_title);
}

void Sale::ChangeUser() {
    Trap([this] {
        if (!gKFBenutzerWechsel) return;
        {
            const QScopedValueRollback forced(gLoginPflicht, true);
            screen.Show(Dialog::DesktopLogin);
        }
        emit UserChanged(UserDisplay());
    });
}

QString Sale::UserDisplay() { return gKassenUser.Vorname + u' ' + gKassenUser.Name; }

void Sale::Booked(int Rechnung) {
    m_booked = {Rechnung, basket.lastID()};
    panel.TellSold({Rechnung, Now(), gZahlung.ZahlArt, gZahlung.KartenTyp, gZahlung.Betrag_Gesamt,
                    gZahlung.Betrag_Gegeben, gZahlung.Betrag_Zurueck});
}

void Sale::ClearPaid() {
    if (!m_booked) return;
    basket.DeleteRows(m_booked->lastID);
    m_booked.reset();
    ResetKunde();
    basket.LoadBestellungen();
}

} // namespace till
