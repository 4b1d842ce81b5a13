#pragma once

#include "../Engine.h"
#include "PostgresLink.h"

#include <unordered_set>

namespace store {

class PostgresPrepared;

/// A store in one schema of a PostgreSQL database.
///
/// Outside a transaction a lost connection is made anew by itself. What reads is then asked again; what
/// writes is sent again when it certainly never arrived, or when a second time does no harm, else raises
/// 3157.
class PostgresEngine final : public Engine {
  public:
    enum class Place { Existing, New };
    /// Raises 3151, 3024, 3031, 3029 when the server lets nobody in, 3011 for an empty place, 3343 for
    /// somebody else's, 3045 when it is in use.
    PostgresEngine(PostgresAddress address, Access access, Place place = Place::Existing);
    ~PostgresEngine() override;
    PostgresEngine(const PostgresEngine&) = delete;
    PostgresEngine& operator=(const PostgresEngine&) = delete;

    void close() noexcept override;
    std::unique_ptr<Prepared> prepare(const QByteArray& sql) override;
    void runTogether(std::span<Prepared* const> statements) override;
    void run(const QByteArray& sql) override;

    qint64 affected() const override { return m_affected; }
    qint64 lastKey() const override { return m_lastKey; }
    qint64 structureVersion() override;
    bool heardOfChange() override;
    void structureKnown(const std::vector<const TableDefinition*>& tables) override;
    void lockStructure() override;
    bool inTransaction() const override { return m_transaction; }
    void begin() override;
    void commit() override;
    void rollback() noexcept override;

    qint64 nextAutoNumber(const QString& table) override;
    QByteArray keyColumn() const override { return "\"_rowid_\""; }
    QByteArray identifier(QStringView name) const override { return jet::postgresName(name); }
    QByteArray parameter(int number, Type type) const override;
    QByteArray amongKeys(int number) const override {
        return "=ANY($" + QByteArray::number(number) + "::text::bigint[])";
    }
    QByteArray returningKey() const override { return " RETURNING \"_rowid_\""; }
    bool distant() const override { return true; }
    qint64 roundTrips() const override;
    std::shared_ptr<const jet::Emitter> emitter() const override;
    QString version() const override;
    bool readOnly() const override { return m_access == Access::ReadOnly; }
    bool exclusive() const override { return m_access == Access::Exclusive; }
    QString warning() const override;

    void furnish() override;
    void destroy() override;
    void createTable(const TableDefinition& table) override;
    void rebuild(const TableDefinition& from, const TableDefinition& to,
                 const std::vector<QString>& source) override;
    void dropTable(const QString& table) override;

    std::unique_ptr<RowSink> rowSink(const TableDefinition& table) override;
    qint64 counter(const TableDefinition& table) override;
    void setCounter(const TableDefinition& table, qint64 last) override;

  private:
    friend class PostgresPrepared;

    // For prepared statements.
    [[nodiscard]] QByteArray nextName() { return 's' + QByteArray::number(++m_names); }
    void start(PostgresPrepared& statement);
    [[nodiscard]] PostgresResult nextRow(PostgresPrepared& statement, bool first);
    void endRows() noexcept;
    void forget(PostgresPrepared& statement) noexcept;

    /// Makes sure that there is a connection, outside a transaction a new one if need be.
    void ready();
    void reconnect();
    void tellYear();
    [[noreturn]] void lost(const LostConnection& how, bool writes);
    using Statements = std::span<PostgresPrepared* const>;
    /// Sends them in one trip; outside a transaction they are one. Makes the connection anew where that is
    /// harmless.
    void send(Statements statements);
    /// One try; false when a text has to be prepared anew first.
    [[nodiscard]] bool trySending(Statements statements, bool mayPrepareAnew);
    void startStream(PostgresPrepared& statement);
    void take(PostgresPrepared& statement, PostgresResult result);
    /// Runs texts and gives the last result, raising what failed.
    PostgresResult ask(const QByteArray& sql);
    [[nodiscard]] qint64 number(const QByteArray& sql);

    // What the place is, and what every connection begins with.
    enum class State { Ours, Empty, Foreign };
    [[nodiscard]] State lookAround();
    void setUp();
    void takeHold();
    void install();
    void addConverted(const TableDefinition& from, const jet::Column& to, const QString& source,
                      const QByteArray& passing);
    void noteStructureChange();

    PostgresLink m_link;
    Access m_access;
    Place m_place;
    QByteArray m_schema;
    bool m_schemaMissing = false;
    bool m_opening = true;

    bool m_transaction = false;
    bool m_broken = false; ///< the transaction went with its connection; its end is still to come
    bool m_patient = true; ///< the next reconnecting may wait a while
    qint64 m_affected = 0;
    qint64 m_lastKey = 0;
    qint64 m_toldSeen = 0;
    bool m_reconnected = false;
    quint64 m_names = 0;
    Counters m_counters;
    int m_yearTold = 0;
    PostgresPrepared* m_streaming = nullptr;
    std::vector<QByteArray> m_discarded; ///< names that the server may forget
    std::unique_ptr<Prepared> m_structureVersion;
    std::unique_ptr<Prepared> m_nextNumber;
    std::unordered_set<PostgresPrepared*> m_statements;
};

} // namespace store
