#include <access/ui/frmSplash.h>
#include <ui/Theme.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_info(new QLabel(this)) {
    setObjectName(u"frmSplash"_s);
    setWindowTitle(u"Merivane"_s);
    const Theme& t = Theme::Current();
    setFixedSize(t.keyHeight * 9, t.keyHeight * 5);
    m_info->setObjectName(u"lblInfo"_s);
    m_info->setProperty("role", u"headerInfo"_s);
    m_info->setWordWrap(true);
    m_info->setTextFormat(Qt::PlainText);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 24);
    layout->addStretch();
    layout->addWidget(m_info);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void frmSplash::SetInfo(const QString& text) { m_info->setText(text); }

void frmSplash::paintEvent(QPaintEvent*) {
    const Theme& t = Theme::Current();
    QPainter p(this);
    p.fillRect(rect(), t.title);
    p.fillRect(QRect(0, height() - 6, width(), 6), t.accent);
    p.setPen(t.titleText);
    p.setFont(t.font(Theme::Size::Total, QFont::Bold));
    p.drawText(rect().adjusted(30, 40, -30, 0), Qt::AlignLeft | Qt::AlignTop, u"Merivane"_s);
    p.setFont(t.font(Theme::Size::Normal));
    p.drawText(rect().adjusted(32, 40 + t.total + 18, -30, 0), Qt::AlignLeft | Qt::AlignTop,
               u"Kasse und Warenwirtschaft "_s + QCoreApplication::applicationVersion());
}
