#pragma once

#include <QString>

class QWidget;

/// A line over the upper edge of a window that tells something in passing: it takes no focus, moves nothing
/// that a finger aims at, and goes after some seconds.
void ShowNotice(QWidget& window, const QString& text);
void HideNotice(const QWidget& window);
/// What is shown now, else "".
[[nodiscard]] QString NoticeText(const QWidget& window);
