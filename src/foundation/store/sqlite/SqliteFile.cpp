#include "SqliteFile.h"

#include "../Errors.h"

#include <QFileInfo>
#include <QStorageInfo>
#include <QtEndian>

#include <array>
#include <cstring>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace store {

namespace {

// Through the engine's own file layer: closing a file handle of our own would drop the locks that other
// connections of this process hold on the same file.
bool readHeader(const QString& file, std::array<uchar, 100>& header) {
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
    return code == SQLITE_OK;
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
    if (!info.exists()) raise(3024, file);
    if (!info.isFile()) raise(3343, file);
    std::array<uchar, 100> header{};
    if (!readHeader(file, header)) raise(3343, file);
    if (std::memcmp(header.data(), "SQLite format 3", 16) != 0) raise(3343, file);
    if (qFromBigEndian<qint32>(header.data() + 68) != applicationId) raise(3343, file);
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
