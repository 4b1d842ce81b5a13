#pragma once

#include "../Engine.h"
#include "SqliteErrors.h"
#include "SqliteFile.h"
#include "SqlitePlace.h"

#include <unordered_set>

struct sqlite3;
struct sqlite3_stmt;

namespace store {

class SqlitePrepared;

class SqliteEngine final : public Engine {
  public:
    enum class Place { Existing, New };
    /// Opens a file or, with ":memory:", a store that lives with the connection. Raises 3024, 3343, 3050,
    /// 3045.
    SqliteEngine(const QString& file, Access access, Place place = Place::Existing);
    ~SqliteEngine() override;
    SqliteEngine(const SqliteEngine&) = delete;
    SqliteEngine& operator=(const SqliteEngine&) = delete;

    void close() noexcept override;
    std::unique_ptr<Prepared> prepare(const QByteArray& sql) override;
    void run(const QByteArray& sql) override;

    qint64 affected() const override;
    qint64 lastKey() const override;
    qint64 structureVersion() override;
    std::optional<qint64> foreignChanges() override;
    bool inTransaction() const override;
    void begin() override;
    void commit() override;
    void rollback() noexcept override;

    qint64 nextAutoNumber(const QString& table) override;
    QByteArray keyColumn() const override { return "_rowid_"; }
    QByteArray identifier(QStringView name) const override { return quoted(name); }
    QByteArray parameter(int number, Type) const override { return '?' + QByteArray::number(number); }
    std::shared_ptr<const jet::Emitter> emitter() const override { return jet::sqliteEmitter(); }
    QString version() const override;
    bool readOnly() const override { return m_access == Access::ReadOnly; }
    bool exclusive() const override { return m_access == Access::Exclusive; }
    bool blank() const override;
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
    void saveCopy(const QString& file) override;

  private:
    friend class SqlitePrepared;
    void openConnection();
    int openHandle(bool immutable);
    void configure();
    void takeHold();
    void refreshIndexes();
    void workOnCopy();
    /// Before anything is written. Raises StoreGone.
    void checkPlace() const;
    [[noreturn]] void raiseLast(int code, SqliteTask task = SqliteTask::Work);
    void finish(std::unique_ptr<Prepared>& slot, const QByteArray& sql);
    [[nodiscard]] qint64 number(const QByteArray& sql);
    [[nodiscard]] QByteArray text(const QByteArray& sql);

    QString m_file;
    Access m_access;
    Place m_place;
    SqlitePlace m_files;
    sqlite3* m_db = nullptr;
    PendingError m_pending;
    bool m_opening = true;
    bool m_network = false;
    std::unique_ptr<UserLock> m_users;
    std::unique_ptr<Prepared> m_structureVersion;
    std::unique_ptr<Prepared> m_nextNumber;
    std::unique_ptr<Prepared> m_begin, m_commit;
    std::unordered_set<SqlitePrepared*> m_statements;
};

} // namespace store
