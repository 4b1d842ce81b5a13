#pragma once

#include <register/CollectiveInvoice.h>
#include <register/Papers.h>

namespace till {

class Sale;

/// The menu of the orders: what turns the open sale into an invoice, an offer or a delivery note, and what is
/// done with those later. Each routine is a handler of its own and raises nothing.
class Documents {
  public:
    explicit Documents(Sale& sale)
        : m_sale(sale) {}

    void BookRechnungOffen(); ///< an invoice on credit; its receipt counts as unpaid
    void BookAngebot();
    void BookLieferschein(); ///< the goods leave the stock
    void ShowAngebote();     ///< by gKFAngebotsHistorie
    void ShowLieferungen();  ///< by gKFLieferscheinHistorie
    void ShowRechnungFromLieferschein();

    /// Asks for a customer, writes head and lines, and moves the stock for a note. `id` becomes the number,
    /// -1 when the cashier was told that a customer is missing, and stays 0 on a failure, which is reported
    /// with what was written.
    void CreateAngebot(int& id) { create(Papier::Angebot, id); }
    void CreateLieferung(int& id) { create(Papier::Lieferung, id); }

    [[nodiscard]] PaperHistory history(Papier papier) { return {m_sale, papier}; }
    [[nodiscard]] CollectiveInvoice collectiveInvoice() { return CollectiveInvoice(m_sale); }

  private:
    void book(Papier papier);
    void create(Papier papier, int& id);
    template <typename Show>
    void showHistory(bool wanted, Show&& show);

    Sale& m_sale;
};

} // namespace till
