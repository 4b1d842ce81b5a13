#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <optional>
#include <utility>

namespace store {

/// Tells one file from another that later bears its name: device and node where the system has them, else
/// when it came into being.
using FileIdentity = std::pair<quint64, quint64>;
/// Nothing when there is no such file.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const QString& file);

/// The files of an open store, as they were when it was opened.
class SqlitePlace {
  public:
    SqlitePlace() = default;
    /// Of a file that an engine has just opened, with or without its log.
    explicit SqlitePlace(const QString& file);
    /// False when one of them was deleted, renamed or replaced. A look into the
    /// folder counts for LookInterval.
    [[nodiscard]] bool stands() const;
    /// When the store itself is no longer there: takes away the log that stayed behind, since whoever opened
    /// the file of that name would find this store's pages in it. The open store does not mind.
    void clearLog() const;

  private:
    QString m_file;
    QByteArray m_storeName, m_logName; ///< as the system has them: a look stands before every write
    std::optional<FileIdentity> m_store, m_log;
    mutable QElapsedTimer m_seen; ///< since they were last found
};

} // namespace store
