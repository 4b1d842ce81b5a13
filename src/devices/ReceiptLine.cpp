#include "PortDevice.h"

#include <devices/ReceiptLine.h>
#include <session/Globals.h>
#include <session/WaitScreen.h>
#include <text/RuntimeError.h>

#include <QCoreApplication>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int tellAfterMs = 2000;
constexpr double longestSeconds = 3600;

/// Waits for the printer and tells the cashier so.
class PrinterPatience : public PortPatience {
  public:
    explicit PrinterPatience(const QString& port)
        : m_port(port) {}
    ~PrinterPatience() override { hide(); }
    PrinterPatience(const PrinterPatience&) = delete;
    PrinterPatience& operator=(const PrinterPatience&) = delete;

    [[nodiscard]] bool GoOn(int stillMs) override {
        if (stillMs < tellAfterMs) {
            hide(); // it goes on
        } else if (m_screen) {
            tell(m_limitMs - stillMs);
            if (QCoreApplication::instance()) QCoreApplication::processEvents();
            m_cancelled = m_cancelled || m_screen->TakeCancel();
        }
        return !m_cancelled && stillMs < m_limitMs;
    }
    [[nodiscard]] bool isCancelled() const { return m_cancelled; }

  private:
    void tell(int leftMs) {
        const QString text =
            u"Der Bondrucker an %1 nimmt nichts an.\nBitte prüfen Sie Papier, Abdeckung und Kabel.\n\n"
            "Die Kasse wartet noch %2 s."_s.arg(m_port)
                .arg(std::max(0, leftMs) / 1000 + 1);
        if (!std::exchange(m_isShown, true))
            m_screen->Begin(u"Bondruck"_s, text);
        else if (text != m_told)
            m_screen->Show(text);
        m_told = text;
    }
    void hide() {
        if (std::exchange(m_isShown, false)) m_screen->End();
    }

    QString m_port, m_told;
    WaitScreen* m_screen = CurrentWaitScreen();
    const int m_limitMs =
        std::max(devices::stallMs, static_cast<int>(std::min(gBonWartezeit, longestSeconds) * 1000));
    bool m_isShown = false, m_cancelled = false;
};

} // namespace

bool SendToReceiptPrinter(const QByteArray& bytes) {
    const QString name = u"COM"_s + QString::number(gPrintDirectIOPort);
    PrinterPatience patience(name);
    try {
        Port port(name, {}, &patience);
        port.write(bytes);
        port.close();
    } catch (const RuntimeError&) {
        if (!patience.isCancelled()) throw;
    }
    return !patience.isCancelled();
}
