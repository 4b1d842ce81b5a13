#include "../Engines.h"
#include "../Errors.h"
#include "PostgresEngine.h"
#include "PostgresLibrary.h"
#include "PostgresStructure.h"
#include "PostgresWait.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace store {

namespace {

using std::chrono::milliseconds;

constexpr int patience = 5000; ///< milliseconds that a start waits for one that has the store alone
constexpr int haste = 300; ///< the same for one that wants it alone: the server notices an end a little late
constexpr auto lockClass = "1297239601"; ///< "MVN1": our advisory locks among those of others
constexpr auto channel = "merivane";
constexpr int lacksRight = 3112;

// What not every server can do, and what is well without: no compiling of short statements, one reader of a
// table who begins at its beginning, an early end for connections and questions of tills that are gone, word
// of changes of structure.
constexpr auto wishes = R"(
DO $$
DECLARE
  wish text;
BEGIN
  FOREACH wish IN ARRAY ARRAY['SET jit = off', 'SET max_parallel_workers_per_gather = 0',
                              'SET synchronize_seqscans = off', 'SET tcp_keepalives_idle = 10',
                              'SET tcp_keepalives_interval = 5', 'SET tcp_keepalives_count = 3',
                              'SET client_connection_check_interval = ''10s''', 'LISTEN merivane'] LOOP
    BEGIN
      EXECUTE wish;
    EXCEPTION WHEN OTHERS THEN
      NULL;
    END;
  END LOOP;
END $$)";

// What extensions brought belongs to nobody.
constexpr auto placeSql = R"(
SELECT current_schema(), split_part(current_setting('search_path'), ',', 1), current_user,
  (SELECT count(*) FROM pg_class WHERE relnamespace = s.oid AND relkind = 'r'
     AND relname IN ('merivane$settings', 'merivane$columns', 'merivane$indexes')),
  (SELECT count(*) FROM pg_class c WHERE relnamespace = s.oid AND NOT EXISTS
     (SELECT 1 FROM pg_depend WHERE classid = 'pg_class'::regclass AND objid = c.oid AND deptype = 'e')) +
  (SELECT count(*) FROM pg_proc p WHERE pronamespace = s.oid AND NOT EXISTS
     (SELECT 1 FROM pg_depend WHERE classid = 'pg_proc'::regclass AND objid = p.oid AND deptype = 'e'))
FROM (SELECT (SELECT oid FROM pg_namespace WHERE nspname = current_schema()) AS oid) AS s)";

QByteArray cell(const PostgresResult& result, int column) { return PQgetvalue(result.get(), 0, column); }

QByteArray literal(const QByteArray& text) { return '\'' + QByteArray(text).replace('\'', "''") + '\''; }

/// How long a statement waits for a row that another till holds. The server must have told so before it
/// counts as silent.
milliseconds lockPatience() {
    constexpr milliseconds usual(10'000), ahead(2000);
    return std::min(usual, std::max(ServerLimit() - ahead, ServerLimit() / 2));
}

class ServerPlace final : public NewStore {
  public:
    explicit ServerPlace(PostgresAddress address)
        : m_address(std::move(address)) {}
    std::unique_ptr<Engine> takeEngine() override {
        return std::make_unique<PostgresEngine>(m_address, Access::Shared, PostgresEngine::Place::New);
    }
    void finish() override {} // the commit was the end of it

  private:
    PostgresAddress m_address;
};

} // namespace

std::unique_ptr<NewStore> newServerStore(const QString& name) {
    return std::make_unique<ServerPlace>(PostgresAddress(name));
}

PostgresEngine::State PostgresEngine::lookAround() {
    const PostgresResult place = ask(placeSql);
    m_schemaMissing = PQgetisnull(place.get(), 0, 0) != 0;
    if (m_schemaMissing) {
        // The search path names a schema that is still to be made.
        m_schema = cell(place, 1).trimmed();
        if (m_schema.startsWith('"') && m_schema.endsWith('"'))
            m_schema = m_schema.mid(1, m_schema.size() - 2).replace("\"\"", "\"");
        if (m_schema == "$user") m_schema = cell(place, 2);
        return State::Empty;
    }
    m_schema = cell(place, 0);
    if (cell(place, 3).toInt() == 3) return State::Ours;
    return cell(place, 4).toInt() == 0 ? State::Empty : State::Foreign;
}

