#pragma once

#include <QStyledItemDelegate>
#include <QTableView>
#include <QTimer>

/// Paints the lines of the sale: the one that came last in larger letters, the mark of a discount behind the
/// name, lines that came with another one indented.
class BasketPainter : public QStyledItemDelegate {
    Q_OBJECT
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// The letters of the line that came last; codes and contents keep those of the others.
    [[nodiscard]] static QFont lastFont();
    int padding = 0;         ///< at both sides of a cell
    bool smallCodes = false; ///< of codes and contents
    int flashing = -1;       ///< the row that is lit up
};

/// The list of the open sale. It shows whole rows only, as many as can be read (its head takes the rest), and
/// the selected one stays in view whatever height the rest of the form leaves. A finger taps a row or drags
/// the list; neither selects by itself, so that the marked row is always the one that the register works on.
class BasketList : public QTableView {
    Q_OBJECT

  public:
    explicit BasketList(QWidget* parent = nullptr);
    /// Selects a row and shows it; -1 clears the selection.
    void showRow(int row);
    /// Lights a row up for a moment.
    void flash(int row);
    /// So many rows at least are shown as long as their letters have room; `padding` stands at both sides of
    /// a cell. Where the list is narrow codes and contents are small, for the names' sake.
    void setRoom(int rows, int padding, bool smallCodes);
    /// On the screen: the line that came last and two above it, as far as they are in view.
    [[nodiscard]] QRect lastLines() const;

  signals:
    void tapped(int row);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void resizeEvent(QResizeEvent* event) override;
    void reset() override; ///< the model was

  private:
    void fitRows();
    void updateRow(int row);
    BasketPainter* m_painter;
    QTimer m_flash;
    int m_wantedRows = 1;
    int m_pressedAt = -1;     ///< height at which the finger came down; -1 when it is up
    int m_scrolledBefore = 0; ///< position of the list then
    bool m_dragged = false;
};
