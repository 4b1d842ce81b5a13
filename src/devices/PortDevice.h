#pragma once

#include <devices/Port.h>

class QSerialPort;

/// What stands behind a Port: one open device.
class Port::Device {
  public:
    virtual ~Device() = default;
    virtual void write(const QByteArray& bytes) = 0;
    virtual void finish() = 0; ///< drained and closed
};

namespace devices {

/// A device that takes no byte for so long is taken for dead.
inline constexpr int stallMs = 1000;

/// The platform's path of serial line `number` (from 1) and of parallel port `number`.
[[nodiscard]] QString platformSerial(int number);
[[nodiscard]] QString platformParallel(int number);

/// The device as the system set it up, or a plain file.
[[nodiscard]] std::unique_ptr<Port::Device> openPlain(const QString& path);
/// Waits until the last byte has left an open line; raises 57 when it stands still.
void drainLine(const QSerialPort& line);
/// A serial line with parameters of our own; nullptr when `path` is not one.
[[nodiscard]] std::unique_ptr<Port::Device> openLine(const QString& path, const LineSettings& settings);

[[noreturn]] void raiseUnavailable(const QString& path); ///< 68
[[noreturn]] void raiseDenied(const QString& path);      ///< 70
[[noreturn]] void raiseBroken(const QString& path);      ///< 57

} // namespace devices
