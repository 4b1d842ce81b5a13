#include "Advice.h"
#include "Sale.h"

#include <printing/Beleg.h>
#include <register/CollectiveInvoice.h>
#include <register/OrderNumbers.h>
#include <register/gMaschine.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>

#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

std::unique_ptr<Recordset> openNote(int id) {
    return gDB->OpenRecordset(u"SELECT * FROM Lieferung WHERE LieferungID="_s + sql::number(id) + u';');
}

/// Which notes the invoice holds, as it stands in its Zusatz.
QString contents(const std::vector<int>& notes) {
    QString text = u"In dieser Rechnung sind folgende Lieferungen enthalten: "_s;
    for (const int id : notes)
        text += u" Lf - Nr.%1 vom: %2, "_s.arg(id).arg(openNote(id)->Text(u"Datum"));
    return text.chopped(2);
}

QString nameOf(int KundenID, int note) {
    const auto rs =
        gDB->OpenRecordset(u"SELECT Name_1 FROM Kunden WHERE KundenID="_s + sql::number(KundenID) + u';');
    return rs->Eof() ? openNote(note)->Text(u"Kunde") : rs->Text(u"Name_1");
}

class Writer {
  public:
    Writer(int KundenID, const std::vector<int>& notes, Currency sum)
        : m_customer(KundenID)
        , m_notes(notes)
        , m_sum(sum)
        , m_name(nameOf(KundenID, notes.front()))
        , m_at(Now()) {}

    int write() {
        writeHead();
        m_detail = gDB->OpenRecordset(u"RechnungsDetail"_s);
        for (const int note : m_notes) {
            const auto rs = gDB->OpenRecordset(u"SELECT * FROM LieferungDetail WHERE LieferungID="_s +
                                               sql::number(note) + u';');
            for (; !rs->Eof(); rs->MoveNext()) {
                writeLine(*rs);
                ++m_lines;
            }
        }
        for (const int note : m_notes) {
            gDB->Execute(u"UPDATE Lieferung SET InRechnung=-1 WHERE LieferungID="_s + sql::number(note) +
                         u';');
            ++m_marked;
        }
        return m_id;
    }
    [[nodiscard]] QString told() const {
        if (!m_hasHead) return {};
        return u"Rechnung %1 ist angefangen: %2 Zeilen stehen darauf, %3 von %4 Lieferscheinen sind als "
               "abgerechnet vermerkt. Bitte prüfen Sie sie, bevor Sie den Assistenten noch einmal starten: "
               "Die übrigen Lieferscheine stehen dann in einer zweiten Rechnung."_s.arg(m_id)
                   .arg(m_lines)
                   .arg(m_marked)
                   .arg(m_notes.size());
    }

  private:
    void writeHead() {
        const QString Zusatz = contents(m_notes);
        const auto rs = gDB->OpenRecordset(u"Rechnung"_s);
        rs->AddNew();
        m_id = rs->Long(u"RechnungID");
        rs->Set(u"Maschine", gMaschine);
        rs->Set(u"Datum", DateTime::fromQDate(m_at.date()));
        rs->Set(u"Zeit", DateTime::fromQTime(m_at.time()));
        rs->Set(u"PersonalNummer", gKassenUser.ID);
        rs->Set(u"KundenNummer", m_customer);
        rs->Set(u"Kunde", m_name);
        rs->Set(u"ZahlArt", u"RECHNUNG_OFFEN"_s);
        rs->Set(u"Betrag_Gesamt", m_sum);
        rs->Set(u"Betrag_Gegeben", m_sum);
        rs->Set(u"Betrag_Zurueck", Currency());
        rs->Set(u"KartenTyp", QString(u""_s));
        rs->Set(u"Abschluss", false);
        rs->Set(u"Zusatz", Zusatz);
        rs->Update();
        m_hasHead = true;
    }

