#include "KeySet.h"

#include <algorithm>

namespace store {

namespace {
constexpr qint64 growth =
    4; ///< few chunks even for a large set, and none much larger than what was read before
}

QByteArray KeySet::sql(bool ordered) const {
    const jet::Dynaset& set = *m_plan.statement->dynaset;
    const QByteArray first = '?' + QByteArray::number(m_plan.statement->parameters.size() + 1);
    const QByteArray second = '?' + QByteArray::number(m_plan.statement->parameters.size() + 2);
    QByteArray text = "SELECT " + set.key + " FROM " + set.from;
    if (ordered) {
        if (!set.where.isEmpty()) text += " WHERE " + set.where;
        return text + " ORDER BY " + set.orderBy + " LIMIT " + first;
    }
    text += " WHERE " + set.key + '>' + second;
    if (!set.where.isEmpty()) text += " AND (" + set.where + ')';
    return text + " ORDER BY " + set.key + " LIMIT " + first;
}

void KeySet::read(bool everything) {
    const bool sorted = ordered();
    if (!m_plan.keys) m_plan.keys = m_connection.engine().prepare(sql(sorted));
    Prepared& statement = *m_plan.keys;
    Connection::bind(statement, *m_plan.statement, m_literals);
    const int next = static_cast<int>(m_plan.statement->parameters.size()) + 1;
    const qint64 limit = everything ? -1 : m_chunk;
    statement.bindInteger(next, limit);
    if (!sorted)
        statement.bindInteger(next + 1, m_last);
    else if (m_seen.isEmpty() && !m_keys.empty())
        m_seen = QSet<qint64>(m_keys.begin(), m_keys.end());

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
    }
    m_metChange = m_metChange || statement.reprepared() != before;
    m_complete = everything || count < limit;
    m_chunk *= growth;
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
