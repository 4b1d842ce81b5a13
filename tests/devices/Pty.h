#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <thread>
#include <unistd.h>

/// A printer at the end of a serial line: a pseudo-terminal whose far end is read by a thread.
class Pty {
  public:
    /// With `limit` the printer is pulled out of the line once it has that many bytes.
    explicit Pty(qsizetype limit = -1)
        : m_limit(limit)
        , m_master(posix_openpt(O_RDWR | O_NOCTTY)) {
        grantpt(m_master);
        unlockpt(m_master);
        m_name = QString::fromLocal8Bit(ptsname(m_master));
        m_cable = open(ptsname(m_master), O_RDWR | O_NOCTTY); // keeps the line alive between two messages
        m_thread = std::thread([this] { run(); });
    }
    ~Pty() {
        m_stop = true;
        m_thread.join();
        close(m_cable);
        if (m_master >= 0) close(m_master);
    }
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] int cable() const { return m_cable; }
    /// From here on the printer takes nothing more, though it stays on the line.
    void hold() { m_hold = true; }
    /// What has arrived; waits until `size` bytes are there, at most two seconds.
    [[nodiscard]] QByteArray received(qsizetype size) {
        for (int i = 0; i < 400; ++i) {
            {
                const std::lock_guard lock(m_mutex);
                if (m_bytes.size() >= size) break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        // What comes beyond the expected would be a fault, so it gets the time to arrive.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_bytes, {});
    }

  private:
    void run() {
        while (!m_stop) {
            pollfd wanted{m_master, POLLIN, 0};
            if (m_hold || poll(&wanted, 1, 10) <= 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                continue;
            }
            char buffer[256];
            const ssize_t count = read(m_master, buffer, sizeof buffer);
            if (count <= 0) continue;
            const std::lock_guard lock(m_mutex);
            m_bytes.append(buffer, count);
            if (m_limit >= 0 && m_bytes.size() >= m_limit) {
                close(m_master);
                m_master = -1;
                return;
            }
        }
    }

    qsizetype m_limit;
    int m_master;
    int m_cable = -1;
    QString m_name;
    std::atomic<bool> m_stop = false, m_hold = false;
    std::mutex m_mutex;
    QByteArray m_bytes;
    std::thread m_thread;
};
