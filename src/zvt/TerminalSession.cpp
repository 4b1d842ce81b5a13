#include "TerminalSession.h"

#include <zvt/protocol/Fields.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

using End = Dialogue::End;

constexpr int registration = 0x0600, enquiry = 0x0501, repeat = 0x0620;
constexpr int busy = 0x9C;
// Config byte of the registration.
constexpr int printPayments = 0x02, printAdministration = 0x04, sendStates = 0x08, noAmountAtTerminal = 0x10,
              readyLines = 0x80;

/// Ends the connection with the act.
class Connection {
  public:
    explicit Connection(Transport& transport)
        : m_transport(transport) {}
    ~Connection() { m_transport.close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

  private:
    Transport& m_transport;
};

} // namespace

TerminalSession::TerminalSession(TerminalConfig config)
    : m_config(std::move(config))
    , m_transport(makeTransport(m_config)) {}

Dialogue::Result TerminalSession::runRegistration(Dialogue& dialogue, bool keepStray, bool withContainer) {
    const int flags = sendStates | noAmountAtTerminal |
                      (m_config.printReceipts ? printPayments | printAdministration | readyLines : 0);
    QByteArray data = m_config.password;
    data.append(static_cast<char>(flags)).append(bcd(euro, 2));
    // Says that blocks of text are welcome.
    if (withContainer) data.append(QByteArray::fromHex("060626040A0206D3"));
    return dialogue.run(command(registration, data), {.amount = {}, .keepStray = keepStray});
}

bool TerminalSession::connectAndRegister(WaitScreen* screen, bool keepStray) {
    m_reason.clear();
    m_transport->close();
    const auto stop = [&] { return screen && givesUp(*screen); };
    if (!m_transport->open(stop)) {
        m_log.note(u"no connection"_s);
        m_reason = u"Das Kartenterminal ist nicht erreichbar."_s;
        return false;
    }
    Dialogue dialogue(*m_transport, m_config, m_log, nullptr);
    auto result = runRegistration(dialogue, keepStray, !m_plainRegistration);
    const bool refused = result.end == End::Refused || result.end == End::Aborted;
    if (refused && !m_plainRegistration && result.failure.code != busy) {
        const auto plain = runRegistration(dialogue, keepStray, false);
        m_plainRegistration = plain.end == End::Completed;
        result = plain;
    }
    if (result.end == End::Completed) return true;
    m_reason = result.end == End::Refused || result.end == End::Aborted
                   ? u"Das Kartenterminal lehnt die Anmeldung ab: "_s + result.failure.text
                   : u"Das Kartenterminal antwortet nicht."_s;
    return false;
}

Dialogue::Result TerminalSession::statusEnquiry(Dialogue& dialogue, bool keepStray) {
    const Dialogue::Options options{.amount = {}, .keepStray = keepStray};
    auto result = dialogue.run(command(enquiry, m_config.password + QByteArray::fromHex("0304")), options);
    if (result.end == End::Refused && result.failure.code != busy)
        result = dialogue.run(command(enquiry), options); // older terminals know it without parameters only
    return result;
}

Dialogue::Result TerminalSession::repeatReceipt(Dialogue& dialogue) {
    // With the status of the original act, without printing.
    return dialogue.run(command(repeat, m_config.password + QByteArray::fromHex("0303")),
                        {.amount = {}, .keepStray = true});
}

bool TerminalSession::givesUp(WaitScreen& screen) {
    m_givenUp = m_givenUp || screen.TakeCancel();
    return m_givenUp;
}

bool TerminalSession::find() {
    const Connection connection(*m_transport);
    if (!connectAndRegister(nullptr, false)) return false;
    Dialogue dialogue(*m_transport, m_config, m_log, nullptr);
    const auto result = statusEnquiry(dialogue, false);
    if (result.end == End::Completed) m_info = readTerminal(result.completion, m_config.charset);
    if (result.end == End::Lost || result.end == End::NotSent) return false;
    learnLastAct();
    return true;
}

void TerminalSession::learnLastAct() {
    if (m_last || m_askedLast) return;
    m_askedLast = true;
    Dialogue dialogue(*m_transport, m_config, m_log, nullptr);
    const auto result = repeatReceipt(dialogue);
    if (result.end == End::Completed && result.status && result.status->isIdentified())
        m_last = result.status;
}

