#include <text/RuntimeError.h>
#include <ui/ListView.h>
#include <ui/RecordList.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>
#include <ui/UserSettings.h>

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int cellMargins = 26, markWidth = 4;
}

void RowMark::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (!(option.state & QStyle::State_Selected) || option.rect.left() > 0) return;
    painter->fillRect(QRect(option.rect.topLeft(), QSize(markWidth, option.rect.height() - 1)),
                      Theme::Current().accent);
}

ViewHabits::ViewHabits(QAbstractItemView& view, std::function<bool()> wanted)
    : QObject(&view)
    , m_view(view)
    , m_wanted(std::move(wanted)) {
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setTextElideMode(Qt::ElideRight);
    view.installEventFilter(this);
    connect(&view, &QAbstractItemView::doubleClicked, this, &ViewHabits::chosen);
}

void ViewHabits::takeArrowsFrom(QWidget& box) {
    m_box = &box;
    box.installEventFilter(this);
    TakeScans(box);
}

int ViewHabits::rowHeight(bool touch) {
    const int key = Theme::Current().keyHeight;
    return touch ? key * 3 / 4 : key * 4 / 7;
}

bool ViewHabits::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (watched == m_box &&
        (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown)) {
        QCoreApplication::sendEvent(&m_view, event);
        return true;
    }
    // Where nobody wants to be told, Enter is the form's.
    if (watched == &m_view && (key == Qt::Key_Return || key == Qt::Key_Enter) &&
        m_view.currentIndex().isValid() && m_wanted()) {
        emit chosen(m_view.currentIndex());
        return true;
    }
    return QObject::eventFilter(watched, event);
}

ListView::ListView(QWidget* parent)
    : QTableView(parent)
    , m_habits(new ViewHabits(
          *this, [this] { return isSignalConnected(QMetaMethod::fromSignal(&ListView::chosen)); })) {
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setItemDelegate(new RowMark(this));
    verticalHeader()->hide();
    setTouch(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setMinimumSectionSize(36);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(m_habits, &ViewHabits::chosen, this, [this](const QModelIndex& index) {
        emit chosen(m_list != nullptr ? m_list->key(index.row()) : QString(), index.row());
    });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] { m_userSized |= !m_laying; });
}

void ListView::setTouch(bool touch) {
    m_touch = touch;
    verticalHeader()->setDefaultSectionSize(ViewHabits::rowHeight(touch));
}

void ListView::setModel(QAbstractItemModel* model) {
    if (m_list != nullptr) m_list->disconnect(this);
    m_list = qobject_cast<RecordList*>(model);
    if (m_list != nullptr) {
        // Before the base class hears of it, and behind it.
        connect(m_list, &QAbstractItemModel::modelAboutToBeReset, this, &ListView::keepPlace);
    }
    QTableView::setModel(model);
    if (model == nullptr) return;
    if (m_list != nullptr) {
        connect(m_list, &QAbstractItemModel::modelReset, this, &ListView::findPlace);
        connect(m_list, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& first, const QModelIndex& last) {
                    if (first.row() > currentRow() || currentRow() > last.row()) return;
                    m_announced.clear(); // the same key, another content
                    announce();
                });
        horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        setSortingEnabled(true);
    }
    layColumns();
    if (m_list != nullptr && m_list->rowCount() > 0) selectRow(0);
}

void ListView::layColumns() {
    if (model() == nullptr) return;
    const QScopedValueRollback laying(m_laying, true);
    const QFontMetrics cells(Theme::Current().font()),
        heads(Theme::Current().font(Theme::Size::Small, QFont::DemiBold));
    int widest = 0;
    for (int i = 0; i < model()->columnCount(); ++i) {
        const QString sample = model()->headerData(i, Qt::Horizontal, RecordList::SampleRole).toString();
        const int width =
            std::max(cells.horizontalAdvance(sample),
                     heads.horizontalAdvance(model()->headerData(i, Qt::Horizontal).toString()) + 14) +
            cellMargins;
        setColumnWidth(i, width);
        if (width > widest) {
            widest = width;
            m_growing = i;
        }
    }
    growColumn();
}

void ListView::growColumn() {
    if (m_userSized || m_growing < 0 || m_growing >= horizontalHeader()->count()) return;
    const QScopedValueRollback laying(m_laying, true);
    const int spare = viewport()->width() - horizontalHeader()->length();
    const QFontMetrics cells(Theme::Current().font());
    const int least = cells.horizontalAdvance(
                          model()->headerData(m_growing, Qt::Horizontal, RecordList::SampleRole).toString()) +
                      cellMargins;
    setColumnWidth(m_growing, std::max(least, columnWidth(m_growing) + spare));
}

void ListView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    if (model() != nullptr) growColumn();
}

void ListView::remember(const QString& key) {
    m_userSized = RememberColumns(*horizontalHeader(), key);
    if (m_userSized && horizontalHeader()->sortIndicatorSection() >= 0)
        sortByColumn(horizontalHeader()->sortIndicatorSection(), horizontalHeader()->sortIndicatorOrder());
}

QString ListView::currentKey() const { return m_list != nullptr ? m_list->key(currentRow()) : QString(); }

void ListView::selectRow(int row) {
    if (model() == nullptr || model()->rowCount() == 0) return;
    const QModelIndex where = model()->index(row >= 0 && row < model()->rowCount() ? row : 0, 0);
    setCurrentIndex(where);
    scrollTo(where);
}

bool ListView::selectKey(const QString& key) {
    const int row = m_list != nullptr ? m_list->rowOf(key) : -1;
    if (row < 0) return false;
    selectRow(row);
    return true;
}

void ListView::keepPlace() {
    m_resetting = true;
    m_keptRow = currentRow();
    m_keptKey = currentKey();
    m_keptTop = verticalScrollBar()->value();
}

void ListView::findPlace() {
    m_resetting = false;
    m_announced.clear();
    if (m_list->rowCount() == 0) return announce();
    int row = -1;
    try {
        row = m_keptKey.isEmpty() ? -1 : m_list->rowOf(m_keptKey);
        if (row < 0 && m_keptRow >= m_list->rowCount()) m_list->readAll();
    } catch (const RuntimeError&) {
        row = -1; // the list itself tells what is wrong with the store as soon as it is painted
    }
    const bool same = row >= 0 && row == m_keptRow;
    if (row < 0) row = std::clamp(m_keptRow, 0, m_list->rowCount() - 1);
    const QModelIndex where = model()->index(row, 0);
    setCurrentIndex(where);
    if (same) verticalScrollBar()->setValue(m_keptTop);
    scrollTo(where);
    announce();
}

void ListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (current.row() != previous.row() || !previous.isValid()) announce();
}

void ListView::announce() {
    if (m_resetting || m_list == nullptr) return;
    const QString key = currentKey();
    if (key == m_announced && !key.isEmpty()) return;
    m_announced = key;
    emit currentKeyChanged(key);
}

TreeView::TreeView(QWidget* parent)
    : QTreeView(parent)
    , m_habits(new ViewHabits(
          *this, [this] { return isSignalConnected(QMetaMethod::fromSignal(&TreeView::chosen)); })) {
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);
    setItemDelegate(new RowMark(this));
    connect(m_habits, &ViewHabits::chosen, this, &TreeView::chosen);
}

void TreeView::remember(const QString& key) { RememberColumns(*header(), key); }
