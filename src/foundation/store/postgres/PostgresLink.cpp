#include "PostgresLink.h"

#include "PostgresWait.h"

#include <QScopeGuard>

#include <algorithm>
#include <poll.h>

namespace store {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds rest(500);        ///< for which a server that was given up is not asked again
constexpr milliseconds stopWithin(2000); ///< that the wish to stop sending rows may take

bool failed(const PGresult* result) {
    const ExecStatusType status = PQresultStatus(result);
    return status == PGRES_FATAL_ERROR || status == PGRES_BAD_RESPONSE;
}

} // namespace

std::vector<const char*> PostgresValues::pointers() const {
    std::vector<const char*> list(texts.size(), nullptr);
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (given[i]) list[i] = texts[i].constData();
    return list;
}

PostgresLink::PostgresLink(PostgresAddress address)
    : m_address(std::move(address)) {}

PostgresLink::~PostgresLink() { close(); }

void PostgresLink::close() noexcept {
    PQfinish(m_connection);
    m_connection = nullptr;
    m_rows = false;
}

void PostgresLink::takeNotices() {
    while (PGnotify* notify = PQnotifies(m_connection)) {
        if (notify->be_pid != PQbackendPID(m_connection)) ++m_told;
        PQfreemem(notify);
    }
}

bool PostgresLink::alive() {
    if (!m_connection) return false;
    // A closed connection shows as something to read; several pieces may wait before its end.
    for (int piece = 0; piece < 16; ++piece) {
        pollfd waiting{PQsocket(m_connection), POLLIN, 0};
        if (waiting.fd < 0 || PQstatus(m_connection) != CONNECTION_OK) return false;
        if (poll(&waiting, 1, 0) <= 0) break;
        if (PQconsumeInput(m_connection) == 0) return false;
        takeNotices();
    }
    return PQstatus(m_connection) == CONNECTION_OK;
}

std::optional<Ended> PostgresLink::justGivenUp() const {
    if (!m_sinceGivenUp.isValid() || m_sinceGivenUp.hasExpired(rest.count())) return std::nullopt;
    return m_givenUp;
}

void PostgresLink::giveUp(Ended how) {
    m_givenUp = how;
    m_sinceGivenUp.start();
    throw LostConnection{false, how};
}

void PostgresLink::await(Until until) {
    const auto reached = [&] {
        const int unsent = PQflush(m_connection);
        return unsent < 0 || (unsent == 0 && (until == Until::Sent || PQisBusy(m_connection) == 0));
    };
    if (reached()) return;
    m_waiting = true;
    const auto done = qScopeGuard([this] { m_waiting = false; });
    PostgresWait wait(m_server, false);
    do {
        short events = POLLIN;
        if (PQflush(m_connection) > 0) events |= POLLOUT;
        pollfd line{PQsocket(m_connection), events, 0};
        if (poll(&line, 1, static_cast<int>(PostgresWait::slice.count())) > 0) {
            wait.heard();
            if ((line.revents & ~POLLOUT) != 0 && PQconsumeInput(m_connection) == 0) return;
            continue;
        }
        const milliseconds left = ServerLimit() - wait.waited();
        const bool silent = left <= milliseconds(0);
        if (!silent && wait.goesOn(left)) continue;
        askToStop(m_connection, milliseconds(0));
        giveUp(silent ? Ended::Silent : Ended::Cancelled);
    } while (!reached());
}

PostgresResult PostgresLink::nextResult() {
    await(Until::Answered);
    return {PQgetResult(m_connection), PQclear};
}

bool PostgresLink::send(const PostgresOrder& order) {
    switch (order.kind) {
    case PostgresOrder::Kind::Text:
        return PQsendQueryParams(m_connection, order.text.constData(), 0, nullptr, nullptr, nullptr, nullptr,
                                 0) == 1;
    case PostgresOrder::Kind::Prepare:
        return PQsendPrepare(m_connection, order.name.constData(), order.text.constData(),
                             static_cast<int>(order.types.size()), order.types.data()) == 1;
    case PostgresOrder::Kind::Run: {
        const std::vector<const char*> values = order.values->pointers();
        return PQsendQueryPrepared(m_connection, order.name.constData(), static_cast<int>(values.size()),
                                   values.data(), nullptr, nullptr, 0) == 1;
    }
    }
    return false;
}

