#pragma once

#include <zvt/protocol/Apdu.h>
#include <zvt/protocol/SerialFrame.h>

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

/// The terminal's end of the line: a listening socket on 127.0.0.1 or the master of a pseudo-terminal.
class SimulatorLine {
  public:
    explicit SimulatorLine(bool serial)
        : m_serial(serial) {
        if (serial) {
            m_fd = posix_openpt(O_RDWR | O_NOCTTY);
            grantpt(m_fd);
            unlockpt(m_fd);
            m_cable = open(ptsname(m_fd), O_RDWR | O_NOCTTY); // keeps the line alive between two connections
            termios raw{};
            tcgetattr(m_cable, &raw);
            cfmakeraw(&raw);
            tcsetattr(m_cable, TCSANOW, &raw);
            m_name = ptsname(m_fd);
        } else {
            listenAgain();
        }
    }
    [[nodiscard]] const std::string& name() const { return m_name; } ///< port number or device

    /// The next message; nothing when the till hung up or kept silent for `ms`.
    std::optional<zvt::Apdu> read(int ms = 60000) {
        for (;;) {
            if (auto apdu = m_serial ? nextSerial() : m_stream.next()) return apdu;
            if (!fill(ms)) return {};
        }
    }
    void send(const zvt::Apdu& apdu) {
        const QByteArray bytes = apdu.encode();
        if (!m_serial) return raw(bytes);
        const QByteArray frame = zvt::serialFrame(bytes);
        QByteArray damaged = frame;
        damaged[damaged.size() - 1] = static_cast<char>(damaged.back() ^ 0x55);
        for (int attempt = 0; attempt < 3; ++attempt) {
            raw(spoil && attempt == 0 ? damaged : frame);
            m_acknowledged = 0;
            while (m_acknowledged == 0) {
                if (auto early = nextBlock()) m_early = early;
                if (m_acknowledged == 0 && !fill(500)) break;
            }
            if (m_acknowledged > 0) break;
        }
        spoil = false;
    }
    void raw(const QByteArray& bytes) {
        if (m_fd >= 0) (void)!::write(m_fd, bytes.constData(), static_cast<size_t>(bytes.size()));
    }
    /// Hangs up; on a serial line, which cannot, is deaf for a while.
    void hangUp() {
        m_stream.reset();
        m_decoder.reset();
        m_early.reset();
        if (m_serial) {
            usleep(250'000);
            char buffer[512];
            pollfd wanted{m_fd, POLLIN, 0};
            while (poll(&wanted, 1, 0) > 0 && ::read(m_fd, buffer, sizeof buffer) > 0) {
            }
        } else if (m_fd >= 0) {
            close(m_fd);
            m_fd = -1;
        }
    }
    void die() {
        hangUp();
        if (m_listen >= 0) close(m_listen);
        m_listen = -1;
    }
    /// Waits for the till.
    bool connected() {
        if (m_fd >= 0) return true;
        if (m_listen < 0) return false;
        m_fd = accept(m_listen, nullptr, nullptr);
        m_stream.reset();
        return m_fd >= 0;
    }

    bool spoil = false;    ///< the next block leaves with a wrong checksum
    bool complain = false; ///< the next block that comes is refused once

  private:
    void listenAgain() {
        m_listen = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (bind(m_listen, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(m_listen, 4) != 0)
            std::exit(3);
        getsockname(m_listen, reinterpret_cast<sockaddr*>(&address), &size);
        m_name = std::to_string(ntohs(address.sin_port));
    }
    bool fill(int ms) {
        pollfd wanted{m_fd, POLLIN, 0};
        if (m_fd < 0 || poll(&wanted, 1, ms) <= 0) return false;
        char buffer[512];
        const ssize_t count = ::read(m_fd, buffer, sizeof buffer);
        if (count <= 0) {
            hangUp();
            return false;
        }
        const QByteArray bytes(buffer, count);
        if (m_serial)
            m_decoder.feed(bytes);
        else
            m_stream.feed(bytes);
        return true;
    }
    std::optional<zvt::Apdu> nextSerial() { return m_early ? std::exchange(m_early, {}) : nextBlock(); }
    std::optional<zvt::Apdu> nextBlock() {
        using Event = zvt::SerialDecoder::Event;
        for (auto event = m_decoder.next(); event != Event::None; event = m_decoder.next()) {
            if (event == Event::Ack) {
                m_acknowledged = 1;
                return {};
            }
            if (event == Event::Nak) m_acknowledged = -1;
            if (event == Event::Bad) raw(QByteArray(1, zvt::NAK));
            if (event != Event::Frame) continue;
            if (std::exchange(complain, false)) {
                raw(QByteArray(1, zvt::NAK));
                continue;
            }
            raw(QByteArray(1, zvt::ACK));
            return m_decoder.apdu();
        }
        return {};
    }

    bool m_serial;
    int m_fd = -1, m_listen = -1, m_cable = -1, m_acknowledged = 0;
    std::string m_name;
    zvt::StreamDecoder m_stream;
    zvt::SerialDecoder m_decoder;
    std::optional<zvt::Apdu> m_early;
};
