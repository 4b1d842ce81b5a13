#pragma once

#include <QString>

/// Where a person reads what the program waits for, and cancels. In production a window over the till, in
/// tests a script. Messages and questions go through <session/MsgBox.h>.
class WaitScreen {
  public:
    virtual ~WaitScreen() = default;
    /// Opens the window; the till takes no other entry until End.
    virtual void Begin(const QString& title, const QString& text) = 0;
    virtual void Show(const QString& text) = 0;
    /// Lets happen what concerns this window, and nothing else of the program. For waits in the middle of
    /// something that must not be met a second time.
    virtual void Listen() {}
    /// True once for each time that the person wished to cancel. Whoever waits lets events run in between.
    [[nodiscard]] virtual bool TakeCancel() = 0;
    virtual void End() = 0; ///< also when it is not open
};

/// Installs the screen for waits that no screen of their own is given to (not owned) and returns the one
/// before; without one such a wait is not told and cannot be cancelled.
WaitScreen* SetWaitScreen(WaitScreen* screen);
[[nodiscard]] WaitScreen* CurrentWaitScreen();
