#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmKasseTerminal;
}

/// The window of the till while the card terminal works: title, what the terminal says, and the key to
/// cancel, which Esc presses. It closes only when the act is over.
class frmKasseTerminal : public QDialog {
    Q_OBJECT

  public:
    frmKasseTerminal(const QString& title, QWidget* parent);
    ~frmKasseTerminal() override;
    void setText(const QString& text);
    [[nodiscard]] bool takeCancel(); ///< true once for each press
    void reject() override;          ///< Esc and closing the window press cmdCancel

  private:
    std::unique_ptr<Ui::frmKasseTerminal> m_ui;
    bool m_cancel = false;
};
