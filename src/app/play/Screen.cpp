#include "Screen.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeySequence>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

namespace play::screen {

namespace {

QWidget* keyTarget() {
    QWidget* window = front();
    if (window == nullptr) return nullptr;
    QWidget* focus = window->focusWidget();
    return focus != nullptr ? focus : window;
}

/// Walks to an entry as a person does: up, then down until it is reached.
template <typename Current>
bool walkTo(QWidget& control, int count, const QString& text, const Current& current) {
    for (int i = 0; i < count && current() != text; ++i)
        QTest::keyClick(&control, Qt::Key_Up);
    for (int i = 0; i < count; ++i) {
        if (current() == text) return true;
        QTest::keyClick(&control, Qt::Key_Down);
    }
    return current() == text;
}

/// The window below menus and dialogs.
QWidget* base() {
    static QPointer<QWidget> last;
    QWidget* active = QApplication::activeWindow();
    if (active != nullptr && !active->isModal() && active->windowType() != Qt::Popup) {
        last = active;
    } else if (last == nullptr || !last->isVisible()) {
        return nullptr;
    } else if (active == nullptr) {
        last->activateWindow(); // a platform without a window manager leaves none active when a dialog has
                                // gone
    }
    return last;
}

} // namespace

QWidget* front() {
    if (QWidget* popup = QApplication::activePopupWidget()) return popup;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    return base();
}

QWidget* find(QWidget* window, const QString& name) {
    if (window == nullptr) return nullptr;
    if (window->objectName() == name) return window;
    for (QWidget* control : window->findChildren<QWidget*>(name)) {
        if (control->isVisible()) return control;
    }
    return nullptr;
}

QString textOf(const QWidget& control) {
    if (const auto* list = qobject_cast<const QAbstractItemView*>(&control)) {
        return list->currentIndex().data().toString();
    }
    const QVariant text = control.property(control.inherits("QComboBox") ? "currentText" : "text");
    return text.isValid() ? text.toString() : control.windowTitle();
}

QPixmap picture() {
    // From the front window down to the one that everything lies on.
    QList<QWidget*> windows;
    for (QWidget* window = front(); window != nullptr; window = window->parentWidget()) {
        window = window->window();
        windows.prepend(window);
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isModal() && !windows.contains(window)) windows.prepend(window);
    }
    if (base() != nullptr && !windows.contains(base())) windows.prepend(base());
    QRect area;
    for (const QWidget* window : windows)
        area |= window->geometry();
    if (area.isEmpty()) return {};
    QPixmap picture(area.size());
    picture.fill(Qt::darkGray);
    QPainter painter(&picture);
    for (QWidget* window : windows) {
        painter.drawPixmap(window->geometry().topLeft() - area.topLeft(), window->grab());
    }
    return picture;
}

void typeText(const QString& text) {
    for (const QChar c : text) {
        // The focus may move between two characters, as the register fetches it back.
        QWidget* target = keyTarget();
        if (target == nullptr) return;
        if (c.unicode() < 128) {
            QTest::keyClick(target, c.toLatin1());
        } else {
            QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, c, Qt::NoModifier);
        }
    }
}

bool pressKey(const QString& keys) {
    const QKeySequence sequence(keys, QKeySequence::PortableText);
    QWidget* target = keyTarget();
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown || target == nullptr) return false;
    QTest::keyClick(target, sequence[0].key(), sequence[0].keyboardModifiers());
    return true;
}

bool click(QWidget& control) {
    if (!control.isEnabled() || !control.isVisible()) return false;
    QTest::mouseClick(&control, Qt::LeftButton);
    return true;
}

bool chooseItem(QWidget& list, const QString& text) {
    list.setFocus();
    if (auto* combo = qobject_cast<QComboBox*>(&list)) {
        return walkTo(list, combo->count(), text, [&] { return combo->currentText(); });
    }
    auto* view = qobject_cast<QAbstractItemView*>(&list);
    if (view == nullptr || view->model() == nullptr) return false;
    return walkTo(list, view->model()->rowCount(), text, [&] {
        const QModelIndex current = view->currentIndex();
        for (int column = 0; column < view->model()->columnCount(); ++column) {
            if (current.siblingAtColumn(column).data().toString() == text) return text;
        }
        return QString();
    });
}

bool chooseMenu(const QString& text) {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return false;
    for (qsizetype i = 0; i <= menu->actions().size(); ++i) {
        const QAction* action = menu->activeAction();
        if (action != nullptr && QString(action->text()).remove(u'&').section(u'\t', 0, 0) == text) {
            QTest::keyClick(menu, Qt::Key_Return);
            return true;
        }
        QTest::keyClick(menu, Qt::Key_Down);
    }
    return false;
}

} // namespace play::screen
