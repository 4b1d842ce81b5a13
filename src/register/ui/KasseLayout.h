#pragma once

namespace Ui {
class frmKasse;
}
class QSize;
class QTableView;

/// What the layout of the register needs beyond its grid: the keypad's width for a size of the screen, the
/// title of the function keys where there is room for it, and the columns of the list.
class KasseLayout {
  public:
    explicit KasseLayout(Ui::frmKasse& ui)
        : m_ui(ui) {}
    /// Fonts and heights by the theme in force, once after the form was built.
    void setUp();
    void fit(const QSize& form);

  private:
    void fitColumns(int width);
    Ui::frmKasse& m_ui;
};
