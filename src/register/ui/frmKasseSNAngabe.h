#pragma once

#include <ui/Form.h>

namespace Ui {
class frmKasseSNAngabe;
}

/// The serial number of the article that is being sold: gArtikel.SNNummer. It may be scanned.
class frmKasseSNAngabe : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseSNAngabe(QWidget* parent = nullptr);
    ~frmKasseSNAngabe() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    std::unique_ptr<Ui::frmKasseSNAngabe> m_ui;
};
