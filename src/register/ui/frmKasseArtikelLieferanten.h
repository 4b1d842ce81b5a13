#pragma once

#include <ui/Form.h>

namespace Ui {
class frmKasseArtikelLieferanten;
}

/// The choice between articles that suppliers deliver under the same order number: gBestellNummerWahl.
class frmKasseArtikelLieferanten : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseArtikelLieferanten(QWidget* parent = nullptr);
    ~frmKasseArtikelLieferanten() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    std::unique_ptr<Ui::frmKasseArtikelLieferanten> m_ui;
};
