#include "ReceiptPrinter.h"

#include <text/CodePage.h>
#include <text/RuntimeError.h>

#include <QStringList>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace play {

namespace {

const QByteArray cut("\x1bVB\0", 4);
constexpr qsizetype paperWidth = 40;

} // namespace

ReceiptPrinter::ReceiptPrinter() {
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0 || pipe2(m_stop, O_CLOEXEC) != 0) {
        throw RuntimeError(70, u"Es ist kein Pseudo-Terminal für den Bondrucker verfügbar."_s,
                           u"ReceiptPrinter"_s);
    }
    std::array<char, 128> name{};
    if (ptsname_r(m_master, name.data(), name.size()) != 0) RaiseInvalidCall();
    m_device = QString::fromLocal8Bit(name.data());
    // Kept open so that the line lives on between two receipts; raw, so that no byte is translated.
    m_slave = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (m_slave < 0 || tcgetattr(m_slave, &settings) != 0) RaiseInvalidCall();
    cfmakeraw(&settings);
    tcsetattr(m_slave, TCSANOW, &settings);
    m_reader = std::thread([this] { read(); });
}

ReceiptPrinter::~ReceiptPrinter() {
    close(m_stop[1]);
    m_reader.join();
    close(m_stop[0]);
    close(m_slave);
    close(m_master);
}

void ReceiptPrinter::read() {
    std::array<char, 4096> buffer{};
    std::array<pollfd, 2> wait{{{m_master, POLLIN, 0}, {m_stop[0], POLLIN, 0}}};
    while (poll(wait.data(), wait.size(), -1) >= 0 && wait[1].revents == 0) {
        const ssize_t count = ::read(m_master, buffer.data(), buffer.size());
        if (count <= 0) continue;
        const std::lock_guard lock(m_mutex);
        m_bytes.append(buffer.data(), count);
    }
}

std::optional<QByteArray> ReceiptPrinter::takeReceipt() {
    const std::lock_guard lock(m_mutex);
    const qsizetype end = m_bytes.indexOf(cut);
    if (end < 0) return std::nullopt;
    const QByteArray receipt = m_bytes.left(end + cut.size());
    m_bytes.remove(0, receipt.size());
    return receipt;
}

QByteArray ReceiptPrinter::pending() const {
    const std::lock_guard lock(m_mutex);
    return m_bytes;
}

QString receiptText(const QByteArray& bytes) {
    QByteArray plain;
    QStringList lines;
    bool centred = false;
    const auto endLine = [&] {
        const QString text = FromWindows1252(plain);
        lines.append(centred && !text.isEmpty() ? QString((paperWidth - text.size()) / 2, u' ') + text
                                                : text);
        plain.clear();
    };
    bool command = false; // a line that only carried a command leaves no empty line on the paper
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if (c == '\x1b' && i + 1 < bytes.size()) {
            command = true;
            switch (bytes[++i]) {
            case 'a':
                if (++i < bytes.size()) centred = bytes[i] == 1;
                break;
            case '!':
            case 'd':
                ++i;
                break;
            case 'V':
                i += 2;
                break;
            default:
                break; // ESC @ has no argument
            }
        } else if (c == '\n') {
            if (!plain.isEmpty() || !command) endLine();
            command = false;
        } else if (c != '\r') {
            plain.append(c);
        }
    }
    if (!plain.isEmpty()) endLine();
    return lines.join(u'\n') + u'\n';
}

} // namespace play
