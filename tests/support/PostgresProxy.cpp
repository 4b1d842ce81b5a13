#include <support/PostgresProxy.h>

#include <QMap>

#include <arpa/inet.h>
#include <cerrno>
#include <deque>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

constexpr quint32 tlsRequest = 80877103, gssRequest = 80877104, protocol3 = 3u << 16;

quint32 number(const QByteArray& bytes, qsizetype at) {
    quint32 value = 0;
    for (qsizetype i = at; i < at + 4; ++i)
        value = value << 8 | static_cast<quint8>(bytes[i]);
    return value;
}

/// The text that ends with the zero byte at or behind `at`.
QByteArray textAt(const QByteArray& frame, qsizetype at) {
    const qsizetype end = frame.indexOf('\0', at);
    return frame.mid(at, end < 0 ? -1 : end - at);
}

sockaddr_in loopback(quint16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

int newSocket() { return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0); }

void makeQuick(int fd) {
    const int on = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    fcntl(fd, F_SETFL, O_NONBLOCK);
}

/// Cuts bytes into frames: a letter, a length, a body. What a client says first has no letter.
class Frames {
  public:
    explicit Frames(bool begun)
        : m_begun(begun) {}
    void add(const QByteArray& bytes) { m_bytes += bytes; }
    /// An answer of one byte without a length comes next.
    void expectByte() { ++m_single; }
    void begin() { m_begun = true; }
    [[nodiscard]] bool begun() const { return m_begun; }
    /// The next whole frame.
    std::optional<QByteArray> take() {
        if (m_single > 0 && !m_bytes.isEmpty()) {
            --m_single;
            return cut(1);
        }
        const qsizetype head = m_begun ? 5 : 4;
        if (m_bytes.size() < head) return std::nullopt;
        const qsizetype size = qsizetype(number(m_bytes, head - 4)) + head - 4;
        if (m_bytes.size() < size) return std::nullopt;
        return cut(size);
    }

  private:
    QByteArray cut(qsizetype size) {
        const QByteArray frame = m_bytes.left(size);
        m_bytes.remove(0, size);
        return frame;
    }
    QByteArray m_bytes;
    bool m_begun;
    int m_single = 0;
};

/// Bytes on their way in one direction.
struct Way {
    struct Part {
        Clock::time_point due;
        QByteArray bytes;
    };
    int from = -1, to = -1;
    std::deque<Part> parts;
    bool ended = false;
};

} // namespace

