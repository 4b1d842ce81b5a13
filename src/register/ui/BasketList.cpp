#include "BasketList.h"

#include <register/Basket.h>
#include <ui/AmountLabel.h>
#include <ui/Theme.h>

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using till::Basket;

namespace {

constexpr int flashFor = 300; ///< ms
constexpr int markWidth = 4;  ///< of the bar at the selected row
constexpr int markGap = 8;    ///< between a name and the mark of its discount
constexpr double lastGrows = 1.2;

} // namespace

QFont BasketPainter::lastFont() {
    QFont font = Theme::Current().font(Theme::Size::Normal, QFont::Bold);
    font.setPixelSize(static_cast<int>(font.pixelSize() * lastGrows));
    return font;
}

// Painted by hand: a style sheet takes several times as long, and the list is painted at every scan.
void BasketPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const Theme& t = Theme::Current();
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const bool lit = index.row() == flashing;
    QRect cell = option.rect;
    if (lit || selected) painter->fillRect(cell, lit ? Theme::Mix(t.selection, t.accent, 0.25) : t.selection);
    painter->fillRect(QRect(cell.left(), cell.bottom(), cell.width(), 1), t.header);
    const int column = index.column();
    if (column == Basket::ArtikelNr && selected)
        painter->fillRect(QRect(cell.left(), cell.top(), markWidth, cell.height() - 1), t.accent);

    const bool last = index.row() == index.model()->rowCount() - 1;
    const bool plain = column == Basket::ArtikelNr || column == Basket::Menge;
    cell.adjust(padding, 0, -padding, -1);
    if (column == Basket::ArtikelNr) cell.setLeft(cell.left() + markWidth);
    painter->setPen(t.text);
    if (column == Basket::Artikelname) {
        if (index.data(Basket::LinkedRole).toBool()) cell.setLeft(cell.left() + t.normal);
    }
    const QString text = index.data().toString();
    const QString mark = column == Basket::Artikelname ? index.data(Basket::MarkRole).toString() : QString();
    const QFont markFont = t.font(Theme::Size::Small, QFont::DemiBold);
    const int markRoom = mark.isEmpty() ? 0 : QFontMetrics(markFont).horizontalAdvance(mark) + markGap;
    cell.setRight(cell.right() - markRoom);
    const bool name = column == Basket::Artikelname;
    const QFont usual = t.font(plain && smallCodes ? Theme::Size::Small : Theme::Size::Normal, QFont::Normal);
    QFont font = last && !plain ? lastFont() : usual;
    // A name gives up its larger letters before its end; a number never loses a digit.
    if (name && QFontMetrics(font).horizontalAdvance(text) > cell.width())
        font.setPixelSize(usual.pixelSize());
    if (!name) font = FittedFont(font, text, {cell.width(), 0});
    painter->setFont(font);
    const QString shown = name ? painter->fontMetrics().elidedText(text, Qt::ElideRight, cell.width()) : text;
    painter->drawText(
        cell, (name || column == Basket::ArtikelNr ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter,
        shown);
    if (mark.isEmpty()) return;
    cell.setLeft(cell.left() + painter->fontMetrics().horizontalAdvance(shown) + markGap);
    cell.setRight(option.rect.right());
    painter->setFont(markFont);
    painter->drawText(cell, Qt::AlignLeft | Qt::AlignVCenter, mark);
}

BasketList::BasketList(QWidget* parent)
    : QTableView(parent)
    , m_painter(new BasketPainter(this)) {
    setItemDelegate(m_painter);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(false);
    verticalScrollBar()->setProperty("role", u"slim"_s); // the list itself is dragged
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { scrollTo(currentIndex()); });
    m_flash.setSingleShot(true);
    connect(&m_flash, &QTimer::timeout, this, [this] { updateRow(std::exchange(m_painter->flashing, -1)); });
}

void BasketList::showRow(int row) {
    if (row < 0) {
        clearSelection();
        return;
    }
    selectRow(row);
    scrollTo(model()->index(row, 0));
}

void BasketList::flash(int row) {
    updateRow(std::exchange(m_painter->flashing, row));
    updateRow(row);
    m_flash.start(flashFor);
}

void BasketList::updateRow(int row) {
    if (row < 0) return;
    viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
}

void BasketList::setRoom(int rows, int padding, bool smallCodes) {
    m_wantedRows = rows;
    m_painter->smallCodes = smallCodes;
    if (m_painter->padding != padding) {
        m_painter->padding = padding;
        horizontalHeader()->setStyleSheet(u"QHeaderView::section { padding: 2px %1px; }"_s.arg(padding));
    }
    fitRows();
}

QRect BasketList::lastLines() const {
    const int count = model() != nullptr ? model()->rowCount() : 0;
    if (count == 0) return {};
    const int height = verticalHeader()->defaultSectionSize();
    const int end = std::min(rowViewportPosition(count - 1) + height, viewport()->height());
    const int begin = std::max(0, end - 3 * height);
    return {viewport()->mapToGlobal(QPoint(0, begin)), QSize(viewport()->width(), end - begin)};
}

void BasketList::mousePressEvent(QMouseEvent* event) {
    m_pressedAt = event->position().toPoint().y();
    m_scrolledBefore = verticalScrollBar()->value();
    m_dragged = false;
}

void BasketList::mouseMoveEvent(QMouseEvent* event) {
    if (m_pressedAt < 0) return;
    const int rows =
        (m_pressedAt - event->position().toPoint().y()) / std::max(1, verticalHeader()->defaultSectionSize());
    if (rows != 0) m_dragged = true;
    if (m_dragged) verticalScrollBar()->setValue(m_scrolledBefore + rows);
}

void BasketList::mouseReleaseEvent(QMouseEvent* event) {
    const bool tap = m_pressedAt >= 0 && !m_dragged;
    m_pressedAt = -1;
    const int row = rowAt(event->position().toPoint().y());
    if (tap && row >= 0) emit tapped(row);
}

void BasketList::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    fitRows();
    scrollTo(currentIndex());
}

void BasketList::reset() {
    m_painter->flashing = -1;
    QTableView::reset();
}

void BasketList::fitRows() {
    const int least = QFontMetrics(Theme::Current().font(Theme::Size::Small, QFont::DemiBold)).height() + 10;
    const int height = contentsRect().height() - least;
    const int readable = QFontMetrics(BasketPainter::lastFont()).height() + 1;
    const int comfortable = Theme::Current().normal * 2;
    const int most = std::max(1, height / readable);
    const int rows = std::min(most, std::max(m_wantedRows, height / comfortable));
    verticalHeader()->setDefaultSectionSize(std::max(1, height / rows));
    horizontalHeader()->setFixedHeight(least + std::max(0, height) % rows);
}
