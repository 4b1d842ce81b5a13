#include <page/ui/PagePreview.h>
#include <printing/ui/BelegVorschau.h>
#include <text/RuntimeError.h>

#include <QLabel>
#include <QStackedLayout>

using namespace Qt::StringLiterals;

namespace {

/// In ms: longer than the keyboard's repeat, shorter than an eye needs.
constexpr int restTime = 40;

} // namespace

BelegVorschau::BelegVorschau(QWidget* parent)
    : QWidget(parent)
    , m_preview(new PagePreview(this))
    , m_fault(new QLabel(this)) {
    m_preview->showKeys(false); // a page beside a list is seen as a whole; PgDn and Ctrl with + work
    auto* pages = new QStackedLayout(this);
    pages->setContentsMargins(0, 0, 0, 0);
    pages->addWidget(m_preview);
    pages->addWidget(m_fault);
    m_fault->setObjectName(u"lblVorschau"_s);
    m_fault->setAlignment(Qt::AlignCenter);
    m_fault->setWordWrap(true);
    m_fault->setTextFormat(Qt::PlainText);
    m_fault->setProperty("role", u"muted"_s);
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    connect(&m_rest, &QTimer::timeout, this, &BelegVorschau::layOutNow);
    clear();
}

void BelegVorschau::showPages(std::function<BelegSeiten()> layOut) {
    m_layOut = std::move(layOut);
    m_rest.start();
}

void BelegVorschau::clear() {
    m_rest.stop();
    tell({});
}

void BelegVorschau::layOutNow() {
    try {
        BelegSeiten pages = m_layOut();
        if (!pages.fault.isEmpty()) return tell(pages.fault);
        m_preview->setDocument(std::move(pages.document));
        m_preview->showPage(0);
        static_cast<QStackedLayout*>(layout())->setCurrentWidget(m_preview);
    } catch (const RuntimeError& error) {
        tell(error.Description);
    }
}

void BelegVorschau::tell(const QString& text) {
    m_fault->setText(text);
    static_cast<QStackedLayout*>(layout())->setCurrentWidget(m_fault);
}
