#pragma once

#include <ui/Form.h>

#include <array>
#include <closing/KassenZaehlung.h>

class NumberEdit;
namespace Ui {
class frmKasseBestand;
}

/// Counts the money in the till by coins and notes: gKasseBestandErgebnis. Enter goes to the next kind.
class frmKasseBestand : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseBestand(QWidget* parent = nullptr);
    ~frmKasseBestand() override;

  protected:
    void ok() override;
    bool cancelled() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void count(int sorte);
    void showSums();

    std::unique_ptr<Ui::frmKasseBestand> m_ui;
    KassenZaehlung m_count;
    std::array<NumberEdit*, KassenZaehlung::Sorten> m_boxes{};
};
