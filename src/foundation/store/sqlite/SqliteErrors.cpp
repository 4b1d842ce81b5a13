#include "SqliteErrors.h"

#include "../Errors.h"

#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <initializer_list>
#include <new>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace store {

namespace {

// "Artikel.Nummer, Artikel.Name" or "Nummer" behind the colon of the engine's message.
QString behindColon(const QString& message) { return message.mid(message.indexOf(u": "_s) + 2); }

QString columnOf(const QString& message) {
    const QString what = behindColon(message);
    return what.mid(what.indexOf(u'.') + 1);
}

QString columnsOf(const QString& message) {
    QStringList columns = behindColon(message).split(u", "_s);
    for (QString& column : columns)
        column = column.mid(column.indexOf(u'.') + 1);
    return columns.join(u", "_s);
}

// The checks are length("Column")<=30 and length("Column")>0; see the engine's tableSql.
[[noreturn]] void raiseCheck(const QString& message) {
    static const QRegularExpression pattern(u"length\\(\"(.*)\"\\)(<=|>)"_s,
                                            QRegularExpression::DotMatchesEverythingOption);
    const auto match = pattern.match(message);
    const QString column = match.captured(1).replace(u"\"\""_s, u"\""_s);
    raise(match.captured(2) == u">" ? 3315 : 3163, column);
}

[[noreturn]] void raiseConstraint(int code, const QString& message) {
    switch (code) {
    case SQLITE_CONSTRAINT_CHECK:
        raiseCheck(message);
    case SQLITE_CONSTRAINT_NOTNULL:
        raise(3314, columnOf(message));
    // The engine's "cannot store REAL value in INTEGER column" is a whole number that left its range.
    case SQLITE_CONSTRAINT_DATATYPE:
        if (message.contains(u"REAL value in INT"_s)) RaiseOverflow();
        raise(3421, message.mid(message.lastIndexOf(u'.') + 1));
    default:
        raise(3022, columnsOf(message));
    }
}

// The engine tells only ENOSPC as a full disk; quotas and limits of the file size come as a failed write,
// whose reason the file itself remembers, be it the store or its log.
int lastErrno(sqlite3* db, int pointer) {
    sqlite3_file* file = nullptr;
    if (sqlite3_file_control(db, "main", pointer, &file) != SQLITE_OK || !file || !file->pMethods) return 0;
    int number = 0;
    return file->pMethods->xFileControl(file, SQLITE_FCNTL_LAST_ERRNO, &number) == SQLITE_OK ? number : 0;
}

bool isOneOf(sqlite3* db, std::initializer_list<int> numbers) {
    const auto among = [&](int number) {
        return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
    };
    return among(sqlite3_system_errno(db)) || among(lastErrno(db, SQLITE_FCNTL_FILE_POINTER)) ||
           among(lastErrno(db, SQLITE_FCNTL_JOURNAL_POINTER));
}

bool diskIsFull(sqlite3* db) {
#ifdef EDQUOT
    if (isOneOf(db, {EDQUOT})) return true;
#endif
    return isOneOf(db, {ENOSPC, EFBIG});
}

bool lacksRights(sqlite3* db) { return isOneOf(db, {EACCES, EPERM, EROFS}); }

} // namespace

void raiseSqlite(sqlite3* db, int code, PendingError& pending, SqliteTask task, const QString& file) {
    if (pending) {
        const RuntimeError error = *pending;
        pending.reset();
        throw error;
    }
    const QString message = QString::fromUtf8(db ? sqlite3_errmsg(db) : sqlite3_errstr(code));
    const int extended = db ? sqlite3_extended_errcode(db) : code;
    const bool opening = task == SqliteTask::Open;
    switch (extended & 0xff) {
    case SQLITE_CONSTRAINT:
        raiseConstraint(extended, message);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        raise(opening ? 3045 : 3260, file);
    case SQLITE_FULL:
        raise(3026);
    case SQLITE_READONLY:
        if (extended == SQLITE_READONLY_DBMOVED) raise(StoreGone, file);
        raise(opening || extended == SQLITE_READONLY_DIRECTORY ? 3050 : 3027, file);
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        raise(3050, file);
    case SQLITE_IOERR:
        if (extended == SQLITE_IOERR_NOMEM) throw std::bad_alloc();
        if (diskIsFull(db)) raise(3026);
        if (lacksRights(db)) raise(3050, file);
        raise(3043, message);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        raise(3049, file);
    case SQLITE_NOMEM:
        throw std::bad_alloc();
    case SQLITE_TOOBIG:
        raise(3360);
    case SQLITE_SCHEMA:
        raise(3260, file);
    default:
        break;
    }
    if (message.contains(u"too large"_s) || message.contains(u"stack overflow"_s) ||
        message.contains(u"too many"_s))
        raise(3360);
    if (message == u"integer overflow"_s) RaiseOverflow();
    raise(3000, message);
}

} // namespace store
