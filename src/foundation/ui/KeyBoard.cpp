#include "KeyBoard.h"

#include <ui/DigitPad.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QAbstractSpinBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPainter>
#include <QValidator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 6, margin = 8;
constexpr int columns = 24; ///< two for a letter
constexpr int letterRows = 5;

/// Digits, "," and "-" in a box that is no counter are numbers with decimals.
DigitPad::Keys padKeys(const QWidget& box) {
    DigitPad::Keys keys = DigitPad::Clear;
    if (const auto* number = qobject_cast<const NumberEdit*>(&box)) {
        keys.setFlag(DigitPad::Decimal, number->decimal());
        keys.setFlag(DigitPad::Minus, number->minus());
    } else if (const auto* counter = qobject_cast<const QAbstractSpinBox*>(box.parentWidget())) {
        keys.setFlag(DigitPad::Decimal, qobject_cast<const QDoubleSpinBox*>(counter) != nullptr);
    } else {
        keys |= DigitPad::Keys(DigitPad::Decimal | DigitPad::Minus);
    }
    return keys;
}

} // namespace

bool isNumberBox(const QWidget& box) {
    if (qobject_cast<const NumberEdit*>(&box) != nullptr) return true;
    // Days have their own signs between the digits.
    if (qobject_cast<const QAbstractSpinBox*>(box.parentWidget()) != nullptr)
        return !box.parentWidget()->inherits("QDateTimeEdit");
    const auto* line = qobject_cast<const QLineEdit*>(&box);
    if (line == nullptr) return false;
    if (line->inputMethodHints() & (Qt::ImhDigitsOnly | Qt::ImhFormattedNumbersOnly | Qt::ImhPreferNumbers))
        return true;
    return line->validator() != nullptr &&
           (line->validator()->inherits("QIntValidator") || line->validator()->inherits("QDoubleValidator"));
}

