#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

/// While it lives, the store's file with its log is copied before each write to the log: what a till leaves
/// that is killed there.
class CrashImages {
  public:
    explicit CrashImages(const QString& store)
        : m_store(store) {
        sqlite3_vfs* real = sqlite3_vfs_find(nullptr);
        s_open = real->xOpen;
        s_images = this;
        m_vfs = *real;
        m_vfs.zName = "crash-images";
        m_vfs.xOpen = open;
        sqlite3_vfs_register(&m_vfs, 1);
    }
    ~CrashImages() {
        sqlite3_vfs_unregister(&m_vfs);
        s_images = nullptr;
    }
    CrashImages(const CrashImages&) = delete;
    CrashImages& operator=(const CrashImages&) = delete;

    bool taking = false;
    /// The folders of the images, one for each write.
    [[nodiscard]] QStringList folders() const { return m_folders; }

  private:
    static int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* out) {
        const int code = s_open(vfs, name, file, flags, out);
        if (code != SQLITE_OK || !(flags & SQLITE_OPEN_WAL)) return code;
        s_real = file->pMethods;
        s_methods = *s_real;
        s_methods.xWrite = write;
        file->pMethods = &s_methods;
        return code;
    }
    static int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 at) {
        if (s_images && s_images->taking) s_images->take();
        return s_real->xWrite(file, bytes, size, at);
    }
    void take() {
        const QString folder = m_folder.filePath(QString::number(m_folders.size()));
        QDir().mkpath(folder);
        for (const QString& ending : {u""_s, u"-wal"_s})
            QFile::copy(m_store + ending, folder + u"/Merivane.mdb"_s + ending);
        m_folders << folder;
    }

    static inline CrashImages* s_images = nullptr;
    static inline const sqlite3_io_methods* s_real = nullptr;
    static inline sqlite3_io_methods s_methods{};
    static inline int (*s_open)(sqlite3_vfs*, const char*, sqlite3_file*, int, int*) = nullptr;
    QString m_store;
    sqlite3_vfs m_vfs{};
    QTemporaryDir m_folder;
    QStringList m_folders;
};
