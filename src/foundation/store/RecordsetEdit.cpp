#include "ColumnValue.h"
#include "Errors.h"
#include "RecordsetImpl.h"

#include <exception>

using namespace Qt::StringLiterals;
using store::raise;

void Recordset::Impl::checkChangeable() const {
    checkOpen();
    if (!keyed() || m_connection->engine().readOnly()) raise(3027);
}

void Recordset::Impl::prepareDefaults() {
    const auto& columns = m_plan->base->table.columns;
    if (m_plan->defaults.empty())
        for (const jet::Column& column : columns)
            m_plan->defaults.push_back(m_connection->defaultOf(column));
    m_buffer.values.resize(columns.size());
    m_buffer.written.assign(columns.size(), false);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const store::Plan::Default& rule = m_plan->defaults[i];
        m_buffer.values[i] = rule.constant ? rule.value : m_connection->defaultOf(columns[i]).value;
        m_buffer.written[i] = rule.present;
    }
}

void Recordset::Impl::addNew() {
    checkChangeable();
    cancelUpdate();
    if (m_plan->generation != m_connection->generation()) {
        m_started = false;
        translate();
        checkChangeable();
    }
    prepareDefaults();
    m_buffer.mode = Buffer::Add;
}

void Recordset::Impl::edit() {
    checkChangeable();
    cancelUpdate();
    const std::vector<Value>& row = currentRow(Reading::AsItStands);
    m_buffer.values.assign(m_plan->base->table.columns.size(), Value());
    m_buffer.written.assign(m_plan->base->table.columns.size(), false);
    for (std::size_t i = 0; i < row.size(); ++i)
        if (const int base = m_plan->baseColumns[i]; base >= 0)
            m_buffer.values[static_cast<std::size_t>(base)] = row[i];
    m_buffer.mode = Buffer::Change;
}

const Value& Recordset::Impl::value(std::size_t column) {
    if (m_buffer.mode == Buffer::None) return currentRow()[column];
    static const Value null;
    const int base = m_plan->baseColumns[column];
    if (base < 0) return m_buffer.mode == Buffer::Change ? currentRow()[column] : null;
    const auto at = static_cast<std::size_t>(base);
    // The number of a new row is taken when somebody wants to see it; otherwise the insert gives one by
    // itself.
    if (m_buffer.mode == Buffer::Add && baseColumn(at).autoNumber && !m_buffer.written[at]) {
        m_buffer.values[at] = m_connection->engine().nextAutoNumber(m_plan->base->table.name);
        m_buffer.written[at] = true;
    }
    return m_buffer.values[at];
}

void Recordset::Impl::set(QStringView name, const Value& value) {
    checkOpen();
    if (!editing()) raise(3020);
    const std::size_t column = columnIndex(name);
    const int base = m_plan->baseColumns[column];
    if (base < 0) raise(3164, columns()[column].name);
    const auto at = static_cast<std::size_t>(base);
    if (m_buffer.mode == Buffer::Change && baseColumn(at).autoNumber) raise(3164, baseColumn(at).name);
    m_buffer.values[at] = store::valueForColumn(value, baseColumn(at));
    m_buffer.written[at] = true;
}

void Recordset::Impl::update() {
    checkOpen();
    if (!editing()) raise(3020);
    if (m_buffer.mode == Buffer::Add)
        insertBuffer();
    else
        updateBuffer();
    cancelUpdate();
}

void Recordset::Impl::bindBuffer(store::Prepared& statement) {
    int parameter = 0;
    for (std::size_t i = 0; i < m_buffer.values.size(); ++i)
        if (m_buffer.written[i]) statement.bind(++parameter, m_buffer.values[i]);
}

void Recordset::Impl::insertBuffer() {
    store::Engine& engine = m_connection->engine();
    auto& prepared = m_plan->inserts[m_buffer.written];
    if (!prepared) {
        QByteArrayList names;
        QByteArrayList places;
        for (std::size_t i = 0; i < m_buffer.written.size(); ++i) {
            if (!m_buffer.written[i]) continue;
            names.append(engine.identifier(baseColumn(i).name));
            places.append(engine.parameter(static_cast<int>(places.size()) + 1));
        }
        const QByteArray into = "INSERT INTO " + engine.identifier(m_plan->base->table.name);
        prepared = engine.prepare(
            (names.isEmpty() ? into + " DEFAULT VALUES"
                             : into + " (" + names.join(", ") + ") VALUES (" + places.join(", ") + ')') +
            engine.returningKey());
    }
    bindBuffer(*prepared);
    m_connection->tableChanges(m_plan->base->table.name);
    const qint64 key = insertAnyhow(*prepared);
    m_lastModified = key;
    if (m_plan->base->autoNumber()) m_connection->numberGiven(key);
    // A set that is not read to its end meets the new row by itself.
    if (m_started && m_keys->complete()) {
        const bool counted = m_seen == m_keys->known();
        m_keys->append(key);
        if (counted && m_seen > 0) ++m_seen;
    }
}

