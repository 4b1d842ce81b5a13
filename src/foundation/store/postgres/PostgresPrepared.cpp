#include "PostgresPrepared.h"

#include "../Errors.h"
#include "PostgresEngine.h"
#include "PostgresValue.h"

#include <QVarLengthArray>

namespace store {

namespace {

constexpr unsigned oidText = 25;

/// Calls `found` with the number of each parameter, "$1", of a text; those inside quotes are none.
template <typename Found>
void forEachParameter(const QByteArray& sql, Found found) {
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const char c = sql[i];
        if (c == '\'' || c == '"') {
            const qsizetype end = sql.indexOf(c, i + 1);
            if (end < 0) return;
            i = end;
        } else if (c == '$') {
            int number = 0;
            while (i + 1 < sql.size() && sql[i + 1] >= '0' && sql[i + 1] <= '9')
                number = number * 10 + (sql[++i] - '0');
            if (number > 0) found(static_cast<std::size_t>(number));
        }
    }
}

} // namespace

PostgresPrepared::PostgresPrepared(PostgresEngine& engine, const QByteArray& sql)
    : m_engine(&engine)
    , m_sql(sql)
    , m_name(engine.nextName())
    , m_reads(sql.startsWith("SELECT") || sql.startsWith('(') || sql.startsWith("VALUES"))
    , m_inserts(sql.startsWith("INSERT")) {
    // A text need not use all the parameters that are counted; the server wants to know a type for each.
    forEachParameter(sql, [this](std::size_t number) {
        if (m_types.size() < number) m_types.resize(number, oidText);
        m_types[number - 1] = 0;
    });
    m_values.texts.resize(m_types.size());
    m_values.given.resize(m_types.size(), false);
    engine.m_statements.insert(this);
}

PostgresPrepared::~PostgresPrepared() {
    if (m_engine) m_engine->forget(*this);
}

void PostgresPrepared::bind(int parameter, const Value& value) {
    const auto at = static_cast<std::size_t>(parameter - 1);
    // A text of the dialect may name a literal that this piece of the statement does not use.
    if (at >= m_types.size() || m_types[at] == oidText) return;
    auto text = postgresText(value);
    m_values.given[at] = text.has_value();
    m_values.texts[at] = text ? *std::move(text) : QByteArray();
}

void PostgresPrepared::bindInteger(int parameter, qint64 value) { bind(parameter, value); }

bool PostgresPrepared::step() {
    if (!m_engine) raise(3420);
    if (!m_running) {
        m_running = true;
        m_row = -1;
        m_engine->start(*this);
    }
    if (m_stream) return nextStreamed();
    return ++m_row < PQntuples(m_result.get());
}

bool PostgresPrepared::nextStreamed() {
    m_result = m_engine->nextRow(*this, m_row < 0);
    m_row = 0;
    return m_result != nullptr;
}

void PostgresPrepared::reset() noexcept {
    if (m_engine && m_engine->m_streaming == this) m_engine->endRows();
    m_result.reset();
    m_running = false;
    m_stream = false;
}

int PostgresPrepared::columnCount() const { return PQnfields(m_result.get()); }

qint64 PostgresPrepared::integer(int column) const {
    const Value number = value(column, Type::Long);
    return number.isNull() ? 0 : number.toInteger();
}

Value PostgresPrepared::value(int column, Type type) const {
    const PGresult* result = m_result.get();
    if (PQgetisnull(result, m_row, column)) return {};
    return decodePostgres(PQgetvalue(result, m_row, column), PQgetlength(result, m_row, column), type,
                          PQftype(result, column));
}

int PostgresPrepared::reprepared() const { return std::max(m_prepared, 1); }

} // namespace store
