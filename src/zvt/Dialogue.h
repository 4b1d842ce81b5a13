#pragma once

#include "ProtocolLog.h"
#include "Transport.h"

#include <session/WaitScreen.h>
#include <zvt/TerminalConfig.h>
#include <zvt/protocol/Messages.h>

#include <optional>

namespace zvt {

/// One command and all that the terminal sends until it hands the word back.
class Dialogue {
  public:
    enum class End {
        Completed, ///< 06 0F
        Aborted,   ///< 06 1E
        Refused,   ///< 84 xx: the command was not begun
        NotSent,   ///< the terminal has certainly not taken it
        Lost       ///< what became of it is not known
    };
    struct Options {
        bool money = false;           ///< never sent again while it may have been taken; can be cancelled
        std::optional<qint64> amount; ///< cents that a booking must show
        bool keepStray = false;       ///< results of an earlier dialogue are acknowledged, not refused
    };
    struct Result {
        End end = End::Lost;
        Failure failure;                  ///< of Aborted and Refused
        std::optional<StatusInfo> status; ///< the last one
        std::optional<StatusInfo> wrong;  ///< a booking of something else, which was refused
        Apdu completion;
        QStringList lines; ///< receipts to print
        bool cancelled = false;

        [[nodiscard]] bool isBooked() const { return status && status->isBooked(); }
    };

    /// `screen` may be nullptr: nothing is shown, and nothing can be cancelled.
    Dialogue(Transport& transport, const TerminalConfig& config, ProtocolLog& log, WaitScreen* screen)
        : m_transport(transport)
        , m_config(config)
        , m_log(log)
        , m_screen(screen) {}

    [[nodiscard]] Result run(const Apdu& command, const Options& options);

  private:
    [[nodiscard]] bool wantsCancel() const { return m_money && m_screen && m_screen->TakeCancel(); }
    void show(const QString& text);
    void askToCancel(Result& result);
    void answer(const Apdu& apdu);
    /// True when the dialogue is over.
    [[nodiscard]] bool takeAnswer(const Apdu& apdu, Result& result);
    [[nodiscard]] bool takeCommand(const Apdu& apdu, const Options& options, Result& result);
    void takeStatus(const Apdu& apdu, const Options& options, Result& result);
    void takeState(const Apdu& apdu);

    Transport& m_transport;
    const TerminalConfig& m_config;
    ProtocolLog& m_log;
    WaitScreen* m_screen;
    QDeadlineTimer m_deadline;
    int m_dialogueMs = 0;
    bool m_money = false, m_answered = false, m_cancelOpen = false;
};

} // namespace zvt
