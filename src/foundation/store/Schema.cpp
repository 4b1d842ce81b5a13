#include "DatabaseImpl.h"
#include "Engines.h"

#include <store/Schema.h>

#include <QStringList>

using namespace Qt::StringLiterals;

namespace schema {

namespace {

store::TableDefinition definitionOf(const TableRow& row) {
    store::TableDefinition definition;
    definition.table.name = QString::fromUtf16(row.name);
    for (const ColumnRow& told : row.columns) {
        jet::Column column;
        column.name = QString::fromUtf16(told.name);
        column.type = told.type;
        column.size = told.size;
        column.defaultText = QString::fromUtf16(told.defaultText);
        column.allowZeroLength = true; // the empty text is the program's "no value"
        column.autoNumber = told.autoNumber;
        definition.table.columns.push_back(std::move(column));
    }
    for (const IndexRow& told : row.indexes) {
        store::IndexDefinition index;
        QStringList names;
        for (const char16_t* column : told.columns) {
            names.append(QString::fromUtf16(column));
            index.columns.emplace_back(names.last(), false);
        }
        index.name = names.join(u'_');
        index.unique = told.unique;
        definition.indexes.push_back(std::move(index));
    }
    return definition;
}

} // namespace

void createTables(Database& db) {
    store::Connection& connection = *db.impl().connection;
    store::Transaction transaction(connection);
    for (const TableRow& row : tables())
        connection.createTable(definitionOf(row));
    transaction.commit();
}

void createMissingTables(Database& db) {
    store::Connection& connection = *db.impl().connection;
    for (const TableRow& row : tables()) {
        if (db.FindTableDef(QString::fromUtf16(row.name))) continue;
        try {
            connection.createTable(definitionOf(row));
        } catch (const RuntimeError&) { // whoever needs the table says that it is missing
        }
    }
}

QString ddlText(QStringView engine) {
    QByteArray text;
    for (const TableRow& row : tables())
        text += store::structureText(engine, definitionOf(row)) + '\n';
    return QString::fromUtf8(text);
}

} // namespace schema
