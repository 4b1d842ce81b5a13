#include <ui/DigitPad.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

void SelectAllText(QLineEdit* box) {
    if (box != nullptr) box->selectAll();
}

NumberEdit::NumberEdit(QWidget* parent)
    : QLineEdit(parent) {
    setAlignment(Qt::AlignRight);
    setProperty("role", u"large"_s);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
}

QChar NumberEdit::ownFilter(QChar typed) const {
    if (typed == u'.') typed = u',';
    const bool wanted =
        (typed >= u'0' && typed <= u'9') || (typed == u',' && m_decimal) || (typed == u'-' && m_minus);
    return wanted ? typed : QChar();
}

QString NumberEdit::sieve(const QString& typed) const {
    QString kept;
    for (const QChar c : typed) {
        const QChar put = m_filter ? m_filter(c) : ownFilter(c);
        if (!put.isNull()) kept += put;
    }
    return kept;
}

void NumberEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->ignore(); // it is the form's
        return;
    }
    if (event == QKeySequence::Paste) {
        insert(sieve(QApplication::clipboard()->text()));
        return;
    }
    const QString typed = event->text();
    const bool writes = !typed.isEmpty() && typed.at(0).isPrint();
    if (!writes) {
        // Backspace, Delete, the arrows, copying; Esc and the function keys go on to the form.
        QLineEdit::keyPressEvent(event);
        return;
    }
    const QString kept = sieve(typed);
    if (!kept.isEmpty() && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) insert(kept);
    event->accept();
}

DigitPad::DigitPad(QWidget* parent)
    : QWidget(parent) {
    setKeys(Clear | Enter | Decimal);
}

TouchKey* DigitPad::add(const QString& name, const QString& caption, int row, int column, int rows,
                        int columns) {
    auto* key = new TouchKey(caption, this);
    key->setObjectName(name);
    key->setCompact(true);
    // The digits belong to the entry box: whoever uses the keyboard types them.
    key->setFocusPolicy(Qt::NoFocus);
    m_grid->addWidget(key, row, column, rows, columns);
    return key;
}

