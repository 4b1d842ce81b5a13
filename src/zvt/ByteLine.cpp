#include "ByteLine.h"

#include <devices/Port.h>
#include <text/RuntimeError.h>

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QSerialPort>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

/// How often waiting looks at what no signal tells, such as a wish to cancel.
constexpr int tickMs = 20;
constexpr int drainMs = 200;

class NetworkLine : public ByteLine {
  public:
    explicit NetworkLine(const TerminalConfig& config)
        : m_config(config) {}
    ~NetworkLine() override { NetworkLine::disconnectNow(); }

    bool connectNow(const std::function<bool()>& stop) override {
        disconnectNow();
        m_socket = std::make_unique<QTcpSocket>();
        for (const auto signal : {&QTcpSocket::connected, &QTcpSocket::disconnected})
            connect(m_socket.get(), signal, this, &ByteLine::changed);
        connect(m_socket.get(), &QTcpSocket::readyRead, this, &ByteLine::changed);
        connect(m_socket.get(), &QTcpSocket::errorOccurred, this, &ByteLine::changed);
        m_socket->connectToHost(m_config.address, static_cast<quint16>(m_config.port));
        const QDeadlineTimer deadline(m_config.connectMs);
        while (m_socket->state() != QAbstractSocket::ConnectedState) {
            const bool failed = m_socket->state() == QAbstractSocket::UnconnectedState;
            if (failed || deadline.hasExpired() || stop()) return false;
            wait(tickMs);
        }
        m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        return true;
    }
    void disconnectNow() override {
        if (!m_socket) return;
        m_socket->disconnect(this);
        m_socket->flush();
        m_socket->close();
        // The last acknowledgement must still go out, so the socket may outlive its use.
        m_socket.release()->deleteLater();
    }
    bool isUp() const override { return m_socket && m_socket->state() == QAbstractSocket::ConnectedState; }
    bool write(const QByteArray& bytes) override {
        if (!isUp() || m_socket->write(bytes) != bytes.size()) return false;
        m_socket->flush();
        return true;
    }
    QByteArray take() override { return m_socket ? m_socket->readAll() : QByteArray(); }

  private:
    TerminalConfig m_config;
    std::unique_ptr<QTcpSocket> m_socket;
};

class SerialPortLine : public ByteLine {
  public:
    explicit SerialPortLine(const TerminalConfig& config)
        : m_config(config) {}
    ~SerialPortLine() override { SerialPortLine::disconnectNow(); }

    bool connectNow(const std::function<bool()>&) override {
        disconnectNow();
        m_port = std::make_unique<QSerialPort>();
        QString path = m_config.device;
        try {
            if (path.startsWith(u"COM"_s, Qt::CaseInsensitive)) path = PortDevice(path);
        } catch (const RuntimeError&) {
            return false; // a name that no port has
        }
        m_port->setPortName(path);
        m_port->setBaudRate(m_config.baud);
        m_port->setStopBits(m_config.stopBits == 1 ? QSerialPort::OneStop : QSerialPort::TwoStop);
        if (!m_port->open(QIODevice::ReadWrite)) return false;
        m_port->clear();
        m_broken = false;
        connect(m_port.get(), &QSerialPort::readyRead, this, &ByteLine::changed);
        connect(m_port.get(), &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
            if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError) return;
            m_broken = true;
            emit changed();
        });
        return true;
    }
    void disconnectNow() override {
        if (!m_port) return;
        m_port->disconnect(this);
        if (m_port->isOpen()) {
            // The last acknowledgement must still go out, but closing a line that stands still would wait for
            // it.
            const bool sent = m_broken || m_port->bytesToWrite() == 0 || m_port->waitForBytesWritten(drainMs);
            if (!sent) m_port->clear(QSerialPort::Output);
        }
        m_port.reset();
    }
    bool isUp() const override { return m_port && m_port->isOpen() && !m_broken; }
    bool write(const QByteArray& bytes) override {
        if (!isUp() || m_port->write(bytes) != bytes.size()) return false;
        m_port->flush();
        return !m_broken;
    }
    QByteArray take() override { return m_port && m_port->isOpen() ? m_port->readAll() : QByteArray(); }

  private:
    TerminalConfig m_config;
    std::unique_ptr<QSerialPort> m_port;
    bool m_broken = false;
};

} // namespace

void ByteLine::wait(int ms) {
    QEventLoop loop;
    connect(this, &ByteLine::changed, &loop, &QEventLoop::quit);
    QTimer::singleShot(std::clamp(ms, 0, tickMs), &loop, &QEventLoop::quit);
    loop.exec();
}

std::unique_ptr<ByteLine> makeNetworkLine(const TerminalConfig& config) {
    return std::make_unique<NetworkLine>(config);
}
std::unique_ptr<ByteLine> makeSerialLine(const TerminalConfig& config) {
    return std::make_unique<SerialPortLine>(config);
}

} // namespace zvt
