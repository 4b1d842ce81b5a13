#include "../Errors.h"
#include "SqliteEngine.h"
#include "SqlitePrepared.h"
#include "SqliteStore.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace store {

namespace {

QByteArray columnSql(const jet::Column& column) {
    const QByteArray name = quoted(column.name);
    if (column.autoNumber) return name + " INTEGER PRIMARY KEY AUTOINCREMENT";
    switch (column.type) {
    // A truth value is never Null.
    case Type::Boolean:
        return name + " INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0";
    case Type::Byte:
    case Type::Short:
    case Type::Long:
    case Type::Currency:
        return name + " INTEGER" + (column.required ? " NOT NULL" : "");
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return name + " REAL" + (column.required ? " NOT NULL" : "");
    default:
        break;
    }
    QByteArray sql = name + " TEXT COLLATE GERMAN";
    if (column.required) sql += " NOT NULL";
    // SqliteErrors.cpp reads the column's name back out of these two.
    if (column.size > 0) sql += " CHECK(length(" + name + ")<=" + QByteArray::number(column.size) + ')';
    if (!column.allowZeroLength) sql += " CHECK(length(" + name + ")>0)";
    return sql;
}

// The counter is the row key itself and needs no index of its own.
bool standsOnTheKey(const TableDefinition& table, const IndexDefinition& index) {
    const jet::Column* counter = table.autoNumber();
    return counter && index.columns.size() == 1 &&
           index.columns.front().first.compare(counter->name, Qt::CaseInsensitive) == 0;
}

QByteArray literal(const QString& text) {
    QByteArray bytes = text.toUtf8();
    return '\'' + bytes.replace('\'', "''") + '\'';
}

// Where the new column's values come from.
QByteArray copied(const TableDefinition& from, const jet::Column& to, const QString& source) {
    if (source.isEmpty()) return to.type == Type::Boolean ? "0" : "NULL";
    const jet::Column& old = from.table.columns.at(static_cast<std::size_t>(from.table.indexOf(source)));
    const QByteArray name = quoted(old.name);
    const bool sameKind = old.type == to.type || (old.type == Type::Text && to.type == Type::Memo) ||
                          (old.type == Type::Memo && to.type == Type::Text);
    if (sameKind) return name;
    return "store_convert(" + name + ", " + literal(typeName(old.type)) + ", " + literal(typeName(to.type)) +
           ", " + literal(to.name) + ')';
}

// The engine has nothing quicker than one statement that is prepared once and run for each row.
class SqliteRowSink final : public RowSink {
  public:
    explicit SqliteRowSink(std::unique_ptr<Prepared> insert)
        : m_insert(std::move(insert)) {}

    void add(const std::vector<Value>& row) override {
        Running running(*m_insert);
        int parameter = 0;
        for (const Value& value : row)
            running->bind(++parameter, value);
        while (running.step()) {
        }
    }
    void finish() override {}

