#include "KeyBoard.h"

#include <session/gBildschirmTastatur.h>
#include <ui/DigitPad.h>
#include <ui/ScreenKeyboard.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTextEdit>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The box that a tap on `receiver` or a focus there would write into; nullptr when there is none.
QWidget* boxOf(QObject* receiver) {
    if (receiver == nullptr || !receiver->isWidgetType()) return nullptr;
    auto* widget = static_cast<QWidget*>(receiver);
    // The focus of a counter or an editable list is that of the whole, the text stands in its line.
    if (const auto* line = widget->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
        line != nullptr && line->focusProxy() == widget)
        widget = const_cast<QLineEdit*>(line);
    if (auto* scrolled = qobject_cast<QAbstractScrollArea*>(widget->parentWidget());
        scrolled != nullptr && scrolled->viewport() == widget)
        widget = scrolled;
    if (!widget->isEnabled() || !widget->isVisible()) return nullptr;
    if (const QVariant wanted = widget->property("screenKeyboard"); wanted.isValid() && !wanted.toBool())
        return nullptr;
    if (const auto* line = qobject_cast<QLineEdit*>(widget)) return line->isReadOnly() ? nullptr : widget;
    if (const auto* text = qobject_cast<QPlainTextEdit*>(widget))
        return text->isReadOnly() ? nullptr : widget;
    if (const auto* text = qobject_cast<QTextEdit*>(widget)) return text->isReadOnly() ? nullptr : widget;
    return nullptr;
}

/// What must stay free: the box, or in a tall one the line that is written.
std::vector<QRect> keepFree(const QWidget& box) {
    const auto global = [](const QWidget& widget, const QRect& rect) {
        return QRect(widget.mapToGlobal(rect.topLeft()), rect.size());
    };
    std::vector<QRect> rects{global(box, box.rect())};
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(&box))
        rects.push_back(global(*text->viewport(), text->cursorRect()));
    if (const auto* text = qobject_cast<const QTextEdit*>(&box))
        rects.push_back(global(*text->viewport(), text->cursorRect()));
    return rects;
}

} // namespace

ScreenKeyboard::ScreenKeyboard(QObject* parent)
    : QObject(parent) {
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusChanged(now); });
}

ScreenKeyboard::~ScreenKeyboard() {
    if (qApp != nullptr) qApp->removeEventFilter(this);
    delete m_board;
}

std::optional<QPoint> ScreenKeyboard::Place(const QRect& box, const QRect& screen, const QSize& size) {
    const int left = screen.left() + (screen.width() - size.width()) / 2;
    for (const int top : {screen.bottom() + 1 - size.height(), screen.top()}) {
        const QRect place(QPoint(left, top), size);
        if (!place.intersects(box)) return place.topLeft();
    }
    return std::nullopt;
}

bool ScreenKeyboard::eventFilter(QObject* receiver, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
        if (gBildschirmTastatur && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            if (QWidget* box = boxOf(receiver)) open(*box);
        }
        break;
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        if (m_board != nullptr && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            event->accept();
            if (event->type() == QEvent::KeyPress) close();
            return true;
        }
        break;
    case QEvent::Hide:
    case QEvent::EnabledChange:
        if (m_board != nullptr && receiver == m_box && boxOf(m_box) == nullptr) close();
        break;
    default:
        break;
    }
    return false;
}

void ScreenKeyboard::open(QWidget& box) {
    if (m_board != nullptr && m_box == &box) return;
    const bool number = isNumberBox(box);
    if (number && box.property(DigitPad::ownPad).toBool()) return close();
    close();
    // Before all others: who listens to the keys of a form would take Esc.
    qApp->removeEventFilter(this);
    qApp->installEventFilter(this);
    m_box = &box;
    auto* board = new KeyBoard(box, number);
    m_board = board;
    connect(board, &KeyBoard::key, this, &ScreenKeyboard::send);
    connect(board, &KeyBoard::done, this, &ScreenKeyboard::close);
    const QRect screen = box.screen()->availableGeometry();
    const QSize size = board->fitted(screen.size());
    board->resize(size);
    for (const QRect& rect : keepFree(box)) {
        if (const auto place = Place(rect, screen, size)) {
            board->move(*place);
            board->show();
            board->raise();
            return;
        }
    }
    close(); // rather none than one that hides what is typed
}

void ScreenKeyboard::close() {
    if (m_board == nullptr) return;
    m_board->hide();
    m_board->deleteLater(); // one of its keys may be what closes it
    m_board = nullptr;
    m_box = nullptr;
}

void ScreenKeyboard::focusChanged(QWidget* now) {
    // While the program has no focus at all, windows are being changed: what comes then decides.
    if (m_board == nullptr || now == nullptr) return;
    QWidget* box = boxOf(now);
    if (box == m_box) return;
    if (box != nullptr && box->window() == m_box->window())
        open(*box);
    else
        close();
}

void ScreenKeyboard::send(int key, const QString& text) {
    if (m_box == nullptr) return;
    const QPointer<QWidget> target = m_box->focusProxy() != nullptr ? m_box->focusProxy() : m_box.data();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent stroke(type, key, Qt::NoModifier, text);
        if (target != nullptr) QApplication::sendEvent(target, &stroke);
    }
}
