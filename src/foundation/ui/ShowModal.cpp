#include <ui/ShowModal.h>

#include <utility>

namespace {
ModalHook& hook() {
    static ModalHook current;
    return current;
}
} // namespace

int ShowModal(QDialog& dialog) {
    dialog.setModal(true);
    // A copy: what drives the dialog may change the hook.
    if (const ModalHook drive = hook()) return drive(dialog);
    return dialog.exec();
}

ModalHook SetModalHook(ModalHook next) { return std::exchange(hook(), std::move(next)); }
