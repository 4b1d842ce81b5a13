#include "DatabaseImpl.h"
#include "Engines.h"
#include "Errors.h"
#include "Password.h"
#include "RecordsetImpl.h"

#include <store/Transfer.h>

using namespace Qt::StringLiterals;
using store::raise;

namespace {

QString passwordOf(const QString& connect) {
    const qsizetype at = connect.indexOf(u";PWD="_s, 0, Qt::CaseInsensitive);
    return at < 0 ? QString() : connect.mid(at + 5).section(u';', 0, 0);
}

void writePassword(store::Engine& engine, const QString& password) {
    store::PasswordVerifier verifier;
    if (!password.isEmpty()) verifier = store::PasswordVerifier::make(password);
    setSetting(engine, "salt", verifier.salt.toHex());
    setSetting(engine, "iterations",
               password.isEmpty() ? QByteArray() : QByteArray::number(verifier.iterations));
    setSetting(engine, "verifier", verifier.derived.toHex());
}

void checkPassword(store::Engine& engine, const QString& password) {
    store::PasswordVerifier verifier;
    verifier.derived = QByteArray::fromHex(setting(engine, "verifier"));
    if (verifier.derived.isEmpty()) return;
    verifier.salt = QByteArray::fromHex(setting(engine, "salt"));
    verifier.iterations = setting(engine, "iterations").toInt();
    if (!verifier.accepts(password)) raise(3031);
}

void furnish(store::Engine& engine, const QString& password, const QString& moveSource) {
    engine.furnish();
    setSetting(engine, "format", "1");
    writePassword(engine, password);
    setSetting(engine, store::moveSourceKey, moveSource.toUtf8());
}

jet::Column columnOf(const TableField& field) {
    jet::Column column;
    column.name = field.Name;
    column.type = field.Type;
    column.size = field.Size;
    column.defaultText = field.DefaultValue;
    column.allowZeroLength = field.AllowZeroLength;
    column.required = field.Required;
    column.autoNumber = (field.Attributes & dbAutoIncrField) != 0;
    return column;
}

TableDef tableDefOf(const store::TableDefinition& definition) {
    TableDef def;
    def.Name = definition.table.name;
    int ordinal = 0;
    for (const jet::Column& column : definition.table.columns) {
        TableField field;
        field.Name = column.name;
        field.Type = column.type;
        field.Size = column.size;
        field.DefaultValue = column.defaultText;
        field.AllowZeroLength = column.allowZeroLength;
        field.Attributes = column.autoNumber ? dbAutoIncrField : 0;
        field.OrdinalPosition = ordinal++;
        field.Required = column.required;
        def.Fields.push_back(field);
    }
    for (const store::IndexDefinition& index : definition.indexes) {
        TableIndex& told = def.Indexes.emplace_back(TableIndex{index.name, {}, index.unique, index.primary});
        for (const auto& [name, descending] : index.columns)
            told.Fields.push_back({name, descending});
    }
    return def;
}

} // namespace

TableField TableDef::CreateField(const QString& name) const {
    TableField field;
    field.Name = name;
    return field;
}

const TableField* TableDef::Field(QStringView name) const {
    for (const TableField& field : Fields)
        if (field.Name == name) return &field;
    return nullptr;
}

