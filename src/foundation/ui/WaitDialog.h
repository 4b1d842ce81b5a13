#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class WaitDialog;
}
class QKeyEvent;

/// The window while a device is waited for: title, what there is to say, and the key to cancel, which Esc
/// presses. It closes only when the wait is over.
class WaitDialog : public QDialog {
    Q_OBJECT

  public:
    WaitDialog(const QString& title, QWidget* parent);
    ~WaitDialog() override;
    void setText(const QString& text);
    [[nodiscard]] bool takeCancel(); ///< true once for each press
    void reject() override;          ///< Esc and closing the window press cmdCancel
    /// Tells that what was typed or scanned is not taken.
    void refuse(const QKeyEvent& key);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    std::unique_ptr<Ui::WaitDialog> m_ui;
    bool m_cancel = false;
};
