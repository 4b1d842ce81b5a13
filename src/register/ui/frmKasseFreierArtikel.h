#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmKasseFreierArtikel;
}

/// Name, tax rate and group of an amount that is sold without an article: gFreierArtikel.
class frmKasseFreierArtikel : public QDialog {
    Q_OBJECT

  public:
    explicit frmKasseFreierArtikel(QWidget* parent = nullptr);
    ~frmKasseFreierArtikel() override;

    void reject() override; ///< cmdCancel, Esc and closing the window

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void ok();
    std::unique_ptr<Ui::frmKasseFreierArtikel> m_ui;
};
