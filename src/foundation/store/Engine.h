#pragma once

#include <jet/Translator.h>
#include <text/RuntimeError.h>
#include <text/Value.h>

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// What the store asks of a database engine. One class per engine; callers never ask which one it is.
namespace store {

struct IndexDefinition {
    QString name;
    std::vector<std::pair<QString, bool>> columns; ///< name, descending
    bool unique = false;
    bool primary = false;
    [[nodiscard]] bool covers(QStringView column) const;
};

struct TableDefinition {
    jet::Table table;
    std::vector<IndexDefinition> indexes;
    [[nodiscard]] const jet::Column* autoNumber() const;
};

/// How a store is opened: shared with the other tills, alone, or so that nothing can be written.
enum class Access { Shared, Exclusive, ReadOnly };

/// A prepared statement. It is never left open: a reader that stays open would keep an old view of the store
/// and make a later write fail once another till has written. `Running` resets it whatever happens.
class Prepared {
  public:
    virtual ~Prepared() = default;
    /// The next run hands its rows over as they come instead of keeping them all; until it is reset nothing
    /// else may use the engine.
    virtual void stream() {}
    /// The statement may run a second time without harm when nobody knows whether the first one arrived.
    virtual void allowRepeat() {}
    /// Parameters count from 1.
    virtual void bind(int parameter, const Value& value) = 0; ///< by its meaning, see jet::encode
    virtual void bindInteger(int parameter, qint64 value) = 0;
    /// True for a row, false when done.
    [[nodiscard]] virtual bool step() = 0;
    virtual void reset() noexcept = 0;
    [[nodiscard]] virtual int columnCount() const = 0;
    [[nodiscard]] virtual qint64 integer(int column) const = 0;
    [[nodiscard]] virtual Value value(int column, Type type) const = 0;
    /// How often the engine had to prepare the text anew because the structure changed.
    [[nodiscard]] virtual int reprepared() const = 0;
};

class Running {
  public:
    explicit Running(Prepared& statement)
        : m_statement(statement) {}
    ~Running() { m_statement.reset(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    [[nodiscard]] bool step() { return m_statement.step(); }
    Prepared* operator->() { return &m_statement; }

  private:
    Prepared& m_statement;
};

/// Takes many rows of one table inside the open transaction.
class RowSink {
  public:
    virtual ~RowSink() = default;
    /// One value for each column in ordinal order, already of the column's type. What is wrong with a row may
    /// be told as late as `finish`.
    virtual void add(const std::vector<Value>& row) = 0;
    /// Brings what is still held back to the store; nothing may be added afterwards.
    virtual void finish() = 0;
};

class Engine {
  public:
    virtual ~Engine() = default;

    /// Ends the connection; prepared statements that still exist become empty.
    virtual void close() noexcept = 0;
    [[nodiscard]] virtual std::unique_ptr<Prepared> prepare(const QByteArray& sql) = 0;
    /// Runs writes whose parameters are bound as one: all of them or none. Each stands in the list once.
    virtual void runTogether(std::span<Prepared* const> statements);
    /// Runs texts without parameters, several separated by semicolons.
    virtual void run(const QByteArray& sql) = 0;

    [[nodiscard]] virtual qint64 affected() const = 0;   ///< rows changed by the last write
    [[nodiscard]] virtual qint64 lastKey() const = 0;    ///< row key of the last insert
    [[nodiscard]] virtual qint64 structureVersion() = 0; ///< changes with the structure, whoever changed it
    /// True when the engine was told, without being asked, that the structure may have changed since
    /// structureVersion() was last read.
    [[nodiscard]] virtual bool heardOfChange() { return false; }
    /// The structure as it stands now; errors are told in its names.
    virtual void structureKnown(const std::vector<const TableDefinition*>&) {}
    /// Inside a transaction: nobody else changes the structure until it ends. Raises 3260.
    virtual void lockStructure() {}
    [[nodiscard]] virtual bool inTransaction() const = 0;
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() noexcept = 0;

    /// Takes the next AutoNumber so that no other process gets it; survives as long as any process that saw
    /// it.
    [[nodiscard]] virtual qint64 nextAutoNumber(const QString& table) = 0;
    /// The column that names a row for good, e.g. "_rowid_".
    [[nodiscard]] virtual QByteArray keyColumn() const = 0;
    /// A name of the catalogue, and a parameter, as the texts that the store makes itself write them.
    [[nodiscard]] virtual QByteArray identifier(QStringView name) const = 0;
    [[nodiscard]] virtual QByteArray parameter(int number, Type type = Type::Null) const = 0;
    /// Behind a row key: it is one of those that parameter `number` tells, a text "{1,2,3}". For distant
    /// engines.
    [[nodiscard]] virtual QByteArray amongKeys(int number) const { return " IN (" + parameter(number) + ')'; }
    /// Stands behind an INSERT of one row whose key lastKey() is to tell.
    [[nodiscard]] virtual QByteArray returningKey() const { return {}; }
    /// True when each statement travels through a network: rows are then read together with their keys, and
    /// expressions without a table are worked out here.
    [[nodiscard]] virtual bool distant() const { return false; }
    /// Questions that travelled to a server and back so far.
    [[nodiscard]] virtual qint64 roundTrips() const { return 0; }
    /// Changes when another connection has written, whatever it wrote; nullopt where nobody can tell.
    [[nodiscard]] virtual std::optional<qint64> foreignChanges() { return std::nullopt; }
    [[nodiscard]] virtual std::shared_ptr<const jet::Emitter> emitter() const = 0;
    [[nodiscard]] virtual QString version() const = 0;
    [[nodiscard]] virtual bool readOnly() const = 0;
    [[nodiscard]] virtual bool exclusive() const = 0;
    /// A German sentence for the start-up when the store stands where it is not safe, else empty.
    [[nodiscard]] virtual QString warning() const = 0;

    /// Removes the store with everything in it, and ends the connection. Needs an exclusive one.
    virtual void destroy() = 0;
    /// True for a store that came into being with the connection and has nothing in it yet.
    [[nodiscard]] virtual bool blank() const { return false; }
    /// Makes the store's own tables (settings and catalogue) and marks the place as ours.
    virtual void furnish() = 0;
    virtual void createTable(const TableDefinition& table) = 0;
    /// Copies rows into the rebuilt table and puts it in the old one's place, row keys and counter included.
    /// `source` gives for each new column the old one's name, or "".
    virtual void rebuild(const TableDefinition& from, const TableDefinition& to,
                         const std::vector<QString>& source) = 0;
    virtual void dropTable(const QString& table) = 0;

    /// For rows that come by the thousand. Destroyed without `finish`, the rows may be there or not.
    [[nodiscard]] virtual std::unique_ptr<RowSink> rowSink(const TableDefinition& table) = 0;
    /// The highest AutoNumber given so far or standing in the table, deleted rows included; 0 for none.
    [[nodiscard]] virtual qint64 counter(const TableDefinition& table) = 0;
    /// `last` counts as given; never sets the counter below a number that stands in the table.
    virtual void setCounter(const TableDefinition& table, qint64 last) = 0;

    /// Writes a whole copy of the store into a new file. Raises 3251 where there is no such way.
    virtual void saveCopy(const QString& file);
};

/// A name as identifier of the engines' SQL.
[[nodiscard]] QByteArray quoted(QStringView name);
/// "Long", "Text", ... as the catalogue keeps them, and back (Null for anything else).
[[nodiscard]] QString typeName(Type type);
[[nodiscard]] Type typeNamed(QStringView name);

} // namespace store
