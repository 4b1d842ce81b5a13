#include "Payment.h"

#include "Sale.h"

#include <devices/CashDrawer.h>
#include <printing/Beleg.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZVT.h>
#include <session/gZahlung.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/DetailedError.h>
#include <text/Format.h>

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Adds to what an error tells what the cashier should know about the sale.
template <typename Act, typename Advice>
void withAdvice(Act&& act, Advice&& advice) {
    try {
        act();
    } catch (const RuntimeError& error) {
        const QString more = advice();
        if (more.isEmpty()) throw;
        throw DetailedError(error.Number, error.Description + u"\n\n"_s + more, DetailsOf(error),
                            error.Source);
    }
}

} // namespace

void Payment::Total() {
    Basket& basket = m_sale.basket;
    if (m_paying) return;
    m_sale.ClearPaid();
    if (basket.isEmpty()) return;
    const QScopedValueRollback paying(m_paying, true);
    m_sale.screen.MovePointerAway();
    Currency total = ReadMoney(basket.Gesamt());
    if (gRoundDecimal) total = ReadMoney(Format(Value(total), u"###0.00"));
    gZahlung = {};
    gZahlung.Betrag_Gesamt = total;
    showTotal(gRoundDecimal);
    OpenKassenLade(DrawerOwner::Kasse);
    if (!gShowWechselgeldDialog) {
        m_sale.screen.Yield();
        gZahlung.Betrag_Gesamt = gZahlung.Betrag_Gegeben = ReadMoney(basket.Gesamt());
        gZahlung.ZahlArt = u"BAR"_s;
    } else if (!askAmount()) {
        return;
    }
    const int id = book();
    if (id == 0) return;
    print(id, BelegArt::Kasse);
    finish(gEnabledAutoClose ? MoneyText(total) : QString());
}

void Payment::showTotal(bool rounded) {
    // Told when it fails, but a display does not keep a customer from paying.
    Handle("frmKasse", [&] { m_sale.display.ShowTotal(m_sale.basket.Gesamt(), rounded); });
}

bool Payment::askAmount() {
    m_sale.screen.Show(Dialog::KasseTotal);
    if (gZahlung.Ergebnis != 0) return true;
    Basket& basket = m_sale.basket;
    if (basket.isEmpty())
        basket.SetLCDDefault();
    else
        basket.ItemClick(basket.selected());
    return false;
}

void Payment::ByKarte(const QString& KartenName) {
    Basket& basket = m_sale.basket;
    if (m_paying) return;
    m_sale.ClearPaid();
    if (basket.isEmpty()) return;
    const QScopedValueRollback paying(m_paying, true);
    gZahlung = {};
    gZahlung.Betrag_Gesamt = gZahlung.Betrag_Gegeben = ReadMoney(basket.Gesamt());
    gZahlung.ZahlArt = u"KARTE"_s;
    showTotal(false);
    if (!confirmKarte(KartenName)) return;
    const int id = book();
    if (id == 0) return;
    print(id, BelegArt::Karte);
    finish({});
}

bool Payment::confirmKarte(const QString& KartenName) {
    if (gZVTEnabled && gZVT) {
        m_sale.screen.MovePointerAway();
        const double due = RoundHalfEven(gZahlung.Betrag_Gesamt.toDouble(), 2);
        if (!gZVT->Bezahlen(Currency::fromDouble(due))) {
            m_sale.basket.LoadBestellungen();
            return false;
        }
        gZahlung.KartenTyp = gZVT->KartenName();
        return true;
    }
    if (MsgBox(
            u"OK, Zahlung erfolgt mit Kreditkarte!\n\nGesamtsumme: "_s + MoneyText(gZahlung.Betrag_Gesamt) +
                u" €\n\nBuchen Sie diesen Betrag jetzt über das Zahlungsverkehrsterminal. Warten Sie bis der "
                u"Betrag gebucht wurde und bestätigen Sie mit OK."_s,
            MsgIcon::Information, MsgButtons::OKCancel, u"Kreditkartenbuchung..."_s) != MsgAnswer::OK)
        return false;
    gZahlung.KartenTyp = KartenName;
    return true;
}

int Payment::book() {
    int id = 0;
    CreateRechnung(id);
    m_sale.screen.Yield();
    if (id == 0) {
        MsgBox(u"Beim Erstellen der Rechnung ist ein Fehler aufgetreten."_s);
        m_sale.basket.LoadBestellungen();
    } else {
        m_sale.Booked(id);
    }
    return id;
}

void Payment::print(int id, BelegArt art) {
    PrintBeleg(id, art,
               {[this] {
                    m_sale.screen.Show(Dialog::PrintDlg);
                    m_sale.screen.MovePointerAway();
                },
                [this] { m_sale.screen.Show(Dialog::RechnungsVorlage); }});
}

void Payment::finish(const QString& lastTotal) {
    withAdvice(
        [this] { m_sale.basket.DeleteRows(); },
        [this] {
            return u"Der Verkauf ist unter der Belegnummer %1 gebucht. Seine Zeilen verschwinden mit der "
                   "nächsten Eingabe, sobald die Datenbank wieder da ist; sie werden nicht noch einmal gebucht."_s
                       .arg(m_sale.Rechnung());
        });
    m_sale.Emptied();
    m_sale.basket.rsBestellung().Requery();
    m_sale.ResetKunde();
    m_sale.screen.MovePointerAway();
    m_sale.screen.Yield();
    m_sale.basket.LoadBestellungen();
    if (gAbfrageLoginProOrder) m_sale.ChangeUser();
    if (!lastTotal.isEmpty()) m_sale.basket.ShowGesamt(lastTotal);
    m_sale.screen.Yield();
    m_sale.screen.FocusInput();
}

