#pragma once

#include <app/DemoTables.h>

class Database;

namespace demo {

/// Appends the rows to the table of the same name. Raises what the store raises, with the row in the
/// description, and 13 for a truth value other than "ja" and "nein".
void loadTable(Database& db, const Table& table);

/// Creates the shop below `folder`: konfig.ini, `daten` with store, pictures and text files, `belege` for
/// printed pages. Everything is made beside the folder first and moved in place at the end, so the shop is
/// there complete or not at all. Raises 58 when `folder` exists and is not empty, 70 when it cannot be
/// written, and what the store raises.
void createShop(const QString& folder);

} // namespace demo
