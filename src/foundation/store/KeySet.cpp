#include "KeySet.h"

#include <QStringList>

#include <algorithm>

namespace store {

namespace {
constexpr qint64 growth =
    4; ///< few chunks even for a large set, and none much larger than what was read before
constexpr qint64 mostRows = 4096; ///< rows that come along with their keys
constexpr std::size_t farAhead = 256;
} // namespace

Prepared& KeySet::chunkStatement(bool withRows) const {
    auto& statement = withRows ? m_plan.chunks : m_plan.keys;
    if (statement) return *statement;
    Engine& engine = m_connection.engine();
    const jet::Dynaset& set = *m_plan.statement->dynaset;
    const int next = static_cast<int>(m_plan.statement->parameters.size()) + 1;
    QByteArray text = "SELECT " + set.key + (withRows ? ", " + set.columns : "") + " FROM " + set.from;
    if (ordered()) {
        if (!set.where.isEmpty()) text += " WHERE " + set.where;
        text += " ORDER BY " + set.orderBy;
    } else {
        text += " WHERE " + set.key + '>' + engine.parameter(next + 1, Type::Long);
        if (!set.where.isEmpty()) text += " AND (" + set.where + ')';
        text += " ORDER BY " + set.key;
    }
    statement = engine.prepare(text + " LIMIT " + engine.parameter(next, Type::Long));
    return *statement;
}

std::vector<Value> KeySet::rowOf(const Prepared& result, int firstColumn) const {
    std::vector<Value> row;
    row.reserve(m_plan.statement->columns.size());
    for (const jet::ResultColumn& column : m_plan.statement->columns)
        row.push_back(result.value(firstColumn++, column.type));
    return row;
}

void KeySet::read(bool everything) {
    const bool sorted = ordered();
    // A set without an order goes on where it stopped, so that its chunks need not grow without end.
    if (m_distant && !sorted) m_chunk = std::min(m_chunk, mostRows);
    const bool withRows = m_distant && !everything && m_chunk <= mostRows;
    Prepared& statement = chunkStatement(withRows);
    m_connection.bind(statement, *m_plan.statement, m_literals);
    const int next = static_cast<int>(m_plan.statement->parameters.size()) + 1;
    const qint64 limit = everything ? std::numeric_limits<qint64>::max() : m_chunk;
    statement.bindInteger(next, limit);
    if (!sorted)
        statement.bindInteger(next + 1, m_last);
    else if (m_seen.isEmpty() && !m_keys.empty())
        m_seen = QSet<qint64>(m_keys.begin(), m_keys.end());
    if (withRows)
        m_rows.clear();
    else
        statement.stream();

    const int before = statement.reprepared();
    const bool first = m_keys.empty();
    qint64 count = 0;
    for (Running row(statement); row.step(); ++count) {
        const qint64 key = row->integer(0);
        if (sorted && !first) {
            if (m_seen.contains(key)) continue;
            m_seen.insert(key);
        }
        m_keys.push_back(key);
        m_last = key;
        if (withRows) m_rows.keep(key, rowOf(statement, 1));
    }
    m_metChange = m_metChange || statement.reprepared() != before;
    m_complete = everything || count < limit;
    m_chunk *= growth;
}

bool KeySet::row(std::size_t index, std::vector<Value>& row) {
    if (!m_distant) return freshRow(m_keys[index], row);
    const std::vector<Value>* kept = m_rows.find(m_keys[index]);
    if (!kept) {
        readAhead(index);
        kept = m_rows.find(m_keys[index]);
    }
    if (kept) row = *kept;
    return kept != nullptr;
}

// Who reads row after row gets more of them each time; who jumps, or writes in between, gets the one.
void KeySet::readAhead(std::size_t index) {
    m_ahead = index == m_aheadEnd ? std::min(m_ahead * static_cast<std::size_t>(growth), farAhead) : 1;
    m_aheadEnd = std::min(index + m_ahead, m_keys.size());
    Engine& engine = m_connection.engine();
    const jet::Statement& statement = *m_plan.statement;
    const int next = static_cast<int>(statement.parameters.size()) + 1;
    if (!m_plan.rows) {
        const jet::Dynaset& set = *statement.dynaset;
        m_plan.rows = engine.prepare("SELECT " + set.key + ", " + set.columns + " FROM " + set.from +
                                     " WHERE " + set.key + engine.amongKeys(next));
    }
    Prepared& prepared = *m_plan.rows;
    if (m_plan.rowHasLiterals) m_connection.bind(prepared, statement, m_literals);
    QStringList keys;
    for (std::size_t i = index; i < m_aheadEnd; ++i)
        keys.append(QString::number(m_keys[i]));
    prepared.bind(next, QString(u'{' + keys.join(u',') + u'}'));
    m_rows.clear();
    for (Running row(prepared); row.step();)
        m_rows.keep(row->integer(0), rowOf(prepared, 1));
}

bool KeySet::freshRow(qint64 key, std::vector<Value>& row) const {
    Engine& engine = m_connection.engine();
    const jet::Statement& statement = *m_plan.statement;
    const int next = static_cast<int>(statement.parameters.size()) + 1;
    if (!m_plan.row) {
        const jet::Dynaset& set = *statement.dynaset;
        m_plan.row = engine.prepare("SELECT " + set.columns + " FROM " + set.from + " WHERE " + set.key +
                                    '=' + engine.parameter(next, Type::Long));
    }
    Prepared& prepared = *m_plan.row;
    if (m_plan.rowHasLiterals) m_connection.bind(prepared, statement, m_literals);
    prepared.bindInteger(next, key);
    Running running(prepared);
    if (!running.step()) return false;
    row.resize(statement.columns.size());
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = prepared.value(static_cast<int>(i), statement.columns[i].type);
    return true;
}

bool KeySet::has(std::size_t index) {
    while (index >= m_keys.size() && !m_complete)
        read(false);
    return index < m_keys.size();
}

void KeySet::readAll() {
    if (!m_complete) read(true);
}

std::size_t KeySet::positionOf(qint64 key) {
    std::size_t from = 0;
    for (;;) {
        const auto begin = m_keys.begin() + static_cast<std::ptrdiff_t>(from);
        if (const auto it = std::find(begin, m_keys.end(), key); it != m_keys.end())
            return static_cast<std::size_t>(it - m_keys.begin());
        if (m_complete) break;
        from = m_keys.size();
        read(false);
    }
    m_keys.push_back(key);
    return m_keys.size() - 1;
}

void KeySet::erase(std::size_t index) { m_keys.erase(m_keys.begin() + static_cast<std::ptrdiff_t>(index)); }

} // namespace store
