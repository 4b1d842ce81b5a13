#include "../Errors.h"
#include "PostgresEngine.h"
#include "PostgresValue.h"

#include <utility>

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
    /// Copying stands in a transaction, which goes with its connection.
    template <typename Act>
    auto told(Act&& act) {
        try {
            return act();
        } catch (const LostConnection&) {
            m_open = false;
            m_link.close();
            raiseLostTransaction();
        }
    }

  public:
    CopySink(PostgresLink& link, const Counters& counters, const QByteArray& table,
             const QByteArrayList& columns)
        : m_link(link)
        , m_counters(counters)
        , m_epoch(link.epoch())
        , m_table(table) {
        const QByteArray sql = "COPY " + table + " (" + columns.join(", ") + ") FROM STDIN";
        const PostgresResult result = told([&] { return m_link.simple(sql); });
        if (PQresultStatus(result.get()) != PGRES_COPY_IN) fail(result.get());
        m_open = true;
    }
    ~CopySink() override {
        if (!m_open || m_epoch != m_link.epoch() || !m_link.handle()) return;
        try {
            m_link.copied("not finished");
        } catch (const LostConnection&) {
            m_link.close();
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
        const PostgresResult result = told([&] { return m_link.copied(); });
        if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) fail(result.get());
        // The server plans by what it knows of a table and would look at this one only minutes later.
        const PostgresResult known = told([&] { return m_link.simple("ANALYZE " + m_table); });
        if (PQresultStatus(known.get()) != PGRES_COMMAND_OK) fail(known.get());
    }

  private:
    void send() {
        const QByteArray bytes = std::exchange(m_waiting, {});
        if (bytes.isEmpty() || told([&] { return m_link.copy(bytes); })) return;
        m_open = false;
        fail(told([&] { return m_link.copied(); }).get());
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