TerminalSession::Outcome TerminalSession::act(const Apdu& command, std::optional<qint64> amount,
                                              WaitScreen& screen) {
    m_cancelled = false;
    m_lines.clear();
    Dialogue::Result result;
    {
        const Connection connection(*m_transport);
        m_givenUp = false;
        const bool ready = connectAndRegister(&screen, false);
        if (ready) learnLastAct();
        m_cancelled = givesUp(screen);
        if (!ready || m_cancelled) return Outcome::Failed;
        Dialogue dialogue(*m_transport, m_config, m_log, &screen);
        result = dialogue.run(command, {.money = true, .amount = amount});
    }
    m_cancelled = result.cancelled;
    m_lines = result.lines;
    if (const Outcome outcome = judge(result, amount); outcome != Outcome::Unknown) return outcome;
    m_unsettled = Unsettled{amount, m_last};
    return settle(screen);
}

TerminalSession::Outcome TerminalSession::judge(const Dialogue::Result& result,
                                                std::optional<qint64> amount) {
    if (result.wrong) {
        m_wrong = *result.wrong;
        m_last.reset(); // whatever the terminal made of it
        m_askedLast = false;
        return Outcome::WrongStatus;
    }
    switch (result.end) {
    case End::NotSent:
        return failed(u"Die Verbindung zum Kartenterminal ist unterbrochen."_s);
    case End::Refused:
        return failed(result.failure.text);
    case End::Aborted:
        // A booking that ends in an abort may have been taken back.
        if (result.isBooked()) return Outcome::Unknown;
        return failed(withOwnWords(result.failure.text, result.status ? result.status->text : QString()));
    case End::Completed:
        if (result.isBooked()) return booked(*result.status);
        if (result.status && result.status->result)
            return failed(withOwnWords(resultText(*result.status->result), result.status->text));
        if (!amount) return booked({}); // an end of day need not tell more
        return Outcome::Unknown;
    case End::Lost:
        break;
    }
    return Outcome::Unknown;
}

void TerminalSession::forgetUnsettled() {
    m_unsettled.reset();
    m_last.reset();
    m_askedLast = false;
}

TerminalSession::Outcome TerminalSession::settle(WaitScreen& screen) {
    m_log.note(u"asking how it ended"_s);
    screen.Show(u"Die Verbindung ist unterbrochen.\nDas Terminal wird nach dem Ausgang gefragt..."_s);
    m_givenUp = false;
    const QDeadlineTimer deadline(m_config.settleMs);
    const int pause = std::clamp(m_config.settleMs / 20, 20, 2000);
    while (!deadline.hasExpired()) {
        {
            const Connection connection(*m_transport);
            if (connectAndRegister(&screen, true)) {
                if (const auto outcome = askAgain()) {
                    if (*outcome != Outcome::Unknown) m_unsettled.reset();
                    return *outcome;
                }
            }
        }
        for (const QDeadlineTimer next(pause); !next.hasExpired();) {
            if (givesUp(screen)) return Outcome::Unknown;
            m_transport->wait(static_cast<int>(next.remainingTime()));
        }
    }
    m_log.note(u"not settled"_s);
    return Outcome::Unknown;
}

std::optional<TerminalSession::Outcome> TerminalSession::askAgain() {
    Dialogue dialogue(*m_transport, m_config, m_log, nullptr);
    const auto ready = statusEnquiry(dialogue, true);
    if (ready.end == End::Lost || ready.end == End::NotSent) return {};
    if (ready.end == End::Completed && readTerminal(ready.completion, m_config.charset).status == busy)
        return {};
    if ((ready.end == End::Refused || ready.end == End::Aborted) && ready.failure.code == busy) return {};

    const auto last = repeatReceipt(dialogue);
    switch (last.end) {
    case End::Lost:
    case End::NotSent:
        return {};
    case End::Refused:
    case End::Aborted:
        return last.failure.code == busy ? std::nullopt : std::optional(Outcome::Unknown);
    case End::Completed:
        break;
    }
    return last.status ? compare(*last.status) : Outcome::Unknown;
}

TerminalSession::Outcome TerminalSession::compare(const StatusInfo& last) {
    const auto& before = m_unsettled->before;
    // Without a number of the act before, an old booking of the same amount looks like the new one.
    if (!before || !last.isComparable(*before) || !last.complete || !last.result) return Outcome::Unknown;
    const QString none = u"Das Terminal hat sie nicht ausgeführt."_s;
    if (last.isSameAct(*before)) return failed(none);
    m_last = last;
    if (!last.isBooked()) return failed(none + u' ' + withOwnWords(resultText(*last.result), last.text));
    if (m_unsettled->amount && last.amount != m_unsettled->amount) return Outcome::Unknown;
    return booked(last);
}

TerminalSession::Outcome TerminalSession::booked(const StatusInfo& status) {
    m_status = status;
    if (status.isIdentified()) {
        m_last = status;
    } else {
        m_last.reset();
        m_askedLast = false;
    }
    return Outcome::Booked;
}

TerminalSession::Outcome TerminalSession::failed(const QString& reason) {
    m_reason = reason;
    return Outcome::Failed;
}

} // namespace zvt
