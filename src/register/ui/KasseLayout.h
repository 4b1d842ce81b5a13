#pragma once

namespace Ui {
class frmKasse;
}
class QLabel;
class QSize;

/// What the layout of the register needs beyond its grid: the keypad's width for a size of the screen, the
/// title of the function keys where there is room for it, and the columns of the list.
class KasseLayout {
  public:
    explicit KasseLayout(Ui::frmKasse& ui)
        : m_ui(ui) {}
    /// Fonts and heights by the theme in force, once after the form was built.
    void setUp();
    void fit(const QSize& form);
    /// Texts of the till may begin with a blank; their letters stand in line with the others all the same.
    static void alignLetters(QLabel& label);

  private:
    void fitColumns(int width);
    Ui::frmKasse& m_ui;
};
