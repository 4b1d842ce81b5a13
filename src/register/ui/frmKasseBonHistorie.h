#pragma once

#include "DayRow.h"

#include <register/ReceiptHistory.h>
#include <ui/Form.h>
#include <ui/RecordList.h>

#include <functional>

namespace Ui {
class frmKasseBonHistorie;
}

/// The booked receipts of a day or of all days, each as it prints, to be printed again or deleted.
class frmKasseBonHistorie : public FormDialog {
    Q_OBJECT

  public:
    frmKasseBonHistorie(const till::ReceiptHistory& history, QWidget* parent);
    ~frmKasseBonHistorie() override;

  protected:
    void ok() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showReceipts();
    void showReceipt(const QString& key);
    void search();
    void withSelected(const std::function<void(int id)>& act);

    till::ReceiptHistory m_history;
    std::unique_ptr<Ui::frmKasseBonHistorie> m_ui;
    RecordList* m_receipts;
    std::optional<DayRow> m_days;
};
