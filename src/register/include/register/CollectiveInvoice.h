#pragma once

#include <store/SqlText.h>
#include <text/Currency.h>

#include <QString>

#include <vector>

namespace till {

class Sale;

/// One invoice for several delivery notes of a customer (frmRechnungFromLieferschein). Everything raises what
/// the store raises.
class CollectiveInvoice {
  public:
    explicit CollectiveInvoice(Sale& sale)
        : m_sale(sale) {}

    struct Customer {
        QString key, name; ///< "ID_" and KundenID
    };
    /// Who has notes that stand in no invoice.
    [[nodiscard]] std::vector<Customer> Customers() const;
    /// The notes of a customer that stand in no invoice.
    [[nodiscard]] sql::Query Notes(int KundenID) const;
    [[nodiscard]] Currency Sum(const std::vector<int>& notes) const;
    /// The first of the notes that meanwhile is gone, or stands in an invoice of another till; 0 for none.
    [[nodiscard]] int FirstTaken(const std::vector<int>& notes) const;

    /// Writes the invoice and marks its notes, write by write; no stock moves. Its number. An error tells
    /// what was written before.
    [[nodiscard]] int Create(int KundenID, const std::vector<int>& notes);
    void Print(int RechnungID); ///< the customer of the open sale stays

  private:
    Sale& m_sale;
};

} // namespace till
