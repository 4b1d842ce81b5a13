#include "Booking.h"

#include "LineKey.h"
#include "Sale.h"

#include <register/OrderNumbers.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZahlung.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

bool BookingState::isWhole(const BookingMark& mark) const {
    return hasHead && Gebucht == mark.Zeilen && (mark.IsLieferschein || mark.Bestand == mark.Zeilen);
}

BookingState LookAtBooking(const BookingMark& mark) {
    const QString id = sql::number(mark.RechnungID);
    BookingState state;
    state.hasHead = sql::count(*gDB, u"Rechnung WHERE RechnungID="_s + id) > 0;
    std::vector<LineKey> booked =
        LinesOf(u"SELECT * FROM RechnungsDetail WHERE RechnungID="_s + id + u';', u"VKPreis_Brutto");
    std::vector<LineKey> open =
        LinesOf(u"SELECT * FROM Bestellung WHERE Maschine="_s + sql::text(gMaschine) + u" AND ID<="_s +
                    sql::number(mark.LetzteZeile) + u" ORDER BY ID ASC;"_s,
                u"VKPreis_Rabatt");
    state.Gebucht = int(booked.size());
    state.open = int(open.size());
    if (state.open != mark.Zeilen || state.Gebucht > state.open) return state;
    const auto behind = open.begin() + state.Gebucht;
    for (auto line = behind; line != open.end(); ++line)
        state.remaining << Shown(*line);
    if (behind != open.begin()) state.last = Shown(*(behind - 1));
    // The lines of a receipt have no order of their own.
    std::sort(open.begin(), behind);
    std::sort(booked.begin(), booked.end());
    state.fits = std::equal(open.begin(), behind, booked.begin(), booked.end());
    return state;
}

void Booking::open() {
    m_rechnung = gDB->OpenRecordset(u"Rechnung"_s);
    m_detail = gDB->OpenRecordset(u"RechnungsDetail"_s);
}

void Booking::CancelEdits() noexcept {
    if (m_rechnung) m_rechnung->CancelUpdate();
    if (m_detail) m_detail->CancelUpdate();
}

void Booking::Begin() {
    GiveUp();
    open();
    m_rechnung->AddNew();
    m_mark.RechnungID = m_rechnung->Long(u"RechnungID");
    m_mark.at = Now();
    m_mark.PersonalNummer = gKassenUser.ID;
    m_mark.KundenNummer = gKunde.KundenID;
    m_mark.Kunde = gKunde.Name_1;
    m_mark.ZahlArt = gZahlung.ZahlArt;
    m_mark.Betrag_Gesamt = gZahlung.Betrag_Gesamt;
    m_mark.Betrag_Gegeben = gZahlung.Betrag_Gegeben;
    m_mark.Betrag_Zurueck = gZahlung.Betrag_Zurueck;
    m_mark.KartenTyp = gZahlung.KartenTyp;
    m_mark.IsLieferschein = m_sale.basket.IsLieferscheinBon;
    m_mark.LetzteZeile = m_sale.basket.lastID();
    m_mark.Zeilen = m_sale.basket.rowCount();
    m_sale.Began(m_mark);
    if (m_sale.keepsMarks()) m_mark.Write();
    write({});
}

void Booking::GoOn(BookingMark mark) {
    CancelEdits();
    open();
    m_mark = std::move(mark);
    m_sale.Began(m_mark);
    if (const auto kept = BookingMark::Read(); kept && kept->RechnungID == m_mark.RechnungID)
        m_mark = *kept;
    else
        m_mark.Write();
    write(LookAtBooking(m_mark));
}

void Booking::GiveUp() {
    const BookingMark* older = m_sale.begun();
    if (!older || !m_sale.keepsMarks()) return;
    const BookingState state = LookAtBooking(*older);
    if (state.hasHead || state.Gebucht > 0)
        older->LeaveToOwner();
    else
        older->Drop();
    m_sale.Forget();
}