std::vector<PostgresResult> PostgresLink::roundTrip(std::span<const PostgresOrder> orders) {
    // A single order, by far the most frequent case, costs less without a pipeline.
    const bool pipeline = orders.size() > 1;
    if (pipeline) PQenterPipelineMode(m_connection);
    for (const PostgresOrder& order : orders)
        if (!send(order)) throw LostConnection{true};
    ++m_roundTrips;
    const bool sent = !pipeline || PQpipelineSync(m_connection) == 1;

    std::vector<PostgresResult> results;
    bool finished = false;
    bool refused = false; // by the server, in its own words
    std::size_t done = 0;
    while (sent && !finished) {
        PostgresResult result = nextResult();
        if (!result) {
            // The end of one order's answer; twice in a row only when there is no connection any more.
            if (PQstatus(m_connection) != CONNECTION_OK) break;
            finished = !pipeline;
            continue;
        }
        if (PQresultStatus(result.get()) == PGRES_PIPELINE_SYNC) {
            finished = true;
        } else {
            if (!failed(result.get()) && PQresultStatus(result.get()) != PGRES_PIPELINE_ABORTED)
                ++done;
            else if (PQresultErrorField(result.get(), PG_DIAG_SQLSTATE))
                refused = true;
            results.push_back(std::move(result));
        }
    }
    if (!finished || PQstatus(m_connection) != CONNECTION_OK) {
        // Writing happens behind the last order, so that even all answers do not tell whether it did; a
        // refused order keeps it from happening.
        throw LostConnection{refused && done < orders.size()};
    }
    if (pipeline) PQexitPipelineMode(m_connection);
    takeNotices();
    return results;
}

PostgresResult PostgresLink::simple(const QByteArray& texts) {
    ++m_roundTrips;
    PostgresResult last(nullptr, PQclear);
    if (PQsendQuery(m_connection, texts.constData()) == 1) {
        while (PostgresResult result = nextResult()) {
            last = std::move(result);
            if (PQresultStatus(last.get()) == PGRES_COPY_IN) return last;
        }
    }
    if (PQstatus(m_connection) != CONNECTION_OK) throw LostConnection{};
    takeNotices();
    return last;
}

bool PostgresLink::copy(const QByteArray& bytes) {
    const int put = PQputCopyData(m_connection, bytes.constData(), static_cast<int>(bytes.size()));
    if (put != 1) return false;
    await(Until::Sent);
    return true;
}

PostgresResult PostgresLink::copied(const char* fault) {
    PQputCopyEnd(m_connection, fault);
    PostgresResult first(nullptr, PQclear);
    while (PostgresResult result = nextResult())
        if (!first) first = std::move(result);
    return first;
}

// In pipeline mode like everything else: outside it the library would leave its row by row mode switched on.
void PostgresLink::beginRows(const PostgresOrder& run) {
    PQenterPipelineMode(m_connection);
    if (!send(run)) throw LostConnection{true};
    ++m_roundTrips;
    m_rows = true;
    if (PQpipelineSync(m_connection) != 1) throw LostConnection{true};
    PQsetSingleRowMode(m_connection);
}

PostgresResult PostgresLink::nextRow() {
    if (!m_rows) return {nullptr, PQclear};
    PostgresResult result = nextResult();
    if (result && PQresultStatus(result.get()) == PGRES_SINGLE_TUPLE) return result;
    // Behind the last row stands a result without any.
    finishRows();
    if (PQstatus(m_connection) != CONNECTION_OK) throw LostConnection{true};
    takeNotices();
    if (!result || !failed(result.get())) result.reset();
    return result;
}

void PostgresLink::finishRows() {
    m_rows = false;
    for (bool finished = false; !finished && PQstatus(m_connection) == CONNECTION_OK;) {
        const PostgresResult left = nextResult();
        finished = left && PQresultStatus(left.get()) == PGRES_PIPELINE_SYNC;
    }
    PQexitPipelineMode(m_connection);
}

// A wish to stop that arrived later would stop the next statement.
void PostgresLink::endRows() noexcept {
    if (!m_rows) return;
    try {
        if (askToStop(m_connection, stopWithin)) return finishRows();
    } catch (const LostConnection&) {
    }
    close();
}

} // namespace store
