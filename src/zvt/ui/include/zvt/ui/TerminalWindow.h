#pragma once

#include <zvt/TerminalScreen.h>

#include <memory>

class frmKasseTerminal;

/// Shows what the terminal does in a window over the till, with a key to cancel. Needs an application.
class TerminalWindow : public zvt::TerminalScreen {
  public:
    TerminalWindow();
    ~TerminalWindow() override;
    void Begin(const QString& title, const QString& text) override;
    void Show(const QString& text) override;
    [[nodiscard]] bool TakeCancel() override;
    void End() override;

  private:
    std::unique_ptr<frmKasseTerminal> m_form;
};
