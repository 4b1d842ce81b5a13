#include <devices/SerialControl.h>
#include <text/RuntimeError.h>

#include <utility>

using namespace Qt::StringLiterals;

SerialControl::~SerialControl() = default;

void SerialControl::PortOpen(bool open) {
    if (open) {
        m_port.reset();
        m_port = std::make_unique<Port>(u"COM"_s + QString::number(CommPort), Settings);
    } else if (const auto port = std::exchange(m_port, nullptr)) {
        port->close();
    }
}

void SerialControl::Output(const QByteArray& bytes) {
    if (!m_port) throw RuntimeError(52, u"Dateiname oder -nummer falsch: Der Anschluss ist geschlossen"_s);
    m_port->write(bytes);
}
