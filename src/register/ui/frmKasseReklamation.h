#pragma once

#include <register/ReturnDialog.h>
#include <ui/Form.h>

class RowsModel;

namespace Ui {
class frmKasseReklamation;
}

/// Takes goods back against a booked receipt.
class frmKasseReklamation : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseReklamation(till::ReturnDialog rules, QWidget* parent = nullptr);
    ~frmKasseReklamation() override;

  protected:
    void ok() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void searchReceipt();
    void searchSerial();
    void tick(int row);
    void showPositions(bool found);
    void showSum();

    till::ReturnDialog m_rules;
    std::unique_ptr<Ui::frmKasseReklamation> m_ui;
    RowsModel* m_rows;
};
