#include "PortDevice.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QSerialPort>

namespace devices {
namespace {

class SerialLine : public Port::Device {
  public:
    explicit SerialLine(const QString& path)
        : m_path(path) {
        m_port.setPortName(path);
    }
    /// What was not sent is dropped: closing a line that stands still would wait for it.
    ~SerialLine() override {
        if (m_port.isOpen()) m_port.clear(QSerialPort::Output);
    }

    bool open(const LineSettings& settings) {
        m_port.setBaudRate(settings.baud);
        m_port.setParity(settings.parity == 'e'   ? QSerialPort::EvenParity
                         : settings.parity == 'o' ? QSerialPort::OddParity
                                                  : QSerialPort::NoParity);
        m_port.setDataBits(static_cast<QSerialPort::DataBits>(settings.dataBits));
        m_port.setStopBits(settings.stopBits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop);
        if (m_port.open(QIODevice::WriteOnly)) return true;
        switch (m_port.error()) {
        case QSerialPort::DeviceNotFoundError:
            raiseUnavailable(m_path);
        case QSerialPort::PermissionError:
            raiseDenied(m_path);
        default:
            return false; // no serial line, perhaps something else that takes bytes
        }
    }

    void write(const QByteArray& bytes) override {
        if (m_port.write(bytes) != bytes.size()) raiseBroken(m_path);
        send();
    }

    void finish() override {
        send();
        // Closing puts the parameters back that the line had before, which would garble bytes on their way.
        devices::drainLine(m_port);
        m_port.close();
    }

  private:
    /// The time limit counts from the last byte that went out, so that long receipts may take their time.
    void send() {
        while (m_port.bytesToWrite() > 0) {
            const qint64 before = m_port.bytesToWrite();
            const QDeadlineTimer deadline(stallMs);
            while (m_port.bytesToWrite() == before) {
                const auto left = static_cast<int>(deadline.remainingTime());
                if (left <= 0 || !m_port.waitForBytesWritten(left)) raiseBroken(m_path);
            }
        }
        if (m_port.error() != QSerialPort::NoError) raiseBroken(m_path);
    }

    QString m_path;
    QSerialPort m_port;
};

} // namespace

std::unique_ptr<Port::Device> openLine(const QString& path, const LineSettings& settings) {
    auto line = std::make_unique<SerialLine>(path);
    if (!line->open(settings)) return nullptr;
    return line;
}

} // namespace devices