  private:
    std::unique_ptr<Prepared> m_insert;
};

QByteArray tableSql(const TableDefinition& table, const QString& name) {
    QByteArrayList columns;
    for (const jet::Column& column : table.table.columns)
        columns.append("  " + columnSql(column));
    return "CREATE TABLE " + quoted(name) + " (\n" + columns.join(",\n") + "\n) STRICT";
}

QByteArray indexSql(const TableDefinition& table, const IndexDefinition& index) {
    if (standsOnTheKey(table, index)) return {};
    QByteArrayList columns;
    for (const auto& [name, descending] : index.columns)
        columns.append(quoted(name) + (descending ? " DESC" : ""));
    return QByteArray(index.unique || index.primary ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
           quoted(QString(table.table.name + u'.' + index.name)) + " ON " + quoted(table.table.name) + " (" +
           columns.join(", ") + ')';
}

} // namespace

QByteArray sqliteStructure(const TableDefinition& table) {
    QByteArray text = tableSql(table, table.table.name) + ";\n";
    for (const IndexDefinition& index : table.indexes)
        text += indexSql(table, index) + ";\n";
    return text;
}

void SqliteEngine::furnish() {
    run("PRAGMA application_id=" + QByteArray::number(applicationId) + ";" +
        "CREATE TABLE \"merivane$settings\" (\"key\" TEXT PRIMARY KEY, \"value\" TEXT NOT NULL) STRICT;"
        "CREATE TABLE \"merivane$columns\" (\"tablename\" TEXT NOT NULL, \"ordinal\" INTEGER NOT NULL,"
        " \"name\" TEXT NOT NULL, \"type\" TEXT NOT NULL, \"size\" INTEGER NOT NULL,"
        " \"default\" TEXT NOT NULL, \"flags\" INTEGER NOT NULL,"
        " PRIMARY KEY (\"tablename\", \"ordinal\")) STRICT;"
        "CREATE TABLE \"merivane$indexes\" (\"tablename\" TEXT NOT NULL, \"name\" TEXT NOT NULL,"
        " \"columns\" TEXT NOT NULL, \"flags\" INTEGER NOT NULL,"
        " PRIMARY KEY (\"tablename\", \"name\")) STRICT");
}

void SqliteEngine::createTable(const TableDefinition& table) {
    run(tableSql(table, table.table.name));
    if (table.autoNumber())
        run("INSERT INTO sqlite_sequence(name, seq) VALUES(" + literal(table.table.name) + ", 0)");
    for (const IndexDefinition& index : table.indexes)
        run(indexSql(table, index));
}

void SqliteEngine::rebuild(const TableDefinition& from, const TableDefinition& to,
                           const std::vector<QString>& source) {
    const QString passing = u"merivane$rebuild"_s;
    const QByteArray oldName = quoted(from.table.name);
    const QByteArray newName = quoted(passing);
    run(tableSql(to, passing));

    QByteArrayList columns;
    QByteArrayList values;
    bool keepsCounter = false;
    for (std::size_t i = 0; i < to.table.columns.size(); ++i) {
        const jet::Column& column = to.table.columns[i];
        if (column.autoNumber && source[i].isEmpty()) continue;
        keepsCounter = keepsCounter || column.autoNumber;
        columns.append(quoted(column.name));
        values.append(copied(from, column, source[i]));
    }
    if (!keepsCounter) { // a counter that is new takes the row keys, which are unique
        columns.append("_rowid_");
        values.append("_rowid_");
    }
    run("INSERT INTO " + newName + " (" + columns.join(", ") + ") SELECT " + values.join(", ") + " FROM " +
        oldName + " ORDER BY _rowid_");
    if (to.autoNumber()) {
        // Numbers that were given once are never given again, also those of deleted rows.
        const qint64 last =
            from.autoNumber()
                ? number("SELECT seq FROM sqlite_sequence WHERE name=" + literal(from.table.name))
                : 0;
        const qint64 highest = number("SELECT coalesce(max(_rowid_), 0) FROM " + newName);
        run("DELETE FROM sqlite_sequence WHERE name=" + literal(passing) +
            "; INSERT INTO sqlite_sequence(name, seq) VALUES(" + literal(passing) + ", " +
            QByteArray::number(std::max(last, highest)) + ')');
    }
    run("DROP TABLE " + oldName + "; ALTER TABLE " + newName + " RENAME TO " + quoted(to.table.name));
    for (const IndexDefinition& index : to.indexes)
        run(indexSql(to, index));
}

void SqliteEngine::dropTable(const QString& table) { run("DROP TABLE " + quoted(table)); }

std::unique_ptr<RowSink> SqliteEngine::rowSink(const TableDefinition& table) {
    QByteArrayList columns;
    QByteArrayList places;
    for (const jet::Column& column : table.table.columns) {
        columns.append(quoted(column.name));
        places.append('?' + QByteArray::number(columns.size()));
    }
    return std::make_unique<SqliteRowSink>(prepare("INSERT INTO " + quoted(table.table.name) + " (" +
                                                   columns.join(", ") + ") VALUES (" + places.join(", ") +
                                                   ')'));
}

qint64 SqliteEngine::counter(const TableDefinition& table) {
    const QByteArray name = literal(table.table.name);
    return number("SELECT max((SELECT coalesce(max(_rowid_), 0) FROM " + quoted(table.table.name) +
                  "), coalesce((SELECT seq FROM sqlite_sequence WHERE name=" + name + "), 0))");
}

void SqliteEngine::setCounter(const TableDefinition& table, qint64 last) {
    const QByteArray name = literal(table.table.name);
    const qint64 highest = number("SELECT coalesce(max(_rowid_), 0) FROM " + quoted(table.table.name));
    run("UPDATE sqlite_sequence SET seq=" + QByteArray::number(std::max(last, highest)) +
        " WHERE name=" + name);
}

} // namespace store
