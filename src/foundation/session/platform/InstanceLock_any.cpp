#include "../InstanceLock.h"

#include <QDir>
#include <QLockFile>

using namespace Qt::StringLiterals;

struct InstanceLock::Impl {
    explicit Impl(const QString& path)
        : file(path) {}
    QLockFile file;
};

InstanceLock::InstanceLock(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {}
InstanceLock::~InstanceLock() = default;

std::unique_ptr<InstanceLock> InstanceLock::acquire() {
    const QString told = qEnvironmentVariable("MERIVANE_RUNTIME");
    const QString folder = told.isEmpty() ? QDir::tempPath() : told;
    QDir().mkpath(folder);
    auto impl = std::make_unique<Impl>(folder + u"/merivane.lock"_s);
    impl->file.setStaleLockTime(0); // a till runs for days; only a dead process loses its lock
    if (!impl->file.tryLock() && impl->file.error() == QLockFile::LockFailedError) return nullptr;
    return std::unique_ptr<InstanceLock>(new InstanceLock(std::move(impl)));
}
