#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/TouchSpin.h>

#include <QHBoxLayout>
#include <QKeyEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

TouchSpin::TouchSpin(QWidget* parent)
    : QWidget(parent)
    , m_less(new TouchKey(u"−"_s, this))
    , m_more(new TouchKey(u"+"_s, this)) {
    m_less->setObjectName(u"cmdLess"_s);
    m_more->setObjectName(u"cmdMore"_s);
    m_less->setAccessibleName(u"weniger"_s);
    m_more->setAccessibleName(u"mehr"_s);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    const int edge = Theme::Current().keyHeight;
    for (TouchKey* key : {m_less, m_more}) {
        key->setLarge(true);
        key->setAutoRepeat(true);
        key->setFocusPolicy(Qt::NoFocus);
        key->setFixedSize(edge * 5 / 4, edge);
        layout->addWidget(key);
    }
    setFocusPolicy(Qt::TabFocus);
    connect(m_less, &TouchKey::clicked, this, [this] { setValue(m_value - 1); });
    connect(m_more, &TouchKey::clicked, this, [this] { setValue(m_value + 1); });
    setRange(m_least, m_most);
}

void TouchSpin::setRange(int least, int most) {
    m_least = least;
    m_most = std::max(least, most);
    setValue(m_value);
}

void TouchSpin::setValue(int value) {
    value = std::clamp(value, m_least, m_most);
    m_less->setEnabled(value > m_least);
    m_more->setEnabled(value < m_most);
    if (value == m_value) return;
    m_value = value;
    emit valueChanged(value);
}

void TouchSpin::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Up)
        setValue(m_value + 1);
    else if (event->key() == Qt::Key_Minus || event->key() == Qt::Key_Down)
        setValue(m_value - 1);
    else
        QWidget::keyPressEvent(event);
}
