#pragma once

#include <store/SqlText.h>

#include <QDate>
#include <QString>

#include <optional>

namespace till {

class Sale;

/// The rules of the receipt history (frmKasseBonHistorie). All of it raises what the store raises.
class ReceiptHistory {
  public:
    explicit ReceiptHistory(Sale& sale)
        : m_sale(sale) {}

    /// The receipts of a day, the latest first; of all days without one.
    [[nodiscard]] static sql::Query List(std::optional<QDate> day);
    /// The day of a receipt that is there; nothing for another number.
    [[nodiscard]] static std::optional<QDate> DayOf(int RechnungID);
    /// Once more, by the way that the cashier chooses; an invoice prints as one. One copy, and the customer
    /// of the open sale stays.
    void Print(int RechnungID);
    /// Needs R_RechnungEdit, asks, and removes the receipt and its lines; stock and closings stay as they
    /// are. False when nothing was deleted.
    bool Delete(int RechnungID);
    /// True for one whose booking was interrupted and that the owner has not looked at yet.
    [[nodiscard]] static bool IsIncomplete(int RechnungID);
    /// Asks; the receipt is then one like any other. False when it stays marked.
    static bool Settle(int RechnungID);

  private:
    Sale& m_sale;
};

} // namespace till