// Where the connection was lost and nobody knows whether the row arrived, its number tells: it was given to
// nobody else. The key of the row.
qint64 Recordset::Impl::insertAnyhow(store::Prepared& statement) {
    std::optional<qint64> number;
    for (std::size_t i = 0; i < m_buffer.written.size(); ++i)
        if (baseColumn(i).autoNumber && m_buffer.written[i] && !m_buffer.values[i].isNull())
            number = m_buffer.values[i].toInteger();
    store::Engine& engine = m_connection->engine();
    const auto arrived = [&] {
        if (!m_plan->arrived)
            m_plan->arrived =
                engine.prepare("SELECT 1 FROM " + engine.identifier(m_plan->base->table.name) + " WHERE " +
                               engine.keyColumn() + '=' + engine.parameter(1, Type::Long));
        m_plan->arrived->bindInteger(1, number.value());
        store::Running row(*m_plan->arrived);
        return row.step();
    };
    bool uncertain = false;
    for (int attempt = 1;; ++attempt) {
        try {
            m_connection->finishNoticing(statement);
            return engine.lastKey();
        } catch (const RuntimeError& error) {
            const bool unknown = error.Number == store::outcomeUnknown;
            const bool late = uncertain && error.Number == 3022; // it arrived just now
            if (!number || !(unknown || late)) throw;
            const std::exception_ptr doubt = std::current_exception();
            bool there = false;
            try {
                there = arrived();
            } catch (const RuntimeError&) { // nobody is there to ask: the doubt stays, and is told as one
                std::rethrow_exception(doubt);
            }
            if (there) return *number;
            if (!unknown || attempt == 2) throw;
            uncertain = true;
        }
    }
}

void Recordset::Impl::updateBuffer() {
    const qint64 key = currentKey();
    if (std::find(m_buffer.written.begin(), m_buffer.written.end(), true) == m_buffer.written.end()) return;
    auto& prepared = m_plan->updates[m_buffer.written];
    int count = 0;
    for (const bool written : m_buffer.written)
        count += written ? 1 : 0;
    if (!prepared) {
        store::Engine& engine = m_connection->engine();
        QByteArrayList parts;
        for (std::size_t i = 0; i < m_buffer.written.size(); ++i)
            if (m_buffer.written[i])
                parts.append(engine.identifier(baseColumn(i).name) + '=' +
                             engine.parameter(static_cast<int>(parts.size()) + 1));
        prepared = engine.prepare("UPDATE " + engine.identifier(m_plan->base->table.name) + " SET " +
                                  parts.join(", ") + " WHERE " + engine.keyColumn() + '=' +
                                  engine.parameter(count + 1, Type::Long));
        prepared->allowRepeat(); // the values stand in it
    }
    bindBuffer(*prepared);
    prepared->bindInteger(count + 1, key);
    const qint64 before = m_plan->changeCount();
    m_connection->tableChanges(m_plan->base->table.name);
    m_connection->finishNoticing(*prepared);
    m_rowValid = false;
    m_keys->rows().changed(key, before);
    if (m_connection->engine().affected() == 0) {
        cancelUpdate();
        raise(3167);
    }
    m_lastModified = key;
}

void Recordset::Impl::remove() {
    checkChangeable();
    cancelUpdate();
    const qint64 key = currentKey();
    if (!m_plan->remove) {
        store::Engine& engine = m_connection->engine();
        m_plan->remove =
            engine.prepare("DELETE FROM " + engine.identifier(m_plan->base->table.name) + " WHERE " +
                           engine.keyColumn() + '=' + engine.parameter(1, Type::Long));
        m_plan->remove->allowRepeat();
    }
    settle();
    m_plan->remove->bindInteger(1, key);
    const qint64 before = m_plan->changeCount();
    m_connection->tableChanges(m_plan->base->table.name);
    store::Connection::finish(*m_plan->remove);
    m_rowValid = false;
    m_keys->rows().changed(key, before);
    if (m_connection->engine().affected() == 0) raise(3167);
    m_keys->erase(m_index);
    if (m_seen > 0) --m_seen;
    m_gone = true;
}