// A tool window of the box's own window: no other modal form blocks it, and it goes with that window.
KeyBoard::KeyBoard(QWidget& box, bool digitsOnly)
    : QWidget(box.window(),
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_grid(new QGridLayout(this))
    , m_digitsOnly(digitsOnly) {
    setObjectName(u"screenKeyboard"_s);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setWindowTitle(u"Tastatur"_s);
    m_grid->setContentsMargins(margin, margin, margin, margin);
    m_grid->setSpacing(gap);
    if (digitsOnly)
        addDigits(box);
    else
        addLetters();
}

QSize KeyBoard::fitted(const QSize& screen) const {
    const int edge = Theme::Current().keyHeight;
    const int rows = letterRows;
    const int height = rows * edge + (rows - 1) * gap + 2 * margin;
    if (m_digitsOnly) return {std::min(screen.width(), 6 * edge), height};
    const int least = columns / 2 * edge + (columns - 1) * gap + 2 * margin;
    return {std::min(screen.width(), std::max(least, screen.width() * 3 / 4)), height};
}

TouchKey* KeyBoard::add(const QString& name, const QString& caption, int row, int column, int width) {
    auto* made = new TouchKey(caption, this);
    made->setObjectName(name);
    made->setFocusPolicy(Qt::NoFocus);
    made->setAccessibleName(caption);
    m_grid->addWidget(made, row, column, 1, width);
    return made;
}

void KeyBoard::addStroke(const QString& name, const QString& caption, const QString& spoken, int row,
                         int column, int width, int code) {
    TouchKey* made = add(name, caption, row, column, width);
    made->setAccessibleName(spoken);
    made->setAutoRepeat(code != Qt::Key_Return);
    connect(made, &TouchKey::clicked, this, [this, code] {
        const QString text = code == Qt::Key_Space ? u" "_s : code == Qt::Key_Return ? u"\r"_s : QString();
        emit key(code, text);
    });
}

void KeyBoard::addSign(QChar plain, QChar shifted, int row, int column) {
    TouchKey* made = add(u"key"_s + plain.toUpper(), {}, row, column, 2);
    m_signs.append({made, plain, shifted});
    connect(made, &TouchKey::clicked, this, [this, sign = m_signs.last()] { press(sign); });
}

void KeyBoard::addLetters() {
    static const QString rows[][2] = {{u"1234567890ß"_s, u"!\"§$%&/()=?"_s},
                                      {u"qwertzuiopü+"_s, u"QWERTZUIOPÜ*"_s},
                                      {u"asdfghjklöä#"_s, u"ASDFGHJKLÖÄ'"_s},
                                      {u"yxcvbnm,.-@"_s, u"YXCVBNM;:_€"_s}};
    for (int row = 0; row < 4; ++row) {
        const int first = row == 3 ? 2 : 0; // behind the shift key
        for (int i = 0; i < rows[row][0].size(); ++i)
            addSign(rows[row][0][i], rows[row][1][i], row, first + 2 * i);
    }
    addStroke(u"keyBackspace"_s, u"⌫"_s, u"Zeichen löschen"_s, 0, 22, 2, Qt::Key_Backspace);
    m_shiftKey = add(u"keyShift"_s, u"⇧"_s, 3, 0, 2);
    m_shiftKey->setAccessibleName(u"Umschalten"_s);
    m_shiftKey->setCheckable(true);
    // Once for the next letter, twice for all, and a third time back.
    connect(m_shiftKey, &TouchKey::clicked, this, [this] {
        setShift(m_shift == Shift::Off ? Shift::Once : m_shift == Shift::Once ? Shift::Locked : Shift::Off);
    });
    TouchKey* fertig = add(u"keyDone"_s, u"Fertig"_s, 4, 0, 4);
    fertig->setHint(u"Esc"_s);
    connect(fertig, &TouchKey::clicked, this, &KeyBoard::done);
    addStroke(u"keySpace"_s, u"Leertaste"_s, u"Leertaste"_s, 4, 4, 10, Qt::Key_Space);
    addStroke(u"keyLeft"_s, u"←"_s, u"nach links"_s, 4, 14, 2, Qt::Key_Left);
    addStroke(u"keyRight"_s, u"→"_s, u"nach rechts"_s, 4, 16, 2, Qt::Key_Right);
    addStroke(u"keyEnter"_s, u"Enter"_s, u"Enter"_s, 4, 18, 6, Qt::Key_Return);
    for (int column = 0; column < columns; ++column)
        m_grid->setColumnStretch(column, 1);
    for (int row = 0; row < letterRows; ++row)
        m_grid->setRowStretch(row, 1);
    setShift(Shift::Off);
}

void KeyBoard::addDigits(QWidget& box) {
    auto* pad = new DigitPad(this);
    pad->setKeys(padKeys(box));
    connect(pad, &DigitPad::digitPressed, this,
            [this](int value) { emit key(Qt::Key_0 + value, QString::number(value)); });
    connect(pad, &DigitPad::decimal, this, [this] { emit key(Qt::Key_Comma, u","_s); });
    connect(pad, &DigitPad::minus, this, [this] { emit key(Qt::Key_Minus, u"-"_s); });
    connect(pad, &DigitPad::clear, &box, [line = qobject_cast<QLineEdit*>(&box)] {
        if (line != nullptr) line->clear();
    });
    m_grid->addWidget(pad, 0, 0, 4, 3);
    TouchKey* fertig = add(u"keyDone"_s, u"Fertig"_s, 4, 0, 1);
    fertig->setHint(u"Esc"_s);
    connect(fertig, &TouchKey::clicked, this, &KeyBoard::done);
    addStroke(u"keyBackspace"_s, u"⌫"_s, u"Zeichen löschen"_s, 4, 1, 1, Qt::Key_Backspace);
    addStroke(u"keyEnter"_s, u"Enter"_s, u"Enter"_s, 4, 2, 1, Qt::Key_Return);
    m_grid->setRowStretch(0, 4);
    m_grid->setRowStretch(4, 1);
}

void KeyBoard::press(const Sign& sign) {
    const QString text = m_shift == Shift::Off ? sign.plain : sign.shifted;
    // Latin characters have their own capital as code.
    const int code = text.front().toUpper().unicode();
    if (m_shift == Shift::Once) setShift(Shift::Off);
    emit key(code, text);
}

void KeyBoard::setShift(Shift shift) {
    m_shift = shift;
    m_shiftKey->setChecked(shift != Shift::Off);
    m_shiftKey->setText(shift == Shift::Locked ? u"⇪"_s : u"⇧"_s);
    for (const Sign& sign : m_signs) {
        const QString shown = shift == Shift::Off ? sign.plain : sign.shifted;
        sign.key->setText(shown == u"&"_s ? u"&&"_s : shown);
        sign.key->setAccessibleName(shown);
    }
}

void KeyBoard::paintEvent(QPaintEvent*) {
    const Theme& t = Theme::Current();
    QPainter p(this);
    p.fillRect(rect(), t.panel);
    p.setPen(t.shadow);
    p.drawRect(rect().adjusted(0, 0, -1, -1));
}