Database::Database(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {}
Database::~Database() { Close(); }

std::unique_ptr<Database> Database::OpenDatabase(const QString& Name, bool Exclusive, bool ReadOnly,
                                                 const QString& Connect) {
    auto db = open(Name, Exclusive, ReadOnly, Connect);
    if (const QString source = store::MoveSource(*db); !source.isEmpty()) raise(3734, source);
    return db;
}

std::unique_ptr<Database> Database::open(const QString& name, bool exclusive, bool readOnly,
                                         const QString& connect) {
    using store::Access;
    auto engine = store::openEngine(name, readOnly    ? Access::ReadOnly
                                          : exclusive ? Access::Exclusive
                                                      : Access::Shared);
    if (engine->blank()) {
        engine->begin();
        furnish(*engine, {}, {});
        engine->commit();
    }
    checkPassword(*engine, passwordOf(connect));
    auto impl = Impl::over(std::move(engine));
    impl->name = name;
    return std::unique_ptr<Database>(new Database(std::move(impl)));
}

std::function<std::unique_ptr<Database>()> Database::Reader() const {
    return [name = m_impl->name] {
        auto impl = Impl::over(store::openEngine(name, store::Access::ReadOnly));
        impl->name = name;
        return std::unique_ptr<Database>(new Database(std::move(impl)));
    };
}

std::optional<qint64> Database::ForeignChanges() { return m_impl->connection->engine().foreignChanges(); }

std::unique_ptr<Database> Database::CreateDatabase(const QString& Name, const QString& Connect,
                                                   const QString& MoveSource,
                                                   const std::function<void(Database&)>& Fill) {
    if (Name == u":memory:") {
        auto made = OpenDatabase(Name);
        if (Fill) Fill(*made);
        return made;
    }
    const auto place = store::newStore(Name);
    {
        auto engine = place->takeEngine();
        engine->begin();
        furnish(*engine, passwordOf(Connect), MoveSource);
        Database made(Impl::over(std::move(engine)));
        if (Fill) Fill(made);
        made.CommitTrans();
    }
    place->finish();
    return open(Name, !MoveSource.isEmpty(), false, Connect);
}

void Database::DeleteDatabase(const QString& Name, const QString& Connect) {
    const auto engine = store::openEngine(Name, store::Access::Exclusive);
    checkPassword(*engine, passwordOf(Connect));
    engine->destroy();
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString& Source, int Type) {
    if (Type != dbOpenDynaset) raise(3219);
    return std::make_unique<Recordset>(std::make_unique<Recordset::Impl>(m_impl->connection, Source));
}

qint64 Database::Execute(const QString& SQL) { return m_impl->connection->execute(SQL); }
void Database::ExecuteTogether(const QStringList& SQL) { m_impl->connection->executeTogether(SQL); }

QString Database::Translated(const QString& SQL) {
    std::vector<Value> literals;
    return QString::fromUtf8(m_impl->connection->plan(SQL, literals)->statement->sql);
}

bool Database::IsQuery(const QString& SQL) {
    std::vector<Value> literals;
    return m_impl->connection->plan(SQL, literals)->statement->kind == jet::Kind::Select;
}

void Database::ForEachRow(const QString& SQL,
                          const std::function<void(const std::vector<TableField>&)>& columns,
                          const std::function<void(const std::vector<Value>&)>& row) {
    store::Connection& connection = *m_impl->connection;
    std::vector<Value> literals;
    connection.engine();
    connection.refreshStructure();
    const auto plan = connection.plan(SQL, literals);
    const jet::Statement& statement = *plan->statement;
    if (statement.kind != jet::Kind::Select) raise(3219);
    std::vector<TableField> fields;
    for (const jet::ResultColumn& column : statement.columns) {
        TableField field;
        field.Name = column.name;
        field.Type = column.type;
        field.OrdinalPosition = static_cast<int>(fields.size());
        fields.push_back(field);
    }
    store::Prepared& prepared = connection.prepared(plan->main, statement.sql);
    connection.bind(prepared, statement, literals);
    prepared.stream();
    store::Running running(prepared);
    bool more = running.step(); // a failure at the first row comes before any output
    columns(fields);
    std::vector<Value> values(fields.size());
    for (; more; more = running.step()) {
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = prepared.value(static_cast<int>(i), fields[i].Type);
        row(values);
    }
}

std::vector<TableDef> Database::TableDefs() const {
    store::Connection& connection = *m_impl->connection;
    connection.engine();
    connection.refreshStructure();
    std::vector<TableDef> list;
    for (const store::TableDefinition* table : connection.catalogue().all())
        list.push_back(tableDefOf(*table));
    return list;
}

std::optional<TableDef> Database::FindTableDef(QStringView name) const {
    m_impl->connection->engine();
    m_impl->connection->refreshStructure();
    const store::TableDefinition* table = m_impl->connection->catalogue().definition(name);
    if (!table || table->table.name != name) return std::nullopt;
    return tableDefOf(*table);
}

TableDef Database::CreateTableDef(const QString& name) const {
    TableDef def;
    def.Name = name;
    return def;
}

void Database::AppendTableDef(const TableDef& table) {
    store::TableDefinition definition;
    definition.table.name = table.Name;
    for (const TableField& field : table.Fields)
        definition.table.columns.push_back(columnOf(field));
    for (const TableIndex& index : table.Indexes) {
        store::IndexDefinition& told = definition.indexes.emplace_back(
            store::IndexDefinition{index.Name, {}, index.Unique, index.Primary});
        for (const TableIndex::Column& column : index.Fields)
            told.columns.emplace_back(column.Name, column.Descending);
    }
    m_impl->connection->createTable(std::move(definition));
}

void Database::DeleteTableDef(const QString& name) { m_impl->connection->dropTable(name); }

void Database::AppendField(const QString& table, const TableField& field) {
    m_impl->connection->appendColumn(table, columnOf(field));
}
void Database::DeleteField(const QString& table, const QString& field) {
    m_impl->connection->deleteColumn(table, field);
}
void Database::RenameField(const QString& table, const QString& from, const QString& to) {
    m_impl->connection->renameColumn(table, from, to);
}
void Database::MoveField(const QString& table, const QString& field, int ordinalPosition) {
    m_impl->connection->moveColumn(table, field, ordinalPosition);
}

QString Database::Version() const { return m_impl->connection->engine().version(); }
QString Database::Warning() const { return m_impl->connection->engine().warning(); }
void Database::BeginTrans() { m_impl->connection->beginTrans(); }
void Database::CommitTrans() { m_impl->connection->commitTrans(); }
void Database::Rollback() { m_impl->connection->rollbackTrans(); }

void Database::NewPassword(const QString& Old, const QString& New) {
    store::Engine& engine = m_impl->connection->engine();
    if (!engine.exclusive()) raise(3621);
    checkPassword(engine, Old);
    store::Transaction transaction(*m_impl->connection);
    writePassword(engine, New);
    transaction.commit();
}

void Database::SaveCopy(const QString& File) { m_impl->connection->engine().saveCopy(File); }

qint64 Database::RoundTrips() const { return m_impl->connection->engine().roundTrips(); }

void Database::Close() { m_impl->connection->close(); }
