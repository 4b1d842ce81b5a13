#include "Catalogue.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace store {

namespace {

enum ColumnFlag { AllowZeroLength = 1, Required = 2, AutoNumber = 4 };
enum IndexFlag { Unique = 1, Primary = 2 };

QString folded(QStringView name) { return name.toString().toCaseFolded(); }

// "+Maschine\n-Datum": the sign tells the direction.
QString packed(const IndexDefinition& index) {
    QStringList parts;
    for (const auto& [name, descending] : index.columns)
        parts.append((descending ? u'-' : u'+') + name);
    return parts.join(u'\n');
}

IndexDefinition unpacked(const QString& name, const QString& columns, qint64 flags) {
    IndexDefinition index{name, {}, (flags & Unique) != 0, (flags & Primary) != 0};
    for (const QString& part : columns.split(u'\n', Qt::SkipEmptyParts))
        index.columns.emplace_back(part.mid(1), part.startsWith(u'-'));
    return index;
}

jet::Column readColumn(const Prepared& row) {
    jet::Column column;
    column.name = row.value(1, Type::Text).toText();
    column.type = typeNamed(row.value(2, Type::Text).toText());
    column.size = static_cast<int>(row.integer(3));
    column.defaultText = row.value(4, Type::Text).toText();
    const qint64 flags = row.integer(5);
    column.allowZeroLength = (flags & AllowZeroLength) != 0;
    column.required = (flags & Required) != 0;
    column.autoNumber = (flags & AutoNumber) != 0;
    return column;
}

// The text's question marks become the engine's parameters.
QByteArray withParameters(const Engine& engine, const QByteArray& sql) {
    QByteArray text;
    int number = 0;
    for (const char c : sql) {
        if (c == '?')
            text += engine.parameter(++number);
        else
            text += c;
    }
    return text;
}

void write(Engine& engine, const QByteArray& sql, std::initializer_list<Value> values) {
    const auto statement = engine.prepare(withParameters(engine, sql));
    int parameter = 0;
    for (const Value& value : values)
        statement->bind(++parameter, value);
    Running running(*statement);
    while (running.step()) {
    }
}

} // namespace

void Catalogue::load(Engine& engine) {
    QHash<QString, std::shared_ptr<TableDefinition>> tables;
    const auto columns =
        engine.prepare("SELECT \"tablename\", \"name\", \"type\", \"size\", \"default\", \"flags\""
                       " FROM \"merivane$columns\" ORDER BY \"tablename\", \"ordinal\"");
    for (Running row(*columns); row.step();) {
        const QString name = row->value(0, Type::Text).toText();
        auto& table = tables[folded(name)];
        if (!table) table = std::make_shared<TableDefinition>();
        table->table.name = name;
        table->table.columns.push_back(readColumn(*columns));
    }
    const auto indexes = engine.prepare("SELECT \"tablename\", \"name\", \"columns\", \"flags\""
                                        " FROM \"merivane$indexes\" ORDER BY \"tablename\", _rowid_");
    for (Running row(*indexes); row.step();) {
        const auto table = tables.find(folded(row->value(0, Type::Text).toText()));
        if (table == tables.end()) continue;
        (*table)->indexes.push_back(unpacked(row->value(1, Type::Text).toText(),
                                             row->value(2, Type::Text).toText(), row->integer(3)));
    }
    m_tables.clear();
    for (auto it = tables.cbegin(); it != tables.cend(); ++it)
        m_tables.insert(it.key(), it.value());
}

void Catalogue::save(Engine& engine, const TableDefinition& table) {
    remove(engine, table.table.name);
    int ordinal = 0;
    for (const jet::Column& column : table.table.columns) {
        const int flags = (column.allowZeroLength ? AllowZeroLength : 0) | (column.required ? Required : 0) |
                          (column.autoNumber ? AutoNumber : 0);
        write(engine,
              "INSERT INTO \"merivane$columns\" (\"tablename\", \"ordinal\", \"name\", \"type\", \"size\","
              " \"default\", \"flags\") VALUES(?, ?, ?, ?, ?, ?, ?)",
              {table.table.name, qint64{ordinal++}, column.name, typeName(column.type), qint64{column.size},
               column.defaultText.isNull() ? u""_s : column.defaultText, qint64{flags}});
    }
    for (const IndexDefinition& index : table.indexes)
        write(engine,
              "INSERT INTO \"merivane$indexes\" (\"tablename\", \"name\", \"columns\", \"flags\")"
              " VALUES(?, ?, ?, ?)",
              {table.table.name, index.name, packed(index),
               qint64{(index.unique ? Unique : 0) | (index.primary ? Primary : 0)}});
    m_tables.insert(folded(table.table.name), std::make_shared<TableDefinition>(table));
}

void Catalogue::remove(Engine& engine, const QString& table) {
    write(engine, "DELETE FROM \"merivane$columns\" WHERE \"tablename\"=?", {table});
    write(engine, "DELETE FROM \"merivane$indexes\" WHERE \"tablename\"=?", {table});
    m_tables.remove(folded(table));
}

const jet::Table* Catalogue::find(QStringView table) const {
    const TableDefinition* found = definition(table);
    return found ? &found->table : nullptr;
}

const TableDefinition* Catalogue::definition(QStringView table) const { return share(table).get(); }

std::shared_ptr<const TableDefinition> Catalogue::share(QStringView table) const {
    return m_tables.value(folded(table));
}

std::vector<const TableDefinition*> Catalogue::all() const {
    std::vector<const TableDefinition*> list;
    for (const auto& table : m_tables)
        list.push_back(table.get());
    std::sort(list.begin(), list.end(), [](const TableDefinition* a, const TableDefinition* b) {
        return a->table.name.compare(b->table.name, Qt::CaseInsensitive) < 0;
    });
    return list;
}

QByteArray setting(Engine& engine, const char* key) {
    const auto statement =
        engine.prepare(withParameters(engine, "SELECT \"value\" FROM \"merivane$settings\" WHERE \"key\"=?"));
    statement->bind(1, QString::fromLatin1(key));
    Running row(*statement);
    return row.step() ? row->value(0, Type::Text).toText().toUtf8() : QByteArray();
}

void setSetting(Engine& engine, const char* key, const QByteArray& value) {
    const Value name(QString::fromLatin1(key));
    if (value.isEmpty()) return write(engine, "DELETE FROM \"merivane$settings\" WHERE \"key\"=?", {name});
    write(engine,
          "INSERT INTO \"merivane$settings\" (\"key\", \"value\") VALUES(?, ?)"
          " ON CONFLICT (\"key\") DO UPDATE SET \"value\"=excluded.\"value\"",
          {name, QString::fromUtf8(value)});
}

} // namespace store
