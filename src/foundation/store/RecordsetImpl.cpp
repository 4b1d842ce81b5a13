#include "RecordsetImpl.h"

#include "Errors.h"

using namespace Qt::StringLiterals;
using store::raise;

Recordset::Impl::Impl(std::shared_ptr<store::Connection> connection, const QString& source)
    : m_connection(std::move(connection))
    , m_source(source) {
    translate();
}

Recordset::Impl::~Impl() = default;

void Recordset::Impl::translate() {
    m_keys.reset();
    m_plan = m_connection->plan(m_source, m_literals);
    if (m_plan->statement->kind != jet::Kind::Select) raise(3219);
}

void Recordset::Impl::checkOpen() const {
    if (!m_connection) raise(3420);
    m_connection->engine();
}

void Recordset::Impl::start() {
    checkOpen();
    if (m_started) return;
    m_connection->noticeChange();
    // Another process may have changed the structure since the text was translated. The engine notices at the
    // first row; then the text is translated anew, once.
    for (bool again : {true, false}) {
        if (m_plan->generation != m_connection->generation()) translate();
        bool changed = false;
        try {
            if (keyed()) {
                m_keys.emplace(*m_connection, *m_plan, m_literals);
                std::ignore = m_keys->has(0);
                changed = m_keys->metChange() || m_connection->engine().heardOfChange();
            } else {
                readFixed();
            }
        } catch (const RuntimeError& error) {
            if (!again || error.Number != 3000) throw;
            changed = true;
            if (!m_connection->refreshStructure()) throw;
        }
        if (!changed || !m_connection->refreshStructure()) {
            if (m_plan->generation == m_connection->generation()) break;
        }
    }
    m_started = true;
    m_index = 0;
    m_seen = 0;
    m_found.reset();
    m_gone = false;
    m_rowValid = false;
}

void Recordset::Impl::readFixed() {
    m_fixed.clear();
    const jet::Statement& statement = *m_plan->statement;
    store::Prepared& prepared = m_connection->prepared(m_plan->main, statement.sql);
    m_connection->bind(prepared, statement, m_literals);
    const int before = prepared.reprepared();
    for (store::Running row(prepared); row.step();) {
        std::vector<Value> values;
        values.reserve(statement.columns.size());
        int index = 0;
        for (const jet::ResultColumn& column : statement.columns)
            values.push_back(row->value(index++, column.type));
        m_fixed.push_back(std::move(values));
    }
    if (prepared.reprepared() != before) m_connection->refreshStructure();
    m_connection->noticeChange();
}

bool Recordset::Impl::has(std::size_t index) {
    start();
    const bool there = keyed() ? m_keys->has(index) : index < m_fixed.size();
    if (there) m_seen = std::max(m_seen, index + 1);
    return there;
}

void Recordset::Impl::settle() {
    if (!m_found) return;
    start();
    m_index = m_keys->positionOf(*m_found);
    m_found.reset();
}

bool Recordset::Impl::eof() {
    checkOpen();
    if (m_found || m_gone) return false;
    return !has(m_index);
}

void Recordset::Impl::moveNext() {
    if (eof()) raise(3021);
    cancelUpdate();
    settle();
    m_rowValid = false;
    // A deleted row has left the set, so the next one already stands in its place.
    if (!m_gone) ++m_index;
    m_gone = false;
    std::ignore = has(m_index);
}

void Recordset::Impl::moveFirst() {
    cancelUpdate();
    if (!has(0)) raise(3021);
    m_index = 0;
    m_found.reset();
    m_gone = false;
    m_rowValid = false;
}

void Recordset::Impl::moveLast() {
    cancelUpdate();
    if (!has(0)) raise(3021);
    if (keyed()) m_keys->readAll();
    m_found.reset();
    m_gone = false;
    m_index = (keyed() ? m_keys->known() : m_fixed.size()) - 1;
    m_seen = m_index + 1;
    m_rowValid = false;
}

int Recordset::Impl::place() {
    if (eof()) raise(3021);
    settle();
    return static_cast<int>(m_index);
}

void Recordset::Impl::moveTo(int place) {
    cancelUpdate();
    if (place < 0 || !has(static_cast<std::size_t>(place))) raise(3021);
    const auto index = static_cast<std::size_t>(place);
    if (index == m_index && !m_found && !m_gone) return;
    m_index = index;
    m_found.reset();
    m_gone = false;
    m_rowValid = false;
}

int Recordset::Impl::recordCount() {
    std::ignore = has(0);
    const std::size_t known = keyed() ? m_keys->known() : m_fixed.size();
    return static_cast<int>(std::min(m_seen, known));
}

