#pragma once

#include "ByteLine.h"

#include <zvt/TerminalConfig.h>
#include <zvt/protocol/Apdu.h>

#include <QDeadlineTimer>

#include <functional>
#include <memory>

namespace zvt {

/// Messages to and from a terminal, the same on the network and on a serial line.
class Transport {
  public:
    /// What is known of a message after sending it.
    enum class Sent {
        Yes,
        No,   ///< the terminal has certainly not taken it
        Maybe ///< nobody knows
    };
    enum class Got {
        Message,
        Nothing, ///< within the time
        Broken,  ///< the line is down, or what comes from it is no message
        Stopped  ///< `stop` said so
    };
    using Stop = std::function<bool()>;

    virtual ~Transport() = default;
    [[nodiscard]] virtual bool open(const Stop& stop) = 0;
    virtual void close() = 0;
    /// `once`: is not repeated while it is possible that it was taken.
    [[nodiscard]] virtual Sent send(const Apdu& apdu, bool once) = 0;
    [[nodiscard]] virtual Got receive(Apdu& apdu, const QDeadlineTimer& deadline, const Stop& stop) = 0;
    virtual void wait(int ms) = 0; ///< with events running
};

/// On the network when the configuration names an address, else on the serial line.
[[nodiscard]] std::unique_ptr<Transport> makeTransport(const TerminalConfig& config);
[[nodiscard]] std::unique_ptr<Transport> makeStreamTransport(const TerminalConfig& config);
[[nodiscard]] std::unique_ptr<Transport> makeSerialTransport(const TerminalConfig& config);

} // namespace zvt
