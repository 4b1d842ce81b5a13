#include "PostgresEngine.h"

#include "../Errors.h"
#include "PostgresPrepared.h"
#include "PostgresStructure.h"
#include "PostgresValue.h"

#include <QDeadlineTimer>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace store {

namespace {

constexpr int patience = 5000; ///< milliseconds that a lost connection is tried for
constexpr std::size_t mostDiscarded = 30;

// Without its quotes.
QString serverName(const QString& name) {
    const QByteArray quoted = jet::postgresName(name);
    return QString::fromUtf8(quoted.mid(1, quoted.size() - 2)).replace(u"\"\""_s, u"\""_s);
}

bool failed(const PGresult* result) {
    const ExecStatusType status = PQresultStatus(result);
    return status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_EMPTY_QUERY;
}

} // namespace

PostgresEngine::PostgresEngine(PostgresAddress address, Access access, Place place)
    : m_link(std::move(address))
    , m_access(access)
    , m_place(place) {
    try {
        m_link.connect(0);
        const State state = lookAround();
        if (state == State::Foreign) raise(3343, m_link.address().shown());
        if (place == Place::New && state == State::Ours) raise(3204, m_link.address().shown());
        if (place == Place::Existing && state == State::Empty) raise(3011, m_link.address().shown());
        setUp();
        if (place == Place::Existing) install();
    } catch (const LostConnection& how) {
        raiseLost(how.how);
    }
    m_opening = false;
}

PostgresEngine::~PostgresEngine() { close(); }

void PostgresEngine::close() noexcept {
    m_structureVersion.reset();
    m_nextNumber.reset();
    for (PostgresPrepared* statement : m_statements)
        statement->abandon();
    m_statements.clear();
    m_link.close();
}

std::unique_ptr<Prepared> PostgresEngine::prepare(const QByteArray& sql) {
    return std::make_unique<PostgresPrepared>(*this, sql);
}

void PostgresEngine::forget(PostgresPrepared& statement) noexcept {
    m_statements.erase(&statement);
    if (statement.m_epoch == m_link.epoch()) m_discarded.push_back(statement.m_name);
}

// ---- one statement

void PostgresEngine::ready() {
    if (m_link.readingRows() || m_link.waiting()) raise(3219);
    if (m_broken) raiseLostTransaction();
    if (m_link.alive()) return tellYear();
    if (m_transaction) {
        m_broken = true;
        raiseLostTransaction();
    }
    reconnect();
}

// The till's clock counts, also when its year is another by now. What a transaction sets goes with it when it
// is taken back.
void PostgresEngine::tellYear() {
    const int year = CurrentYear();
    if (year == m_yearTold || m_transaction) return;
    try {
        ask("SET merivane.year = " + QByteArray::number(year));
        m_yearTold = year;
    } catch (const LostConnection&) {
        m_link.close();
        reconnect();
    }
}

void PostgresEngine::reconnect() {
    if (const auto how = m_link.justGivenUp()) raiseLost(*how);
    // The first failure takes its time, since a server that is started anew comes back within seconds; those
    // that follow must not make each further click wait as long.
    const QDeadlineTimer deadline(std::exchange(m_patient, false) ? patience : 0);
    m_discarded.clear();
    for (bool connected = false; !connected;) {
        m_link.connect(static_cast<int>(deadline.remainingTime()));
        try {
            setUp();
            connected = true;
        } catch (const LostConnection& how) { // a server that falls again while it gets up
            m_link.close();
            if (how.givenUp() || deadline.hasExpired()) raiseLost(how.how);
        } catch (...) {
            m_link.close();
            throw;
        }
    }
    m_patient = true;
    m_reconnected = true;
}

void PostgresEngine::lost(const LostConnection& how, bool writes) {
    m_link.close();
    if (m_transaction) {
        m_broken = true;
        raiseLostTransaction();
    }
    if (writes && !how.nothingDone) raiseUnknownOutcome(how.how);
    raiseLost(how.how);
}

void PostgresEngine::start(PostgresPrepared& statement) {
    const std::array one{&statement};
    send(one);
}

// What travels together without a transaction around it is one for the server.
void PostgresEngine::runTogether(std::span<Prepared* const> statements) {
    std::vector<PostgresPrepared*> own;
    for (Prepared* statement : statements)
        own.push_back(static_cast<PostgresPrepared*>(statement));
    send(own);
    for (Prepared* statement : statements)
        statement->reset();
}

void PostgresEngine::send(Statements statements) {
    const auto all = [&](bool PostgresPrepared::*what) {
        return std::all_of(statements.begin(), statements.end(),
                           [what](const PostgresPrepared* one) { return one->*what; });
    };
    const bool reads = all(&PostgresPrepared::m_reads);
    bool repeated = false; // though the first time may have done it
    for (bool again : {true, false}) {
        try {
            try {
                ready();
            } catch (const RuntimeError&) { // nobody is there to ask
                if (repeated && !reads) raiseUnknownOutcome();
                throw;
            }
            if (statements.front()->m_stream) return startStream(*statements.front());
            if (!trySending(statements, true)) std::ignore = trySending(statements, false);
            // A row that is gone now was taken away by the first time.
            if (repeated && statements.back()->m_sql.startsWith("DELETE"))
                m_affected = std::max<qint64>(m_affected, 1);
            return;
        } catch (const LostConnection& how) {
            const bool harmless = reads || all(&PostgresPrepared::m_repeatable) || how.nothingDone;
            if (!again || !harmless || m_transaction || how.givenUp())
                lost({how.nothingDone && !repeated, how.how}, !reads);
            m_link.close();
            repeated = !how.nothingDone;
        }
    }
}

