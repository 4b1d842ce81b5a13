#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
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
        // Keeps the line alive between two messages.
        m_cable = open(ptsname(m_master), O_RDWR | O_NOCTTY | O_NONBLOCK);
        m_thread = std::thread([this] { run(); });
    }
    ~Pty() {
        m_stop = true;
        goOn();
        m_thread.join();
        close(m_cable);
        if (m_master >= 0) close(m_master);
    }
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] int cable() const { return m_cable; }
    /// From here on the printer takes nothing more, though it stays on the line.
    void hold() {
        m_hold = true;
        const std::lock_guard turn(m_reading); // a read under way is over
    }
    /// It takes what waits for it, and what comes.
    void goOn() {
        {
            const std::lock_guard lock(m_mutex);
            m_hold = false;
        }
        m_changed.notify_all();
    }
    /// Holds the printer and fills the line, so that it takes no byte more.
    void jam() {
        hold();
        const QByteArray much(4096, 'x');
        constexpr int settledMs = 200; // the system moves what it has taken, which makes room
        for (pollfd room{m_cable, POLLOUT, 0}; poll(&room, 1, settledMs) > 0;)
            while (write(m_cable, much.constData(), size_t(much.size())) > 0) {
            }
    }
    /// What has arrived up to now; `size` bytes of it are waited for, at most two seconds. What was sent
    /// before this call and is more than expected is among it.
    [[nodiscard]] QByteArray received(qsizetype size) {
        using namespace std::chrono_literals;
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, 2s, [&] { return m_bytes.size() >= size || m_pulled; });
        // A mark behind all that was sent: when it is here, so is everything else.
        const QByteArray mark("\xFF<end of what was sent>\xFF");
        lock.unlock();
        if (!m_pulled && write(m_cable, mark.constData(), size_t(mark.size())) != mark.size()) return {};
        lock.lock();
        m_changed.wait_for(lock, 2s, [&] { return m_bytes.endsWith(mark) || m_pulled; });
        if (m_bytes.endsWith(mark)) m_bytes.chop(mark.size());
        return std::exchange(m_bytes, {});
    }

  private:
    void run() {
        while (!m_stop) {
            {
                std::unique_lock lock(m_mutex);
                m_changed.wait(lock, [&] { return !m_hold || m_stop; });
            }
            const std::lock_guard turn(m_reading);
            constexpr int turnMs = 10;
            pollfd wanted{m_master, POLLIN, 0};
            if (m_hold || poll(&wanted, 1, turnMs) <= 0) continue;
            char buffer[256];
            const ssize_t count = read(m_master, buffer, sizeof buffer);
            if (count <= 0) continue;
            const std::lock_guard lock(m_mutex);
            m_bytes.append(buffer, count);
            if (m_limit >= 0 && m_bytes.size() >= m_limit) {
                close(m_master);
                m_master = -1;
                m_pulled = m_stop = true;
            }
            m_changed.notify_all();
        }
    }

    qsizetype m_limit;
    int m_master;
    int m_cable = -1;
    QString m_name;
    std::atomic<bool> m_stop = false, m_hold = false, m_pulled = false;
    std::mutex m_reading; ///< held while the far end reads
    std::mutex m_mutex;   ///< of m_bytes
    std::condition_variable m_changed;
    QByteArray m_bytes;
    std::thread m_thread;
};
