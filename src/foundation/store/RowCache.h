#pragma once

#include "Connection.h"

#include <QElapsedTimer>

namespace store {

/// Rows of a dynaset that came from a server with their keys or several at a time. They stand for the live
/// rows for a second, as long as nothing here writes to the tables they were read from.
class RowCache {
  public:
    explicit RowCache(const Plan& plan)
        : m_plan(plan) {}

    /// nullptr when the row has to be read.
    [[nodiscard]] const std::vector<Value>* find(qint64 key) const;
    void clear(); ///< what is kept from now on is fresh
    void keep(qint64 key, std::vector<Value> row) { m_rows.insert(key, std::move(row)); }
    /// This row alone was changed here.
    void changed(qint64 key, qint64 changesBefore);

  private:
    const Plan& m_plan;
    QHash<qint64, std::vector<Value>> m_rows;
    qint64 m_changes = 0;
    QElapsedTimer m_age;
};

} // namespace store
