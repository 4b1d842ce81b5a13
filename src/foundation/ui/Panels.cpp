#include <ui/Panels.h>
#include <ui/Theme.h>

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>

using namespace Qt::StringLiterals;

TitlePanel::TitlePanel(QWidget* parent)
    : QFrame(parent)
    , m_title(new QLabel(this)) {
    m_title->setProperty("role", u"title"_s);
    m_title->setTextFormat(Qt::PlainText);
    m_title->hide();
    place();
}

QString TitlePanel::title() const { return m_title->text(); }

void TitlePanel::setTitle(const QString& title) {
    m_title->setText(title);
    m_title->setVisible(!title.isEmpty());
    place();
    update();
}

QString TitlePanel::titleName() const { return m_title->objectName(); }
void TitlePanel::setTitleName(const QString& name) { m_title->setObjectName(name); }

int TitlePanel::barHeight() const { return m_title->text().isEmpty() ? 0 : Theme::Current().normal + 10; }

void TitlePanel::place() {
    setContentsMargins(0, barHeight(), 0, 0);
    m_title->setGeometry(12, 0, std::max(0, width() - 24), barHeight());
}

void TitlePanel::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    place();
}

void TitlePanel::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::StyleChange) place();
}

void TitlePanel::paintEvent(QPaintEvent*) {
    const Theme& t = Theme::Current();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -1);
    QPainterPath shape;
    shape.addRoundedRect(body, t.radius, t.radius);
    p.fillPath(shape, t.panel);
    if (barHeight() > 0) {
        p.setClipPath(shape);
        p.fillRect(QRectF(0, 0, width(), barHeight()), t.title);
        p.setClipping(false);
    }
    p.setPen(QPen(Theme::Mix(t.page, t.shadow, 0.6), 1));
    p.drawPath(shape);
}
