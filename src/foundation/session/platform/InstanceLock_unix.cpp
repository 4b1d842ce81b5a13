#include "../InstanceLock.h"

#include <session/Log.h>

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

struct InstanceLock::Impl {
    int file = -1;
};

namespace {

/// Opens without creating first: in a folder that all may write to, nobody may "create" another user's file.
int openLockFile(const QString& folder) {
    const QByteArray path = QFile::encodeName(folder + u"/merivane.lock"_s);
    const int file = open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (file >= 0) return file;
    const int created = open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (created >= 0) fchmod(created, 0644); // whatever the umask says, others must be able to see it
    return created < 0 && errno == EEXIST ? open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)
                                          : created;
}

} // namespace

InstanceLock::InstanceLock(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {}

InstanceLock::~InstanceLock() {
    if (m_impl->file >= 0) close(m_impl->file);
}

std::unique_ptr<InstanceLock> InstanceLock::acquire() {
    QStringList folders = {u"/run/lock"_s, u"/tmp"_s};
    if (const QString told = qEnvironmentVariable("MERIVANE_RUNTIME"); !told.isEmpty()) {
        QDir().mkpath(told);
        folders = {told};
    }
    auto impl = std::make_unique<Impl>();
    for (const QString& folder : folders)
        if (impl->file < 0) impl->file = openLockFile(folder);
    if (impl->file < 0) {
        WriteLog(u"Kein Ordner für die Sperre gegen einen zweiten Start: "_s + folders.join(u", "_s));
    } else if (flock(impl->file, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) {
            close(impl->file);
            return nullptr;
        }
        WriteLog(u"Die Sperre gegen einen zweiten Start geht hier nicht: "_s + folders.join(u", "_s));
    }
    return std::unique_ptr<InstanceLock>(new InstanceLock(std::move(impl)));
}
