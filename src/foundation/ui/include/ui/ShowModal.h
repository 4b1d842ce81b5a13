#pragma once

#include <QDialog>

#include <functional>

/// Shows a dialog and waits for its end: the only way to do so. The dialog's result (accepted or rejected).
///
///     frmKasseRabatt dialog(this);
///     ShowModal(dialog);
///     if (gRabattAngabe.Ergebnis == 0) return;
int ShowModal(QDialog& dialog);

/// Replaces the waiting: a test or a scripted run drives the dialog instead of a person and returns its
/// result. An empty function brings the person back. Returns the hook before.
using ModalHook = std::function<int(QDialog&)>;
ModalHook SetModalHook(ModalHook hook);
