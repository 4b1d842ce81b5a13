#include "../Errors.h"
#include "SqliteEngine.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QUuid>

#include <chrono>
#include <sqlite3.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace store {

namespace {

constexpr int patience = 5000; ///< milliseconds for another till's write
constexpr int pause = 20;

} // namespace

// Page by page through the open handle, which still reads a file that has lost its name. The copy gets its
// name when it is whole.
void SqliteEngine::saveCopy(const QString& file) {
    if (!m_db) raise(3420);
    const QFileInfo info(file);
    if (info.exists()) raise(3204, file);
    if (!QFileInfo(info.absolutePath()).isDir()) raise(3024, file);
    const QString passing = info.absoluteFilePath() + u'.' + QUuid::createUuid().toString(QUuid::Id128);
    const auto swept = qScopeGuard([&] {
        for (const QString& ending : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
            QFile::remove(passing + ending);
    });

    sqlite3* copy = nullptr;
    int code = sqlite3_open_v2(passing.toUtf8().constData(), &copy,
                               SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code == SQLITE_OK) {
        if (sqlite3_backup* const backup = sqlite3_backup_init(copy, "main", m_db, "main")) {
            for (int waited = 0; waited < patience; waited += pause) {
                const int step = sqlite3_backup_step(backup, -1);
                if (step != SQLITE_BUSY && step != SQLITE_LOCKED) break;
                std::this_thread::sleep_for(std::chrono::milliseconds(pause));
            }
            code = sqlite3_backup_finish(backup);
        } else {
            code = sqlite3_errcode(copy);
        }
    }
    {
        const auto closed = qScopeGuard([&] { sqlite3_close_v2(copy); });
        if (code != SQLITE_OK) raiseSqlite(copy, code, m_pending, SqliteTask::Work, file);
    }
    {
        SqliteEngine whole(passing, Access::ReadOnly);
        if (whole.text("PRAGMA quick_check(1)") != "ok") raise(3049, file);
    }
    if (!QFile::rename(passing, info.absoluteFilePath())) raise(QFileInfo::exists(file) ? 3204 : 3050, file);
}

} // namespace store
