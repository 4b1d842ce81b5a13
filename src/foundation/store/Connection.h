#pragma once

#include "Catalogue.h"
#include "Engine.h"

#include <QCache>
#include <QHash>
#include <QStringList>

#include <map>

namespace store {

/// A translated statement together with what has been prepared for it so far. Plans are shared by all
/// recordsets of the same shape, since nothing prepared is ever left open.
struct Plan {
    std::shared_ptr<const jet::Statement> statement;
    quint64 generation = 0; ///< of the structure it was translated for
    std::unique_ptr<Prepared> main;
    std::unique_ptr<Prepared> keys;    ///< the next chunk of a dynaset's keys
    std::unique_ptr<Prepared> chunks;  ///< the same with the rows
    std::unique_ptr<Prepared> row;     ///< one row of a dynaset by its key
    std::unique_ptr<Prepared> rows;    ///< several of them
    std::unique_ptr<Prepared> arrived; ///< whether there is a row with a key
    std::unique_ptr<Prepared> remove;
    std::map<std::vector<bool>, std::unique_ptr<Prepared>> inserts,
        updates;                                 ///< by the columns that are written
    QHash<QString, std::shared_ptr<Plan>> finds; ///< by the shape of the criteria
    std::shared_ptr<const TableDefinition> base; ///< of a dynaset
    std::vector<int> baseColumns; ///< for each result column its place in the base table, -1 for none
    bool rowHasLiterals = false;
    struct Default {
        Value value;
        bool present = false;
        bool constant = false;
    };
    std::vector<Default> defaults; ///< for each base column; filled by the first AddNew

    std::vector<std::shared_ptr<const qint64>> changes; ///< of the tables that are read
    /// Grows when this connection writes to a table that is read here.
    [[nodiscard]] qint64 changeCount() const {
        qint64 sum = 0;
        for (const auto& count : changes)
            sum += *count;
        return sum;
    }
};

/// The heart of a Database: engine, structure, translation and the cache of plans. Recordsets share it, so
/// that they can tell 3420 when the Database is gone.
class Connection {
  public:
    explicit Connection(std::unique_ptr<Engine> engine);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void close() noexcept;
    /// Raises 3420 after close.
    Engine& engine() const;
    [[nodiscard]] const Catalogue& catalogue() const { return m_catalogue; }
    [[nodiscard]] const jet::Translator& translator() const { return *m_translator; }
    [[nodiscard]] quint64 generation() const { return m_generation; }

    /// The plan for a text, translated only when its shape is new; `literals` are those of this text.
    [[nodiscard]] std::shared_ptr<Plan> plan(const QString& sql, std::vector<Value>& literals);
    [[nodiscard]] std::shared_ptr<Plan> findPlan(Plan& dynaset, std::size_t dynasetLiterals,
                                                 const QString& criteria,
                                                 std::vector<Value>& criteriaLiterals);
    /// Puts the literals into the prepared text that belongs to the plan's statement.
    void bind(Prepared& prepared, const jet::Statement& statement, const std::vector<Value>& literals) const;
    /// A row of a table with an AutoNumber was written: the number is what @@IDENTITY answers.
    void numberGiven(qint64 number) { m_identity = number; }
    [[nodiscard]] Prepared& prepared(std::unique_ptr<Prepared>& slot, const QByteArray& sql) const;

    /// Runs what gives no rows; the number of rows affected. Raises 3065 for a Select.
    qint64 execute(const QString& sql);
    /// Runs several of them as one; raises 3065 for a Select, 3219 for a change of structure.
    void executeTogether(const QStringList& texts);
    /// Steps a prepared write to its end.
    static void finish(Prepared& prepared);
    /// The same, and looks at the structure when the engine met a changed one.
    void finishNoticing(Prepared& prepared);
    /// Looks whether another process changed the structure; true when everything that was translated is void.
    bool refreshStructure();
    /// The same when the engine was told of a change; asks nobody otherwise.
    void noticeChange();
    /// Something here writes to the table: rows read from it before are old.
    void tableChanges(const QString& table) { ++*changesOf(table); }

    /// What a new row gets in this column; evaluated now when it is no constant.
    [[nodiscard]] Plan::Default defaultOf(const jet::Column& column);

    // Changes of structure, each in one transaction.
    void createTable(TableDefinition table);
    void dropTable(const QString& table);
    /// `source` gives for each column of `to` the old name, "" for a new one.
    void changeTable(const TableDefinition& from, TableDefinition to, const std::vector<QString>& source);
    void appendColumn(const QString& table, const jet::Column& column);
    void deleteColumn(const QString& table, const QString& name);
    void renameColumn(const QString& table, const QString& from, const QString& to);
    void moveColumn(const QString& table, const QString& name, int position);
    void runDdl(jet::Kind kind, const jet::Ddl& ddl);
    /// Raises 3376.
    [[nodiscard]] const TableDefinition& table(const QString& name) const;

    void beginTrans();
    void commitTrans();
    void rollbackTrans();

  private:
    friend class Transaction;
    void structureChanged();
    void everythingChanges();
    [[nodiscard]] std::shared_ptr<qint64>& changesOf(const QString& table);
    [[nodiscard]] Value worked(const QString& expression);
    [[nodiscard]] std::vector<Value> pivotHeads(const jet::Statement& statement,
                                                const std::vector<Value>& literals);

    std::unique_ptr<Engine> m_engine;
    Catalogue m_catalogue;
    std::unique_ptr<jet::Translator> m_translator;
    jet::Lifted m_lifted;
    QCache<QString, std::shared_ptr<Plan>> m_plans{1000};
    qint64 m_structureVersion = -1;
    quint64 m_generation = 1;
    qint64 m_identity = 0;
    QHash<QString, std::shared_ptr<qint64>> m_changes; ///< how often this connection wrote to a table
    std::unique_ptr<Connection> m_scratch;             ///< an embedded store without anything in it
};

/// One transaction, or a part of the one that is open already. Without commit everything is taken back.
class Transaction {
  public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

  private:
    Connection& m_connection;
    bool m_outer;
    bool m_open = true;
};

} // namespace store
