#pragma once

#include <QString>

#include <chrono>

/// How long a server is waited for, and who is told meanwhile. Every wait for one is bounded, whether the
/// connection is being made, a statement runs or rows are read.
namespace store {

/// A wait that goes on.
struct ServerWait {
    QString server;          ///< its name, for messages; "" for one on this machine
    bool connecting = false; ///< else the answer to a statement is waited for
    std::chrono::milliseconds waited{0};
    std::chrono::milliseconds left{0}; ///< until the store gives up by itself
};

/// Sits beside somebody who waits.
class ServerPatience {
  public:
    virtual ~ServerPatience() = default;
    /// Asked some twenty times a second as long as the server is silent. False gives it up: what was asked is
    /// told as not done (3151), what was to be written as a doubt (3157). Must not use the store.
    [[nodiscard]] virtual bool GoOn(const ServerWait& wait) = 0;
    /// The wait that GoOn was asked about is over, whatever came of it.
    virtual void Over() noexcept = 0;
};

/// Installs it for the waits of this thread (not owned) and returns the one before. Without one a wait is
/// bounded and not told.
ServerPatience* SetServerPatience(ServerPatience* patience);
[[nodiscard]] ServerPatience* CurrentServerPatience();

inline constexpr std::chrono::seconds leastServerLimit{1}, usualServerLimit{10}, mostServerLimit{3600};
/// How long a server may be silent before it is given up, in the whole process; beyond the bounds above the
/// nearest of them. A connection that is made takes at most five seconds for each host that its address
/// names, or what the address tells, and never longer than this.
void SetServerLimit(std::chrono::milliseconds limit);
[[nodiscard]] std::chrono::milliseconds ServerLimit();

} // namespace store