/// One connection of a till.
class PostgresProxy::Line {
  public:
    Line(PostgresProxy& proxy, int client, int server)
        : m_proxy(proxy)
        , m_there{client, server, {}, false}
        , m_back{server, client, {}, false} {}
    ~Line() {
        for (const int fd : {m_there.from, m_back.from})
            if (fd >= 0) close(fd);
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    void addTo(std::vector<pollfd>& polls) const {
        for (const Way* way : {&m_there, &m_back}) {
            const Way& other = way == &m_there ? m_back : m_there;
            short events = way->ended || way->from < 0 ? 0 : POLLIN;
            if (!other.parts.empty() && other.parts.front().due <= Clock::now()) events |= POLLOUT;
            polls.push_back({m_silent && way->ended ? -1 : way->from, events, 0});
        }
    }
    [[nodiscard]] std::optional<Clock::time_point> due() const {
        std::optional<Clock::time_point> first;
        for (const Way* way : {&m_there, &m_back})
            if (!way->parts.empty() && (!first || way->parts.front().due < *first))
                first = way->parts.front().due;
        return first;
    }
    /// False when the line is dead.
    bool work() {
        if (m_proxy.m_silent) m_silent = true;
        if (m_silent) return drain();
        for (Way* way : {&m_there, &m_back}) {
            read(*way);
            if (m_cut) return false;
            if (m_silent) return drain();
        }
        return write(m_there) && write(m_back) && !(m_there.ended && m_there.parts.empty()) &&
               !(m_back.ended && m_back.parts.empty());
    }

  private:
    /// Takes what comes and passes nothing on; false when the till has gone.
    bool drain() {
        for (Way* way : {&m_there, &m_back}) {
            char bytes[65536];
            ssize_t size = 1;
            while (way->from >= 0 && size > 0)
                size = recv(way->from, bytes, sizeof bytes, 0);
            way->parts.clear();
            if (way->from >= 0 && (size == 0 || (errno != EAGAIN && errno != EINTR))) way->ended = true;
        }
        return !m_there.ended;
    }
    void read(Way& way) {
        char bytes[65536];
        for (;;) {
            const ssize_t size = recv(way.from, bytes, sizeof bytes, 0);
            if (size > 0) {
                const QByteArray got(bytes, size);
                &way == &m_there ? fromClient(got) : fromServer(got);
                if (m_cut || m_silent) return;
                continue;
            }
            if (size == 0 || (errno != EAGAIN && errno != EINTR)) way.ended = true;
            return;
        }
    }
    bool write(Way& way) {
        while (!way.parts.empty() && way.parts.front().due <= Clock::now()) {
            QByteArray& bytes = way.parts.front().bytes;
            const ssize_t size = send(way.to, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL);
            if (size < 0) return errno == EAGAIN || errno == EINTR;
            bytes.remove(0, size);
            if (bytes.isEmpty()) way.parts.pop_front();
        }
        return true;
    }
    void pass(Way& way, const QByteArray& bytes) {
        if (!bytes.isEmpty())
            way.parts.push_back({Clock::now() + std::chrono::microseconds(m_proxy.m_halfDelay), bytes});
    }
    void fromClient(const QByteArray& bytes) {
        if (!m_waiting) ++m_proxy.m_roundTrips;
        m_waiting = true;
        m_asked.add(bytes);
        QByteArray on;
        while (const auto frame = m_asked.take()) {
            on += look(*frame);
            if (m_cut || m_silent) return;
        }
        pass(m_there, on);
    }
    void fromServer(const QByteArray& bytes) {
        m_waiting = false;
        m_answered.add(bytes);
        QByteArray on;
        while (const auto frame = m_answered.take()) {
            if (frame->startsWith('Z')) ++m_ready;
            if (m_cutAtReady >= 0 && m_ready >= m_cutAtReady) {
                (m_silently ? m_silent : m_cut) = true;
                return;
            }
            on += *frame;
        }
        if (m_cutAtReady < 0) pass(m_back, on);
    }
    /// What of the frame is passed on.
    QByteArray look(const QByteArray& frame) {
        if (!m_asked.begun()) {
            const quint32 code = number(frame, 4);
            if (code == protocol3) m_asked.begin();
            if (code == tlsRequest || code == gssRequest) m_answered.expectByte();
            return frame;
        }
        const char kind = frame[0];
        if (kind == 'S' || kind == 'Q') ++m_syncs;
        std::optional<Order> order;
        if (kind == 'P') {
            const QByteArray name = textAt(frame, 5);
            m_statements[name] = textAt(frame, 5 + name.size() + 1);
        } else if (kind == 'B') {
            const QByteArray portal = textAt(frame, 5);
            order = m_proxy.judge(m_statements.value(textAt(frame, 5 + portal.size() + 1)));
        } else if (kind == 'Q') {
            order = m_proxy.judge(textAt(frame, 5));
        }
        if (!order) return frame;
        m_silently = order->silently;
        if (order->where == Cut::BeforeSending) {
            (m_silently ? m_silent : m_cut) = true;
            return {};
        }
        // The answer is whole when the server is ready again; it says so once for the login, then for each
        // sync.
        m_cutAtReady = 1 + m_syncs + (kind == 'Q' ? 0 : 1);
        return frame;
    }

    PostgresProxy& m_proxy;
    Way m_there, m_back;
    Frames m_asked{false}, m_answered{true};
    QMap<QByteArray, QByteArray> m_statements;
    int m_syncs = 0, m_ready = 0;
    int m_cutAtReady = -1;
    bool m_cut = false, m_silent = false, m_silently = false, m_waiting = false;
};

PostgresProxy::PostgresProxy(quint16 serverPort)
    : m_serverPort(serverPort) {
    m_listener = newSocket();
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, any, size) != 0 || getsockname(m_listener, any, &size) != 0 ||
        listen(m_listener, 16) != 0 || pipe2(m_wake, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::runtime_error("the proxy cannot listen");
    m_port = ntohs(address.sin_port);
    fcntl(m_listener, F_SETFL, O_NONBLOCK);
    m_thread = std::thread([this] { work(); });
}

PostgresProxy::~PostgresProxy() {
    m_stop = true;
    wake();
    m_thread.join();
    m_lines.clear();
    for (const int fd : {m_listener, m_wake[0], m_wake[1]})
        close(fd);
}

void PostgresProxy::setDelay(std::chrono::microseconds roundTrip) { m_halfDelay = roundTrip.count() / 2; }

void PostgresProxy::cut(Cut where, const QByteArray& statement, int passed, After after) {
    place({where, statement.toLower(), passed, after, false});
}

void PostgresProxy::hush(Cut where, const QByteArray& statement, int passed) {
    place({where, statement.toLower(), passed, After::Accept, true});
}

void PostgresProxy::place(Order order) {
    const std::lock_guard lock(m_mutex);
    m_order = std::move(order);
}

void PostgresProxy::setSilent(bool on) {
    m_silent = on;
    wake();
}

bool PostgresProxy::hasCut() const {
    const std::lock_guard lock(m_mutex);
    return !m_order;
}

void PostgresProxy::cutAll() {
    m_cutAll = true;
    wake();
    while (m_cutAll)
        std::this_thread::yield();
}

std::optional<PostgresProxy::Order> PostgresProxy::judge(const QByteArray& statement) {
    const std::lock_guard lock(m_mutex);
    if (!m_order || !statement.toLower().contains(m_order->statement)) return std::nullopt;
    if (m_order->passed-- > 0) return std::nullopt;
    if (m_order->after == After::Deny) m_deny = true;
    if (m_order->after == After::Close) m_refuse = true;
    return std::exchange(m_order, std::nullopt);
}

void PostgresProxy::wake() const { std::ignore = ::write(m_wake[1], "x", 1); }

void PostgresProxy::accept() {
    const int client = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    if (m_deny) {
        char asked[1024];
        std::ignore = recv(client, asked, sizeof asked, 0);
        static constexpr char words[] = "E\0\0\0\x25SFATAL\0C28000\0Mnobody may enter\0";
        std::ignore = send(client, words, sizeof words, MSG_NOSIGNAL);
        close(client);
        return;
    }
    if (m_silent) {
        makeQuick(client);
        m_lines.push_back(std::make_unique<Line>(*this, client, -1));
        return;
    }
    const int server = newSocket();
    sockaddr_in address = loopback(m_serverPort);
    if (m_refuse || connect(server, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        close(client);
        close(server);
        return;
    }
    makeQuick(client);
    makeQuick(server);
    m_lines.push_back(std::make_unique<Line>(*this, client, server));
}

void PostgresProxy::work() {
    while (!m_stop) {
        std::vector<pollfd> polls{{m_listener, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        std::optional<Clock::time_point> due;
        for (const auto& line : m_lines) {
            line->addTo(polls);
            if (const auto next = line->due(); next && (!due || *next < *due)) due = next;
        }
        timespec wait{};
        if (due) {
            const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(
                std::max(*due - Clock::now(), Clock::duration::zero()));
            wait = {time_t(left.count() / 1'000'000'000), long(left.count() % 1'000'000'000)};
        }
        ppoll(polls.data(), polls.size(), due ? &wait : nullptr, nullptr);
        char bytes[64];
        while (::read(m_wake[0], bytes, sizeof bytes) > 0) {
        }
        if (m_cutAll) {
            m_lines.clear();
            m_cutAll = false;
        }
        std::erase_if(m_lines, [](const auto& line) { return !line->work(); });
        if (polls[0].revents & POLLIN) accept();
    }
}
