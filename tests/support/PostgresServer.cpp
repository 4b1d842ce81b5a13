#include <support/PostgresServer.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

#include <arpa/inet.h>
#include <csignal>
#include <pwd.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMs = 60'000;
constexpr const char* serverAccount = "postgres"; ///< the server refuses to run as root

[[noreturn]] void fail(const QString& what) { throw RuntimeError(51, what, u"PostgresServer"_s); }

/// The folder of the server's programs, "" when it is not installed.
QString programs() {
    const QDir versions(u"/usr/lib/postgresql"_s);
    for (const QString& version : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Reversed)) {
        const QString folder = versions.filePath(version) + u"/bin"_s;
        if (QFileInfo(folder + u"/initdb"_s).isExecutable()) return folder;
    }
    const QString found = QStandardPaths::findExecutable(u"initdb"_s);
    return found.isEmpty() ? QString() : QFileInfo(found).canonicalPath();
}

const passwd* account() { return getuid() == 0 ? getpwnam(serverAccount) : nullptr; }

/// Starts a program as the server's account. It dies with this one.
void launch(QProcess& process, const QString& program, const QStringList& arguments) {
    QStringList command{u"--pdeathsig=QUIT"_s}; // a fast end for the server
    if (const passwd* who = account())
        command << u"--reuid=%1"_s.arg(who->pw_uid) << u"--regid=%1"_s.arg(who->pw_gid) << u"--init-groups"_s;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(u"/"_s);
    process.start(u"setpriv"_s,
                  command << (program.startsWith(u'/') ? program : programs() + u'/' + program) << arguments);
}

quint16 freePort() {
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    const bool ok = bind(probe, any, size) == 0 && getsockname(probe, any, &size) == 0;
    close(probe);
    if (!ok) fail(u"kein freier Port"_s);
    return ntohs(address.sin_port);
}

} // namespace

bool PostgresServer::available() {
    return !programs().isEmpty() && (getuid() != 0 || getpwnam(serverAccount) != nullptr);
}

PostgresServer::PostgresServer(const QStringList& settings)
    : m_folder(u"/tmp/merivane-server-XXXXXX"_s) // a short path: the server's socket lies in it
    , m_settings(settings)
    , m_port(freePort()) {
    if (const passwd* who = account();
        who && chown(QFile::encodeName(m_folder.path()).constData(), who->pw_uid, who->pw_gid) != 0)
        fail(u"der Ordner des Servers lässt sich nicht übergeben"_s);
    run(u"initdb"_s,
        {u"--pgdata"_s, data(), u"--username=admin"_s, u"--encoding=UTF8"_s, u"--locale=C.UTF-8"_s,
         u"--auth-local=trust"_s, u"--auth-host=scram-sha-256"_s, u"--no-sync"_s});
    start();
    sql(u"postgres"_s,
        u"CREATE ROLE %1 LOGIN PASSWORD '%2'"_s.arg(QString::fromUtf16(User), QString::fromUtf16(Password)));
}

PostgresServer::~PostgresServer() {
    if (m_server.state() != QProcess::NotRunning) stop(Stop::Immediate);
    for (const QString& disk : std::as_const(m_disks))
        umount(QFile::encodeName(disk).constData());
}

QString PostgresServer::uri(const QString& database, quint16 port) const {
    return u"postgresql://%1:%2@127.0.0.1:%3/%4?sslmode=disable"_s.arg(
        QString::fromUtf16(User), QString::fromUtf16(Password), QString::number(port ? port : m_port),
        database);
}

QString PostgresServer::makeFolder(const QString& name) const {
    const QString path = m_folder.filePath(name);
    run(u"/bin/mkdir"_s, {u"-p"_s, path});
    return path;
}

QString PostgresServer::makeDisk(const QString& name, int megabytes) {
    const QString path = makeFolder(name);
    const passwd* who = account();
    const QByteArray options =
        u"size=%1m,mode=0700,uid=%2"_s.arg(megabytes).arg(who ? who->pw_uid : getuid()).toLatin1();
    if (mount("tmpfs", QFile::encodeName(path).constData(), "tmpfs", 0, options.constData()) != 0) return {};
    m_disks << path;
    return path;
}

void PostgresServer::createDatabase(const QString& name, const QString& options) {
    sql(u"postgres"_s, u"CREATE DATABASE \"%1\" OWNER %2 %3"_s.arg(name, QString::fromUtf16(User), options));
}

QString PostgresServer::sql(const QString& database, const QString& statements) const {
    return run(u"psql"_s,
               {u"--no-psqlrc"_s, u"--quiet"_s, u"--tuples-only"_s, u"--no-align"_s,
                u"--set=ON_ERROR_STOP=1"_s, u"--host"_s, m_folder.path(), u"--port"_s,
                QString::number(m_port), u"--username=admin"_s, database},
               statements.toUtf8())
        .trimmed();
}

void PostgresServer::start() {
    m_server.setStandardOutputFile(m_folder.filePath(u"server.log"_s), QIODevice::Append);
    QStringList arguments{u"-D"_s, data(), u"-p"_s, QString::number(m_port), u"-k"_s, m_folder.path()};
    for (const QString& setting : QStringList{u"listen_addresses=127.0.0.1"_s} + m_settings)
        arguments << u"-c"_s << setting;
    launch(m_server, u"postgres"_s, arguments);
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        QProcess probe;
        launch(probe, u"pg_isready"_s,
               {u"-q"_s, u"-h"_s, u"127.0.0.1"_s, u"-p"_s, QString::number(m_port), u"-U"_s, u"admin"_s});
        if (probe.waitForFinished(patienceMs) && probe.exitCode() == 0) return;
        if (m_server.state() == QProcess::NotRunning || timer.elapsed() > patienceMs) {
            QFile log(m_folder.filePath(u"server.log"_s));
            std::ignore = log.open(QIODevice::ReadOnly);
            fail(u"der Server startet nicht: "_s + QString::fromUtf8(log.readAll()));
        }
        QThread::msleep(50);
    }
}

void PostgresServer::stop(Stop how) {
    kill(static_cast<pid_t>(m_server.processId()), how == Stop::Fast ? SIGINT : SIGQUIT);
    if (m_server.waitForFinished(patienceMs)) return;
    m_server.kill();
    m_server.waitForFinished(patienceMs);
}

QString PostgresServer::run(const QString& program, const QStringList& arguments,
                            const QByteArray& input) const {
    QProcess process;
    launch(process, program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patienceMs)) fail(program + u" antwortet nicht"_s);
    const QString output = QString::fromUtf8(process.readAll());
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        fail(program + u": "_s + output);
    return output;
}
