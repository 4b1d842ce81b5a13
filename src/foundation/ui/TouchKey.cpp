#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QKeyEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>

using namespace Qt::StringLiterals;

TouchKey::TouchKey(QWidget* parent)
    : TouchKey(QString(), parent) {}

TouchKey::TouchKey(const QString& caption_, QWidget* parent)
    : QAbstractButton(parent) {
    setText(caption_);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_Hover);
}

void TouchKey::setHint(const QString& hint) {
    m_hint = hint;
    update();
}
void TouchKey::setAccent(bool accent) {
    m_accent = accent;
    update();
}
void TouchKey::setLarge(bool large) {
    m_large = large;
    updateGeometry();
    update();
}
void TouchKey::setCompact(bool compact) {
    m_compact = compact;
    updateGeometry();
}

QString TouchKey::caption() const {
    QString plain = text();
    plain.replace(u"&&"_s, QString(QChar(1)));
    plain.remove(u'&');
    plain.replace(QChar(1), u'&');
    // A unit stays with its number: "750 g" is not torn apart.
    const qsizetype last = plain.lastIndexOf(u' ');
    if (last > 0 && plain[last - 1].isDigit()) plain[last] = QChar::Nbsp;
    return plain;
}

QFont TouchKey::captionFont() const {
    const bool strong = m_accent || m_large || isChecked() || isCheckable() || !m_hint.isEmpty();
    const QFont::Weight weight = strong ? QFont::DemiBold : QFont::Medium;
    const QFont font = Theme::Current().font(m_large ? Theme::Size::Large : Theme::Size::Normal, weight);
    if (m_large) return font;
    // Rather smaller letters than a word that is torn apart.
    const QFontMetrics fm(font);
    static const QRegularExpression breaks(u"[ \\n/-]"_s);
    for (const QString& word : caption().split(breaks, Qt::SkipEmptyParts))
        if (fm.horizontalAdvance(word) > captionRect().width())
            return Theme::Current().font(Theme::Size::Small, weight);
    return font;
}

QSize TouchKey::minimumSizeHint() const {
    const int height = Theme::Current().keyHeight;
    return {height, m_compact ? height * 3 / 4 : height};
}

QSize TouchKey::sizeHint() const {
    const QFontMetrics fm(
        Theme::Current().font(m_large ? Theme::Size::Large : Theme::Size::Normal, QFont::DemiBold));
    const QSize least = minimumSizeHint();
    // Longer captions wrap, so they ask for no more than this.
    const int width = std::min(fm.horizontalAdvance(caption()), 11 * least.height() / 4);
    return {std::max(least.width(), width + 28), least.height()};
}

QRect TouchKey::captionRect() const { return rect().adjusted(4, 3, -4, -5); }

QStringList TouchKey::shownLines() const {
    const QRect area = captionRect();
    const QFont f = captionFont();
    const QFontMetrics fm(f);
    QStringList lines;
    const QStringList paragraphs = caption().split(u'\n');
    const int most = std::max(1, area.height() / fm.lineSpacing());
    for (const QString& paragraph : paragraphs) {
        QTextLayout layout(paragraph, f);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(1, area.width()));
            if (lines.size() + 1 == most) {
                lines << fm.elidedText(paragraph.mid(line.textStart()).trimmed(), Qt::ElideRight,
                                       area.width());
                break;
            }
            lines << paragraph.mid(line.textStart(), line.textLength()).trimmed();
        }
        layout.endLayout();
        if (lines.size() >= most) break;
    }
    lines.replaceInStrings(QString(QChar::Nbsp), u" "_s);
    return lines;
}

void TouchKey::paintEvent(QPaintEvent*) {
    const Theme& t = Theme::Current();
    QColor face = m_accent ? t.accent : isChecked() ? t.title : t.field;
    QColor ink = m_accent ? t.accentText : isChecked() ? t.titleText : t.text;
    QColor edge = m_accent || isChecked() ? Theme::Mix(face, Qt::black, 0.25) : t.border;
    QColor foot = m_accent || isChecked() ? edge : t.shadow;
    if (!isEnabled()) {
        face = Theme::Mix(face, t.panel, 0.8);
        ink = Theme::Readable(Theme::Mix(t.muted, face, 0.3), face, 3.0);
        edge = foot = t.border;
    } else if (isDown()) {
        face = m_accent || isChecked() ? Theme::Mix(face, Qt::black, 0.18) : t.selection;
        foot = edge;
    } else if (underMouse() && !m_accent && !isChecked()) {
        face = Theme::Mix(face, t.selection, 0.35);
    }

    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -1.5);
    p.setPen(Qt::NoPen);
    p.setBrush(foot);
    p.drawRoundedRect(body.translated(0, 1), t.radius, t.radius);
    p.setPen(QPen(edge, 1));
    p.setBrush(face);
    p.drawRoundedRect(body, t.radius, t.radius);
    if (hasFocus()) {
        p.setPen(QPen(m_accent ? t.accentText : t.accent, 2));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(body.adjusted(2, 2, -2, -2), t.radius - 2, t.radius - 2);
    }

    p.setFont(captionFont());
    p.setPen(ink);
    const QStringList lines = shownLines();
    const QFontMetrics fm(captionFont());
    const QRect area = captionRect();
    int y = area.top() + (area.height() - static_cast<int>(lines.size()) * fm.lineSpacing()) / 2;
    if (isDown()) ++y;
    for (const QString& line : lines) {
        p.drawText(QRect(area.left(), y, area.width(), fm.lineSpacing()), Qt::AlignCenter, line);
        y += fm.lineSpacing();
    }
    if (!m_hint.isEmpty()) {
        QFont f = t.font(Theme::Size::Small);
        f.setPixelSize(t.small - 2);
        p.setFont(f);
        p.setPen(!isEnabled() ? ink : m_accent ? t.accentText : isChecked() ? t.titleText : t.muted);
        p.drawText(rect().adjusted(6, 4, -7, 0), Qt::AlignRight | Qt::AlignTop, m_hint);
    }
}

void TouchKey::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat())
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
