#pragma once

#include <session/WaitScreen.h>

#include <memory>

class WaitDialog;

/// Tells what the program waits for in a window over the till, with a key to cancel. Needs an application.
class WaitWindow : public WaitScreen {
  public:
    WaitWindow();
    ~WaitWindow() override;
    void Begin(const QString& title, const QString& text) override;
    void Show(const QString& text) override;
    /// Lets events run, of which those of keyboard, mouse and timers reach this window alone. What is typed
    /// or scanned meanwhile is told as not taken.
    void Listen() override;
    [[nodiscard]] bool TakeCancel() override;
    void End() override;

  private:
    std::unique_ptr<WaitDialog> m_form;
};
