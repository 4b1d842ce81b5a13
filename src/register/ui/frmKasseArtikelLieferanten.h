#pragma once

#include <register/OrderNumbers.h>

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {
class frmKasseArtikelLieferanten;
}

/// The choice between articles that suppliers deliver under the same order number: gBestellNummerWahl.
class frmKasseArtikelLieferanten : public QDialog {
    Q_OBJECT

  public:
    explicit frmKasseArtikelLieferanten(QWidget* parent = nullptr);
    ~frmKasseArtikelLieferanten() override;

    void reject() override; ///< cmdCancel, Esc and closing the window

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void ok();
    std::vector<till::OrderNumberHit> m_hits;
    std::unique_ptr<Ui::frmKasseArtikelLieferanten> m_ui;
};
