#include "PortDevice.h"

#include <session/CSystem.h>
#include <session/Globals.h>
#include <text/RuntimeError.h>

#include <QDir>

using namespace Qt::StringLiterals;

namespace devices {

void raiseUnavailable(const QString& path) {
    throw RuntimeError(68, u"Gerät nicht verfügbar: "_s + QDir::toNativeSeparators(path));
}

void raiseDenied(const QString& path) {
    throw RuntimeError(70, u"Zugriff verweigert: "_s + QDir::toNativeSeparators(path));
}

void raiseBroken(const QString& path) {
    throw RuntimeError(57, u"E/A-Fehler beim Gerät: "_s + QDir::toNativeSeparators(path));
}

} // namespace devices

QString PortDevice(const QString& name) {
    const QString upper = (name.endsWith(u':') ? name.chopped(1) : name).toUpper();
    const QStringView digits = QStringView(upper).mid(3);
    bool isNumber = false;
    const int number = digits.toInt(&isNumber);
    const int most = upper.startsWith(u"COM"_s) ? 99 : upper.startsWith(u"LPT"_s) ? 9 : 0;
    if (!isNumber || number < 1 || number > most || !digits.front().isDigit())
        throw RuntimeError(52, u"Dateiname oder -nummer falsch: "_s + name);
    const QString key = upper.first(3) + QString::number(number);
    const QString mapped =
        gSystem ? gSystem->ReadProfileString(u"PORTS"_s, key, KonfigIni()).trimmed() : QString();
    if (!mapped.isEmpty()) return mapped;
    return most == 9 ? devices::platformParallel(number) : devices::platformSerial(number);
}

LineSettings ParseLineSettings(QStringView text) {
    const auto parts = text.split(u',');
    LineSettings settings;
    bool isBaud = false, isData = false, isStop = false;
    if (parts.size() == 4 && parts[1].size() == 1) {
        settings = {.baud = parts[0].toInt(&isBaud),
                    .parity = parts[1].front().toLower().toLatin1(),
                    .dataBits = parts[2].toInt(&isData),
                    .stopBits = parts[3].toInt(&isStop)};
    }
    const bool isParity = settings.parity == 'n' || settings.parity == 'e' || settings.parity == 'o';
    if (!isBaud || !isData || !isStop || !isParity || settings.baud < 1 || settings.dataBits < 5 ||
        settings.dataBits > 8 || settings.stopBits < 1 || settings.stopBits > 2)
        throw RuntimeError(5, u"Ungültige Parameter eines Anschlusses: "_s + text.toString());
    return settings;
}

QString GetPortText(int Port) {
    if (Port >= 1 && Port <= 9) return u"COM%1:9600,n,8,1"_s.arg(Port == 9 ? 8 : Port);
    if (Port == 10 || Port == 11) return u"lpt%1:"_s.arg(Port - 9);
    return {};
}

Port::Port(const QString& name, const std::optional<LineSettings>& settings, PortPatience* patience) {
    const QString path = PortDevice(name);
    if (settings) m_device = devices::openLine(path, *settings, patience);
    if (!m_device) m_device = devices::openPlain(path, patience);
}

Port Port::Open(const QString& text) {
    const qsizetype colon = text.indexOf(u':');
    if (colon < 0 || colon == text.size() - 1) return Port(text);
    return Port(text.first(colon), ParseLineSettings(QStringView(text).sliced(colon + 1)));
}

Port::~Port() = default;

void Port::write(const QByteArray& bytes) {
    if (!m_device) throw RuntimeError(52, u"Dateiname oder -nummer falsch: Der Anschluss ist geschlossen"_s);
    m_device->write(bytes);
}

void Port::close() {
    if (!m_device) return;
    const auto device = std::move(m_device);
    device->finish();
}