void DigitPad::setKeys(Keys keys) {
    m_keys = keys;
    qDeleteAll(findChildren<TouchKey*>(QString(), Qt::FindDirectChildrenOnly));
    delete m_grid;
    m_grid = new QGridLayout(this);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(6);

    // With nothing but C beside the digits the block is three keys wide.
    const bool narrow = keys == Keys(Clear);
    for (int value = 0; value <= 9; ++value) {
        const int row = value == 0 ? 3 : 2 - (value - 1) / 3;
        const int column = value == 0 ? 0 : (value - 1) % 3;
        const int width = value != 0 ? 1 : keys.testFlag(Decimal) || narrow ? 2 : 3;
        TouchKey* key =
            add(u"cmdNumber"_s + QString::number(value), QString::number(value), row, column, 1, width);
        key->setLarge(true);
        connect(key, &TouchKey::clicked, this, [this, value] {
            type(QString::number(value));
            emit digitPressed(value);
        });
    }
    if (keys.testFlag(Decimal)) {
        TouchKey* key = add(u"cmdDecimal"_s, u","_s, 3, 2);
        key->setLarge(true);
        key->setAccessibleName(u"Komma"_s);
        connect(key, &TouchKey::clicked, this, [this] {
            typeOnce(u',');
            emit decimal();
        });
    }

    // The column at the right from top to bottom; what is missing gives its place to its neighbours.
    const bool arithmetic = keys.testFlag(Mal) || keys.testFlag(Plus);
    const bool enterBelow = arithmetic || keys.testFlag(Search);
    int row = 0;
    if (keys.testFlag(Clear)) {
        const bool alone = !keys.testFlag(Minus) && !arithmetic;
        TouchKey* key =
            narrow ? add(u"cmdClear"_s, u"C"_s, 3, 2) : add(u"cmdClear"_s, u"C"_s, row, 3, alone ? 2 : 1);
        key->setAccessibleName(u"Eingabe löschen"_s);
        key->setLarge(true);
        if (arithmetic) key->setHint(u"Esc"_s);
        row += alone ? 2 : 1;
        connect(key, &TouchKey::clicked, this, [this] {
            if (m_target != nullptr) m_target->clear();
            emit clear();
        });
    }
    if (keys.testFlag(Mal)) {
        TouchKey* key = add(u"cmdMal"_s, u"×"_s, row++, 3);
        key->setAccessibleName(u"Mal"_s);
        key->setLarge(true);
        connect(key, &TouchKey::clicked, this, &DigitPad::mal);
    }
    if (keys.testFlag(Plus)) {
        TouchKey* key = add(u"cmdPlus"_s, u"+"_s, row++, 3);
        key->setAccessibleName(u"Plus"_s);
        key->setLarge(true);
        connect(key, &TouchKey::clicked, this, &DigitPad::plus);
    }
    if (keys.testFlag(Minus)) {
        TouchKey* key = add(u"cmdMinus"_s, u"−"_s, row++, 3);
        key->setAccessibleName(u"Minus"_s);
        key->setLarge(true);
        connect(key, &TouchKey::clicked, this, [this] {
            typeOnce(u'-');
            emit minus();
        });
    }
    if (keys.testFlag(Search)) {
        TouchKey* key = add(u"cmdSearch"_s, u"Suche"_s, 4, 0, 1, 2);
        key->setHint(u"F3"_s);
        connect(key, &TouchKey::clicked, this, &DigitPad::search);
    }
    if (keys.testFlag(Enter)) {
        TouchKey* key = enterBelow ? add(u"cmdEnter"_s, u"OK"_s, 4, keys.testFlag(Search) ? 2 : 0, 1,
                                         keys.testFlag(Search) ? 2 : 4)
                                   : add(u"cmdEnter"_s, u"OK"_s, row, 3, 4 - row);
        key->setAccent(true);
        key->setLarge(true);
        key->setHint(u"Enter"_s);
        connect(key, &TouchKey::clicked, this, &DigitPad::enter);
    }
    for (int column = 0; column < 3; ++column)
        m_grid->setColumnStretch(column, 1);
    m_grid->setColumnStretch(3, !narrow && keys & ~Keys(Decimal | Search) ? 1 : 0);
    for (int r = 0; r < (enterBelow ? 5 : 4); ++r)
        m_grid->setRowStretch(r, 1);
}

void DigitPad::setTarget(QLineEdit* target) {
    m_target = target;
    if (target != nullptr) target->setProperty(ownPad, true);
}

TouchKey* DigitPad::digit(int value) const {
    return findChild<TouchKey*>(u"cmdNumber"_s + QString::number(value), Qt::FindDirectChildrenOnly);
}

TouchKey* DigitPad::key(Key key) const {
    const auto name = [key] {
        switch (key) {
        case Decimal:
            return u"cmdDecimal"_s;
        case Minus:
            return u"cmdMinus"_s;
        case Clear:
            return u"cmdClear"_s;
        case Enter:
            return u"cmdEnter"_s;
        case Mal:
            return u"cmdMal"_s;
        case Plus:
            return u"cmdPlus"_s;
        case Search:
            return u"cmdSearch"_s;
        }
        return QString();
    };
    return findChild<TouchKey*>(name(), Qt::FindDirectChildrenOnly);
}

void DigitPad::type(const QString& text) {
    if (m_target == nullptr) return;
    const int code = text.at(0).unicode(); // digits, "," and "-" have their Latin-1 code as key code
    QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, text);
    QApplication::sendEvent(m_target, &press);
    QKeyEvent release(QEvent::KeyRelease, code, Qt::NoModifier, text);
    QApplication::sendEvent(m_target, &release);
}

void DigitPad::typeOnce(QChar sign) {
    if (m_target != nullptr && !m_target->text().contains(sign)) type(QString(sign));
}
