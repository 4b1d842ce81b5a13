#include "Advice.h"
#include "Checkout.h"
#include "Sale.h"

#include <printing/Beleg.h>
#include <register/Documents.h>
#include <register/OrderNumbers.h>
#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZahlung.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Writes an offer or a delivery note of the open lines, write by write.
class PaperWriter {
  public:
    PaperWriter(Sale& sale, const PaperKind& kind)
        : m_sale(sale)
        , m_kind(kind) {}

    void write() {
        m_head = gDB->OpenRecordset(m_kind.head);
        m_detail = gDB->OpenRecordset(m_kind.detail);
        writeHead();
        Recordset& rs = m_sale.basket.rsBestellung();
        for (rs.Requery(); !rs.Eof(); rs.MoveNext()) {
            writeLine(rs);
            ++m_lines;
            if (!m_kind.movesStock) continue;
            gDB->Execute(u"UPDATE Artikel SET IstBestand = (IstBestand - "_s +
                         sql::number(rs.Number(u"Menge") * rs.Number(u"Buchungs_Menge")) +
                         u") WHERE LagerAktiv=-1 AND Nummer="_s + sql::text(rs.Text(u"ArtikelNummer")) +
                         u';');
            ++m_moved;
        }
    }
    [[nodiscard]] int id() const { return m_id; }
    void cancelEdits() noexcept {
        if (m_head) m_head->CancelUpdate();
        if (m_detail) m_detail->CancelUpdate();
    }
    /// What stands in the books after a failure.
    [[nodiscard]] QString told() const {
        if (!m_hasHead) return {};
        QString text = u"%1 %2 ist angefangen: %3 von %4 Zeilen stehen darauf."_s.arg(m_kind.article)
                           .arg(m_id)
                           .arg(m_lines)
                           .arg(m_sale.basket.rowCount());
        if (m_kind.movesStock)
            text += u" Im Bestand sind %1 Zeilen abgebucht; ob die nächste es auch ist, weiß niemand."_s.arg(
                m_moved);
        return text +
               u" Alle Zeilen stehen noch im Verkauf. Wird noch einmal geschrieben, entsteht %1 neu%2."_s.arg(
                   m_kind.kind == Papier::Angebot ? u"ein Angebot"_s : u"ein Lieferschein"_s,
                   m_kind.movesStock ? u", und der Bestand der schon abgebuchten Zeilen sinkt noch einmal"_s
                                     : QString());
    }

  private:
    void writeHead() {
        m_head->AddNew();
        m_id = m_head->Long(m_kind.key);
        m_head->Set(u"Maschine", gMaschine);
        m_head->Set(u"PersonalNummer", gKassenUser.ID);
        m_head->Set(u"KundenNummer", gKunde.KundenID);
        m_head->Set(u"Kunde", gKunde.Name_1);
        m_head->Set(u"Betrag_Gesamt", ReadMoney(m_sale.basket.Gesamt()));
        if (m_kind.kind == Papier::Lieferung) m_head->Set(u"InRechnung", false);
        m_head->Update();
        m_hasHead = true;
    }

    void writeLine(const Recordset& rs) {
        Recordset& detail = *m_detail;
        const auto copy = [&](std::initializer_list<const char16_t*> columns) {
            for (const char16_t* column : columns)
                detail.Set(column, rs.Field(QStringView(column)));
        };
        const Currency price = rs.Money(u"VKPreis_Rabatt");
        detail.AddNew();
        detail.Set(m_kind.key, m_id);
        copy({u"ArtikelNummer", u"ArtikelName", u"Buchungs_Menge", u"Menge", u"Einheit", u"EKPreis"});
        detail.Set(u"VKPreis_Brutto", price);
        detail.Set(u"VKPreis_Netto", NetPrice(price, rs.Number(u"SteuerSatz")));
        copy({u"SteuerSatz", u"SNNummer", u"WarenGruppe", u"LangText", u"PreisInfo"});
        detail.Set(u"BestellNummer", OrderNumberOf(rs.Text(u"ArtikelNummer")));
        detail.Update();
    }