// A line is written, its stock moved, its serial number marked before the next begins; so of those that stand
// in the receipt all but the last are done.
void Booking::write(const BookingState& done) {
    m_hasHead = done.hasHead;
    if (!m_hasHead) writeHead();
    Recordset& rs = m_sale.basket.rsBestellung();
    int line = 0;
    for (rs.Requery(); !rs.Eof() && rs.Long(u"ID") <= m_mark.LetzteZeile; rs.MoveNext()) {
        ++line;
        if (line > done.Gebucht) writeDetail();
        if (line >= done.Gebucht && !m_mark.IsLieferschein) moveStock(line);
        m_booked = line;
    }
    // Always note 1: which notes a sale came from is not known here.
    if (m_mark.IsLieferschein) gDB->Execute(u"UPDATE Lieferung SET InRechnung=-1 WHERE LieferungID=1;"_s);
    m_sale.Booked(m_mark);
}

void Booking::writeHead() {
    if (!m_rechnung->Editing()) {
        m_rechnung->AddNew();
        m_rechnung->Set(u"RechnungID", m_mark.RechnungID);
    }
    m_rechnung->Set(u"Maschine", gMaschine);
    m_rechnung->Set(u"Datum", DateTime::fromQDate(m_mark.at.date()));
    m_rechnung->Set(u"Zeit", DateTime::fromQTime(m_mark.at.time()));
    m_rechnung->Set(u"PersonalNummer", m_mark.PersonalNummer);
    m_rechnung->Set(u"KundenNummer", m_mark.KundenNummer);
    m_rechnung->Set(u"Kunde", m_mark.Kunde);
    m_rechnung->Set(u"ZahlArt", m_mark.ZahlArt);
    m_rechnung->Set(u"Betrag_Gesamt", m_mark.Betrag_Gesamt);
    m_rechnung->Set(u"Betrag_Gegeben", m_mark.Betrag_Gegeben);
    m_rechnung->Set(u"Betrag_Zurueck", m_mark.Betrag_Zurueck);
    m_rechnung->Set(u"KartenTyp", m_mark.KartenTyp);
    m_rechnung->Set(u"Abschluss", false);
    m_rechnung->Update();
    m_hasHead = true;
}

void Booking::writeDetail() {
    const Recordset& rs = m_sale.basket.rsBestellung();
    Recordset& detail = *m_detail;
    const auto copy = [&](std::initializer_list<const char16_t*> columns) {
        for (const char16_t* column : columns)
            detail.Set(column, rs.Field(QStringView(column)));
    };
    const Currency price = rs.Money(u"VKPreis_Rabatt");
    detail.AddNew();
    detail.Set(u"RechnungID", m_mark.RechnungID);
    detail.Set(u"Maschine", gMaschine);
    copy({u"Datum", u"Zeit", u"PersonalNummer"});
    detail.Set(u"KundenNummer", m_mark.KundenNummer);
    detail.Set(u"Kunde", m_mark.Kunde);
    copy({u"ArtikelNummer", u"ArtikelName", u"Buchungs_Menge", u"Menge", u"Einheit", u"EKPreis"});
    detail.Set(u"VKPreis_Brutto", price);
    detail.Set(u"VKPreis_Netto", NetPrice(price, rs.Number(u"SteuerSatz")));
    detail.Set(u"VKPreisOrg", rs.Money(u"VKPreis"));
    copy({u"SteuerSatz", u"SNNummer", u"WarenGruppe", u"LangText", u"Zusatz1", u"Zusatz2", u"PreisInfo"});
    detail.Set(u"BestellNummer", OrderNumberOf(rs.Text(u"ArtikelNummer")));
    detail.Update();
}

void Booking::moveStock(int line) {
    const Recordset& rs = m_sale.basket.rsBestellung();
    const QString nummer = sql::text(rs.Text(u"ArtikelNummer"));
    if (line > m_mark.Bestand) {
        const QString move = u"UPDATE Artikel SET IstBestand = (IstBestand - "_s +
                             sql::number(rs.Number(u"Menge") * rs.Number(u"Buchungs_Menge")) +
                             u") WHERE LagerAktiv=-1 AND Nummer="_s + nummer + u';';
        if (m_sale.keepsMarks())
            gDB->ExecuteTogether({move, m_mark.MovedStatement(line)});
        else
            gDB->Execute(move);
        m_mark.Bestand = line;
    }
    gDB->Execute(u"UPDATE ArtikelSerienNummern SET VKDatum="_s +
                 sql::text(m_mark.at.date().toString(u"dd.MM.yyyy"_s)) + u", RechnungID="_s +
                 sql::number(m_mark.RechnungID) + u" WHERE ArtikelNummer="_s + nummer + u" AND SNNummer="_s +
                 sql::text(rs.Text(u"SNNummer")) + u';');
}

} // namespace till
