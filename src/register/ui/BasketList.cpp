#include "BasketList.h"

#include <ui/ListView.h>
#include <ui/Theme.h>

#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

BasketList::BasketList(QWidget* parent)
    : QTableView(parent) {
    setItemDelegate(new RowMark(this));
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(false);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { scrollTo(currentIndex()); });
}

void BasketList::showRow(int row) {
    if (row < 0) {
        clearSelection();
        return;
    }
    selectRow(row);
    scrollTo(model()->index(row, 0));
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

void BasketList::fitRows() {
    const int wanted = Theme::Current().keyHeight * 3 / 5;
    const int fitting = std::max(1, (viewport()->height() + wanted / 3) / wanted);
    verticalHeader()->setDefaultSectionSize(std::max(1, viewport()->height() / fitting));
}
