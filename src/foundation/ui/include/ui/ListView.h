#pragma once

#include <QStyledItemDelegate>
#include <QTableView>
#include <QTreeView>

#include <functional>

class RecordList;

/// Marks the selected row with a bar at its left edge, so that it is found at a glance.
class RowMark : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

/// What lists and trees of the house have in common: the height of their rows, Enter and double click choose,
/// the arrows work from the box in which one types.
class ViewHabits : public QObject {
    Q_OBJECT

  public:
    /// `wanted` tells whether anybody waits for `chosen`; else Enter is left to the form.
    ViewHabits(QAbstractItemView& view, std::function<bool()> wanted);
    /// Up, Down, Page up and Page down in `box` move the list, so that typing and choosing need no change of
    /// focus.
    void takeArrowsFrom(QWidget& box);
    /// Of a row: for the mouse in a back office, or for a finger.
    [[nodiscard]] static int rowHeight(bool touch);

  signals:
    void chosen(const QModelIndex& index);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QAbstractItemView& m_view;
    std::function<bool()> m_wanted;
    QWidget* m_box = nullptr;
};

/// A list, mostly of a RecordList: whole rows, widths after the samples of its columns, sorted by a click on
/// the head, a mark beside the selected row. Reading the list again keeps the selected row and what is in
/// view.
///
///     lvwResult->setModel(m_people);
///     lvwResult->remember(u"frmPersonal/lvwResult"_s);
///     connect(lvwResult, &ListView::chosen, this, [this](const QString& key) { edit(key); });
class ListView : public QTableView {
    Q_OBJECT
    Q_PROPERTY(bool touch READ touch WRITE setTouch)

  public:
    explicit ListView(QWidget* parent = nullptr);

    [[nodiscard]] bool touch() const { return m_touch; }
    void setTouch(bool touch); ///< rows for a finger
    void setModel(QAbstractItemModel* model) override;
    /// Widths, order and sorting of the columns come back in the next session. Behind setModel.
    void remember(const QString& key);
    void takeArrowsFrom(QWidget& box) { m_habits->takeArrowsFrom(box); }

    [[nodiscard]] int currentRow() const { return currentIndex().row(); } ///< -1 for none
    [[nodiscard]] QString currentKey() const;                             ///< of a RecordList; "" for none
    /// Selects a row and brings it into view; the first for one outside the list.
    void selectRow(int row);
    /// False, and nothing happens, when the RecordList has no such row. Raises what the store raises.
    bool selectKey(const QString& key);

  signals:
    /// By Enter, or a double click. `key` is empty for models without keys.
    void chosen(const QString& key, int row);
    /// Another row is the current one, or the same one shows another record.
    void currentKeyChanged(const QString& key);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

  private:
    void keepPlace();
    void findPlace();
    void layColumns();
    void growColumn();
    void announce();

    ViewHabits* m_habits;
    RecordList* m_list = nullptr;
    bool m_touch = false, m_userSized = false, m_laying = false;
    int m_growing = -1; ///< the column that takes spare room
    QString m_keptKey, m_announced;
    int m_keptRow = -1, m_keptTop = 0;
    bool m_resetting = false;
};

/// A tree with the same habits.
class TreeView : public QTreeView {
    Q_OBJECT

  public:
    explicit TreeView(QWidget* parent = nullptr);
    void takeArrowsFrom(QWidget& box) { m_habits->takeArrowsFrom(box); }
    void remember(const QString& key); ///< the columns; behind setModel

  signals:
    void chosen(const QModelIndex& index);

  private:
    ViewHabits* m_habits;
};
