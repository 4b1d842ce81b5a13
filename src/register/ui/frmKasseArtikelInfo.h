#pragma once

#include <ui/Form.h>

namespace Ui {
class frmKasseArtikelInfo;
}

/// What is on file for gArtikel, to be read at arm's length.
class frmKasseArtikelInfo : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseArtikelInfo(QWidget* parent = nullptr);
    ~frmKasseArtikelInfo() override;

  private:
    void add(const QString& caption, const QString& value, const QString& role = {});
    void addPrices();

    std::unique_ptr<Ui::frmKasseArtikelInfo> m_ui;
};
