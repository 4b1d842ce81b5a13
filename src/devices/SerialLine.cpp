#include "PortDevice.h"

#include <QFileInfo>
#include <QSerialPort>

namespace devices {
namespace {

class SerialLine : public Port::Device {
  public:
    SerialLine(const QString& path, PortPatience* patience)
        : m_path(path)
        , m_patience(patience) {
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
            if (isFilePath(m_path)) return false;
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
        devices::drainLine(m_port, m_patience);
        m_port.close();
    }

  private:
    /// The time limit counts from the last byte that went out, so that long receipts may take their time.
    void send() {
        Standstill still(m_patience);
        while (m_port.bytesToWrite() > 0) {
            const qint64 before = m_port.bytesToWrite();
            if (!m_port.waitForBytesWritten(lookMs) && m_port.error() != QSerialPort::TimeoutError)
                raiseBroken(m_path);
            m_port.clearError();
            if (m_port.bytesToWrite() < before) still.moved();
            if (!still.mayGoOn()) raiseBroken(m_path);
        }
        if (m_port.error() != QSerialPort::NoError) raiseBroken(m_path);
    }

    QString m_path;
    PortPatience* m_patience;
    QSerialPort m_port;
};

} // namespace

std::unique_ptr<Port::Device> openLine(const QString& path, const LineSettings& settings,
                                       PortPatience* patience) {
    auto line = std::make_unique<SerialLine>(path, patience);
    if (!line->open(settings)) return nullptr;
    return line;
}

} // namespace devices
