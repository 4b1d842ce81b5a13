#pragma once

#include <QString>

enum class BelegArt;

namespace till {

class Sale;

/// From the open lines to a booked and printed document.
class Payment {
  public:
    explicit Payment(Sale& sale)
        : m_sale(sale) {}

    void Total();                            ///< cmdTotal
    void ByKarte(const QString& KartenName); ///< PayByKarte
    /// Writes Rechnung and RechnungsDetail from gZahlung, gKunde and the open lines, moves the stock and
    /// marks serial numbers, write by write and without a transaction. `RechnungID` becomes the new id and
    /// stays 0 on a failure, which is reported and takes back nothing of what was written before. The lines
    /// stay for the caller: Sale::RemoveBooked takes them away.
    void CreateRechnung(int& RechnungID);

  private:
    void showTotal(bool rounded); ///< to the customer
    [[nodiscard]] bool askAmount();
    /// The card is paid, at the terminal or by the cashier's word; gZahlung knows it.
    [[nodiscard]] bool confirmKarte(const QString& KartenName);
    /// Books what gZahlung says; 0 when it failed or the lines are not those on the screen, which is told.
    [[nodiscard]] int book();
    void print(int id, BelegArt art);
    /// Empties the sale for the next customer.
    void finish(const QString& lastTotal);

    Sale& m_sale;
    bool m_paying = false; ///< a second total key must not book the same lines again
};

} // namespace till
