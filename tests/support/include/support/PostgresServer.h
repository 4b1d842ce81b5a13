#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// A PostgreSQL server of its own on the loopback, in a folder that goes with the object: for tests that stop
/// it, fill its disk or take its rights away. It dies with the test program, also when that is killed. The
/// tills log in as `User`, who is nobody special and owns the databases made here. Everything raises
/// RuntimeError when the server's own programs fail.
///
///     if (!PostgresServer::available()) GTEST_SKIP();
///     PostgresServer server;
///     server.createDatabase(u"laden"_s);
///     auto db = Database::CreateDatabase(server.uri(u"laden"_s));
class PostgresServer {
  public:
    static constexpr char16_t User[] = u"kasse";
    static constexpr char16_t Password[] = u"geheim";

    /// False where the server is not installed.
    [[nodiscard]] static bool available();

    /// `settings` are lines of postgresql.conf, "work_mem=1MB". Without others the server does not wait for
    /// the disk.
    explicit PostgresServer(const QStringList& settings = {QStringLiteral("fsync=off")});
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    [[nodiscard]] quint16 port() const { return m_port; }
    /// The address of a database for a till; `port` is the server's own when it is 0.
    [[nodiscard]] QString uri(const QString& database, quint16 port = 0) const;
    /// A folder in which the server may write.
    [[nodiscard]] QString makeFolder(const QString& name) const;
    /// The same on a disk of its own with so little room; "" when the machine does not let us make one.
    [[nodiscard]] QString makeDisk(const QString& name, int megabytes);

    void createDatabase(const QString& name, const QString& options = {});
    /// Runs statements as the administrator; gives the rows, columns separated by "|".
    QString sql(const QString& database, const QString& statements) const;

    void start();
    enum class Stop {
        Fast,     ///< in order, every connection is ended
        Immediate ///< as when the power fails
    };
    void stop(Stop how = Stop::Fast);

  private:
    QString run(const QString& program, const QStringList& arguments, const QByteArray& input = {}) const;
    [[nodiscard]] QString data() const { return m_folder.filePath(QStringLiteral("data")); }

    QTemporaryDir m_folder;
    QStringList m_settings, m_disks;
    QProcess m_server;
    quint16 m_port = 0;
};
