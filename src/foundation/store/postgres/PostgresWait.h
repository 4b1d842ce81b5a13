#pragma once

#include <store/ServerPatience.h>

#include <QElapsedTimer>

typedef struct pg_conn PGconn;

namespace store {

/// One wait for the server, from its construction to its destruction; tells who sits beside it.
class PostgresWait {
  public:
    PostgresWait(QString server, bool connecting);
    ~PostgresWait();
    PostgresWait(const PostgresWait&) = delete;
    PostgresWait& operator=(const PostgresWait&) = delete;

    /// How long one may sleep until the next look.
    static constexpr std::chrono::milliseconds slice{50};
    /// Silence so far.
    [[nodiscard]] std::chrono::milliseconds waited() const {
        return std::chrono::milliseconds(m_clock.elapsed());
    }
    /// Something came: the silence begins anew.
    void heard() { m_clock.restart(); }
    /// False when somebody gives it up.
    [[nodiscard]] bool goesOn(std::chrono::milliseconds left);
    /// The same after a pause of so long, in which nothing can be heard.
    [[nodiscard]] bool pause(std::chrono::milliseconds length, std::chrono::milliseconds left);

  private:
    ServerPatience* m_patience;
    QString m_server;
    bool m_connecting;
    bool m_asked = false;
    QElapsedTimer m_clock;
};

/// Asks the server, as far as it hears, to stop what the connection has asked for; the connection may be
/// closed meanwhile. True when it has taken the wish within `patience`.
bool askToStop(PGconn* connection, std::chrono::milliseconds patience);

} // namespace store