// Tables are read by one process and from their start: sums of doubles hang on the order.
void PostgresEngine::setUp() {
    QByteArray sql = "SET search_path = " + quoted(QString::fromUtf8(m_schema)) +
                     "; SET standard_conforming_strings = on; SET extra_float_digits = 1;"
                     " SET lock_timeout = " +
                     QByteArray::number(lockPatience().count()) +
                     "; SET statement_timeout = 0; SET client_min_messages = error;"
                     " SET default_transaction_isolation = 'read committed';" +
                     QByteArray(wishes);
    if (readOnly()) sql += "; SET default_transaction_read_only = on";
    m_yearTold = CurrentYear();
    ask(sql + "; SET merivane.year = " + QByteArray::number(m_yearTold));
    if (m_place == Place::New) return;
    takeHold();
    if (readOnly()) return;
    const PostgresResult writable = ask("SELECT current_setting('transaction_read_only')");
    if (cell(writable, 0) == "on")
        raiseTold(3027,
                  u"Der Datenbankserver '%1' nimmt nur Lesezugriffe an (er ist eine Kopie oder gesperrt). "
                  "Bitte die Adresse des Hauptservers eintragen."_s.arg(m_link.address().shown()));
}

// Who has the store open holds a lock of the session, shared or alone; it ends with the connection.
void PostgresEngine::takeHold() {
    const QByteArray key = QByteArray(lockClass) + ", hashtext(" + literal(m_schema) + ')';
    const QByteArray sql = exclusive() ? "SELECT pg_try_advisory_lock(" + key + ')'
                                       : "SELECT pg_try_advisory_lock_shared(" + key + ')';
    const milliseconds most(exclusive() ? haste : patience);
    PostgresWait wait(m_link.address().host(), true);
    while (cell(ask(sql), 0) != "t") {
        if (wait.waited() > most) raise(3045, m_link.address().shown());
        if (!wait.pause(PostgresWait::slice, most - wait.waited()))
            throw LostConnection{true, Ended::Cancelled};
    }
}

void PostgresEngine::furnish() {
    // Of two tills that start first at the same moment one makes the store, the other waits and finds it
    // made.
    run("SELECT pg_advisory_xact_lock(" + QByteArray(lockClass) + ", hashtext(" + literal("new " + m_schema) +
        "))");
    State state{};
    try {
        state = lookAround();
    } catch (const LostConnection& how) {
        lost(how, false);
    }
    if (state == State::Foreign) raise(3343, m_link.address().shown());
    if (state == State::Ours) raise(3204, m_link.address().shown());
    QByteArray sql;
    if (m_schemaMissing) sql += "CREATE SCHEMA " + quoted(QString::fromUtf8(m_schema)) + ';';
    run(sql + catalogueSql());
    install();
}

void PostgresEngine::destroy() {
    run("DROP SCHEMA " + quoted(QString::fromUtf8(m_schema)) + " CASCADE");
    close();
}

void PostgresEngine::noteStructureChange() {
    run("UPDATE \"merivane$settings\" SET \"value\"=(\"value\"::bigint+1)::text WHERE \"key\"='structure'; NOTIFY " +
        QByteArray(channel));
}

// Several tills may bring the same library at once; one that brings an older one leaves the newer in its
// place.
void PostgresEngine::install() {
    const auto outdated = [&] {
        return number("SELECT coalesce((SELECT \"value\"::bigint FROM \"merivane$settings\""
                      " WHERE \"key\"='functions'), 0)") < postgresLibraryVersion;
    };
    if (readOnly() || !outdated()) return;
    const bool own = !inTransaction();
    if (own) begin();
    run("SELECT pg_advisory_xact_lock(" + QByteArray(lockClass) + ", hashtext(" +
        literal("functions " + m_schema) + "))");
    if (outdated()) {
        try {
            for (const QByteArray& script : postgresLibrary())
                run(script);
        } catch (const RuntimeError& error) {
            if (error.Number != lacksRight || !own) throw;
            raiseTold(
                lacksRight,
                u"Die Funktionen in der Datenbank '%1' sind älter als dieses Programm, und der Benutzer der "
                "Kasse darf sie nicht ersetzen. Bitte eine Kasse einmal mit dem Benutzer starten, dem die "
                "Datenbank gehört."_s.arg(m_link.address().shown()));
        }
        run("INSERT INTO \"merivane$settings\" VALUES ('functions', '" +
            QByteArray::number(postgresLibraryVersion) +
            "') ON CONFLICT (\"key\") DO UPDATE SET \"value\" = excluded.\"value\"");
    }
    if (own) commit();
}

} // namespace store
