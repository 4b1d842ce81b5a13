#include "SqliteFile.h"

#include "../Errors.h"

#include <QByteArrayView>
#include <QFileInfo>
#include <QStorageInfo>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <sqlite3.h>
#include <system_error>

using namespace Qt::StringLiterals;

namespace store {

namespace {

// Through the engine's own file layer: closing a file handle of our own would drop the locks that other
// connections of this process hold on the same file.
// What a file that is too short does not have stays zero.
void readHeader(const QString& file, std::array<uchar, 100>& header) {
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    const auto handle = std::make_unique<std::max_align_t[]>(
        static_cast<std::size_t>(vfs->szOsFile) / sizeof(std::max_align_t) + 1);
    auto* opened = reinterpret_cast<sqlite3_file*>(handle.get());
    // The engine expects two zero bytes behind a name, for parameters that are not there.
    const QByteArray name = file.toUtf8() + QByteArray(3, '\0');
    int flags = 0;
    if (vfs->xOpen(vfs, name.constData(), opened, SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB, &flags) !=
        SQLITE_OK) {
        if (opened->pMethods) opened->pMethods->xClose(opened);
        raise(3050, file);
    }
    const int code = opened->pMethods->xRead(opened, header.data(), static_cast<int>(header.size()), 0);
    opened->pMethods->xClose(opened);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) raise(3043, file);
}

// The header tells how many pages there are, unless it is older than they are, or a log holds what is
// missing; the engine itself would take a page that lacks its end for one that ends in zeros.
bool isCutShort(const std::array<uchar, 100>& header, const QFileInfo& file) {
    const auto number = [&](int at) { return qint64{qFromBigEndian<quint32>(header.data() + at)}; };
    const auto size = [&](const QString& ending) { return QFileInfo(file.filePath() + ending).size(); };
    if (number(24) != number(92) || size(u"-wal"_s) > 0 || size(u"-journal"_s) > 0) return false;
    const qint64 told = qFromBigEndian<quint16>(header.data() + 16);
    return file.size() < number(28) * (told == 1 ? 65536 : told);
}

bool realProbe(const QString& file) {
    const QByteArray type = QStorageInfo(QFileInfo(file).absolutePath()).fileSystemType().toLower();
    for (const char* network :
         {"nfs", "cifs", "smb", "afs", "9p", "ceph", "glusterfs", "fuse.sshfs", "davfs"})
        if (type.startsWith(network)) return true;
    return false;
}

bool (*networkProbe)(const QString&) = realProbe;

} // namespace

void checkHeader(const QString& file) {
    const QFileInfo info(file);
    std::error_code code;
    const auto status = std::filesystem::status(std::filesystem::path(file.toStdU16String()), code);
    // A folder that lets nobody in is as good as none.
    if (!std::filesystem::exists(status)) raise(3024, file);
    if (!std::filesystem::is_regular_file(status)) raise(3343, file);
    std::array<uchar, 100> header{};
    readHeader(file, header);
    // What is cut short in the middle of the header, or has nothing left at all, was one.
    constexpr QByteArrayView begins("SQLite format 3\0", 16);
    const auto there = static_cast<std::size_t>(std::min<qint64>(info.size(), begins.size()));
    if (std::memcmp(header.data(), begins.data(), there) != 0) raise(3343, file);
    if (info.size() < static_cast<qint64>(header.size())) raise(3049, file);
    if (qFromBigEndian<qint32>(header.data() + 68) != applicationId) raise(3343, file);
    if (isCutShort(header, info)) raise(3049, file);
}

bool onNetwork(const QString& file) { return networkProbe(file); }
void setNetworkProbe(bool (*probe)(const QString&)) { networkProbe = probe ? probe : realProbe; }

UserLock::UserLock(const QString& file, bool exclusive) {
    const QByteArray name = (file + u"-users"_s).toUtf8();
    int code = sqlite3_open_v2(name.constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (code == SQLITE_OK) {
        sqlite3_busy_timeout(m_db, exclusive ? 0 : 5000);
        const char* hold = exclusive ? "BEGIN EXCLUSIVE" : "BEGIN; SELECT count(*) FROM sqlite_schema";
        code = sqlite3_exec(m_db, hold, nullptr, nullptr, nullptr);
    }
    if (code == SQLITE_OK) return;
    sqlite3_close(m_db);
    raise(code == SQLITE_BUSY ? 3045 : 3050, file);
}

UserLock::~UserLock() { sqlite3_close(m_db); }

} // namespace store
