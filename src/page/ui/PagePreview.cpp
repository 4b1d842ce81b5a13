#include "PageView.h"

#include <page/ui/PagePreview.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array zoomSteps{0.05, 0.1,  0.15, 0.25, 0.33, 0.5, 0.67, 0.75, 0.9, 1.0,
                               1.1,  1.25, 1.5,  2.0,  2.5,  3.0, 4.0,  5.0,  6.0, 8.0};
constexpr double sameZoom = 0.005; // shown as the same percentage

} // namespace

PagePreview::PagePreview(QWidget* parent)
    : QWidget(parent)
    , m_view(new PageView(this))
    , m_bar(new QWidget(this))
    , m_pageLabel(new QLabel(m_bar))
    , m_zoomLabel(new QLabel(m_bar)) {
    auto* row = new QHBoxLayout(m_bar);
    row->setContentsMargins(0, 0, 0, 0);
    m_previous = addKey(u"cmdPrevious"_s, u"◀"_s, u"Bild↑"_s, u"Vorige Seite"_s, &PagePreview::previousPage);
    m_pageLabel->setObjectName(u"lblSeite"_s);
    m_pageLabel->setAlignment(Qt::AlignCenter);
    row->addWidget(m_pageLabel);
    m_next = addKey(u"cmdNext"_s, u"▶"_s, u"Bild↓"_s, u"Nächste Seite"_s, &PagePreview::nextPage);
    row->addStretch();
    addKey(u"cmdZoomOut"_s, u"−"_s, u"Strg −"_s, u"Verkleinern"_s, &PagePreview::zoomOut);
    m_zoomLabel->setObjectName(u"lblZoom"_s);
    m_zoomLabel->setAlignment(Qt::AlignCenter);
    row->addWidget(m_zoomLabel);
    addKey(u"cmdZoomIn"_s, u"+"_s, u"Strg +"_s, u"Vergrößern"_s, &PagePreview::zoomIn);
    m_natural =
        addKey(u"cmdNatural"_s, u"100 %"_s, u"Strg 0"_s, u"Natürliche Größe"_s, &PagePreview::naturalSize);
    m_width = addKey(u"cmdWidth"_s, u"Breite"_s, u"Strg 1"_s, u"Ganze Breite"_s, &PagePreview::fitWidth);
    m_whole = addKey(u"cmdPage"_s, u"Seite"_s, u"Strg 2"_s, u"Ganze Seite"_s, &PagePreview::fitPage);
    // Room for most numbers, so that the keys stay where they are.
    const QFontMetrics metrics(Theme::Current().font());
    m_pageLabel->setMinimumWidth(metrics.horizontalAdvance(u"Seite 99 von 99"_s));
    m_zoomLabel->setMinimumWidth(metrics.horizontalAdvance(u"800 % "_s));
    for (TouchKey* key : {m_natural, m_width, m_whole})
        key->setCheckable(true);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_bar);
    column->addWidget(m_view, 1);
    setFocusProxy(m_view);
    connect(m_view, &PageView::changed, this, &PagePreview::showState);
    showState();
}

void PagePreview::showKeys(bool shown) { m_bar->setVisible(shown); }

TouchKey* PagePreview::addKey(const QString& name, const QString& caption, const QString& hint,
                              const QString& tip, void (PagePreview::*act)()) {
    auto* key = new TouchKey(caption, m_bar);
    key->setObjectName(name);
    key->setHint(hint);
    key->setToolTip(tip + u" ("_s + hint + u')');
    key->setAccessibleName(tip);
    key->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_bar->layout()->addWidget(key);
    connect(key, &TouchKey::clicked, this, act);
    return key;
}

void PagePreview::setDocument(PageDocument document) { m_view->setDocument(std::move(document)); }
const PageDocument& PagePreview::document() const { return m_view->document(); }
int PagePreview::currentPage() const { return m_view->currentPage(); }
void PagePreview::showPage(int page) { m_view->showPage(page); }
double PagePreview::zoom() const { return m_view->zoom(); }
void PagePreview::setZoom(double zoom) { m_view->setZoom(zoom, m_view->viewport()->rect().center()); }
PagePreview::Fit PagePreview::fit() const { return m_view->fit(); }
void PagePreview::setFit(Fit fit) { m_view->setFit(fit); }

void PagePreview::previousPage() { showPage(currentPage() - 1); }
void PagePreview::nextPage() { showPage(currentPage() + 1); }
void PagePreview::zoomIn() {
    const auto* next = std::find_if(zoomSteps.begin(), zoomSteps.end(),
                                    [this](double step) { return step > zoom() + sameZoom; });
    setZoom(next == zoomSteps.end() ? mostZoom : *next);
}
void PagePreview::zoomOut() {
    const auto next = std::find_if(zoomSteps.rbegin(), zoomSteps.rend(),
                                   [this](double step) { return step < zoom() - sameZoom; });
    setZoom(next == zoomSteps.rend() ? leastZoom : *next);
}
void PagePreview::naturalSize() { setZoom(1); }
void PagePreview::fitWidth() { setFit(Fit::Width); }
void PagePreview::fitPage() { setFit(Fit::Page); }

void PagePreview::keyPressEvent(QKeyEvent* event) {
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    switch (event->key()) {
    case Qt::Key_PageUp:
        return previousPage();
    case Qt::Key_PageDown:
        return nextPage();
    case Qt::Key_Home:
        return showPage(0);
    case Qt::Key_End:
        return showPage(document().pageCount() - 1);
    default:
        break;
    }
    if (control) {
        switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return zoomIn();
        case Qt::Key_Minus:
            return zoomOut();
        case Qt::Key_0:
            return naturalSize();
        case Qt::Key_1:
            return fitWidth();
        case Qt::Key_2:
            return fitPage();
        default:
            break;
        }
    }
    QWidget::keyPressEvent(event);
}

void PagePreview::showState() {
    const int page = currentPage(), count = document().pageCount();
    m_pageLabel->setText(count == 0 ? u"Keine Seite"_s : u"Seite %1 von %2"_s.arg(page + 1).arg(count));
    m_view->setAccessibleDescription(m_pageLabel->text());
    m_zoomLabel->setText(u"%1 %"_s.arg(std::lround(zoom() * 100)));
    m_previous->setEnabled(page > 0);
    m_next->setEnabled(page + 1 < count);
    m_natural->setChecked(fit() == Fit::None && std::abs(zoom() - 1) < sameZoom);
    m_width->setChecked(fit() == Fit::Width);
    m_whole->setChecked(fit() == Fit::Page);
    if (std::exchange(m_toldPage, page) != page) emit pageChanged(page);
    const double before = std::exchange(m_toldZoom, zoom());
    if (before != zoom()) emit zoomChanged(zoom());
}
