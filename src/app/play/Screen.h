#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

namespace play::screen {

/// The window that takes the keys now: an open menu, else the modal dialog, else the active window.
[[nodiscard]] QWidget* front();
/// A visible control of that name in `window`, or the window itself; nullptr when there is none.
[[nodiscard]] QWidget* find(QWidget* window, const QString& name);
/// What a control shows: its text, or its current item.
[[nodiscard]] QString textOf(const QWidget& control);
/// All visible windows one above the other.
[[nodiscard]] QPixmap picture();

/// Each sends real key or mouse events and returns false when the control cannot take them.
void typeText(const QString& text);
[[nodiscard]] bool pressKey(const QString& keys); ///< "F10", "Ctrl+F1"
[[nodiscard]] bool click(QWidget& control);
[[nodiscard]] bool chooseItem(QWidget& list, const QString& text);
[[nodiscard]] bool chooseMenu(const QString& text);

} // namespace play::screen
