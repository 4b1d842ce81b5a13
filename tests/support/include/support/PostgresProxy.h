#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// Stands between a till and its PostgreSQL server on the loopback: slows the line down, cuts it or falls
/// silent at a chosen statement, refuses connections, or takes them and never answers. It runs in a thread of
/// its own and listens from its construction on. The connection must be without TLS.
///
///     PostgresProxy proxy(server.port());
///     auto db = Database::OpenDatabase(server.uri(u"laden"_s, proxy.port()));
///     proxy.cut(PostgresProxy::Cut::BeforeAnswer, "INSERT INTO \"Bestellung\"");
///     ... // the row is written, but the till does not hear of it
class PostgresProxy {
  public:
    explicit PostgresProxy(quint16 serverPort);
    ~PostgresProxy();
    PostgresProxy(const PostgresProxy&) = delete;
    PostgresProxy& operator=(const PostgresProxy&) = delete;

    [[nodiscard]] quint16 port() const { return m_port; }

    /// Added to every way there and back together; half of it in each direction.
    void setDelay(std::chrono::microseconds roundTrip);
    enum class Cut {
        BeforeSending, ///< the server never sees the statement
        BeforeAnswer   ///< the server has done it and the answer is lost
    };
    /// Cuts the connection at the next execution of a statement whose text contains `statement` (without
    /// case), after `passed` others of the kind went through. Once.
    enum class After {
        Accept,
        Close, ///< as refuse() from then on
        Deny   ///< as deny()
    };
    void cut(Cut where, const QByteArray& statement, int passed = 0, After after = After::Accept);
    /// The same, but the line stays open: from then on nothing more comes through it, in neither direction.
    void hush(Cut where, const QByteArray& statement, int passed = 0);
    [[nodiscard]] bool hasCut() const; ///< what cut() or hush() ordered has happened
    /// Ends all connections at once.
    void cutAll();
    /// While on, new connections are closed before they have begun.
    void refuse(bool on) { m_refuse = on; }
    /// While on, new connections are told that they may not enter: no till tries that again.
    void deny(bool on) { m_deny = on; }
    /// While on, all lines are silent, and new connections are taken and never answered. Those that met the
    /// silence stay silent behind it.
    void setSilent(bool on);
    /// How often a till waited for the server so far.
    [[nodiscard]] int roundTrips() const { return m_roundTrips; }

  private:
    class Line;
    struct Order {
        Cut where;
        QByteArray statement;
        int passed;
        After after;
        bool silently;
    };
    void place(Order order);

    void work();
    void accept();
    void wake() const;
    /// What is to be done with an execution of this statement.
    [[nodiscard]] std::optional<Order> judge(const QByteArray& statement);

    quint16 m_serverPort;
    quint16 m_port = 0;
    int m_listener = -1;
    int m_wake[2] = {-1, -1};
    std::atomic<bool> m_stop = false, m_refuse = false, m_deny = false, m_cutAll = false, m_silent = false;
    std::atomic<int> m_roundTrips = 0;
    std::atomic<qint64> m_halfDelay = 0; ///< microseconds
    mutable std::mutex m_mutex;          ///< guards m_order
    std::optional<Order> m_order;
    std::vector<std::unique_ptr<Line>> m_lines; ///< of the thread
    std::thread m_thread;
};
