#pragma once

#include <ui/NumberDialog.h>

/// A deposit and how often it is booked, or one that comes back: gPfandAngabe.
class frmKassePfand : public NumberDialog {
    Q_OBJECT

  public:
    explicit frmKassePfand(QWidget* parent = nullptr);

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    void confirm(bool comesBack);

    NumberEdit* m_anzahl;
};
