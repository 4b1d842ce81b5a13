#include "../PortDevice.h"

#include <text/RuntimeError.h>

#include <QFile>
#include <QFileInfo>
#include <QSerialPort>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace devices {
namespace {

/// tcdrain would wait for ever on a device that holds its line; this gives up when nothing moves.
void drain(int file, const QString& path, PortPatience* patience) {
    Standstill still(patience);
    for (int last = -1;;) {
        int queued = 0;
        if (ioctl(file, TIOCOUTQ, &queued) != 0) raiseBroken(path);
        if (queued == 0) return;
        if (queued != last) still.moved();
        if (!still.mayGoOn()) raiseBroken(path);
        last = queued;
        QThread::msleep(5);
    }
}

class PlainDevice : public Port::Device {
  public:
    PlainDevice(const QString& path, PortPatience* patience)
        : m_path(path)
        , m_patience(patience) {
        // Never waits for a carrier, a reader or paper; a pipe whose reader goes away must not end the
        // program.
        static const auto ignored = std::signal(SIGPIPE, SIG_IGN);
        (void)ignored;
        const QByteArray name = QFile::encodeName(path);
        int flags = O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | O_APPEND;
        if (isFilePath(path)) flags |= O_CREAT;
        m_file = ::open(name.constData(), flags, 0644);
        if (m_file < 0) {
            if (errno == EACCES || errno == EPERM || errno == EBUSY || errno == EROFS || errno == EISDIR)
                raiseDenied(path);
            raiseUnavailable(path);
        }
        m_isLine = tcgetattr(m_file, &m_before) == 0;
        if (m_isLine) setRaw();
    }

    ~PlainDevice() override {
        if (m_file < 0) return;
        if (m_isLine) {
            tcflush(m_file, TCOFLUSH); // closing would wait for what stands still
            tcsetattr(m_file, TCSANOW, &m_before);
        }
        ::close(m_file);
    }

    void write(const QByteArray& bytes) override {
        const char* at = bytes.constData();
        qsizetype left = bytes.size();
        while (left > 0) {
            const ssize_t done = ::write(m_file, at, static_cast<size_t>(left));
            if (done > 0) {
                at += done;
                left -= done;
            } else if (done < 0 && errno == EINTR) {
                continue;
            } else if (done < 0 && errno == EAGAIN) {
                waitUntilWritable();
            } else if (done < 0 && (errno == ENOSPC || errno == EDQUOT)) {
                throw RuntimeError(61, u"Datenträger voll: "_s + m_path);
            } else {
                raiseBroken(m_path);
            }
        }
    }

    void finish() override {
        if (m_isLine) drain(m_file, m_path, m_patience);
        if (m_isLine) tcsetattr(m_file, TCSANOW, &m_before);
        const int result = ::close(std::exchange(m_file, -1));
        if (result != 0 && errno != EINTR) raiseBroken(m_path);
    }

  private:
    /// Bytes go out as they are and speed, parity and handshake stay: those are set on the device.
    void setRaw() {
        termios raw = m_before;
        raw.c_oflag &= ~static_cast<tcflag_t>(OPOST);
        raw.c_cflag |= CLOCAL;
        tcsetattr(m_file, TCSANOW, &raw);
    }

    void waitUntilWritable() {
        for (const Standstill still(m_patience);;) {
            pollfd wanted{m_file, POLLOUT, 0};
            const int ready = poll(&wanted, 1, lookMs);
            if (ready > 0 && (wanted.revents & (POLLERR | POLLHUP | POLLNVAL))) raiseBroken(m_path);
            if (ready > 0) return;
            if (ready < 0 && errno != EINTR) raiseBroken(m_path);
            if (!still.mayGoOn()) raiseBroken(m_path);
        }
    }

    QString m_path;
    PortPatience* m_patience;
    int m_file = -1;
    bool m_isLine = false;
    termios m_before{};
};

} // namespace

bool isFilePath(const QString& path) { return !path.startsWith(u"/dev/"_s) && QFileInfo(path).isAbsolute(); }

std::unique_ptr<Port::Device> openPlain(const QString& path, PortPatience* patience) {
    return std::make_unique<PlainDevice>(path, patience);
}

void drainLine(const QSerialPort& line, PortPatience* patience) {
    drain(line.handle(), line.portName(), patience);
}

QString platformSerial(int number) { return u"/dev/ttyS"_s + QString::number(number - 1); }

QString platformParallel(int number) { return u"/dev/lp"_s + QString::number(number - 1); }

} // namespace devices
