#include "EntryKeyboard.h"

#include <register/Register.h>
#include <ui/WorkQueue.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTimer>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool isEnter(const QKeyEvent& key) { return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter; }

/// Text, or an edit of it, that belongs into the entry box.
bool isTyping(const QKeyEvent& key) {
    if (key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete) return true;
    if (key.matches(QKeySequence::Paste)) return true;
    const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = key.modifiers().testFlag(Qt::AltModifier);
    if (ctrl != alt) return false; // both together are AltGr
    return !key.text().isEmpty() && key.text().front().isPrint();
}

/// Keys that an open menu needs itself.
bool movesInMenu(const QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return true;
    default:
        return false;
    }
}

/// The key that opened a menu closes it.
bool opensMenu(const QString& function) {
    return function == u"cmdKarte" || function == u"cmdFunction" || function == u"cmdAuftrag";
}

} // namespace

EntryKeyboard::EntryKeyboard(QWidget* form, QLineEdit* input, WorkQueue& queue, till::Register& till,
                             FunctionKeys keys)
    : QObject(form)
    , m_form(form)
    , m_input(input)
    , m_queue(queue)
    , m_till(till)
    , m_keys(keys) {
    qApp->installEventFilter(this);
}

EntryKeyboard::~EntryKeyboard() { qApp->removeEventFilter(this); }

bool EntryKeyboard::eventFilter(QObject* receiver, QEvent* event) {
    if (event == m_sent) return false;
    if (receiver == m_input && (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)) {
        inputFocusChanged(*event);
        return false;
    }
    if (event->type() == QEvent::FocusIn && m_groups.contains(receiver)) {
        m_till.cmdGruppe_GotFocus();
        return false;
    }
    if (event->type() != QEvent::KeyPress || !receiver->isWidgetType()) return false;
    return keyPressed(static_cast<QWidget*>(receiver), *static_cast<QKeyEvent*>(event));
}

bool EntryKeyboard::keyPressed(QWidget* receiver, const QKeyEvent& key) {
    QWidget* window = receiver->window();
    if (window != m_form) {
        const bool ourMenu = window->windowType() == Qt::Popup && window->parentWidget() != nullptr &&
                             window->parentWidget()->window() == m_form;
        const QString function = m_keys.find(key);
        if (!ourMenu || movesInMenu(key) || (!isTyping(key) && function.isEmpty())) return false;
        window->close();
        if (opensMenu(function)) return true;
    }
    const std::shared_ptr<QKeyEvent> copy(key.clone());
    m_queue.input([this, copy] { dispatch(*copy); });
    return true;
}

void EntryKeyboard::dispatch(const QKeyEvent& key) {
    if (const QString command = m_keys.find(key); !command.isEmpty()) {
        // A key that is held down too long must not cancel or pay twice.
        if (!key.isAutoRepeat()) emit function(command);
        return;
    }
    if (toShortCutKey(key)) return;
    if (isEnter(key)) {
        if (!key.isAutoRepeat()) m_queue.run([this] { m_till.cmdEnter_Click(); });
    } else if (key.key() == Qt::Key_Up || key.key() == Qt::Key_Down) {
        const int step = key.key() == Qt::Key_Up ? -1 : 1;
        m_queue.run([this, step] { m_till.MoveSelection(step); });
    } else if (isTyping(key)) {
        if (!m_input->hasFocus()) {
            m_input->setFocus(Qt::OtherFocusReason);
            if (!m_input->hasSelectedText()) m_input->end(false);
        }
        sendTo(m_input, key);
    } else if (key.key() != Qt::Key_Tab && key.key() != Qt::Key_Backtab) {
        sendTo(m_input, key);
    }
}

bool EntryKeyboard::toShortCutKey(const QKeyEvent& key) {
    auto* button = qobject_cast<QAbstractButton*>(m_form->focusWidget());
    // A code that has begun to arrive is finished in the entry box.
    if (!m_till.IsShortCutFocus || button == nullptr || !m_input->text().isEmpty()) return false;
    if (isEnter(key) || key.key() == Qt::Key_Space) {
        if (!key.isAutoRepeat()) button->click();
        return true;
    }
    if (isTyping(key)) return false;
    sendTo(button, key);
    return true;
}

void EntryKeyboard::sendTo(QWidget* target, const QKeyEvent& key) {
    const std::unique_ptr<QKeyEvent> copy(key.clone());
    const QScopedValueRollback<const QEvent*> sent(m_sent, copy.get());
    QApplication::sendEvent(target, copy.get());
}

void EntryKeyboard::inputFocusChanged(const QEvent& event) {
    if (event.type() == QEvent::FocusIn) {
        m_till.txtInput_GotFocus();
        return;
    }
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return;
    // The control that takes the focus has not got it yet.
    QTimer::singleShot(0, m_input, [this] {
        if (m_form->isVisible() && !m_input->hasFocus()) m_till.txtInput_LostFocus();
    });
}