void Recordset::Impl::requery() {
    checkOpen();
    cancelUpdate();
    m_started = false;
    m_index = 0;
    m_found.reset();
    m_gone = false;
    m_rowValid = false;
    m_fixed.clear();
}

void Recordset::Impl::close() {
    checkOpen();
    cancelUpdate();
    m_keys.reset();
    m_connection.reset();
}

std::size_t Recordset::Impl::columnIndex(QStringView name) const {
    if (!m_connection) raise(3420);
    const auto& list = columns();
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list[i].name.size() == name.size() && name.compare(list[i].name, Qt::CaseInsensitive) == 0)
            return i;
    if (const qsizetype dot = name.indexOf(u'.'); dot > 0) {
        const QStringView table = name.left(dot);
        const QStringView column = name.mid(dot + 1);
        for (std::size_t i = 0; i < list.size(); ++i)
            if (column.compare(list[i].column, Qt::CaseInsensitive) == 0 &&
                table.compare(list[i].table, Qt::CaseInsensitive) == 0)
                return i;
    }
    raise(3265, name.toString());
}

qint64 Recordset::Impl::currentKey() {
    if (m_found) return *m_found;
    if (m_gone) raise(3167);
    if (!has(m_index)) raise(3021);
    return m_keys->at(m_index);
}

const std::vector<Value>& Recordset::Impl::currentRow(Reading reading) {
    start();
    if (!keyed()) {
        if (m_index >= m_fixed.size()) raise(3021);
        return m_fixed[m_index];
    }
    const qint64 changes = m_plan->changeCount();
    if (reading == Reading::Live && m_rowValid && m_rowChanges == changes) return m_row;
    m_connection->engine();
    const qint64 key = currentKey();
    m_rowValid = false;
    const bool there = m_found || reading == Reading::AsItStands ? m_keys->freshRow(key, m_row)
                                                                 : m_keys->row(m_index, m_row);
    if (!there) raise(3167);
    m_rowValid = true;
    m_rowChanges = changes;
    return m_row;
}

void Recordset::Impl::findFirst(const QString& criteria) {
    checkOpen();
    cancelUpdate();
    if (!keyed()) return findFixed(criteria);
    std::vector<Value> criteriaLiterals;
    if (m_plan->generation != m_connection->generation()) {
        m_started = false;
        translate();
    }
    const auto find = m_connection->findPlan(*m_plan, m_literals.size(), criteria, criteriaLiterals);
    std::vector<Value> literals = m_literals;
    literals.insert(literals.end(), criteriaLiterals.begin(), criteriaLiterals.end());
    store::Prepared& prepared = m_connection->prepared(find->main, find->statement->sql);
    m_connection->bind(prepared, *find->statement, literals);
    store::Running row(prepared);
    m_noMatch = !row.step();
    if (m_noMatch) return;
    standOn(row->integer(0));
    if (!m_connection->engine().distant()) return;
    m_row.resize(columns().size()); // the row came along
    for (std::size_t i = 0; i < m_row.size(); ++i)
        m_row[i] = row->value(static_cast<int>(i) + 1, columns()[i].type);
    m_rowChanges = m_plan->changeCount();
    m_rowValid = true;
}

void Recordset::Impl::moveToLastModified() {
    checkOpen();
    cancelUpdate();
    if (!m_lastModified) raise(3021);
    standOn(*m_lastModified);
}

void Recordset::Impl::standOn(qint64 key) {
    if (!m_started) {
        m_keys.emplace(*m_connection, *m_plan, m_literals);
        m_started = true;
        m_index = 0;
        m_seen = 0;
    }
    m_found = key;
    m_gone = false;
    m_rowValid = false;
    m_seen = std::max<std::size_t>(m_seen, 1);
}

// The criteria are an expression of the dialect, so the dialect answers: the query once more with the
// criteria around it. The first row of the set that is among the answers is the one.
void Recordset::Impl::findFixed(const QString& criteria) {
    start();
    QString query = m_source.trimmed();
    while (query.endsWith(u';') || query.endsWith(u' '))
        query.chop(1);
    Impl matching(m_connection, u"SELECT * FROM ("_s + query + u") AS q WHERE "_s + criteria);
    m_noMatch = true;
    for (std::size_t i = 0; i < m_fixed.size() && m_noMatch; ++i) {
        for (matching.m_index = 0; !matching.eof() && m_noMatch; ++matching.m_index) {
            if (matching.currentRow() != m_fixed[i]) continue;
            m_noMatch = false;
            m_index = i;
            m_seen = std::max(m_seen, i + 1);
        }
    }
}
