#include "PageView.h"

#include <ui/Theme.h>

#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QScroller>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 16;   // around the pages
constexpr int shadow = 3; // below and beside a page
constexpr int scrollStep = 40;

} // namespace

PageView::PageView(QWidget* parent)
    : QAbstractScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(u"Druckvorschau"_s);
    // A bar that comes and goes would change the width that the pages are fitted to.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    QScroller::grabGesture(viewport(), QScroller::LeftMouseButtonGesture);
    QScrollerProperties touch = QScroller::scroller(viewport())->scrollerProperties();
    for (const auto metric :
         {QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::VerticalOvershootPolicy})
        touch.setScrollMetric(metric, QScrollerProperties::OvershootAlwaysOff);
    QScroller::scroller(viewport())->setScrollerProperties(touch);
}

double PageView::pixelsPerTwip() const { return m_zoom * logicalDpiX() / PageDocument::twipsPerInch; }

void PageView::setDocument(PageDocument document) {
    const Spot corner = spotAt({});
    m_document = std::move(document);
    m_current = std::clamp(m_current, std::min(0, m_document.pageCount() - 1), m_document.pageCount() - 1);
    if (m_fit != PagePreview::Fit::None) m_zoom = fittingZoom();
    arrange();
    scrollTo(corner, {});
    viewport()->update();
    emit changed();
}

void PageView::showPage(int page) {
    if (m_document.pageCount() == 0) return;
    m_current = std::clamp(page, 0, m_document.pageCount() - 1);
    {
        const QScopedValueRollback arranging(m_arranging, true); // a short last page cannot reach the top
        verticalScrollBar()->setValue(m_places[static_cast<size_t>(m_current)].top() - gap);
    }
    if (m_fit == PagePreview::Fit::Page) applyZoom(fittingZoom(), {});
    emit changed();
}

void PageView::setZoom(double zoom, QPoint anchor) {
    m_fit = PagePreview::Fit::None;
    applyZoom(zoom, anchor);
    emit changed();
}

void PageView::setFit(PagePreview::Fit fit) {
    m_fit = fit;
    if (fit != PagePreview::Fit::None) applyZoom(fittingZoom(), {});
    if (fit == PagePreview::Fit::Page) showPage(m_current);
    emit changed();
}

void PageView::applyZoom(double zoom, QPoint anchor) {
    const Spot spot = spotAt(anchor);
    m_zoom = std::clamp(zoom, PagePreview::leastZoom, PagePreview::mostZoom);
    arrange();
    scrollTo(spot, anchor);
    viewport()->update();
}

double PageView::fittingZoom() const {
    if (m_document.pageCount() == 0) return m_zoom;
    double widest = 0;
    for (const PageDocument::Page& page : m_document.pages)
        widest = std::max(widest, page.size.width());
    const double natural = logicalDpiX() / PageDocument::twipsPerInch;
    double zoom = (viewport()->width() - 2 * gap) / (widest * natural);
    if (m_fit == PagePreview::Fit::Page) {
        const double height = m_document.pages[static_cast<size_t>(std::max(m_current, 0))].size.height();
        zoom = std::min(zoom, (viewport()->height() - 2 * gap) / (height * natural));
    }
    return std::clamp(zoom, PagePreview::leastZoom, PagePreview::mostZoom);
}

void PageView::arrange() {
    m_places.clear();
    int width = 0, y = gap;
    for (const PageDocument::Page& page : m_document.pages) {
        const QSize size = (page.size * pixelsPerTwip()).toSize().expandedTo({1, 1});
        m_places.emplace_back(QPoint(0, y), size);
        width = std::max(width, size.width() + 2 * gap);
        y += size.height() + gap;
    }
    for (QRect& place : m_places)
        place.moveLeft((std::max(width, viewport()->width()) - place.width()) / 2);
    const auto setUp = [](QScrollBar* bar, int length, int visible) {
        bar->setRange(0, std::max(0, length - visible));
        bar->setPageStep(visible);
        bar->setSingleStep(scrollStep);
    };
    const QScopedValueRollback arranging(m_arranging, true);
    setUp(horizontalScrollBar(), width, viewport()->width());
    setUp(verticalScrollBar(), y, viewport()->height());
}

QRect PageView::pageRect(int page) const {
    if (page < 0 || page >= m_document.pageCount()) return {};
    return m_places[static_cast<size_t>(page)].translated(-horizontalScrollBar()->value(),
                                                          -verticalScrollBar()->value());
}

PageView::Spot PageView::spotAt(QPoint point) const {
    int page = 0;
    while (page + 1 < m_document.pageCount() && pageRect(page + 1).top() <= point.y())
        ++page;
    return {page, QPointF(point - pageRect(page).topLeft()) / pixelsPerTwip()};
}

void PageView::scrollTo(const Spot& spot, QPoint point) {
    if (m_places.empty()) return;
    const size_t page = std::min(static_cast<size_t>(spot.page), m_places.size() - 1);
    const QPoint at = m_places[page].topLeft() + (spot.twips * pixelsPerTwip()).toPoint() - point;
    const QScopedValueRollback arranging(m_arranging, true);
    horizontalScrollBar()->setValue(at.x());
    verticalScrollBar()->setValue(at.y());
}

void PageView::noticePage() {
    int most = -1, seen = m_current;
    for (int page = 0; page < m_document.pageCount(); ++page) {
        const int height = (pageRect(page) & viewport()->rect()).height();
        if (height > most) {
            most = height;
            seen = page;
        }
    }
    if (seen == m_current) return;
    m_current = seen;
    emit changed();
}

void PageView::paintEvent(QPaintEvent* event) {
    const Theme& theme = Theme::Current();
    QPainter painter(viewport());
    painter.fillRect(event->rect(), theme.page);
    if (m_document.pageCount() == 0) {
        painter.setPen(theme.muted);
        painter.drawText(viewport()->rect(), Qt::AlignCenter, u"Es gibt nichts zu zeigen."_s);
    }
    for (int page = 0; page < m_document.pageCount(); ++page) {
        const QRect place = pageRect(page);
        if (!place.adjusted(0, 0, shadow, shadow).intersects(event->rect())) continue;
        painter.fillRect(place.translated(shadow, shadow), theme.shadow);
        painter.fillRect(place, Qt::white);
        painter.save();
        painter.setClipRect(place & event->rect());
        painter.translate(place.topLeft());
        painter.scale(pixelsPerTwip(), pixelsPerTwip());
        m_document.paint(painter, page);
        painter.restore();
    }
}

void PageView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    applyZoom(m_fit == PagePreview::Fit::None ? m_zoom : fittingZoom(), {});
    emit changed();
}

void PageView::scrollContentsBy(int dx, int dy) {
    viewport()->scroll(dx, dy);
    if (!m_arranging) noticePage();
}

void PageView::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) return QAbstractScrollArea::wheelEvent(event);
    constexpr double notch = 120, stepOfANotch = 1.2;
    setZoom(m_zoom * std::pow(stepOfANotch, event->angleDelta().y() / notch), event->position().toPoint());
    event->accept();
}

void PageView::keyPressEvent(QKeyEvent* event) {
    const bool scrolls = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
                         event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (scrolls)
        QAbstractScrollArea::keyPressEvent(event);
    else
        event->ignore(); // the preview knows the others
}

void PageView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) viewport()->update();
}
