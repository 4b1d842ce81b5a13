#pragma once

#include "BookingMark.h"

namespace till {

class Sale;
struct BookingState;

/// A booking that an earlier process of this till did not bring to its end: compares the receipt with the
/// open lines, tells the cashier, and does what he chooses.
class Recovery {
  public:
    explicit Recovery(Sale& sale)
        : m_sale(sale) {}
    /// False when there is nothing to settle; nobody is asked then. Raises what the store raises; what was
    /// not settled comes again at the next Run.
    bool Run();

  private:
    void finishWhole(const BookingMark& mark, const QString& told);
    void offerToFinish(const BookingMark& mark, const BookingState& state);
    void leave(const BookingMark& mark, const BookingState& state);
    /// A movement of cash that was not booked must not be sold as goods: its line goes, which is told.
    bool dropMovement();

    Sale& m_sale;
};

} // namespace till
