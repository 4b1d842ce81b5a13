#pragma once

#include <register/TotalDialog.h>
#include <ui/Form.h>

#include <QTimer>

namespace Ui {
class frmKasseTotal;
}

/// Takes the cash for a sale: reads the sum from gZahlung and leaves the payment there. Confirming at once
/// means that exactly the sum was given. On a till that closes by itself `mainTimer` confirms after five
/// seconds.
class frmKasseTotal : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseTotal(QWidget* parent = nullptr);
    ~frmKasseTotal() override;

  protected:
    void ok() override;        ///< cmdBar
    bool cancelled() override; ///< Esc: needs the right to cancel a payment
    void showEvent(QShowEvent* event) override;

  private:
    void pay(bool paid);
    void showGegeben();
    void showBack();

    std::unique_ptr<Ui::frmKasseTotal> m_ui;
    till::TotalDialog m_total;
    QTimer m_timer;
};
