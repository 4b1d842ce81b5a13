#pragma once

#include <QScopedValueRollback>
#include <QString>

#include <optional>

namespace till {

class Sale;

/// What every way to book the open sale has in common, in the order in which it is used. One is made for each
/// act of the cashier, and while it lives no other one books.
///
///     Checkout checkout(m_sale);
///     if (!checkout.Begin()) return;
///     gZahlung = ...;
///     const int id = checkout.Book();
///     if (id == 0) return;                       // told
///     m_sale.PrintReceipt(id, BelegArt::Kasse);
///     checkout.Finish();
///
/// Raises what the store raises.
class Checkout {
  public:
    explicit Checkout(Sale& sale)
        : m_sale(sale) {}

    /// Settles what was left (Sale::Settle). False when the act ends here.
    [[nodiscard]] bool Begin();
    void ShowTotal(bool rounded); ///< to the customer
    /// frmKasseTotal over gZahlung; false when the cashier went back to the sale.
    [[nodiscard]] bool AskAmount();
    /// The card is paid, at the terminal or by the cashier's word; gZahlung knows it.
    [[nodiscard]] bool ConfirmKarte(const QString& KartenName);
    /// Books what gZahlung says; 0 when it failed or the lines are not those on the screen, which is told.
    [[nodiscard]] int Book();
    /// Writes Rechnung and RechnungsDetail from gZahlung, gKunde and the open lines, moves the stock and
    /// marks serial numbers, write by write and without a transaction. `RechnungID` becomes the new id and
    /// stays 0 on a failure, which is reported and takes back nothing of what was written before. The lines
    /// stay for the caller: Finish or Sale::RemoveBooked takes them away.
    void CreateRechnung(int& RechnungID);
    /// The booked lines go, and nothing else.
    void RemoveLines();
    /// The end of what is booked beside the sales, whether it was booked or not: its line goes.
    void EndMovement();
    /// Empties the sale for the next customer. The total that shall stay on the screen, if any.
    void Finish(const QString& lastTotal = {});
    /// The same for a sale that went onto an offer or a delivery note; `told` is what was written, for the
    /// case that its lines cannot be taken away.
    void FinishPaper(const QString& told);

  private:
    void nextCustomer(const QString& lastTotal);

    Sale& m_sale;
    std::optional<QScopedValueRollback<bool>> m_booking;
};

} // namespace till
