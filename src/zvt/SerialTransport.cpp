#include "Transport.h"

#include <zvt/protocol/SerialFrame.h>

#include <deque>

namespace zvt {

namespace {

constexpr int attempts = 3;

/// Messages in blocks, each of which the other end acknowledges.
class SerialTransport : public Transport {
  public:
    explicit SerialTransport(const TerminalConfig& config)
        : m_config(config)
        , m_line(makeSerialLine(config)) {}

    bool open(const Stop& stop) override {
        m_decoder.reset();
        m_received.clear();
        m_bad = 0;
        return m_line->connectNow(stop);
    }
    void close() override { m_line->disconnectNow(); }
    void wait(int ms) override { m_line->wait(ms); }

    Sent send(const Apdu& apdu, bool once) override {
        const QByteArray frame = serialFrame(apdu.encode());
        Reply reply = Reply::Refused;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            if (!m_line->write(frame))
                return reply == Reply::Refused && attempt == 0 ? Sent::No : Sent::Maybe;
            reply = awaitReply();
            if (reply == Reply::Taken) return Sent::Yes;
            if (!m_line->isUp() || (reply == Reply::Silence && once)) return Sent::Maybe;
        }
        return reply == Reply::Refused ? Sent::No : Sent::Maybe;
    }

    Got receive(Apdu& apdu, const QDeadlineTimer& deadline, const Stop& stop) override {
        for (;;) {
            const bool up = m_line->isUp();
            (void)read();
            if (!m_received.empty()) {
                apdu = std::move(m_received.front());
                m_received.pop_front();
                return Got::Message;
            }
            if (!up || m_bad >= attempts) return Got::Broken;
            if (stop()) return Got::Stopped;
            if (deadline.hasExpired()) return Got::Nothing;
            m_line->wait(static_cast<int>(std::min<qint64>(deadline.remainingTime(), 1000)));
        }
    }

  private:
    enum class Reply { None, Taken, Refused, Silence };

    Reply awaitReply() {
        const QDeadlineTimer deadline(m_config.answerMs);
        while (m_line->isUp()) {
            if (const Reply reply = read(); reply != Reply::None) return reply;
            if (deadline.hasExpired()) break;
            m_line->wait(static_cast<int>(deadline.remainingTime()));
        }
        return Reply::Silence;
    }

    /// Takes what has come: messages are acknowledged and kept; gives what concerns our own block.
    Reply read() {
        const QByteArray bytes = m_line->take();
        if (!bytes.isEmpty()) m_gap.setRemainingTime(m_config.gapMs);
        m_decoder.feed(bytes);
        Reply reply = Reply::None;
        for (auto event = m_decoder.next(); event != SerialDecoder::Event::None; event = m_decoder.next()) {
            switch (event) {
            case SerialDecoder::Event::Ack:
                reply = Reply::Taken;
                break;
            case SerialDecoder::Event::Nak:
                reply = Reply::Refused;
                break;
            case SerialDecoder::Event::Frame:
                m_bad = 0;
                acknowledge(ACK);
                m_received.push_back(m_decoder.apdu());
                // Whoever answers has the block, even if its acknowledgement was lost.
                if (m_decoder.apdu().isAnswer()) reply = Reply::Taken;
                break;
            default:
                complain();
            }
        }
        if (m_decoder.isPartial() && m_gap.hasExpired()) {
            m_decoder.reset();
            complain();
        }
        return reply;
    }

    void complain() {
        ++m_bad;
        acknowledge(NAK);
    }
    /// A line that breaks here shows at the next look at it.
    void acknowledge(char byte) { (void)m_line->write(QByteArray(1, byte)); }

    TerminalConfig m_config;
    std::unique_ptr<ByteLine> m_line;
    SerialDecoder m_decoder;
    QDeadlineTimer m_gap;
    std::deque<Apdu> m_received;
    int m_bad = 0; ///< faulty blocks in a row
};

} // namespace

std::unique_ptr<Transport> makeSerialTransport(const TerminalConfig& config) {
    return std::make_unique<SerialTransport>(config);
}

} // namespace zvt
