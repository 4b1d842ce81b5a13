#pragma once

#include <QString>

namespace zvt {

/// Where the cashier reads what the terminal does, and cancels. Messages and questions go through
/// <session/MsgBox.h>.
class TerminalScreen {
  public:
    virtual ~TerminalScreen() = default;
    /// Opens the window; the till takes no other entry until End.
    virtual void Begin(const QString& title, const QString& text) = 0;
    virtual void Show(const QString& text) = 0;
    /// True once for each time that the cashier wished to cancel.
    [[nodiscard]] virtual bool TakeCancel() = 0;
    virtual void End() = 0; ///< also when it is not open
};

} // namespace zvt
