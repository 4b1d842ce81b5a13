#include "SqlitePrepared.h"

#include "../Errors.h"
#include "SqliteFunctions.h"

namespace store {

SqlitePrepared::SqlitePrepared(SqliteEngine& engine, sqlite3_stmt* statement)
    : m_engine(&engine)
    , m_statement(statement)
    , m_writes(sqlite3_stmt_readonly(statement) == 0)
    , m_texts(static_cast<std::size_t>(sqlite3_bind_parameter_count(statement))) {
    engine.m_statements.insert(this);
}

SqlitePrepared::~SqlitePrepared() {
    if (m_engine) m_engine->m_statements.erase(this);
    sqlite3_finalize(m_statement);
}

void SqlitePrepared::abandon() noexcept {
    sqlite3_finalize(m_statement);
    m_statement = nullptr;
    m_engine = nullptr;
}

void SqlitePrepared::check(int code) {
    if (!m_engine) raise(3420);
    if (code != SQLITE_OK) m_engine->raiseLast(code);
}

void SqlitePrepared::bind(int parameter, const Value& typed) {
    // A text of the dialect may name a literal that this piece of the statement does not use.
    if (parameter > static_cast<int>(m_texts.size())) return;
    const Value value = encode(typed);
    if (const auto* number = std::get_if<qint64>(&value.data())) return bindInteger(parameter, *number);
    if (const auto* number = std::get_if<double>(&value.data()))
        return check(sqlite3_bind_double(m_statement, parameter, *number));
    if (const auto* text = std::get_if<QString>(&value.data())) {
        QByteArray& bytes = m_texts[static_cast<std::size_t>(parameter - 1)];
        bytes = text->toUtf8();
        return check(sqlite3_bind_text64(m_statement, parameter, bytes.constData(),
                                         static_cast<sqlite3_uint64>(bytes.size()), SQLITE_STATIC,
                                         SQLITE_UTF8));
    }
    check(sqlite3_bind_null(m_statement, parameter));
}

void SqlitePrepared::bindInteger(int parameter, qint64 value) {
    check(sqlite3_bind_int64(m_statement, parameter, value));
}

bool SqlitePrepared::step() {
    if (!m_engine) raise(3420);
    // A transaction looks when it begins and when it ends.
    if (m_writes && sqlite3_stmt_busy(m_statement) == 0 && !m_engine->inTransaction()) m_engine->checkPlace();
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    m_engine->raiseLast(code);
}

void SqlitePrepared::reset() noexcept {
    if (m_statement) sqlite3_reset(m_statement);
}

int SqlitePrepared::columnCount() const { return sqlite3_column_count(m_statement); }
qint64 SqlitePrepared::integer(int column) const { return sqlite3_column_int64(m_statement, column); }

Value SqlitePrepared::value(int column, Type type) const {
    return decode(sqlite3_column_value(m_statement, column), type);
}

int SqlitePrepared::reprepared() const {
    return sqlite3_stmt_status(m_statement, SQLITE_STMTSTATUS_REPREPARE, 0);
}

} // namespace store
