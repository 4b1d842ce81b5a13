#pragma once

#include <store/ServerPatience.h>

#include <QString>

class WaitScreen;

/// Tells on the WaitScreen in force, from two seconds of silence on, which server is waited for and for how
/// long it still will be, and takes the wish to cancel. Install it with store::SetServerPatience for the
/// thread of the screen. While it is shown nothing else of the program runs: what is typed, scanned or due by
/// the clock must not meet a statement that is still on its way.
class ScreenPatience : public store::ServerPatience {
  public:
    ScreenPatience() = default;
    ~ScreenPatience() override;
    ScreenPatience(const ScreenPatience&) = delete;
    ScreenPatience& operator=(const ScreenPatience&) = delete;

    [[nodiscard]] bool GoOn(const store::ServerWait& wait) override;
    void Over() noexcept override;

  private:
    WaitScreen* m_screen = nullptr; ///< that shows it; nullptr while nobody does
    QString m_told;
};

/// Seconds from [GLOBAL] ServerWartezeit, as the limit of all waits for a server from here on.
void TakeServerLimit();
