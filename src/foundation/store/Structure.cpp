#include "Connection.h"
#include "Errors.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace store {

namespace {

constexpr std::size_t mostColumns = 255;
constexpr int longestName = 64;
constexpr int longestText = 255;

void checkName(const QString& name) {
    bool good = !name.isEmpty() && name.size() <= longestName && !name.startsWith(u' ');
    for (const QChar c : name)
        good = good && c >= u' ' && !u".!`[]"_s.contains(c);
    // Names that the engine or the catalogue keep for themselves.
    const bool reserved = name.startsWith(u"merivane$"_s, Qt::CaseInsensitive) ||
                          name.startsWith(u"sqlite_"_s, Qt::CaseInsensitive) ||
                          name.compare(u"_rowid_"_s, Qt::CaseInsensitive) == 0;
    if (!good || reserved) raise(3125, name);
}

void completeColumn(jet::Column& column) {
    checkName(column.name);
    if (column.autoNumber) {
        column.type = Type::Long;
        column.defaultText.clear();
    }
    if (column.type == Type::Null || column.size < 0) raise(3292, column.name);
    if (column.type != Type::Text)
        column.size = 0;
    else if (column.size == 0)
        column.size = longestText;
    if (column.size > longestText) raise(3292, column.name);
}

void completeIndex(TableDefinition& table, IndexDefinition& index) {
    if (index.columns.empty()) raise(3409);
    if (index.name.isEmpty()) index.name = index.primary ? u"PrimaryKey"_s : index.columns.front().first;
    checkName(index.name);
    index.unique = index.unique || index.primary;
    for (auto& [name, descending] : index.columns) {
        const int at = table.table.indexOf(name);
        if (at < 0) raise(3409, name);
        jet::Column& column = table.table.columns[static_cast<std::size_t>(at)];
        name = column.name;
        if (index.primary) column.required = true;
    }
}

void complete(TableDefinition& table) {
    checkName(table.table.name);
    if (table.table.columns.empty()) raise(3264, table.table.name);
    if (table.table.columns.size() > mostColumns) raise(3190, table.table.name);
    QSet<QString> names;
    int counters = 0;
    for (jet::Column& column : table.table.columns) {
        completeColumn(column);
        if (names.contains(column.name.toCaseFolded())) raise(3191, column.name);
        names.insert(column.name.toCaseFolded());
        counters += column.autoNumber ? 1 : 0;
    }
    if (counters > 1) raise(3289, table.table.name);
    QSet<QString> indexes;
    int primaries = 0;
    for (IndexDefinition& index : table.indexes) {
        completeIndex(table, index);
        if (indexes.contains(index.name.toCaseFolded())) raise(3375, index.name);
        indexes.insert(index.name.toCaseFolded());
        primaries += index.primary ? 1 : 0;
    }
    if (primaries > 1) raise(3283, table.table.name);
}

IndexDefinition indexOf(const jet::Ddl::Index& told) {
    IndexDefinition index{told.name, {}, told.unique, told.primary};
    for (const QString& column : told.columns)
        index.columns.emplace_back(column, false);
    return index;
}

std::vector<QString> sameColumns(const TableDefinition& table) {
    std::vector<QString> names;
    for (const jet::Column& column : table.table.columns)
        names.push_back(column.name);
    return names;
}

void dropIndex(TableDefinition& table, const QString& name) {
    const auto it =
        std::find_if(table.indexes.begin(), table.indexes.end(), [&](const IndexDefinition& index) {
            return index.name.compare(name, Qt::CaseInsensitive) == 0;
        });
    if (it == table.indexes.end()) raise(3372, name);
    table.indexes.erase(it);
}

// Plain indexes only make searching fast, so they go with their column; a unique one is a rule and holds it.
void dropColumn(TableDefinition& table, std::vector<QString>& source, const QString& name) {
    const int at = table.table.indexOf(name);
    if (at < 0) raise(3381, name);
    for (const IndexDefinition& index : table.indexes)
        if (index.unique && index.covers(name)) raise(3280, name);
    std::erase_if(table.indexes, [&](const IndexDefinition& index) { return index.covers(name); });
    table.table.columns.erase(table.table.columns.begin() + at);
    source.erase(source.begin() + at);
}

void alterColumn(TableDefinition& table, const jet::Column& column) {
    const int at = table.table.indexOf(column.name);
    if (at < 0) raise(3381, column.name);
    jet::Column& old = table.table.columns[static_cast<std::size_t>(at)];
    const QString spelling = old.name;
    old = column;
    old.name = spelling;
}

void alter(TableDefinition& table, std::vector<QString>& source, const jet::Ddl& ddl) {
    for (const jet::Column& column : ddl.add) {
        if (ddl.alterColumn) {
            alterColumn(table, column);
            continue;
        }
        if (table.table.indexOf(column.name) >= 0) raise(3380, column.name);
        table.table.columns.push_back(column);
        source.emplace_back();
    }
    for (const QString& name : ddl.drop)
        dropColumn(table, source, name);
    for (const jet::Ddl::Index& index : ddl.indexes)
        table.indexes.push_back(indexOf(index));
    if (!ddl.indexName.isEmpty()) dropIndex(table, ddl.indexName);
}

} // namespace

