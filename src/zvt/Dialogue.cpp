#include "Dialogue.h"

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

// Error codes that the till answers with.
constexpr int notSupported = 0x83, notReadable = 0x9A, wrongAmount = 0xB7, wrongCurrency = 0x6F,
              noPrinter = 0xCC;
constexpr int abortCommand = 0x06B0;
constexpr int minuteMs = 60000;

} // namespace

Dialogue::Result Dialogue::run(const Apdu& command, const Options& options) {
    Result result;
    m_money = options.money;
    m_answered = m_cancelOpen = false;
    m_dialogueMs = m_config.dialogueMs;
    m_log.sent(command);
    const auto sent = m_transport.send(command, options.money);
    if (sent != Transport::Sent::Yes) {
        result.end = sent == Transport::Sent::No ? End::NotSent : End::Lost;
        m_log.note(u"not sent"_s);
        return result;
    }
    m_deadline.setRemainingTime(m_config.answerMs);
    for (;;) {
        Apdu apdu;
        switch (m_transport.receive(apdu, m_deadline, [this] { return wantsCancel(); })) {
        case Transport::Got::Stopped:
            askToCancel(result);
            continue;
        case Transport::Got::Nothing:
        case Transport::Got::Broken:
            m_log.note(u"line lost"_s);
            result.end = End::Lost;
            return result;
        case Transport::Got::Message:
            break;
        }
        m_log.received(apdu);
        if (apdu.isAnswer() ? takeAnswer(apdu, result) : takeCommand(apdu, options, result)) return result;
    }
}

void Dialogue::show(const QString& text) {
    if (m_screen && !text.isEmpty()) m_screen->Show(text);
}

void Dialogue::askToCancel(Result& result) {
    result.cancelled = true;
    if (m_cancelOpen) return;
    show(u"Abbruch wird angefordert..."_s);
    const Apdu apdu = command(abortCommand);
    m_log.sent(apdu);
    m_cancelOpen = m_transport.send(apdu, true) == Transport::Sent::Yes;
}

void Dialogue::answer(const Apdu& apdu) {
    m_log.sent(apdu);
    // Whether it got through shows in what comes next.
    (void)m_transport.send(apdu, false);
}

bool Dialogue::takeAnswer(const Apdu& apdu, Result& result) {
    if (!m_answered) {
        if (apdu.isPositive()) {
            m_answered = true;
            m_deadline.setRemainingTime(m_dialogueMs);
            return false;
        }
        result.end = End::Refused;
        result.failure = readFailure(apdu, m_config.charset);
        return true;
    }
    if (m_cancelOpen && !apdu.isPositive())
        show(u"Das Terminal kann jetzt nicht abbrechen. Bitte am Terminal abbrechen."_s);
    m_cancelOpen = false;
    return false;
}

bool Dialogue::takeCommand(const Apdu& apdu, const Options& options, Result& result) {
    switch (apdu.code()) {
    case 0x040F:
        if (m_answered) {
            takeStatus(apdu, options, result);
            m_deadline.setRemainingTime(m_dialogueMs);
        } else {
            // The result of an act that the till gave up: refused, the terminal takes it back.
            answer(options.keepStray ? positiveAnswer() : negativeAnswer(notSupported));
        }
        return false;
    case 0x04FF:
        answer(positiveAnswer());
        if (m_answered) takeState(apdu);
        return false;
    case 0x06D1:
    case 0x06D3:
        if (m_config.printReceipts && m_answered) {
            result.lines += readLines(apdu, m_config.charset);
            answer(positiveAnswer());
        } else {
            answer(negativeAnswer(noPrinter));
        }
        return false;
    case 0x060F:
    case 0x061E:
        answer(positiveAnswer());
        if (!m_answered) return false; // the end of an earlier dialogue
        result.end = apdu.code() == 0x060F ? End::Completed : End::Aborted;
        result.completion = apdu;
        if (result.end == End::Aborted) result.failure = readFailure(apdu, m_config.charset);
        return true;
    default:
        answer(negativeAnswer(notSupported));
        return false;
    }
}

void Dialogue::takeStatus(const Apdu& apdu, const Options& options, Result& result) {
    const StatusInfo status = readStatus(apdu, m_config.charset);
    if (options.amount && status.isBooked()) {
        const bool readable = status.complete || status.amount;
        const bool sameAmount = !status.amount || status.amount == options.amount;
        const bool sameCurrency = !status.currency || status.currency == euro;
        if (!readable || !sameAmount || !sameCurrency) {
            // A status that is refused makes the terminal take its booking back.
            result.wrong = status;
            answer(negativeAnswer(!readable ? notReadable : !sameAmount ? wrongAmount : wrongCurrency));
            return;
        }
    }
    answer(positiveAnswer());
    result.status = status;
}

void Dialogue::takeState(const Apdu& apdu) {
    const StateInfo state = readState(apdu, m_config.charset);
    if (state.minutes && *state.minutes > 0) m_dialogueMs = *state.minutes * minuteMs;
    m_deadline.setRemainingTime(m_dialogueMs);
    show(state.text);
}

} // namespace zvt
