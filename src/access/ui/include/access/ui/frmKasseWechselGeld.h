#pragma once

#include <ui/NumberDialog.h>

/// Asks for the starting change of a till that has no balance yet; cmdOK puts it into gKassenBestand. Esc
/// leaves the balance as it is, which is zero on a fresh start.
class frmKasseWechselGeld : public NumberDialog {
    Q_OBJECT

  public:
    explicit frmKasseWechselGeld(QWidget* parent = nullptr);

  protected:
    void ok() override;
};
