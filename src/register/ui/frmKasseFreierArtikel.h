#pragma once

#include <ui/Form.h>

namespace Ui {
class frmKasseFreierArtikel;
}

/// Name, tax rate and group of an amount that is sold without an article: gFreierArtikel.
class frmKasseFreierArtikel : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseFreierArtikel(QWidget* parent = nullptr);
    ~frmKasseFreierArtikel() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    std::unique_ptr<Ui::frmKasseFreierArtikel> m_ui;
};
