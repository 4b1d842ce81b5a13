#pragma once

#include "Dialogue.h"

#include <zvt/protocol/Messages.h>

#include <memory>
#include <optional>

namespace zvt {

/// What the till knows of its terminal from one act to the next: connects and registers before each act, and
/// finds out how an act ended whose end it did not see.
class TerminalSession {
  public:
    enum class Outcome {
        Booked,
        Failed,      ///< certainly not booked; reason() says why
        WrongStatus, ///< the terminal booked something else and was told to take it back; wrong()
        Unknown      ///< nobody knows
    };

    explicit TerminalSession(TerminalConfig config);

    [[nodiscard]] ProtocolLog& log() { return m_log; }
    [[nodiscard]] const TerminalConfig& config() const { return m_config; }
    /// Connects, registers and asks for the state; True when a terminal answers as one.
    [[nodiscard]] bool find();
    [[nodiscard]] const TerminalInfo& info() const { return m_info; }

    /// One act: `amount` in cents is what its booking must show, nothing for an end of day. An act that
    /// remains Unknown is kept as unsettled().
    [[nodiscard]] Outcome act(const Apdu& command, std::optional<qint64> amount, WaitScreen& screen);
    [[nodiscard]] const QString& reason() const { return m_reason; }
    [[nodiscard]] const StatusInfo& status() const { return m_status; } ///< of what was booked
    [[nodiscard]] const StatusInfo& wrong() const { return m_wrong; }
    [[nodiscard]] bool wasCancelled() const { return m_cancelled; }
    [[nodiscard]] QStringList takeLines() { return std::exchange(m_lines, {}); }

    /// An act whose end is not known yet; its amount in cents.
    struct Unsettled {
        std::optional<qint64> amount;
        std::optional<StatusInfo> before; ///< the last act that the terminal knew before it
    };
    [[nodiscard]] const std::optional<Unsettled>& unsettled() const { return m_unsettled; }
    /// The cashier decided; what the terminal knows is asked anew before the next act.
    void forgetUnsettled();
    /// Connects again and again and asks, until the terminal tells, the time is over or the cashier gives up.
    [[nodiscard]] Outcome settle(WaitScreen& screen);

  private:
    [[nodiscard]] bool connectAndRegister(WaitScreen* screen, bool keepStray);
    [[nodiscard]] Dialogue::Result runRegistration(Dialogue& dialogue, bool keepStray, bool withContainer);
    [[nodiscard]] Dialogue::Result statusEnquiry(Dialogue& dialogue, bool keepStray);
    [[nodiscard]] Dialogue::Result repeatReceipt(Dialogue& dialogue);
    void learnLastAct();
    /// The cashier has cancelled since this act began to connect.
    [[nodiscard]] bool givesUp(WaitScreen& screen);
    [[nodiscard]] Outcome judge(const Dialogue::Result& result, std::optional<qint64> amount);
    /// Nothing while the terminal has not told.
    [[nodiscard]] std::optional<Outcome> askAgain();
    [[nodiscard]] Outcome compare(const StatusInfo& last);
    [[nodiscard]] Outcome booked(const StatusInfo& status);
    [[nodiscard]] Outcome failed(const QString& reason);

    TerminalConfig m_config;
    ProtocolLog m_log;
    std::unique_ptr<Transport> m_transport;
    TerminalInfo m_info;
    QString m_reason;
    StatusInfo m_status, m_wrong;
    QStringList m_lines;
    bool m_cancelled = false, m_givenUp = false;
    std::optional<StatusInfo> m_last; ///< what the terminal would repeat now, as far as is known
    bool m_askedLast = false;         ///< it was asked for; not every terminal tells
    bool m_plainRegistration = false; ///< the terminal does not know containers
    std::optional<Unsettled> m_unsettled;
};

} // namespace zvt
