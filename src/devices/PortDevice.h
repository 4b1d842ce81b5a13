#pragma once

#include <devices/Port.h>

#include <QElapsedTimer>

class QSerialPort;

/// What stands behind a Port: one open device.
class Port::Device {
  public:
    virtual ~Device() = default;
    virtual void write(const QByteArray& bytes) = 0;
    virtual void finish() = 0; ///< drained and closed
};

namespace devices {

/// A device that takes no byte for so long is taken for dead where nobody is more patient.
inline constexpr int stallMs = 1000;
/// How often a device that stands still is looked at.
inline constexpr int lookMs = 20;

/// Counts how long a device has stood still.
class Standstill {
  public:
    explicit Standstill(PortPatience* patience)
        : m_patience(patience) {
        moved();
    }
    void moved() { m_since.start(); }
    /// To be asked every lookMs.
    [[nodiscard]] bool mayGoOn() const {
        const auto ms = static_cast<int>(m_since.elapsed());
        return m_patience ? m_patience->GoOn(ms) : ms < stallMs;
    }

  private:
    PortPatience* m_patience;
    QElapsedTimer m_since;
};

/// The platform's path of serial line `number` (from 1) and of parallel port `number`.
[[nodiscard]] QString platformSerial(int number);
[[nodiscard]] QString platformParallel(int number);

/// A path outside the system's device folder: a plain file stands there, or can be made.
[[nodiscard]] bool isFilePath(const QString& path);
/// The device as the system set it up, or a plain file.
[[nodiscard]] std::unique_ptr<Port::Device> openPlain(const QString& path, PortPatience* patience);
/// Waits until the last byte has left an open line; raises 57 when it stands still.
void drainLine(const QSerialPort& line, PortPatience* patience);
/// A serial line with parameters of our own; nullptr when `path` is not one.
[[nodiscard]] std::unique_ptr<Port::Device> openLine(const QString& path, const LineSettings& settings,
                                                     PortPatience* patience);

[[noreturn]] void raiseUnavailable(const QString& path); ///< 68
[[noreturn]] void raiseDenied(const QString& path);      ///< 70
[[noreturn]] void raiseBroken(const QString& path);      ///< 57

} // namespace devices
