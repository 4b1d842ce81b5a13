#include <ui/IconSign.h>
#include <ui/Theme.h>

#include <QPainter>

IconSign::IconSign(QWidget* parent)
    : QWidget(parent) {
    const int edge = Theme::Current().keyHeight * 6 / 7;
    setFixedSize(edge, edge);
}

void IconSign::setIcon(MsgIcon icon) {
    m_icon = icon;
    setVisible(icon != MsgIcon::None);
    update();
}

void IconSign::paintEvent(QPaintEvent*) {
    const Theme& t = Theme::Current();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(1, 1, -1, -1);
    QColor face = t.accent;
    QString letter = QStringLiteral("i");
    if (m_icon == MsgIcon::Critical) {
        face = t.warning;
        letter = QStringLiteral("×");
    } else if (m_icon == MsgIcon::Exclamation) {
        face = t.warning;
        letter = QStringLiteral("!");
    } else if (m_icon == MsgIcon::Question) {
        letter = QStringLiteral("?");
    }
    p.setPen(Qt::NoPen);
    p.setBrush(face);
    if (m_icon == MsgIcon::Exclamation)
        p.drawPolygon(QPolygonF{{box.center().x(), box.top()}, box.bottomRight(), box.bottomLeft()});
    else
        p.drawEllipse(box);
    QFont f = t.font(Theme::Size::Large, QFont::Bold);
    p.setFont(f);
    p.setPen(Theme::Readable(t.accentText, face));
    p.drawText(m_icon == MsgIcon::Exclamation ? box.adjusted(0, box.height() / 4, 0, 0) : box,
               Qt::AlignCenter, letter);
}
