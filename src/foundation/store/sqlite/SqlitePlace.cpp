#include "SqlitePlace.h"

#include <store/StoreLook.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

namespace store {

namespace {

std::optional<FileIdentity> identityOf(const QByteArray& encoded) {
#ifdef Q_OS_UNIX
    struct stat found {};
    if (stat(encoded.constData(), &found) != 0) return std::nullopt;
    return FileIdentity{found.st_dev, found.st_ino};
#else
    const QFileInfo found(QFile::decodeName(encoded));
    if (!found.exists()) return std::nullopt;
    return FileIdentity{0, static_cast<quint64>(found.birthTime().toMSecsSinceEpoch())};
#endif
}

} // namespace

std::optional<FileIdentity> fileIdentity(const QString& file) { return identityOf(QFile::encodeName(file)); }

SqlitePlace::SqlitePlace(const QString& file)
    : m_file(file)
    , m_storeName(QFile::encodeName(file))
    , m_logName(QFile::encodeName(file + u"-wal"_s))
    , m_store(identityOf(m_storeName))
    , m_log(identityOf(m_logName)) {}

bool SqlitePlace::stands() const {
    if (m_file.isEmpty()) return true;
    if (m_seen.isValid() && m_seen.elapsed() < LookInterval.count()) return true;
    if (identityOf(m_storeName) != m_store || (m_log && identityOf(m_logName) != m_log)) return false;
    m_seen.start();
    return true;
}

void SqlitePlace::clearLog() const {
    if (!m_log || identityOf(m_storeName) == m_store || identityOf(m_logName) != m_log) return;
    for (const QString& ending : {u"-wal"_s, u"-shm"_s})
        for (int copy = 1; copy < 100; ++copy)
            if (QFile::rename(m_file + ending, m_file + ending + u".alt%1"_s.arg(copy))) break;
}

} // namespace store
