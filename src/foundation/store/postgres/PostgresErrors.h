#pragma once

#include <text/RuntimeError.h>

#include <QHash>
#include <QString>

typedef struct pg_result PGresult;

namespace store {

/// Raises a fault of the server's side with its own words.
[[noreturn]] void raiseTold(int number, const QString& description, const QString& details = {});

/// By the server's names of the tables, the column that a table's row key is made of.
using Counters = QHash<QString, QString>;

/// Raises what a failed statement means to the program: the dialect's functions report their number as the
/// state "Jnnnn", everything else is told from the server's own state.
[[noreturn]] void raisePostgres(const PGresult* result, const Counters& counters);

/// True when preparing the text anew may help.
[[nodiscard]] bool isStalePlan(const PGresult* result);

/// What a try to reach the server came to. `state` is the server's answer, empty when there was none.
struct ConnectFault {
    enum class Stage { Network, Tls, Login } stage = Stage::Network;
    QString state;
    QString words;
    QString host, database, user;
    bool passwordMissing = false;
    bool unknownHost = false;
    bool timedOut = false;
    bool closed = false; ///< by the other side, without a word
};
[[noreturn]] void raiseConnect(const ConnectFault& fault);
/// True when waiting a little may help: nobody listens, or the server is just starting or stopping.
[[nodiscard]] bool mayPass(const ConnectFault& fault);

/// How a connection ended: cut, given up because the server was silent for too long, or by the person who
/// waited.
enum class Ended { Cut, Silent, Cancelled };

/// The connection ended while something was asked.
struct LostConnection {
    bool nothingDone = false; ///< the server certainly took nothing over
    Ended how = Ended::Cut;
    /// Asking again would only wait again.
    [[nodiscard]] bool givenUp() const { return how != Ended::Cut; }
};

/// 3151: the connection is lost and what was asked did not happen.
[[noreturn]] void raiseLost(Ended how = Ended::Cut);
/// 3151: the same in a transaction, which the server takes back.
[[noreturn]] void raiseLostTransaction();
/// 3157: the connection was lost while the server may have been writing.
[[noreturn]] void raiseUnknownOutcome(Ended how = Ended::Cut);

} // namespace store
