#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// Line parameters in the order of "9600,n,8,1".
struct LineSettings {
    int baud = 9600;
    char parity = 'n'; ///< n, e, o
    int dataBits = 8;  ///< 5 to 8
    int stopBits = 1;  ///< 1 or 2
};

/// The device behind "COM1" to "COM99" and "LPT1" to "LPT9" (in any case, a colon at the end is allowed):
/// what section [PORTS] of konfig.ini names, else the platform's own. Raises 52 for any other name.
[[nodiscard]] QString PortDevice(const QString& name);

/// "9600,n,8,1" read; raises 5 for anything that is no such text.
[[nodiscard]] LineSettings ParseLineSettings(QStringView text);

/// The device text of a port number of the settings: "COM1:9600,n,8,1" for 1, and so on; "lpt1:" and "lpt2:"
/// for 10 and 11; "" for any other. 9 reaches the port 8, as docs/settings.md tells.
[[nodiscard]] QString GetPortText(int Port);

/// What a port asks while its device takes nothing.
class PortPatience {
  public:
    virtual ~PortPatience() = default;
    /// Asked many times a second, with the milliseconds since the last byte went out. False gives the message
    /// up.
    [[nodiscard]] virtual bool GoOn(int stillMs) = 0;
};

/// A port for the time of one message: opened, written, drained, closed. A device that takes no byte for a
/// second is a failure, unless the one who writes brings more patience.
///
///     Port port(u"COM1"_s);
///     port.write(bytes);
///     port.close();
class Port {
  public:
    /// Opens `name`. Without `settings` the line keeps the parameters that are set on the device outside the
    /// program. A path that is no device is a plain file to whose end the bytes go; outside the system's
    /// device folder it is made when missing. Raises 52 name, 68 no such device, 70 no right to it or in use.
    /// `patience` must live as long as the port.
    explicit Port(const QString& name, const std::optional<LineSettings>& settings = {},
                  PortPatience* patience = nullptr);
    /// Gives up what has not been sent yet. Never raises.
    ~Port();
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    /// Hands all bytes over. Raises 57 when the device went away or does not take them, 61 disk full.
    void write(const QByteArray& bytes);
    /// Waits until the device has the last byte, then closes. Raises 57.
    void close();

    /// Opens a device text such as "COM1:9600,n,8,1" or "lpt1:"; without parameters as the constructor does.
    [[nodiscard]] static Port Open(const QString& text);

    class Device;

  private:
    std::unique_ptr<Device> m_device;
};
