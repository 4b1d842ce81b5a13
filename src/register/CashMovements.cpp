#include "Checkout.h"
#include "LineWithoutArticle.h"
#include "Sale.h"

#include <printing/Beleg.h>
#include <register/CashMovements.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gUser.h>
#include <session/gZahlung.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

namespace till {

struct CashMovements::Kind {
    bool isEinlage;
    QStringView name, Nummer, ZahlArt;
};

namespace {

/// What was booked at this till since its last closing, on receipts and lines for which `condition` holds.
Currency bookedSum(const QString& condition) {
    const auto rs = gDB->OpenRecordset(
        u"SELECT SUM(VKPreis_Brutto*Buchungs_Menge) AS Brutto "
        "FROM Rechnung INNER JOIN RechnungsDetail ON Rechnung.RechnungID = RechnungsDetail.RechnungID "
        "WHERE %1 AND Rechnung.Abschluss = 0 AND Rechnung.Maschine = %2;"_s.arg(condition,
                                                                                sql::text(gMaschine)));
    return rs->Eof() ? Currency{} : rs->Money(u"Brutto");
}

} // namespace

void CashMovements::BookEinlage() {
    if (gKFKasseneinlage) book({true, u"Einlage", SonderArtikel::Einlage, u"EINLAGE"});
}

void CashMovements::BookEntnahme() {
    if (gKFKassenentnahme) book({false, u"Entnahme", SonderArtikel::Entnahme, u"ENTNAHME"});
}

void CashMovements::book(const Kind& kind) {
    m_sale.Trap([&] {
        Checkout checkout(m_sale);
        if (!checkout.Begin()) return;
        Basket& basket = m_sale.basket;
        if (!basket.isEmpty()) {
            MsgBox(u"Diese Aktion ist nur möglich, wenn keine aktiven Buchungen vorhanden sind."_s);
            return;
        }
        m_sale.ResetKunde();
        gKassenBuchung = {{0, kind.name.toString(), kind.name.toString(), 0, {}}, kind.isEinlage};
        m_sale.screen.Show(Dialog::KassenBuchung);
        m_sale.screen.MovePointerAway();
        if (gKassenBuchung.Ergebnis == 0) return;

        gArtikel = LineWithoutArticle(kind.Nummer, gKassenBuchung.WarenGruppe, gKassenBuchung.Name,
                                      gKassenBuchung.Betrag, gKassenBuchung.SteuerSatz);
        gArtikel.EKPreis = {};
        gArtikel.Einheit = u"x"_s;
        basket.AddArtikelToBestellung();
        gZahlung = {};
        gZahlung.Betrag_Gesamt = gKassenBuchung.Betrag;
        gZahlung.ZahlArt = kind.ZahlArt.toString();
        int id = 0;
        checkout.CreateRechnung(id);
        m_sale.screen.Yield();
        if (id == 0)
            MsgBox(u"Beim Erstellen des Beleges ist ein Fehler aufgetreten."_s);
        else
            PrintVorgang(id, u"Quittung.pld"_s, m_sale.printDialogs());
        checkout.EndMovement();
    });
}

void CashMovements::ShowUmsatzAbfrage() {
    m_sale.Trap([this] {
        if (!gKFKassenBestand) return;
        if (!gKassenUser.R_Setup) {
            MsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen."_s);
            return;
        }
        // Holds for every line: movements are told apart by the kind of payment alone.
        const QString anyLine = u"(RechnungsDetail.ArtikelNummer <> '401-Entnahme' "
                                "OR RechnungsDetail.ArtikelNummer <> '401-Einlage')"_s;
        const auto movement = [](const QString& kind, QStringView nummer) {
            return u"Rechnung.ZahlArt = '%1' AND RechnungsDetail.ArtikelNummer = '%2'"_s.arg(kind, nummer);
        };
        const std::pair<QString, QString> rows[] = {
            {u"BAR:\t\t"_s, u"(Rechnung.ZahlArt = 'BAR' OR Rechnung.ZahlArt = 'RUECKGABE') AND "_s + anyLine},
            {u"Karte:\t\t"_s, u"Rechnung.ZahlArt = 'KARTE' AND "_s + anyLine},
            {u"401-Entnahme:\t"_s, movement(u"ENTNAHME"_s, SonderArtikel::Entnahme)},
            {u"401-Einlage:\t"_s, movement(u"EINLAGE"_s, SonderArtikel::Einlage)}};
        QStringList lines;
        for (const auto& [label, condition] : rows)
            lines << label + MoneyText(bookedSum(condition)) + u' ' + gWaehrungsSymbol;
        MsgBox(u"Folgende Beträge wurden seit dem letzten Kassenabschluss gebucht:\n\n"_s + lines.join(u'\n'),
               MsgIcon::Information, MsgButtons::OK, u"Umsatzabfrage..."_s);
    });
}

} // namespace till
