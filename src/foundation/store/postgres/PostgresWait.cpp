#include "PostgresWait.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <libpq-fe.h>
#include <memory>
#include <thread>
#include <utility>

namespace store {

namespace {

using std::chrono::milliseconds;

std::atomic<bool> asking = false; ///< a server that does not hear gets no second wish

} // namespace

PostgresWait::PostgresWait(QString server, bool connecting)
    : m_patience(CurrentServerPatience())
    , m_server(std::move(server))
    , m_connecting(connecting) {
    m_clock.start();
}

PostgresWait::~PostgresWait() {
    if (m_asked) m_patience->Over();
}

bool PostgresWait::goesOn(milliseconds left) {
    if (!m_patience) return true;
    m_asked = true;
    return m_patience->GoOn({m_server, m_connecting, waited(), std::max(left, milliseconds(0))});
}

bool PostgresWait::pause(milliseconds length, milliseconds left) {
    for (milliseconds slept(0); slept < length; slept += slice) {
        std::this_thread::sleep_for(std::min(slice, length - slept));
        if (!goesOn(left - slept)) return false;
    }
    return true;
}

// The library waits for the server's answer to the wish without an end, so that this has a thread of its own.
bool askToStop(PGconn* connection, milliseconds patience) {
    if (asking.exchange(true)) return false;
    const std::shared_ptr<PGcancel> cancel(PQgetCancel(connection), PQfreeCancel);
    if (!cancel) {
        asking = false;
        return false;
    }
    std::promise<bool> promise;
    std::future<bool> taken = promise.get_future();
    std::thread([cancel = cancel, promise = std::move(promise)]() mutable {
        char words[256];
        const bool done = PQcancel(cancel.get(), words, sizeof(words)) == 1;
        cancel.reset();
        asking = false;
        promise.set_value(done);
    }).detach();
    return taken.wait_for(patience) == std::future_status::ready && taken.get();
}

} // namespace store
