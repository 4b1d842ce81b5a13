#include "Transport.h"

namespace zvt {

namespace {

/// Messages follow one another without framing.
class StreamTransport : public Transport {
  public:
    explicit StreamTransport(const TerminalConfig& config)
        : m_config(config)
        , m_line(makeNetworkLine(config)) {}

    bool open(const Stop& stop) override {
        m_decoder.reset();
        return m_line->connectNow(stop);
    }
    void close() override { m_line->disconnectNow(); }
    void wait(int ms) override { m_line->wait(ms); }

    Sent send(const Apdu& apdu, bool) override {
        if (!m_line->isUp()) return Sent::No;
        return m_line->write(apdu.encode()) ? Sent::Yes : Sent::Maybe;
    }

    Got receive(Apdu& apdu, const QDeadlineTimer& deadline, const Stop& stop) override {
        QDeadlineTimer rest(m_config.answerMs); // of a message that has begun
        for (;;) {
            const bool up = m_line->isUp();
            const QByteArray bytes = m_line->take();
            if (!bytes.isEmpty()) rest.setRemainingTime(m_config.answerMs);
            m_decoder.feed(bytes);
            if (auto next = m_decoder.next()) {
                apdu = std::move(*next);
                return Got::Message;
            }
            if (m_decoder.isGarbage() || !up) return Got::Broken;
            if (m_decoder.isPartial() && rest.hasExpired()) return Got::Broken;
            if (stop()) return Got::Stopped;
            if (deadline.hasExpired()) return Got::Nothing;
            m_line->wait(static_cast<int>(std::min<qint64>(deadline.remainingTime(), 1000)));
        }
    }

  private:
    TerminalConfig m_config;
    std::unique_ptr<ByteLine> m_line;
    StreamDecoder m_decoder;
};

} // namespace

std::unique_ptr<Transport> makeStreamTransport(const TerminalConfig& config) {
    return std::make_unique<StreamTransport>(config);
}

std::unique_ptr<Transport> makeTransport(const TerminalConfig& config) {
    return config.address.isEmpty() ? makeSerialTransport(config) : makeStreamTransport(config);
}

} // namespace zvt
