#include "../PortDevice.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace devices {
namespace {

/// A device addressed like a file. The system's own time limits of the port hold.
class PlainDevice : public Port::Device {
  public:
    explicit PlainDevice(const QString& path)
        : m_file(path) {
        if (m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) return;
        if (m_file.error() == QFileDevice::PermissionsError) raiseDenied(path);
        raiseUnavailable(path);
    }
    void write(const QByteArray& bytes) override {
        if (m_file.write(bytes) != bytes.size()) raiseBroken(m_file.fileName());
    }
    void finish() override {
        if (!m_file.flush()) raiseBroken(m_file.fileName());
        m_file.close();
    }

  private:
    QFile m_file;
};

} // namespace

bool isFilePath(const QString& path) {
    return !path.startsWith(u"\\\\.\\"_s) && QFileInfo(path).isAbsolute();
}

std::unique_ptr<Port::Device> openPlain(const QString& path, PortPatience*) {
    return std::make_unique<PlainDevice>(path);
}

void drainLine(const QSerialPort&, PortPatience*) {} // closing waits for the last byte

QString platformSerial(int number) { return u"\\\\.\\COM"_s + QString::number(number); }

QString platformParallel(int number) { return u"\\\\.\\LPT"_s + QString::number(number); }

} // namespace devices
