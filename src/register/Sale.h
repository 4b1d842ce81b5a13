#pragma once

#include "CustomerDisplay.h"

#include <register/Basket.h>
#include <register/RegisterScreen.h>
#include <register/SalePanel.h>

#include <QObject>

#include <functional>
#include <optional>

namespace till {

/// What the functions of the register share: the open sale with its customer and cashier, the screen and the
/// customer's display. A function is a class of its own that is handed this and nothing else.
class Sale : public QObject {
    Q_OBJECT
  public:
    explicit Sale(RegisterScreen& screen_, QObject* parent = nullptr)
        : QObject(parent)
        , screen(screen_)
        , basket(screen_, display) {}

    RegisterScreen& screen;
    CustomerDisplay display;
    Basket basket;
    SalePanel panel;

    /// Basket::Trap.
    bool Trap(const std::function<void()>& body) { return basket.Trap(body); }

    [[nodiscard]] const QString& Title() const { return m_title; }
    void ResetKunde(); ///< to the standard customer
    /// A title that shows an ampersand of the customer's name has it doubled.
    void RebuildTitle(bool doubleAmpersand);

    /// Another person logs in, when the till allows it. A handler of its own.
    void ChangeUser();
    [[nodiscard]] static QString UserDisplay();

    /// The sale is booked; until its lines are gone it must not be booked again.
    /// The panel tells what gZahlung says of it.
    void Booked(int Rechnung);
    [[nodiscard]] int Rechnung() const { return m_booked ? m_booked->Rechnung : 0; } ///< 0 when it is not
    void Emptied() { m_booked.reset(); } ///< the lines of the booked sale are gone
    /// Takes away the lines that a booked sale left because the store was gone. Raises what the store raises.
    void ClearPaid();

  signals:
    void TitleChanged(const QString& text);
    void UserChanged(const QString& text);

  private:
    struct BookedSale {
        int Rechnung, lastID;
    };
    std::optional<BookedSale> m_booked;
    QString m_title;
};

} // namespace till
