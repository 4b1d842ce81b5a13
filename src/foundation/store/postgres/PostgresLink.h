#pragma once

#include "PostgresAddress.h"
#include "PostgresErrors.h"

#include <QElapsedTimer>

#include <functional>
#include <libpq-fe.h>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace store {

class PostgresWait;

using PostgresResult = std::unique_ptr<PGresult, decltype(&PQclear)>;

/// The values of a statement's parameters in text form.
struct PostgresValues {
    std::vector<QByteArray> texts;
    std::vector<bool> given; ///< false: Null
    [[nodiscard]] std::vector<const char*> pointers() const;
};

/// One thing of several that travel to the server together.
struct PostgresOrder {
    enum class Kind { Text, Prepare, Run } kind = Kind::Text;
    QByteArray text;                        ///< Text and Prepare
    QByteArray name;                        ///< Prepare and Run
    const PostgresValues* values = nullptr; ///< Run
    std::span<const unsigned> types;        ///< Prepare
};

/// The wire to the server: connects, sends, receives, counts round trips. Knows nothing about what is asked.
class PostgresLink {
  public:
    explicit PostgresLink(PostgresAddress address);
    ~PostgresLink();
    PostgresLink(const PostgresLink&) = delete;
    PostgresLink& operator=(const PostgresLink&) = delete;

    /// Connects, or does so anew; tries again for so long while that may help. Raises what raiseConnect
    /// tells.
    void connect(int milliseconds);
    void close() noexcept;
    /// Looks, without asking the server, whether the connection still stands.
    [[nodiscard]] bool alive();
    /// Grows with every connection: what was prepared on an older one is gone.
    [[nodiscard]] quint64 epoch() const { return m_epoch; }

    /// Sends all and gives the results in order; the first that failed leaves those behind it undone. Throws
    /// LostConnection.
    [[nodiscard]] std::vector<PostgresResult> roundTrip(std::span<const PostgresOrder> orders);
    /// Texts without parameters separated by semicolons, one transaction unless they tell otherwise. Gives
    /// the last result, or that of a COPY which is open then. Throws LostConnection.
    [[nodiscard]] PostgresResult simple(const QByteArray& texts);
    /// Begins to read row by row; nextRow gives null behind the last. Throws LostConnection.
    void beginRows(const PostgresOrder& run);
    [[nodiscard]] PostgresResult nextRow();
    /// Ends it early, telling the server to stop. A server that does not hear costs the connection.
    void endRows() noexcept;
    [[nodiscard]] bool readingRows() const { return m_rows; }
    /// True while an answer is waited for: who lets events run meanwhile may come here a second time.
    [[nodiscard]] bool waiting() const { return m_waiting; }

    /// Sends more of what an opened COPY takes; false when the server refuses it, as copied() tells. Throws
    /// LostConnection.
    [[nodiscard]] bool copy(const QByteArray& bytes);
    /// Ends the COPY, with a fault so that nothing of it stays, and gives its result. Throws LostConnection.
    PostgresResult copied(const char* fault = nullptr);

    /// How the last wait was given up, for a moment after it: what the same click still wants to ask must not
    /// make it wait again.
    [[nodiscard]] std::optional<Ended> justGivenUp() const;

    [[nodiscard]] qint64 roundTrips() const { return m_roundTrips; }
    /// How often another connection has told something on the channel.
    [[nodiscard]] qint64 told() const { return m_told; }
    [[nodiscard]] const PostgresAddress& address() const { return m_address; }
    [[nodiscard]] PGconn* handle() const { return m_connection; }

  private:
    [[nodiscard]] bool send(const PostgresOrder& order);
    void takeNotices();
    void finishRows();
    enum class Until { Sent, Answered };
    /// Waits until everything is sent, or the library can give the next result at once; a connection that
    /// broke counts as either. Throws LostConnection when the server is given up.
    void await(Until until);
    [[nodiscard]] PostgresResult nextResult();
    [[noreturn]] void giveUp(Ended how); ///< throws LostConnection
    [[noreturn]] void refuse(Ended how); ///< raises 3151
    bool tryConnect(ConnectFault& fault, PostgresWait& wait);

    PostgresAddress m_address;
    PGconn* m_connection = nullptr;
    quint64 m_epoch = 0;
    qint64 m_roundTrips = 0;
    qint64 m_told = 0;
    bool m_rows = false;
    bool m_waiting = false;
    QString m_server;
    Ended m_givenUp = Ended::Cut;
    QElapsedTimer m_sinceGivenUp;
};

} // namespace store