    Sale& m_sale;
    const PaperKind& m_kind;
    std::unique_ptr<Recordset> m_head, m_detail;
    int m_id = 0, m_lines = 0, m_moved = 0;
    bool m_hasHead = false;
};

/// False, and told, for the standard customer.
bool hasCustomer(const QString& complaint) {
    if (gKunde.KundenID != 0) return true;
    MsgBox(complaint, MsgIcon::Critical);
    return false;
}

} // namespace

void Documents::BookRechnungOffen() {
    m_sale.Trap([this] {
        Basket& basket = m_sale.basket;
        Checkout checkout(m_sale);
        if (!checkout.Begin() || basket.isEmpty() || !basket.IsAsStored() ||
            !hasCustomer(u"Sie müssen ein Kunden für die Rechnung auswählen."_s))
            return;
        gZahlung = {};
        gZahlung.Betrag_Gesamt = gZahlung.Betrag_Gegeben = ReadMoney(basket.Gesamt());
        gZahlung.ZahlArt = u"RECHNUNG_OFFEN"_s;
        const int id = checkout.Book();
        if (id == 0) return;
        if (AskYesNo(u"Möchten Sie die Rechnung jetzt ausdrucken?"_s, u"Rechnung drucken..."_s))
            Print_Formular(id, u"Rechnung.pld"_s, 0, m_sale.printDialogs());
        checkout.Finish();
    });
}

void Documents::BookAngebot() { book(Papier::Angebot); }
void Documents::BookLieferschein() { book(Papier::Lieferung); }

void Documents::book(Papier papier) {
    m_sale.Trap([&] {
        Checkout checkout(m_sale);
        if (!checkout.Begin() || m_sale.basket.isEmpty() || !m_sale.basket.IsAsStored()) return;
        const PaperKind& kind = KindOf(papier);
        int id = 0;
        create(papier, id);
        if (id < 0) return;
        m_sale.screen.Yield();
        if (id == 0) {
            MsgBox(kind.failed);
            m_sale.basket.LoadBestellungen();
            return;
        }
        if (AskYesNo(kind.printQuestion, kind.printTitle))
            Print_Formular(id, kind.vorlage, kind.form, m_sale.printDialogs());
        checkout.FinishPaper(u"%1 %2 ist mit %3 Zeilen vollständig geschrieben%4."_s.arg(kind.article)
                                 .arg(id)
                                 .arg(m_sale.basket.rowCount())
                                 .arg(kind.movesStock ? u", und der Bestand ist abgebucht"_s : QString()));
    });
}

void Documents::create(Papier papier, int& id) {
    id = 0;
    const PaperKind& kind = KindOf(papier);
    if (!hasCustomer(kind.noCustomer)) {
        id = -1;
        return;
    }
    PaperWriter writer(m_sale, kind);
    const bool whole = Handle(
        "frmKasse", [&] { WithAdvice([&] { writer.write(); }, [&] { return writer.told(); }); },
        [&] { writer.cancelEdits(); });
    if (whole) id = writer.id();
}

template <typename Show>
void Documents::showHistory(bool wanted, Show&& show) {
    m_sale.Trap([&] {
        if (!wanted || !m_sale.Settle()) return;
        show();
        m_sale.basket.rsBestellung().Requery();
        m_sale.RebuildTitle(true);
        m_sale.basket.LoadBestellungen();
    });
}

void Documents::ShowAngebote() {
    showHistory(gKFAngebotsHistorie, [this] { m_sale.screen.Show(Dialog::Angebote); });
}

void Documents::ShowLieferungen() {
    showHistory(gKFLieferscheinHistorie, [this] { m_sale.screen.Show(Dialog::Lieferungen); });
}

void Documents::ShowRechnungFromLieferschein() {
    m_sale.Trap([this] {
        m_sale.screen.Show(Dialog::RechnungFromLieferschein);
        if (gAbfrageLoginProOrder) m_sale.ChangeUser();
    });
}

} // namespace till
