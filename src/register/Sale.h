#pragma once

#include "BookingMark.h"
#include "CustomerDisplay.h"

#include <register/Basket.h>
#include <register/RegisterScreen.h>
#include <register/SalePanel.h>

#include <QObject>

#include <functional>
#include <optional>

enum class BelegArt;
struct BelegDialoge;

namespace till {

/// What the functions of the register share: the open sale with its customer and cashier, the screen and the
/// customer's display. A function is a class of its own that is handed this and nothing else.
class Sale : public QObject {
    Q_OBJECT
  public:
    explicit Sale(RegisterScreen& screen_, QObject* parent = nullptr)
        : QObject(parent)
        , screen(screen_)
        , display([this](const QString& text) { screen.Hint(text); })
        , basket(screen_, display) {}

    RegisterScreen& screen;
    CustomerDisplay display;
    Basket basket;
    SalePanel panel;
    bool isBooking = false; ///< a second key must not book the same lines again; held by Checkout

    /// Basket::Trap.
    bool Trap(const std::function<void()>& body) { return basket.Trap(body); }

    [[nodiscard]] const QString& Title() const { return m_title; }
    void ResetKunde(); ///< to the standard customer
    /// A title that shows an ampersand of the customer's name has it doubled.
    void RebuildTitle(bool doubleAmpersand);

    /// Another person logs in, when the till allows it. A handler of its own.
    void ChangeUser();
    [[nodiscard]] static QString UserDisplay();

    /// What every act of the cashier begins with: a booking that another process of this till left is
    /// settled, lines of a booked sale that are still there go, and after a doubt the list is compared with
    /// the store. False when the cashier was shown something that he should look at before he goes on; the
    /// act ends then. Raises what the store raises.
    [[nodiscard]] bool Settle();
    /// The next Settle looks for a booking that was not brought to its end.
    void LookBack() { m_lookBack = true; }

    /// Bookings leave a mark beside the receipt; not in a store that an older program made. Known from the
    /// first Settle on.
    [[nodiscard]] bool keepsMarks() const { return m_keepsMarks; }
    void Began(const BookingMark& mark) { m_booking = {mark, false}; }
    /// The receipt is whole; until its lines are gone it must not be booked again. The panel tells it.
    void Booked(const BookingMark& mark);
    /// The booking of this process that did not become whole.
    [[nodiscard]] const BookingMark* begun() const {
        return m_booking && !m_booking->whole ? &m_booking->mark : nullptr;
    }
    [[nodiscard]] int Rechnung() const; ///< of the booked sale whose lines are still there; 0 for none
    void Forget() { m_booking.reset(); }
    /// The list is read anew after its lines came or went as a whole.
    void LinesMoved();
    /// Asks for the customer (cmdKunde). A handler of its own.
    void ChooseKunde();
    /// The lines of the booked sale go, and its mark with them. A voucher whose rest is not what the receipt
    /// says is told.
    void RemoveBooked();
    /// The same for lines that went onto an offer or a delivery note: up to this one. What fails here is done
    /// by the next Settle.
    void RemoveLines(int lastID);

    /// By gPrintMode.
    void PrintReceipt(int Rechnung, BelegArt art);
    [[nodiscard]] BelegDialoge printDialogs(); ///< those of the screen

  signals:
    void TitleChanged(const QString& text);
    void UserChanged(const QString& text);
    void Closed(); ///< its lines are booked, or wait elsewhere

  private:
    void clearPaid();

    struct RecentBooking {
        BookingMark mark;
        bool whole = false;
    };
    std::optional<RecentBooking> m_booking;
    int m_leaving = 0; ///< the last line that goes and may still be there
    bool m_keepsMarks = false, m_lookBack = false, m_settling = false;
    QString m_title;
};

} // namespace till