// Inside a transaction a savepoint travels with the statement, so that a fault takes back the statement
// alone.
bool PostgresEngine::trySending(Statements statements, bool mayPrepareAnew) {
    struct Travelling {
        PostgresPrepared* statement;
        bool prepares;
        std::size_t run; ///< its place among the orders
    };
    QVarLengthArray<Travelling, 2> travelling;
    std::vector<PostgresOrder> orders;
    using Kind = PostgresOrder::Kind;
    if (m_discarded.size() > mostDiscarded)
        for (const QByteArray& name : std::exchange(m_discarded, {}))
            orders.push_back({Kind::Text, "DEALLOCATE " + name, {}, nullptr, {}});
    if (m_transaction) orders.push_back({Kind::Text, "SAVEPOINT statement", {}, nullptr, {}});
    for (PostgresPrepared* one : statements) {
        const bool prepares = one->m_epoch != m_link.epoch();
        if (prepares) orders.push_back({Kind::Prepare, one->m_sql, one->m_name, nullptr, one->m_types});
        travelling.push_back({one, prepares, orders.size()});
        orders.push_back({Kind::Run, {}, one->m_name, &one->m_values, {}});
    }
    if (m_transaction) orders.push_back({Kind::Text, "RELEASE statement", {}, nullptr, {}});

    std::vector<PostgresResult> results = m_link.roundTrip(orders);
    for (const Travelling& one : travelling) {
        if (!one.prepares || failed(results[one.run - 1].get())) continue;
        one.statement->m_epoch = m_link.epoch();
        ++one.statement->m_prepared;
    }
    PostgresResult* fault = nullptr;
    for (PostgresResult& result : results)
        if (!fault && failed(result.get())) fault = &result;
    if (!fault) {
        for (const Travelling& one : travelling)
            take(*one.statement, std::move(results[one.run]));
        return true;
    }
    if (m_transaction) {
        const std::vector<PostgresOrder> back{{Kind::Text, "ROLLBACK TO statement", {}, nullptr, {}},
                                              {Kind::Text, "RELEASE statement", {}, nullptr, {}}};
        std::ignore = m_link.roundTrip(back);
    }
    bool mayBeStale = false;
    for (const Travelling& one : travelling)
        mayBeStale |= !one.prepares;
    if (mayPrepareAnew && mayBeStale && isStalePlan(fault->get())) {
        for (const Travelling& one : travelling) {
            // The server may know the old one or not, so it is not told to forget it.
            one.statement->m_name = nextName();
            one.statement->m_epoch = 0;
        }
        return false;
    }
    raisePostgres(fault->get(), m_counters);
}

void PostgresEngine::startStream(PostgresPrepared& statement) {
    using Kind = PostgresOrder::Kind;
    std::vector<PostgresOrder> orders;
    if (m_transaction) orders.push_back({Kind::Text, "SAVEPOINT statement", {}, nullptr, {}});
    if (statement.m_epoch != m_link.epoch())
        orders.push_back({Kind::Prepare, statement.m_sql, statement.m_name, nullptr, statement.m_types});
    m_streaming = &statement;
    if (!orders.empty()) {
        for (const PostgresResult& result : m_link.roundTrip(orders))
            if (failed(result.get())) {
                endRows();
                raisePostgres(result.get(), m_counters);
            }
        statement.m_epoch = m_link.epoch();
    }
    m_link.beginRows({Kind::Run, {}, statement.m_name, &statement.m_values, {}});
}

PostgresResult PostgresEngine::nextRow(PostgresPrepared& statement, bool first) {
    for (bool again = first && !m_transaction;; again = false) {
        try {
            PostgresResult row = m_link.nextRow();
            if (row && PQresultStatus(row.get()) != PGRES_SINGLE_TUPLE) {
                endRows();
                raisePostgres(row.get(), m_counters);
            }
            return row;
        } catch (const LostConnection& how) {
            m_streaming = nullptr;
            if (!again || how.givenUp()) lost(how, false);
            m_link.close();
            start(statement);
        }
    }
}

void PostgresEngine::endRows() noexcept {
    m_streaming = nullptr;
    m_link.endRows();
    if (!m_transaction || m_broken) return;
    try {
        // Also after a success: the savepoint was set before the rows were read.
        if (m_link.handle()) std::ignore = m_link.simple("ROLLBACK TO statement; RELEASE statement");
    } catch (const LostConnection&) {
        m_link.close(); // the next statement tells what became of the transaction
    }
}

