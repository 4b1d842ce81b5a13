#pragma once

#include <text/Value.h>

#include <QString>

#include <vector>

class Database;

/// The data dictionary of a shop as data: from it the empty store is created on every engine.
namespace schema {

struct ColumnRow {
    const char16_t* name;
    Type type;
    int size = 0;                      ///< Text only
    const char16_t* defaultText = u""; ///< Jet expression
    bool autoNumber = false;
};
struct IndexRow {
    std::vector<const char16_t*> columns;
    bool unique = false;
};
struct TableRow {
    const char16_t* name;
    std::vector<ColumnRow> columns;
    std::vector<IndexRow> indexes;
};

/// All tables of a shop, master data first.
[[nodiscard]] const std::vector<TableRow>& tables();
/// Creates all tables and indexes in an empty store.
void createTables(Database& db);
/// Creates the tables that a store of an older program lacks; each that cannot be made stays missing, and
/// nobody is told.
void createMissingTables(Database& db);
/// The statements of createTables as text, for the golden files; `engine` is "sqlite" or "postgres".
[[nodiscard]] QString ddlText(QStringView engine);

} // namespace schema
