#pragma once

#include <devices/Port.h>

/// A serial line that a form keeps at hand and opens for the time of one message.
///
///     mainCom.CommPort = 3;
///     mainCom.PortOpen(true);
///     mainCom.Output(bytes);
///     mainCom.PortOpen(false);
class SerialControl {
  public:
    SerialControl() = default;
    ~SerialControl();
    SerialControl(const SerialControl&) = delete;
    SerialControl& operator=(const SerialControl&) = delete;

    int CommPort = 1;      ///< of the next opening, 1 to 99
    LineSettings Settings; ///< likewise

    [[nodiscard]] bool PortOpen() const { return m_port != nullptr; }
    /// Opening: a port that a broken message left open is given up first. Raises what Port raises.
    /// Closing: waits for the last byte; the port is closed whatever is raised.
    void PortOpen(bool open);
    /// Raises 57 when the device does not take the bytes, 52 when the port is closed. It stays open then.
    void Output(const QByteArray& bytes);

  private:
    std::unique_ptr<Port> m_port;
};
