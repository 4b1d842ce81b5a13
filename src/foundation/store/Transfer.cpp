#include "ColumnValue.h"
#include "DatabaseImpl.h"
#include "Errors.h"

#include <store/Transfer.h>

using namespace Qt::StringLiterals;
using store::raise;

namespace {

constexpr int chunk = 1000; ///< rows that are read at a time

const store::TableDefinition& counted(store::Connection& connection, const QString& name) {
    connection.engine();
    connection.refreshStructure();
    const store::TableDefinition& table = connection.table(name);
    if (!table.autoNumber()) raise(3219);
    return table;
}

} // namespace

class TableWriter::Impl {
  public:
    std::shared_ptr<store::Connection> connection;
    QString table;
    std::vector<jet::Column> columns;
    std::unique_ptr<store::RowSink> sink;
    std::vector<Value> row;
};

TableWriter::TableWriter(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {}
TableWriter::~TableWriter() = default;

void TableWriter::Add(const std::vector<Value>& row) {
    m_impl->connection->engine();
    if (!m_impl->sink || row.size() != m_impl->columns.size()) raise(3219);
    m_impl->row.clear();
    for (std::size_t i = 0; i < row.size(); ++i)
        m_impl->row.push_back(store::valueForColumn(row[i], m_impl->columns[i]));
    m_impl->sink->add(m_impl->row);
}

void TableWriter::Finish() {
    m_impl->connection->engine();
    if (!m_impl->sink) raise(3219);
    m_impl->connection->tableChanges(m_impl->table);
    m_impl->sink->finish();
    m_impl->sink.reset();
}

namespace store {

std::unique_ptr<TableWriter> WriteTable(Database& db, const QString& table) {
    store::Connection& connection = *db.impl().connection;
    store::Engine& engine = connection.engine();
    if (!engine.inTransaction()) raise(3219);
    connection.refreshStructure();
    const store::TableDefinition& definition = connection.table(table);
    auto impl = std::make_unique<TableWriter::Impl>();
    impl->connection = db.impl().connection;
    impl->table = definition.table.name;
    impl->columns = definition.table.columns;
    impl->sink = engine.rowSink(definition);
    return std::unique_ptr<TableWriter>(new TableWriter(std::move(impl)));
}

// In chunks by key, so that neither engine holds a statement open or the whole table in memory.
void ReadTable(Database& db, const QString& table,
               const std::function<void(const std::vector<Value>&)>& row) {
    store::Connection& connection = *db.impl().connection;
    store::Engine& engine = connection.engine();
    connection.refreshStructure();
    const store::TableDefinition definition = connection.table(table);
    const jet::Column* counter = definition.autoNumber();
    const QByteArray key = counter ? engine.identifier(counter->name) : engine.keyColumn();
    QByteArray select = "SELECT " + key;
    for (const jet::Column& column : definition.table.columns)
        select += ", " + engine.identifier(column.name);
    select += " FROM " + engine.identifier(definition.table.name);
    const QByteArray order = " ORDER BY " + key + " LIMIT " + QByteArray::number(chunk);

    std::vector<Value> values(definition.table.columns.size());
    QByteArray behind;
    for (int read = chunk; read == chunk;) {
        const auto statement = engine.prepare(select + behind + order);
        qint64 last = 0;
        read = 0;
        for (store::Running running(*statement); running.step(); ++read) {
            last = statement->integer(0);
            for (std::size_t i = 0; i < values.size(); ++i)
                values[i] = statement->value(static_cast<int>(i) + 1, definition.table.columns[i].type);
            row(values);
        }
        behind = " WHERE " + key + '>' + QByteArray::number(last);
    }
}

qint64 Counter(Database& db, const QString& table) {
    store::Connection& connection = *db.impl().connection;
    return connection.engine().counter(counted(connection, table));
}

void SetCounter(Database& db, const QString& table, qint64 last) {
    store::Connection& connection = *db.impl().connection;
    if (connection.engine().readOnly()) raise(3027);
    connection.engine().setCounter(counted(connection, table), last);
}

QString MoveSource(Database& db) {
    return QString::fromUtf8(setting(db.impl().connection->engine(), store::moveSourceKey));
}

void SetMoveSource(Database& db, const QString& source) {
    if (db.impl().connection->engine().readOnly()) raise(3027);
    setSetting(db.impl().connection->engine(), store::moveSourceKey, source.toUtf8());
}

std::unique_ptr<Database> OpenMoveTarget(const QString& name, const QString& connect) {
    return Database::open(name, true, false, connect);
}

} // namespace store
