#include <ui/Pointer.h>

#include <QApplication>
#include <QCursor>
#include <QScreen>

void MovePointerAway() {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen != nullptr) QCursor::setPos(screen->geometry().bottomRight() - QPoint(1, 1));
}

WaitCursor::WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
WaitCursor::~WaitCursor() { QApplication::restoreOverrideCursor(); }
