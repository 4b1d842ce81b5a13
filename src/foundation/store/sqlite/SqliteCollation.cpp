#include "SqliteEngine.h"

#include <jet/Functions.h>
#include <text/Sort.h>

#include <sqlite3.h>

namespace store {

namespace {

constexpr const char* versionOfFile = "SELECT \"value\" FROM \"merivane$settings\" WHERE \"key\"='collation'";

} // namespace

// Indexes over texts are only of use to the version of the collation that built them.
void SqliteEngine::refreshIndexes() {
    if (number("SELECT count(*) FROM sqlite_schema WHERE name='merivane$settings'") == 0) return;
    const QByteArray version = CollationVersion();
    if (text(versionOfFile) == version) return;
    if (readOnly()) {
        workOnCopy();
        run(QByteArray("REINDEX ") + jet::collationName + "; PRAGMA query_only=1");
        return;
    }
    begin();
    if (text(versionOfFile) != version) // another till may have been faster
        run(QByteArray("REINDEX ") + jet::collationName +
            "; INSERT OR REPLACE INTO \"merivane$settings\" VALUES('collation', '" + version + "')");
    commit();
}

// A file that must not be changed is read into memory, where its indexes can be built anew.
void SqliteEngine::workOnCopy() {
    sqlite3* const file = m_db;
    m_db = nullptr;
    int code = sqlite3_open_v2(":memory:", &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code == SQLITE_OK) {
        sqlite3_backup* const backup = sqlite3_backup_init(m_db, "main", file, "main");
        if (backup) sqlite3_backup_step(backup, -1);
        if (backup) sqlite3_backup_finish(backup);
        code = sqlite3_errcode(m_db);
    }
    sqlite3_close_v2(file);
    if (code != SQLITE_OK) raiseLast(code);
    sqlite3_extended_result_codes(m_db, 1);
    configure();
}

} // namespace store
