#pragma once

#include "BookingMark.h"

#include <QStringList>

#include <memory>
#include <vector>

class Recordset;

namespace till {

class Sale;

/// What the store has of a receipt, beside the lines of its sale that are still open.
struct BookingState {
    bool hasHead = false;
    int Gebucht = 0;       ///< lines of the receipt
    int open = 0;          ///< lines of the sale
    bool fits = false;     ///< the open lines are all there, and the first of them are those of the receipt
    QStringList remaining; ///< the open lines behind the booked ones, as a person reads them
    QString last;          ///< the last booked line
    /// Nothing is left to do but what may be done twice.
    [[nodiscard]] bool isWhole(const BookingMark& mark) const;
};
[[nodiscard]] BookingState LookAtBooking(const BookingMark& mark);

/// Writes the receipt of the open lines, write by write and without a transaction. After whatever
/// interruption it goes on behind the last write that was done: each is done once.
class Booking {
  public:
    explicit Booking(Sale& sale)
        : m_sale(sale) {}

    /// A new receipt from gZahlung and gKunde. One that was begun before and not finished stays for the
    /// owner.
    void Begin();
    /// The receipt of a mark, from where it stands. Also after Begin, when nobody knows what arrived.
    void GoOn(BookingMark mark);

    /// The receipt that this process began and did not finish stays as it is, for the owner.
    void GiveUp();

    [[nodiscard]] const BookingMark& mark() const { return m_mark; } ///< RechnungID 0 before Begin
    [[nodiscard]] bool hasHead() const { return m_hasHead; }         ///< something stands in the books
    [[nodiscard]] int booked() const { return m_booked; }            ///< lines that are done
    void CancelEdits() noexcept;

  private:
    void open();
    void write(const BookingState& done);
    void writeHead();
    void writeDetail();
    void moveStock(int line);

    Sale& m_sale;
    BookingMark m_mark;
    std::unique_ptr<Recordset> m_rechnung, m_detail;
    bool m_hasHead = false;
    int m_booked = 0;
};

} // namespace till
