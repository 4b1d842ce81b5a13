#include "PostgresLink.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cerrno>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace store {

namespace {

constexpr auto pause = std::chrono::milliseconds(200);

using Handle = std::unique_ptr<PGconn, decltype(&PQfinish)>;

Handle start(const PostgresAddress& address) {
    // What stands before the URI holds unless the URI tells otherwise, what stands behind it always.
    struct Setting {
        const char* keyword;
        const char* value;
    };
    const std::array settings{
        Setting{"application_name", "Merivane"}, Setting{"keepalives_idle", "10"},
        Setting{"keepalives_interval", "5"},     Setting{"keepalives_count", "3"},
        Setting{"tcp_user_timeout", "15000"},    Setting{"dbname", address.uri().constData()},
        Setting{"client_encoding", "UTF8"},      Setting{nullptr, nullptr},
    };
    std::array<const char*, settings.size()> keywords{};
    std::array<const char*, settings.size()> values{};
    for (std::size_t i = 0; i < settings.size(); ++i) {
        keywords[i] = settings[i].keyword;
        values[i] = settings[i].value;
    }
    return {PQconnectStartParams(keywords.data(), values.data(), 1), PQfinish};
}

QString textOf(const char* text) { return text ? QString::fromUtf8(text) : QString(); }

bool knowsHost(const QString& host) {
    if (host.isEmpty() || host.startsWith(u'/') || host.startsWith(u'@')) return true;
    addrinfo* found = nullptr;
    const int code = getaddrinfo(host.toUtf8().constData(), nullptr, nullptr, &found);
    if (code == 0) freeaddrinfo(found);
    return code == 0;
}

// Whether the other side has ended the connection. Looked at before the library reads: afterwards it only has
// words for it, in the language of the machine, and they name the stage instead of the cause.
bool isClosed(int socket) {
    char next = 0;
    const ssize_t size = recv(socket, &next, 1, MSG_PEEK | MSG_DONTWAIT);
    return size == 0 || (size < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}

// The library's words with the state in front ("... FATAL:  28P01: password ..."): the state is told apart,
// of the rest the first line is enough.
void readWords(PGconn* connection, ConnectFault& fault) {
    static const QRegularExpression pattern(u":\\s+((?=[A-Z]*[0-9])[0-9A-Z]{5}): ?"_s);
    QString words = textOf(PQerrorMessage(connection)).section(u'\n', 0, 0).trimmed();
    if (const auto match = pattern.match(words); match.hasMatch()) {
        fault.state = match.captured(1);
        words = words.mid(match.capturedEnd());
    }
    fault.words = words;
}

} // namespace

// The library's blocking way would not tell at which stage it failed, nor the server's state.
bool PostgresLink::tryConnect(ConnectFault& fault) {
    close();
    fault = {};
    Handle connection = start(m_address);
    if (!connection) throw std::bad_alloc();
    PQsetErrorVerbosity(connection.get(), PQERRORS_VERBOSE);
    QElapsedTimer clock;
    clock.start();
    const qint64 patience = 1000LL * m_address.patience() * m_address.hosts();
    PostgresPollingStatusType status = PGRES_POLLING_WRITING;
    if (PQstatus(connection.get()) == CONNECTION_BAD) status = PGRES_POLLING_FAILED;
    while (status == PGRES_POLLING_READING || status == PGRES_POLLING_WRITING) {
        const short event = status == PGRES_POLLING_READING ? POLLIN : POLLOUT;
        pollfd waiting{PQsocket(connection.get()), event, 0};
        const qint64 left = patience - clock.elapsed();
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) == 0) {
            fault.timedOut = true;
            break;
        }
        const ConnStatusType stage = PQstatus(connection.get());
        if (stage == CONNECTION_SSL_STARTUP) fault.stage = ConnectFault::Stage::Tls;
        if (stage == CONNECTION_AWAITING_RESPONSE || stage == CONNECTION_AUTH_OK ||
            stage == CONNECTION_SETENV)
            fault.stage = ConnectFault::Stage::Login;
        if (stage == CONNECTION_STARTED) fault.stage = ConnectFault::Stage::Network;
        fault.closed = stage != CONNECTION_STARTED && isClosed(waiting.fd);
        status = PQconnectPoll(connection.get());
    }
    if (status == PGRES_POLLING_OK) {
        PQsetErrorVerbosity(connection.get(), PQERRORS_DEFAULT);
        PQsetNoticeProcessor(
            connection.get(), [](void*, const char*) {}, nullptr);
        m_connection = connection.release();
        ++m_epoch;
        return true;
    }
    fault.host = textOf(PQhost(connection.get()));
    fault.database = textOf(PQdb(connection.get()));
    fault.user = textOf(PQuser(connection.get()));
    fault.passwordMissing = PQconnectionNeedsPassword(connection.get()) != 0;
    readWords(connection.get(), fault);
    if (fault.timedOut) fault.words = u"keine Antwort"_s;
    if (fault.closed && fault.state.isEmpty()) {
        fault.stage = ConnectFault::Stage::Network; // at whatever stage it was met
        fault.words = u"die Gegenseite schließt die Verbindung"_s;
    }
    if (fault.state.isEmpty() && fault.stage == ConnectFault::Stage::Network && !fault.timedOut &&
        !fault.closed)
        fault.unknownHost = !knowsHost(fault.host);
    return false;
}

void PostgresLink::connect(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    ConnectFault fault;
    while (!tryConnect(fault)) {
        if (!mayPass(fault) || clock.elapsed() >= milliseconds) raiseConnect(fault);
        std::this_thread::sleep_for(pause);
    }
}

} // namespace store
