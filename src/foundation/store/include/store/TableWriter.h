#pragma once

#include <text/Value.h>

#include <memory>
#include <vector>

class Database;

/// Appends rows to one table by the thousand, faster than one statement for each. It lives inside a
/// transaction of its Database, and no other statement may run there before Finish.
///
///     db.BeginTrans();
///     auto writer = db.WriteTable(u"Artikel"_s);
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
    friend class Database;
    class Impl;
    explicit TableWriter(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};
