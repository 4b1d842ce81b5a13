#pragma once

#include "RowCache.h"

#include <QSet>

#include <limits>

namespace store {

/// The keys of a dynaset's rows, read in growing chunks as far as they are needed. Without an order the rows
/// stand in the order of their keys and a chunk goes on behind the last key; with one, each chunk reads from
/// the start and takes what it has not seen, so that rows which come or go meanwhile are neither lost nor
/// doubled.
///
/// An embedded engine is then asked for each row by its key. From a distant one the rows come along with
/// their keys, and later several at a time.
class KeySet {
  public:
    KeySet(const Connection& connection, Plan& plan, const std::vector<Value>& literals)
        : m_connection(connection)
        , m_plan(plan)
        , m_literals(literals)
        , m_distant(connection.engine().distant())
        , m_rows(plan) {}

    /// Reads on until there is a row at `index` or no more.
    [[nodiscard]] bool has(std::size_t index);
    void readAll();
    [[nodiscard]] bool complete() const { return m_complete; }
    [[nodiscard]] std::size_t known() const { return m_keys.size(); }
    [[nodiscard]] qint64 at(std::size_t index) const { return m_keys[index]; }
    /// Reads on until the key is found; one that is not in the set is appended.
    [[nodiscard]] std::size_t positionOf(qint64 key);
    void erase(std::size_t index);
    void append(qint64 key) { m_keys.push_back(key); }
    /// True when the engine met a changed structure while it read.
    [[nodiscard]] bool metChange() const { return m_metChange; }

    /// The row at a known place; false when it is gone.
    [[nodiscard]] bool row(std::size_t index, std::vector<Value>& row);
    /// The row of a key as it stands in the store at this moment; false when it is gone.
    [[nodiscard]] bool freshRow(qint64 key, std::vector<Value>& row) const;
    [[nodiscard]] RowCache& rows() { return m_rows; }

  private:
    void read(bool everything);
    void readAhead(std::size_t index);
    [[nodiscard]] Prepared& chunkStatement(bool withRows) const;
    [[nodiscard]] std::vector<Value> rowOf(const Prepared& result, int firstColumn) const;
    [[nodiscard]] bool ordered() const { return !m_plan.statement->dynaset->orderBy.isEmpty(); }

    const Connection& m_connection;
    Plan& m_plan;
    const std::vector<Value>& m_literals;
    bool m_distant;
    RowCache m_rows;
    std::vector<qint64> m_keys;
    QSet<qint64> m_seen;
    qint64 m_last = std::numeric_limits<qint64>::min();
    qint64 m_chunk = 64;
    std::size_t m_ahead = 1;    ///< rows that are read at a time
    std::size_t m_aheadEnd = 0; ///< the place behind those
    bool m_complete = false;
    bool m_metChange = false;
};

} // namespace store
