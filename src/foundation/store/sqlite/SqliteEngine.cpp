#include "SqliteEngine.h"

#include "../Errors.h"
#include "SqliteFunctions.h"
#include "SqlitePrepared.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <sqlite3.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace store {

namespace {

constexpr int patience = 5000; ///< milliseconds that a statement waits for another till's write
constexpr int haste = 100;     ///< the same for an exclusive open, which every start tries

// Looks again every few milliseconds. The engine's own way looks ever more seldom, so that among busy tills
// the one that has waited longest would come last.
int waitForOthers(void*, int times) {
    thread_local std::chrono::steady_clock::time_point begun;
    const auto now = std::chrono::steady_clock::now();
    if (times == 0) begun = now;
    if (now - begun >= std::chrono::milliseconds(patience)) return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    return 1;
}

} // namespace

SqliteEngine::SqliteEngine(const QString& file, Access access, Place place)
    : m_file(file)
    , m_access(access)
    , m_place(place) {
    const bool memory = file == u":memory:";
    if (!memory) {
        m_file = QFileInfo(file).absoluteFilePath();
        if (place == Place::Existing) checkHeader(m_file);
        m_network = onNetwork(m_file);
    }
    try {
        if (m_network && !readOnly() && place == Place::Existing)
            m_users = std::make_unique<UserLock>(m_file, exclusive());
        openConnection();
    } catch (...) {
        close();
        throw;
    }
    m_opening = false;
}

SqliteEngine::~SqliteEngine() { close(); }

void SqliteEngine::close() noexcept {
    m_structureVersion.reset();
    m_nextNumber.reset();
    m_begin.reset();
    m_commit.reset();
    for (SqlitePrepared* statement : m_statements)
        statement->abandon();
    m_statements.clear();
    sqlite3_close_v2(m_db);
    m_db = nullptr;
    m_users.reset();
}

