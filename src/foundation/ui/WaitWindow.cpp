#include "WaitDialog.h"

#include <ui/WaitWindow.h>

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

namespace {

/// Keeps everybody but one dialog from acting. A timer that is held back comes again.
class Alone : public QObject {
  public:
    explicit Alone(WaitDialog& dialog)
        : m_dialog(dialog) {
        qApp->installEventFilter(this);
    }
    ~Alone() override { qApp->removeEventFilter(this); }
    Alone(const Alone&) = delete;
    Alone& operator=(const Alone&) = delete;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (isOurs(watched)) return false;
            m_dialog.refuse(*static_cast<QKeyEvent*>(event));
            return true;
        case QEvent::Timer:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::KeyRelease:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::Drop:
        case QEvent::Close:
            return !isOurs(watched);
        default:
            return false;
        }
    }

  private:
    [[nodiscard]] bool isOurs(QObject* object) const {
        if (object == &m_dialog || object == m_dialog.windowHandle()) return true;
        for (const QObject* parent = object->parent(); parent; parent = parent->parent())
            if (parent == &m_dialog) return true;
        return false;
    }
    WaitDialog& m_dialog;
};

} // namespace

WaitWindow::WaitWindow() = default;
WaitWindow::~WaitWindow() = default;

void WaitWindow::Begin(const QString& title, const QString& text) {
    m_form = std::make_unique<WaitDialog>(title, QApplication::activeWindow());
    m_form->setText(text);
    m_form->show();
    m_form->raise();
    m_form->activateWindow();
}

void WaitWindow::Show(const QString& text) {
    if (m_form) m_form->setText(text);
}

void WaitWindow::Listen() {
    if (!m_form) return;
    const Alone alone(*m_form);
    QCoreApplication::processEvents();
}

bool WaitWindow::TakeCancel() { return m_form && m_form->takeCancel(); }

void WaitWindow::End() { m_form.reset(); }
