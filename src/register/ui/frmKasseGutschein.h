#pragma once

#include <ui/Form.h>

namespace Ui {
class frmKasseGutschein;
}

/// Group, name, amount and tax rate of a voucher that is to be sold: gGutscheinAngabe.
class frmKasseGutschein : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseGutschein(QWidget* parent = nullptr);
    ~frmKasseGutschein() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    std::unique_ptr<Ui::frmKasseGutschein> m_ui;
};