void PostgresEngine::take(PostgresPrepared& statement, PostgresResult result) {
    if (PQresultStatus(result.get()) == PGRES_COMMAND_OK || statement.m_inserts) {
        const QByteArray count = PQcmdTuples(result.get());
        m_affected = count.toLongLong();
    }
    if (statement.m_inserts && PQntuples(result.get()) > 0)
        m_lastKey = QByteArray(PQgetvalue(result.get(), PQntuples(result.get()) - 1, 0)).toLongLong();
    statement.m_result = std::move(result);
}

// ---- texts

PostgresResult PostgresEngine::ask(const QByteArray& sql) {
    PostgresResult result = m_link.simple(sql);
    if (failed(result.get())) raisePostgres(result.get(), m_counters);
    return result;
}

void PostgresEngine::run(const QByteArray& sql) {
    ready();
    try {
        ask(sql);
    } catch (const LostConnection& how) {
        lost(how, true);
    }
}

qint64 PostgresEngine::number(const QByteArray& sql) {
    ready();
    try {
        const PostgresResult result = ask(sql);
        return PQntuples(result.get()) > 0 ? QByteArray(PQgetvalue(result.get(), 0, 0)).toLongLong() : 0;
    } catch (const LostConnection& how) {
        lost(how, false);
    }
}

void PostgresEngine::begin() {
    for (bool again : {true, false}) {
        ready();
        try {
            ask("BEGIN");
            m_transaction = true;
            return;
        } catch (const LostConnection& how) {
            if (!again || how.givenUp()) lost(how, false);
            m_link.close();
        }
    }
}

void PostgresEngine::commit() {
    const bool broken = m_broken || m_link.readingRows();
    m_transaction = false;
    if (std::exchange(m_broken, false) || broken) raiseLostTransaction();
    try {
        const PostgresResult result = ask("COMMIT");
        // A transaction in which something failed is taken back instead.
        if (QByteArray(PQcmdStatus(result.get())) == "ROLLBACK")
            raise(3000, u"Der Vorgang wurde vom Datenbankserver zurückgenommen."_s);
    } catch (const LostConnection& how) {
        lost(how, true);
    }
}

void PostgresEngine::rollback() noexcept {
    m_broken = false;
    if (!std::exchange(m_transaction, false)) return;
    // Without a connection the server does it by itself.
    if (m_link.waiting() || !m_link.alive()) return m_link.close();
    try {
        std::ignore = m_link.simple("ROLLBACK");
    } catch (const LostConnection&) {
        m_link.close();
    }
}

// ---- what the store asks besides

qint64 PostgresEngine::structureVersion() {
    m_toldSeen = m_link.told();
    m_reconnected = false;
    if (!m_structureVersion)
        m_structureVersion =
            prepare("SELECT \"value\"::bigint FROM \"merivane$settings\" WHERE \"key\"='structure'");
    Running running(*m_structureVersion);
    return running.step() ? running->integer(0) : 0;
}

bool PostgresEngine::heardOfChange() {
    if (m_link.readingRows() || m_link.waiting() || m_broken || !m_link.alive())
        return false; // the next statement sees to it
    return m_reconnected || m_link.told() != m_toldSeen;
}

void PostgresEngine::structureKnown(const std::vector<const TableDefinition*>& tables) {
    m_counters.clear();
    for (const TableDefinition* table : tables)
        if (const jet::Column* counter = table->autoNumber())
            m_counters.insert(serverName(table->table.name), counter->name);
}

void PostgresEngine::lockStructure() {
    run("SELECT 1 FROM \"merivane$settings\" WHERE \"key\"='structure' FOR UPDATE");
}

qint64 PostgresEngine::nextAutoNumber(const QString& table) {
    if (!m_nextNumber) {
        m_nextNumber = prepare("SELECT nextval($1::text::regclass)");
        m_nextNumber->allowRepeat();
    }
    Running running(*m_nextNumber);
    running->bind(1, QString::fromUtf8(counterName(table)));
    if (!running.step()) raise(3000, table);
    return running->integer(0);
}

QByteArray PostgresEngine::parameter(int number, Type type) const {
    const QByteArray place = '$' + QByteArray::number(number);
    return type == Type::Long ? place + "::bigint" : place;
}

qint64 PostgresEngine::roundTrips() const { return m_link.roundTrips(); }
std::shared_ptr<const jet::Emitter> PostgresEngine::emitter() const { return jet::postgresEmitter(); }

QString PostgresEngine::version() const {
    const char* told = PQparameterStatus(m_link.handle(), "server_version");
    return u"PostgreSQL "_s + QString::fromLatin1(told ? told : "").section(u' ', 0, 0);
}

QString PostgresEngine::warning() const {
    const QByteArray host = PQhost(m_link.handle());
    const bool local = host.isEmpty() || host.startsWith('/') || host.startsWith('@') ||
                       host == "localhost" || host == "127.0.0.1" || host == "::1";
    if (local || PQsslInUse(m_link.handle())) return {};
    return u"Die Verbindung zum Datenbankserver ist nicht verschlüsselt (TLS). Wer im Netz mitliest, sieht alle Daten."_s;
}

} // namespace store
