#include "../Errors.h"
#include "PostgresEngine.h"
#include "PostgresValue.h"

namespace store {

namespace {

constexpr qsizetype enough = 64 * 1024; ///< bytes that travel at a time

void append(QByteArray& line, const Value& value) {
    const auto text = postgresText(value);
    if (!text) {
        line += "\\N";
        return;
    }
    for (const char c : *text) {
        switch (c) {
        case '\\':
            line += "\\\\";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\t':
            line += "\\t";
            break;
        default:
            line += c;
        }
    }
}

/// The server's own way for many rows.
class CopySink final : public RowSink {
  public:
    CopySink(PostgresLink& link, const Counters& counters, const QByteArray& table,
             const QByteArrayList& columns)
        : m_link(link)
        , m_counters(counters)
        , m_epoch(link.epoch())
        , m_table(table) {
        const QByteArray sql = "COPY " + table + " (" + columns.join(", ") + ") FROM STDIN";
        const PostgresResult result(PQexec(link.handle(), sql.constData()), PQclear);
        if (PQresultStatus(result.get()) != PGRES_COPY_IN) fail(result.get());
        m_open = true;
    }
    ~CopySink() override {
        if (m_open && m_epoch == m_link.epoch() && m_link.handle()) {
            PQputCopyEnd(m_link.handle(), "not finished");
            drain();
        }
    }
    CopySink(const CopySink&) = delete;
    CopySink& operator=(const CopySink&) = delete;

    void add(const std::vector<Value>& row) override {
        for (const Value& value : row) {
            append(m_waiting, value);
            m_waiting += '\t';
        }
        m_waiting.back() = '\n';
        if (m_waiting.size() >= enough) send();
    }

    void finish() override {
        send();
        m_open = false;
        if (PQputCopyEnd(m_link.handle(), nullptr) != 1) raiseLostTransaction();
        const PostgresResult result = drain();
        if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) fail(result.get());
        // The server plans by what it knows of a table and would look at this one only minutes later.
        const PostgresResult known(PQexec(m_link.handle(), "ANALYZE " + m_table), PQclear);
        if (PQresultStatus(known.get()) != PGRES_COMMAND_OK) fail(known.get());
    }

  private:
    void send() {
        const int sent = m_waiting.isEmpty() ? 1
                                             : PQputCopyData(m_link.handle(), m_waiting.constData(),
                                                             static_cast<int>(m_waiting.size()));
        m_waiting.clear();
        if (sent == 1) return;
        m_open = false;
        fail(drain().get());
    }
    PostgresResult drain() {
        PostgresResult first(nullptr, PQclear);
        while (PGresult* result = PQgetResult(m_link.handle())) {
            PostgresResult next(result, PQclear);
            if (!first) first = std::move(next);
        }
        return first;
    }
    [[noreturn]] void fail(const PGresult* result) {
        if (PQstatus(m_link.handle()) != CONNECTION_OK) raiseLostTransaction();
        raisePostgres(result, m_counters);
    }

    PostgresLink& m_link;
    const Counters& m_counters;
    quint64 m_epoch;
    QByteArray m_table;
    QByteArray m_waiting;
    bool m_open = false;
};

} // namespace

std::unique_ptr<RowSink> PostgresEngine::rowSink(const TableDefinition& table) {
    ready();
    QByteArrayList columns;
    for (const jet::Column& column : table.table.columns)
        columns.append(identifier(column.name));
    return std::make_unique<CopySink>(m_link, m_counters, identifier(table.table.name), columns);
}

} // namespace store