int SqliteEngine::openHandle(bool immutable) {
    int flags = SQLITE_OPEN_NOMUTEX;
    QByteArray name = m_file.toUtf8();
    if (readOnly())
        flags |= SQLITE_OPEN_READONLY;
    else
        flags |= SQLITE_OPEN_READWRITE;
    if (m_place == Place::New) flags |= SQLITE_OPEN_CREATE;
    if (immutable) {
        name.replace('%', "%25").replace('?', "%3f").replace('#', "%23");
        name = "file:" + name + "?immutable=1";
        flags |= SQLITE_OPEN_URI;
    }
    const int code = sqlite3_open_v2(name.constData(), &m_db, flags, nullptr);
    if (code != SQLITE_OK) return code;
    sqlite3_extended_result_codes(m_db, 1);
    sqlite3_busy_timeout(m_db, patience);
    return sqlite3_exec(m_db, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
}

void SqliteEngine::openConnection() {
    if (m_file == u":memory:") {
        if (const int code =
                sqlite3_open_v2(":memory:", &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
            code != SQLITE_OK)
            raiseLast(code);
    } else if (readOnly()) {
        int code = openHandle(false);
        // In a folder without the right to write, the shared memory of the log cannot be made. When there is
        // no log either, nobody else is at work and the file alone tells everything.
        if (code != SQLITE_OK && QFileInfo(m_file + u"-wal"_s).size() == 0 &&
            !QFileInfo(QFileInfo(m_file).absolutePath()).isWritable()) {
            sqlite3_close_v2(m_db);
            code = openHandle(true);
        }
        if (code != SQLITE_OK) raiseLast(code);
    } else {
        const QFileInfo folder(QFileInfo(m_file).absolutePath());
        if (!folder.isWritable()) raise(3050, m_file);
        takeHold();
    }
    sqlite3_extended_result_codes(m_db, 1);
    configure();
    refreshIndexes();
    if (m_file != u":memory:" && !readOnly()) m_files = SqlitePlace(m_file);
}

void SqliteEngine::checkPlace() const {
    if (m_files.stands()) return;
    m_files.clearLog();
    raise(StoreGone, m_file);
}

// The engine keeps a shared lock on the file as long as a connection has its log open, and an exclusive one
// in the exclusive locking mode: both die with the process.
void SqliteEngine::takeHold() {
    const bool alone = exclusive() && m_place == Place::Existing; // nobody knows a new file
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    if (m_place == Place::New) flags |= SQLITE_OPEN_CREATE;
    const QByteArray name = m_file.toUtf8();
    if (const int code = sqlite3_open_v2(name.constData(), &m_db, flags, nullptr); code != SQLITE_OK)
        raiseLast(code);
    if (sqlite3_db_readonly(m_db, "main") == 1) raise(3050, m_file);
    sqlite3_extended_result_codes(m_db, 1);
    sqlite3_busy_timeout(m_db, alone ? haste : patience);
    if (alone) run("PRAGMA locking_mode=EXCLUSIVE");
    const QByteArray wanted = m_network ? "delete" : "wal";
    if (text("PRAGMA journal_mode") != wanted && text("PRAGMA journal_mode=" + wanted) != wanted &&
        !m_network) {
        m_network = true; // a file system without shared memory is as good as a network folder
        if (m_place == Place::Existing) m_users = std::make_unique<UserLock>(m_file, alone);
    }
    if (alone)
        run("BEGIN EXCLUSIVE; COMMIT");
    else
        run("SELECT count(*) FROM sqlite_schema");
    sqlite3_busy_handler(m_db, waitForOthers, nullptr);
}

void SqliteEngine::configure() {
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    registerFunctions(m_db, m_pending);
    // FULL: what an Update returned from survives a power cut. No memory mapping: a file that another program
    // cuts short must be an error, not a crash.
    run("PRAGMA synchronous=FULL; PRAGMA mmap_size=0; PRAGMA cache_size=-16000; PRAGMA temp_store=MEMORY");
}

void SqliteEngine::raiseLast(int code, SqliteTask task) {
    raiseSqlite(m_db, code, m_pending, m_opening ? SqliteTask::Open : task, m_file);
}

std::unique_ptr<Prepared> SqliteEngine::prepare(const QByteArray& sql) {
    if (!m_db) raise(3420);
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(m_db, sql.constData(), static_cast<int>(sql.size()) + 1,
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) raiseLast(code);
    return std::make_unique<SqlitePrepared>(*this, statement);
}

void SqliteEngine::run(const QByteArray& sql) {
    if (!m_db) raise(3420);
    const int code = sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) raiseLast(code);
}

void SqliteEngine::finish(std::unique_ptr<Prepared>& slot, const QByteArray& sql) {
    if (!slot) slot = prepare(sql);
    for (Running running(*slot); running.step();) {
    }
}

qint64 SqliteEngine::affected() const { return sqlite3_changes64(m_db); }
qint64 SqliteEngine::lastKey() const { return sqlite3_last_insert_rowid(m_db); }
bool SqliteEngine::inTransaction() const { return m_db && sqlite3_get_autocommit(m_db) == 0; }

void SqliteEngine::begin() {
    checkPlace();
    finish(m_begin, "BEGIN IMMEDIATE");
}

void SqliteEngine::commit() {
    checkPlace();
    finish(m_commit, "COMMIT");
}

void SqliteEngine::rollback() noexcept {
    if (inTransaction()) sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
}

qint64 SqliteEngine::structureVersion() {
    if (!m_structureVersion) m_structureVersion = prepare("PRAGMA schema_version");
    Running running(*m_structureVersion);
    return running.step() ? running->integer(0) : 0;
}

std::optional<qint64> SqliteEngine::foreignChanges() { return number("PRAGMA data_version"); }

qint64 SqliteEngine::number(const QByteArray& sql) {
    const auto statement = prepare(sql);
    return statement->step() ? statement->integer(0) : 0;
}

QByteArray SqliteEngine::text(const QByteArray& sql) {
    const auto statement = prepare(sql);
    return statement->step() ? statement->value(0, Type::Text).toText().toUtf8() : QByteArray();
}

// The number is taken in a short transaction of its own, without waiting for the disk: it need only outlive
// the processes that are running, and the row that uses it syncs the log with everything before it. After a
// power cut a number that no row got is simply given again.
qint64 SqliteEngine::nextAutoNumber(const QString& table) {
    if (!m_nextNumber)
        m_nextNumber = prepare("UPDATE sqlite_sequence SET seq=seq+1 WHERE name=?1 RETURNING seq");
    struct Hurried {
        SqliteEngine* engine;
        ~Hurried() {
            if (engine) sqlite3_exec(engine->m_db, "PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
        }
    } const hurried{inTransaction() ? nullptr : this};
    if (hurried.engine) run("PRAGMA synchronous=NORMAL");
    Running running(*m_nextNumber);
    running->bind(1, table);
    if (!running.step()) raise(3000, u"Für die Tabelle '%1' fehlt der Zähler."_s.arg(table));
    const qint64 taken = running->integer(0);
    while (running.step()) {
    }
    return taken;
}

void SqliteEngine::destroy() {
    checkPlace();
    close();
    for (const QString& ending : {u"-wal"_s, u"-shm"_s, u"-journal"_s, u"-users"_s})
        QFile::remove(m_file + ending);
    if (!blank() && !QFile::remove(m_file)) raise(3050, m_file);
}

bool SqliteEngine::blank() const { return m_file == u":memory:"; }

QString SqliteEngine::version() const { return u"SQLite "_s + QString::fromLatin1(sqlite3_libversion()); }

QString SqliteEngine::warning() const {
    if (!m_network) return {};
    return u"Die Datenbank liegt auf einem Netzlaufwerk. Dort arbeitet sie langsamer und weniger sicher; für mehrere "
           "Kassen ist ein Datenbankserver vorgesehen."_s;
}

} // namespace store