const TableDefinition& Connection::table(const QString& name) const {
    const TableDefinition* found = m_catalogue.definition(name);
    if (!found) raise(3376, name);
    return *found;
}

void Connection::createTable(TableDefinition table) {
    complete(table);
    if (engine().readOnly()) raise(3027);
    Transaction transaction(*this);
    m_engine->lockStructure();
    refreshStructure();
    if (m_catalogue.find(table.table.name)) raise(3010, table.table.name);
    m_engine->createTable(table);
    m_catalogue.save(*m_engine, table);
    structureChanged();
    transaction.commit();
}

void Connection::dropTable(const QString& name) {
    if (engine().readOnly()) raise(3027);
    Transaction transaction(*this);
    m_engine->lockStructure();
    refreshStructure();
    const QString spelling = table(name).table.name;
    m_engine->dropTable(spelling);
    m_catalogue.remove(*m_engine, spelling);
    structureChanged();
    transaction.commit();
}

void Connection::changeTable(const TableDefinition& from, TableDefinition to,
                             const std::vector<QString>& source) {
    complete(to);
    if (engine().readOnly()) raise(3027);
    Transaction transaction(*this);
    m_engine->lockStructure();
    if (refreshStructure()) raise(3260); // somebody else changes the structure at this moment
    const TableDefinition old = from;
    m_engine->rebuild(old, to, source);
    m_catalogue.save(*m_engine, to);
    structureChanged();
    transaction.commit();
}

void Connection::appendColumn(const QString& name, const jet::Column& column) {
    jet::Ddl ddl;
    ddl.table = name;
    ddl.add.push_back(column);
    runDdl(jet::Kind::AlterTable, ddl);
}

void Connection::deleteColumn(const QString& name, const QString& column) {
    jet::Ddl ddl;
    ddl.table = name;
    ddl.drop.push_back(column);
    runDdl(jet::Kind::AlterTable, ddl);
}

void Connection::renameColumn(const QString& name, const QString& from, const QString& to) {
    engine();
    refreshStructure();
    const TableDefinition old = table(name);
    const int at = old.table.indexOf(from);
    if (at < 0) raise(3381, from);
    const int taken = old.table.indexOf(to);
    if (taken >= 0 && taken != at) raise(3380, to);
    TableDefinition changed = old;
    changed.table.columns[static_cast<std::size_t>(at)].name = to;
    for (IndexDefinition& index : changed.indexes)
        for (auto& [column, descending] : index.columns)
            if (column.compare(from, Qt::CaseInsensitive) == 0) column = to;
    changeTable(old, std::move(changed), sameColumns(old));
}

void Connection::moveColumn(const QString& name, const QString& column, int position) {
    engine();
    refreshStructure();
    const TableDefinition old = table(name);
    const int at = old.table.indexOf(column);
    if (at < 0) raise(3381, column);
    TableDefinition changed = old;
    auto& columns = changed.table.columns;
    const jet::Column moved = columns[static_cast<std::size_t>(at)];
    columns.erase(columns.begin() + at);
    columns.insert(columns.begin() + std::clamp(position, 0, static_cast<int>(columns.size())), moved);
    changeTable(old, changed, sameColumns(changed));
}

void Connection::runDdl(jet::Kind kind, const jet::Ddl& ddl) {
    engine();
    refreshStructure();
    if (kind == jet::Kind::CreateTable || kind == jet::Kind::SelectInto) {
        TableDefinition created;
        created.table.name = ddl.table;
        created.table.columns = ddl.add;
        for (const jet::Ddl::Index& index : ddl.indexes)
            created.indexes.push_back(indexOf(index));
        return createTable(std::move(created));
    }
    if (kind == jet::Kind::DropTable) return dropTable(ddl.table);

    const TableDefinition old = table(ddl.table);
    TableDefinition changed = old;
    std::vector<QString> source = sameColumns(old);
    if (kind == jet::Kind::AlterTable)
        alter(changed, source, ddl);
    else if (kind == jet::Kind::DropIndex)
        dropIndex(changed, ddl.indexName);
    else
        changed.indexes.push_back({ddl.indexName, ddl.indexColumns, ddl.unique, ddl.primary});
    changeTable(old, std::move(changed), source);
}

} // namespace store