void Payment::CreateRechnung(int& RechnungID) {
    RechnungID = 0;
    std::unique_ptr<Recordset> rechnung, detail;
    int begun = 0, booked = 0; // the receipt whose head is written, and how many lines of it
    const auto write = [&] {
        rechnung = gDB->OpenRecordset(u"Rechnung"_s);
        detail = gDB->OpenRecordset(u"RechnungsDetail"_s);
        const QDateTime now = Now();
        rechnung->AddNew();
        const int id = rechnung->Long(u"RechnungID");
        rechnung->Set(u"Maschine", gMaschine);
        rechnung->Set(u"Datum", DateTime::fromQDate(now.date()));
        rechnung->Set(u"Zeit", DateTime::fromQTime(now.time()));
        rechnung->Set(u"PersonalNummer", gKassenUser.ID);
        rechnung->Set(u"KundenNummer", gKunde.KundenID);
        rechnung->Set(u"Kunde", gKunde.Name_1);
        rechnung->Set(u"ZahlArt", gZahlung.ZahlArt);
        rechnung->Set(u"Betrag_Gesamt", gZahlung.Betrag_Gesamt);
        rechnung->Set(u"Betrag_Gegeben", gZahlung.Betrag_Gegeben);
        rechnung->Set(u"Betrag_Zurueck", gZahlung.Betrag_Zurueck);
        rechnung->Set(u"KartenTyp", gZahlung.KartenTyp);
        rechnung->Set(u"Abschluss", false);
        rechnung->Update();
        begun = id;

        Recordset& rs = m_sale.basket.rsBestellung();
        for (rs.Requery(); !rs.Eof(); rs.MoveNext()) {
            writeDetail(*detail, id);
            if (!m_sale.basket.IsLieferscheinBon) moveStock(id);
            ++booked;
        }
        // Always note 1: which notes a sale came from is not known here.
        if (m_sale.basket.IsLieferscheinBon)
            gDB->Execute(u"UPDATE Lieferung SET InRechnung=-1 WHERE LieferungID=1;"_s);
        RechnungID = id;
    };
    const auto advice = [&]() -> QString {
        if (begun == 0) return {};
        return u"Unter der Belegnummer %1 sind %2 von %3 Zeilen fertig gebucht. Alle Zeilen stehen noch im Verkauf. "
               "Wird er noch einmal bezahlt, entsteht ein neuer, vollständiger Beleg; Beleg %1 ist dann zu viel und "
               "muss geprüft werden."_s.arg(begun)
                   .arg(booked)
                   .arg(m_sale.basket.rowCount());
    };
    Handle(
        "frmKasse", [&] { withAdvice(write, advice); },
        [&] {
            if (rechnung) rechnung->CancelUpdate();
            if (detail) detail->CancelUpdate();
        });
}

void Payment::writeDetail(Recordset& detail, int id) {
    const Recordset& rs = m_sale.basket.rsBestellung();
    const auto copy = [&](std::initializer_list<const char16_t*> columns) {
        for (const char16_t* column : columns)
            detail.Set(column, rs.Field(QStringView(column)));
    };
    const Currency price = rs.Money(u"VKPreis_Rabatt");
    detail.AddNew();
    detail.Set(u"RechnungID", id);
    detail.Set(u"Maschine", gMaschine);
    copy({u"Datum", u"Zeit", u"PersonalNummer"});
    detail.Set(u"KundenNummer", gKunde.KundenID);
    detail.Set(u"Kunde", gKunde.Name_1);
    copy({u"ArtikelNummer", u"ArtikelName", u"Buchungs_Menge", u"Menge", u"Einheit", u"EKPreis"});
    detail.Set(u"VKPreis_Brutto", price);
    detail.Set(u"VKPreis_Netto", NetPrice(price, rs.Number(u"SteuerSatz")));
    detail.Set(u"VKPreisOrg", rs.Money(u"VKPreis"));
    copy({u"SteuerSatz", u"SNNummer", u"WarenGruppe", u"LangText", u"Zusatz1", u"Zusatz2", u"PreisInfo"});
    const auto supplier =
        gDB->OpenRecordset(u"SELECT BestellNummer FROM ArtikelLieferanten WHERE ArtikelNummer="_s +
                           sql::text(rs.Text(u"ArtikelNummer")) + u';');
    detail.Set(u"BestellNummer", supplier->Eof() ? u"nicht verfügbar"_s : supplier->Text(u"BestellNummer"));
    detail.Update();
}

void Payment::moveStock(int id) {
    const Recordset& rs = m_sale.basket.rsBestellung();
    const QString nummer = sql::text(rs.Text(u"ArtikelNummer"));
    gDB->Execute(u"UPDATE Artikel SET IstBestand = (IstBestand - "_s +
                 sql::number(rs.Number(u"Menge") * rs.Number(u"Buchungs_Menge")) +
                 u") WHERE LagerAktiv=-1 AND Nummer="_s + nummer + u';');
    gDB->Execute(u"UPDATE ArtikelSerienNummern SET VKDatum="_s +
                 sql::text(Today().toString(u"dd.MM.yyyy"_s)) + u", RechnungID="_s + sql::number(id) +
                 u" WHERE ArtikelNummer="_s + nummer + u" AND SNNummer="_s + sql::text(rs.Text(u"SNNummer")) +
                 u';');
}

} // namespace till
