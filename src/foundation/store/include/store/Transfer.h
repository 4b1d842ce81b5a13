#pragma once

#include <text/Value.h>

#include <memory>
#include <vector>

// What moving a whole store needs beyond statements, see <moving/StoreMove.h>.

class Database;
class TableWriter;

namespace store {

/// All rows of a table in their order, each with all columns; with an AutoNumber that is its order. `row`
/// must not use this Database. Raises 3376 no such table.
void ReadTable(Database& db, const QString& table, const std::function<void(const std::vector<Value>&)>& row);
/// Appends many rows to a table, the AutoNumber included, as fast as the engine can. Needs an open
/// transaction, else raises 3219; 3376 no such table.
[[nodiscard]] std::unique_ptr<TableWriter> WriteTable(Database& db, const QString& table);
/// The highest AutoNumber that was ever given in this table, deleted rows included; 0 for none. Raises 3219
/// for a table without an AutoNumber, 3376.
[[nodiscard]] qint64 Counter(Database& db, const QString& table);
/// The next AutoNumber is one higher; a number that stands in the table is never given again. Raises as
/// Counter does.
void SetCounter(Database& db, const QString& table, qint64 last);
/// Where the rows of this store come from as long as their move is unfinished, as its mover wrote it; empty
/// for a whole store.
[[nodiscard]] QString MoveSource(Database& db);
/// Marks the store, so that OpenDatabase refuses it; an empty text takes the mark away.
void SetMoveSource(Database& db, const QString& source);
/// As OpenDatabase, exclusively, and also when the store is the unfinished target of a move.
[[nodiscard]] std::unique_ptr<Database> OpenMoveTarget(const QString& name, const QString& connect = {});

} // namespace store

/// Appends rows to one table by the thousand, faster than one statement for each. It lives inside a
/// transaction of its Database, and no other statement may run there before Finish.
///
///     db.BeginTrans();
///     auto writer = store::WriteTable(db, u"Artikel"_s);
///     for (const auto& row : rows) writer->Add(row);
///     writer->Finish();
///     db.CommitTrans();
class TableWriter {
  public:
    ~TableWriter();
    TableWriter(const TableWriter&) = delete;
    TableWriter& operator=(const TableWriter&) = delete;

    /// One value for each column in ordinal order, the AutoNumber included; each is converted to its column's
    /// type. Raises 3421, 6, 3163, 3315 and 3219 for another number of values. What only the engine can tell
    /// (3022, 3314, 3026) may come later, from Finish at the latest.
    void Add(const std::vector<Value>& row);
    /// All rows are in the table when it returns; nothing can be added any more.
    void Finish();

  private:
    friend std::unique_ptr<TableWriter> store::WriteTable(Database& db, const QString& table);
    class Impl;
    explicit TableWriter(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};
