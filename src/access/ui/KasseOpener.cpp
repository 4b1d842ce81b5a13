#include <access/KassenStart.h>
#include <access/ui/KasseOpener.h>
#include <access/ui/frmKasseWechselGeld.h>
#include <ui/Pointer.h>
#include <ui/ShowModal.h>

namespace {

void askWechselGeld() {
    frmKasseWechselGeld dialog;
    ShowModal(dialog);
}

} // namespace

KasseOpener::KasseOpener(KasseFactory factory, QObject* parent)
    : QObject(parent)
    , m_factory(std::move(factory)) {}

void KasseOpener::StartKasse() {
    PrepareStartKasse(&askWechselGeld);
    show();
}

void KasseOpener::OpenKasse() {
    if (PrepareOpenKasse(&askWechselGeld)) show();
}

bool KasseOpener::isOpen() const { return !m_kasse.isNull() && m_kasse->isVisible(); }

bool KasseOpener::close() {
    if (isOpen()) m_kasse->close();
    return !isOpen();
}

void KasseOpener::show() {
    const WaitCursor wait;
    if (!isOpen()) {
        if (!m_kasse.isNull()) m_kasse->deleteLater();
        // A register with an open sale may outlive the forms that opened it.
        m_kasse = m_factory([opener = QPointer<KasseOpener>(this)] {
            if (opener) emit opener->Unloaded();
        });
        if (m_kasse.isNull()) return;
        m_kasse->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_kasse->raise();
    m_kasse->activateWindow();
}
