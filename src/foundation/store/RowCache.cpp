#include "RowCache.h"

namespace store {

namespace {
constexpr qint64 freshness = 1000; ///< milliseconds
}

const std::vector<Value>* RowCache::find(qint64 key) const {
    if (m_rows.isEmpty() || m_changes != m_plan.changeCount() || m_age.hasExpired(freshness)) return nullptr;
    const auto it = m_rows.constFind(key);
    return it == m_rows.constEnd() ? nullptr : &*it;
}

void RowCache::clear() {
    m_rows.clear();
    m_changes = m_plan.changeCount();
    m_age.start();
}

void RowCache::changed(qint64 key, qint64 changesBefore) {
    m_rows.remove(key);
    if (m_changes == changesBefore) m_changes = m_plan.changeCount();
}

} // namespace store
