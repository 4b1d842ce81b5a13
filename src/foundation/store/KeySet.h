#pragma once

#include "Connection.h"

#include <QSet>

namespace store {

/// The keys of a dynaset's rows, read in growing chunks as far as they are needed. Without an order the rows
/// stand in the order of their keys and a chunk goes on behind the last key; with one, each chunk reads from
/// the start and takes what it has not seen, so that rows which come or go meanwhile are neither lost nor
/// doubled.
class KeySet {
  public:
    KeySet(const Connection& connection, Plan& plan, const std::vector<Value>& literals)
        : m_connection(connection)
        , m_plan(plan)
        , m_literals(literals) {}

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

  private:
    void read(bool everything);
    [[nodiscard]] QByteArray sql(bool ordered) const;
    [[nodiscard]] bool ordered() const { return !m_plan.statement->dynaset->orderBy.isEmpty(); }

    const Connection& m_connection;
    Plan& m_plan;
    const std::vector<Value>& m_literals;
    std::vector<qint64> m_keys;
    QSet<qint64> m_seen;
    qint64 m_last = std::numeric_limits<qint64>::min();
    qint64 m_chunk = 64;
    bool m_complete = false;
    bool m_metChange = false;
};

} // namespace store
