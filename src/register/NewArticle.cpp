#include "NewArticle.h"

#include "Sale.h"

#include <session/ArtikelFields.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gUser.h>

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace till {

bool NewArticle::isAsked() const {
    return !gDisabledAskForNewArtikel && m_sale.screen.CanShow(Dialog::ArtikelDetail);
}

bool NewArticle::Make(const QString& Nummer, Recordset& rsArtikel) {
    if (!AskYesNo(
            u"Der von Ihnen gesuchte Artikel konnte nicht gefunden werden. Möchten Sie diesen jetzt anlegen?"_s))
        return false;
    if (!gKassenUser.R_Artikel) {
        MsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen"_s, MsgIcon::Critical);
        return false;
    }
    ArtikelRecord fresh;
    fresh.IsNeu = fresh.Aktiv = fresh.LagerAktiv = true;
    fresh.Nummer = Nummer;
    fresh.SteuerSatz = Currency::fromDouble(gVollerSteuerSatz);
    fresh.Einheit = u"Stück"_s;
    fresh.Menge = 1;
    gArtikel = fresh;
    m_sale.screen.Show(Dialog::ArtikelDetail);
    m_sale.screen.MovePointerAway();
    if (gArtikel.Ergebnis != 1) return false;
    gArtikel.Ergebnis = 0;
    const auto drop = qScopeGuard([&] { rsArtikel.CancelUpdate(); });
    rsArtikel.AddNew();
    save(rsArtikel, ArtikelFields(), gArtikel);
    rsArtikel.Update();
    rsArtikel.Requery();
    return true;
}

} // namespace till
