#pragma once

#include <register/TotalDialog.h>

#include <QDialog>
#include <QTimer>

#include <functional>
#include <memory>

namespace Ui {
class frmKasseTotal;
}

/// Takes the cash for a sale: reads the sum from gZahlung and leaves the payment there. Confirming at once
/// means that exactly the sum was given. On a till that closes by itself `mainTimer` confirms after five
/// seconds.
class frmKasseTotal : public QDialog {
    Q_OBJECT

  public:
    explicit frmKasseTotal(QWidget* parent = nullptr);
    ~frmKasseTotal() override;

    void reject() override; ///< Esc: needs the right to cancel a payment

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    void pay(const std::function<bool()>& how);
    void showGegeben();

    std::unique_ptr<Ui::frmKasseTotal> m_ui;
    till::TotalDialog m_total;
    QTimer m_timer;
};
