#pragma once

#include <zvt/TerminalConfig.h>

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

namespace zvt {

/// Bytes to and from a terminal. Nothing here blocks without the event loop running, and nothing raises.
class ByteLine : public QObject {
    Q_OBJECT

  public:
    /// A fresh connection; False when there is none within the time or `stop` says so.
    [[nodiscard]] virtual bool connectNow(const std::function<bool()>& stop) = 0;
    virtual void disconnectNow() = 0;
    [[nodiscard]] virtual bool isUp() const = 0;
    [[nodiscard]] virtual bool write(const QByteArray& bytes) = 0;
    [[nodiscard]] virtual QByteArray take() = 0; ///< what has come since

    /// Runs the event loop until something happens on the line, at most `ms`.
    void wait(int ms);

  signals:
    void changed();
};

[[nodiscard]] std::unique_ptr<ByteLine> makeNetworkLine(const TerminalConfig& config);
[[nodiscard]] std::unique_ptr<ByteLine> makeSerialLine(const TerminalConfig& config);

} // namespace zvt
