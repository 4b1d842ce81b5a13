#include "PostgresLink.h"
#include "PostgresWait.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace store {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds pause(200);
constexpr milliseconds graceForLookUp(300); ///< before a name that nobody answers for counts as silence

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

/// One try to reach the server, made by a thread of its own: looking up a name waits for as long as the
/// system likes.
struct Attempt {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
    Handle connection{nullptr, PQfinish};
    ConnectFault fault;
    std::atomic<bool> abandoned = false;
};

// The library's blocking way would not tell at which stage it failed, nor the server's state.
Handle dial(const PostgresAddress& address, milliseconds patience, ConnectFault& fault,
            const std::atomic<bool>& abandoned) {
    Handle connection = start(address);
    if (!connection) throw std::bad_alloc();
    PQsetErrorVerbosity(connection.get(), PQERRORS_VERBOSE);
    QElapsedTimer clock;
    clock.start();
    PostgresPollingStatusType status = PGRES_POLLING_WRITING;
    if (PQstatus(connection.get()) == CONNECTION_BAD) status = PGRES_POLLING_FAILED;
    while (status == PGRES_POLLING_READING || status == PGRES_POLLING_WRITING) {
        const short event = status == PGRES_POLLING_READING ? POLLIN : POLLOUT;
        pollfd waiting{PQsocket(connection.get()), event, 0};
        if (abandoned || clock.elapsed() >= patience.count()) {
            fault.timedOut = true;
            break;
        }
        if (poll(&waiting, 1, static_cast<int>(PostgresWait::slice.count())) == 0) continue;
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
        PQsetnonblocking(connection.get(), 1);
        return connection;
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
    return {nullptr, PQfinish};
}

} // namespace

bool PostgresLink::tryConnect(ConnectFault& fault, PostgresWait& wait) {
    close();
    const milliseconds patience =
        std::min<milliseconds>(std::chrono::seconds(m_address.patience()) * m_address.hosts(), ServerLimit());
    const auto attempt = std::make_shared<Attempt>();
    std::thread([attempt, patience, address = m_address] {
        ConnectFault met;
        Handle made{nullptr, PQfinish};
        try {
            made = dial(address, patience, met, attempt->abandoned);
        } catch (const std::bad_alloc&) {
            met.words = u"zu wenig Speicher"_s;
        }
        const std::lock_guard lock(attempt->mutex);
        if (!attempt->abandoned) attempt->connection = std::move(made);
        attempt->fault = met;
        attempt->done = true;
        attempt->changed.notify_one();
    }).detach();

    m_waiting = true;
    const auto waited = qScopeGuard([this] { m_waiting = false; });
    QElapsedTimer clock;
    clock.start();
    std::unique_lock lock(attempt->mutex);
    while (!attempt->changed.wait_for(lock, PostgresWait::slice, [&] { return attempt->done; })) {
        const milliseconds left = patience - milliseconds(clock.elapsed());
        lock.unlock();
        const bool goesOn = wait.goesOn(left);
        lock.lock();
        if (attempt->done) break;
        if (!goesOn || left < -graceForLookUp) {
            attempt->abandoned = true;
            if (!goesOn) refuse(Ended::Cancelled);
            fault = {};
            fault.timedOut = true;
            fault.words = u"keine Antwort"_s;
            fault.host = m_address.host();
            return false;
        }
    }
    fault = attempt->fault;
    m_connection = attempt->connection.release();
    if (!m_connection) return false;
    m_server = textOf(PQhost(m_connection));
    ++m_epoch;
    return true;
}

void PostgresLink::refuse(Ended how) {
    m_givenUp = how;
    m_sinceGivenUp.start();
    raiseLost(how);
}

void PostgresLink::connect(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    ConnectFault fault;
    PostgresWait wait(m_address.host(), true);
    while (!tryConnect(fault, wait)) {
        if (fault.timedOut) {
            m_givenUp = Ended::Silent;
            m_sinceGivenUp.start();
        }
        const qint64 left = milliseconds - clock.elapsed();
        if (!mayPass(fault) || left <= 0) raiseConnect(fault);
        if (!wait.pause(pause, std::chrono::milliseconds(left))) refuse(Ended::Cancelled);
    }
}

} // namespace store