    void writeLine(const Recordset& rs) {
        Recordset& detail = *m_detail;
        const auto copy = [&](std::initializer_list<const char16_t*> columns) {
            for (const char16_t* column : columns)
                detail.Set(column, rs.Field(QStringView(column)));
        };
        detail.AddNew();
        detail.Set(u"RechnungID", m_id);
        detail.Set(u"Maschine", gMaschine);
        detail.Set(u"Datum", DateTime::fromQDate(m_at.date()));
        detail.Set(u"Zeit", DateTime::fromQTime(m_at.time()));
        detail.Set(u"PersonalNummer", gKassenUser.ID);
        detail.Set(u"KundenNummer", m_customer);
        detail.Set(u"Kunde", m_name);
        copy({u"ArtikelNummer", u"ArtikelName", u"Buchungs_Menge", u"Menge", u"Einheit", u"EKPreis",
              u"VKPreis_Brutto", u"VKPreis_Netto"});
        detail.Set(u"VKPreisOrg", rs.Money(u"VKPreis_Brutto")); // a note keeps no list price
        copy({u"SteuerSatz", u"SNNummer", u"WarenGruppe", u"LangText", u"Zusatz1", u"Zusatz2", u"PreisInfo"});
        detail.Set(u"BestellNummer", OrderNumberOf(rs.Text(u"ArtikelNummer")));
        detail.Update();
    }

    const int m_customer;
    const std::vector<int>& m_notes;
    const Currency m_sum;
    const QString m_name;
    const QDateTime m_at;
    std::unique_ptr<Recordset> m_detail;
    int m_id = 0, m_lines = 0, m_marked = 0;
    bool m_hasHead = false;
};

} // namespace

std::vector<CollectiveInvoice::Customer> CollectiveInvoice::Customers() const {
    std::vector<Customer> customers;
    const auto rs =
        gDB->OpenRecordset(u"SELECT KundenID, KundenNummer, Name_1, Ort FROM Kunden WHERE KundenID IN "
                           "(SELECT KundenNummer FROM Lieferung WHERE InRechnung=0) ORDER BY Name_1 ASC;"_s);
    for (; !rs->Eof(); rs->MoveNext()) {
        QString name = rs->Text(u"Name_1");
        if (const QString town = rs->Text(u"Ort"); !town.isEmpty()) name += u", "_s + town;
        customers.push_back(
            {u"ID_"_s + rs->Text(u"KundenID"), name + u" ("_s + rs->Text(u"KundenNummer") + u')'});
    }
    return customers;
}

sql::Query CollectiveInvoice::Notes(int KundenID) const {
    return {u"SELECT LieferungID, Datum, Zeit, Betrag_Gesamt, Kunde FROM Lieferung WHERE KundenNummer=%1 AND "
            "InRechnung=0"_s.arg(sql::number(KundenID)),
            u"LieferungID ASC"_s};
}

Currency CollectiveInvoice::Sum(const std::vector<int>& notes) const {
    Currency sum;
    for (const int id : notes)
        if (const auto note = openNote(id); !note->Eof()) sum += note->Money(u"Betrag_Gesamt");
    return sum;
}

int CollectiveInvoice::FirstTaken(const std::vector<int>& notes) const {
    const auto taken = std::find_if(notes.begin(), notes.end(), [](int id) {
        const auto note = openNote(id);
        return note->Eof() || note->Flag(u"InRechnung");
    });
    return taken == notes.end() ? 0 : *taken;
}

int CollectiveInvoice::Create(int KundenID, const std::vector<int>& notes) {
    Writer writer(KundenID, notes, Sum(notes));
    int id = 0;
    WithAdvice([&] { id = writer.write(); }, [&] { return writer.told(); });
    return id;
}

void CollectiveInvoice::Print(int RechnungID) {
    const QScopedValueRollback customer(gKunde, KundeRecord(gKunde));
    Print_Formular(RechnungID, u"Rechnung.pld"_s, 0, m_sale.printDialogs());
}

} // namespace till
