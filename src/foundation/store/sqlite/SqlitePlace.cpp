#include "SqlitePlace.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

namespace store {

std::optional<FileIdentity> fileIdentity(const QString& file) {
#ifdef Q_OS_UNIX
    struct stat found {};
    if (stat(QFile::encodeName(file).constData(), &found) != 0) return std::nullopt;
    return FileIdentity{found.st_dev, found.st_ino};
#else
    const QFileInfo found(file);
    if (!found.exists()) return std::nullopt;
    return FileIdentity{0, static_cast<quint64>(found.birthTime().toMSecsSinceEpoch())};
#endif
}

SqlitePlace::SqlitePlace(const QString& file)
    : m_file(file)
    , m_store(fileIdentity(file))
    , m_log(fileIdentity(file + u"-wal"_s)) {}

bool SqlitePlace::stands() const {
    if (m_file.isEmpty()) return true;
    return fileIdentity(m_file) == m_store && (!m_log || fileIdentity(m_file + u"-wal"_s) == m_log);
}

void SqlitePlace::clearLog() const {
    if (!m_log || fileIdentity(m_file) == m_store || fileIdentity(m_file + u"-wal"_s) != m_log) return;
    for (const QString& ending : {u"-wal"_s, u"-shm"_s})
        for (int copy = 1; copy < 100; ++copy)
            if (QFile::rename(m_file + ending, m_file + ending + u".alt%1"_s.arg(copy))) break;
}

} // namespace store
