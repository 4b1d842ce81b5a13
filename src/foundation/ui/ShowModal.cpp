#include <ui/DialogPlace.h>
#include <ui/ShowModal.h>

#include <QPointer>
#include <QTimer>

#include <utility>

namespace {
ModalHook& hook() {
    static ModalHook current;
    return current;
}
} // namespace

int ShowModal(QDialog& dialog) {
    dialog.setModal(true);
    DialogPlace::prepare(dialog);
    // A copy: what drives the dialog may change the hook.
    if (const ModalHook drive = hook()) return drive(dialog);
    // On a till without a window manager nobody else gives a new window the keyboard.
    QTimer::singleShot(0, &dialog, [&dialog] {
        dialog.raise();
        dialog.activateWindow();
    });
    const QPointer<QWidget> below = dialog.parentWidget();
    const int result = dialog.exec();
    if (below) below->activateWindow(); // nor does anybody give it back then
    return result;
}

ModalHook SetModalHook(ModalHook next) { return std::exchange(hook(), std::move(next)); }
