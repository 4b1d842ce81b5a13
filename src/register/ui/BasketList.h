#pragma once

#include <QTableView>

/// The list of the open sale. It shows whole rows only, and the selected one stays in view whatever height
/// the rest of the form leaves. A finger taps a row or drags the list; neither selects by itself, so that the
/// marked row is always the one that the register works on.
class BasketList : public QTableView {
    Q_OBJECT

  public:
    explicit BasketList(QWidget* parent = nullptr);
    /// Selects a row and shows it; -1 clears the selection.
    void showRow(int row);

  signals:
    void tapped(int row);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void resizeEvent(QResizeEvent* event) override;

  private:
    void fitRows();
    int m_pressedAt = -1;     ///< height at which the finger came down; -1 when it is up
    int m_scrolledBefore = 0; ///< position of the list then
    bool m_dragged = false;
};
