#include "SqliteStore.h"

#include "../Errors.h"
#include "SqliteEngine.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace store {

namespace {

class NewFile final : public NewStore {
  public:
    explicit NewFile(const QString& name)
        : m_name(name)
        , m_file(QFileInfo(name).absoluteFilePath())
        , m_passing(m_file + u'.' + QUuid::createUuid().toString(QUuid::Id128)) {
        const QFileInfo info(name);
        if (info.exists()) raise(3204, name);
        if (!QFileInfo(info.absolutePath()).isDir()) raise(3024, name);
    }
    ~NewFile() override {
        for (const QString& ending : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
            QFile::remove(m_passing + ending);
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    std::unique_ptr<Engine> takeEngine() override {
        return std::make_unique<SqliteEngine>(m_passing, Access::Exclusive, SqliteEngine::Place::New);
    }
    void finish() override {
        if (!QFile::rename(m_passing, m_file)) raise(QFileInfo::exists(m_file) ? 3204 : 3050, m_name);
    }

  private:
    QString m_name;
    QString m_file;
    QString m_passing;
};

} // namespace

std::unique_ptr<NewStore> newFileStore(const QString& name) { return std::make_unique<NewFile>(name); }

} // namespace store
