#pragma once

#include <QList>
#include <QRect>

namespace Ui {
class frmKasse;
}
class QSize;

/// What the layout of the register needs beyond its boxes: the widths of its panels for a size of the screen,
/// and the columns and rows of the list.
class KasseLayout {
  public:
    explicit KasseLayout(Ui::frmKasse& ui)
        : m_ui(ui) {}
    /// Fonts and heights by the theme in force, once after the form was built.
    void setUp();
    void fit(const QSize& form);
    /// On the screen: what a dialog should leave free, the most important first.
    [[nodiscard]] QList<QRect> inSight() const;

  private:
    void fitColumns(bool narrow);
    Ui::frmKasse& m_ui;
};
