#pragma once

#include "PostgresAddress.h"
#include "PostgresErrors.h"

#include <functional>
#include <libpq-fe.h>
#include <memory>
#include <span>
#include <vector>

namespace store {

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
    /// the last result. Throws LostConnection.
    [[nodiscard]] PostgresResult simple(const QByteArray& texts);
    /// Begins to read row by row; nextRow gives null behind the last. Throws LostConnection.
    void beginRows(const PostgresOrder& run);
    [[nodiscard]] PostgresResult nextRow();
    /// Ends it early, telling the server to stop.
    void endRows() noexcept;
    [[nodiscard]] bool readingRows() const { return m_rows; }

    [[nodiscard]] qint64 roundTrips() const { return m_roundTrips; }
    /// How often another connection has told something on the channel.
    [[nodiscard]] qint64 told() const { return m_told; }
    [[nodiscard]] const PostgresAddress& address() const { return m_address; }
    [[nodiscard]] PGconn* handle() const { return m_connection; }

  private:
    [[nodiscard]] bool send(const PostgresOrder& order);
    void takeNotices();
    void finishRows() noexcept;
    bool tryConnect(ConnectFault& fault);

    PostgresAddress m_address;
    PGconn* m_connection = nullptr;
    quint64 m_epoch = 0;
    qint64 m_roundTrips = 0;
    qint64 m_told = 0;
    bool m_rows = false;
};

} // namespace store
