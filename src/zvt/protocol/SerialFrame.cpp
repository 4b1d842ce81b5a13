#include <zvt/protocol/SerialFrame.h>

namespace zvt {

namespace {

/// Control bytes, three of length and the longest data.
constexpr qsizetype longestApdu = 2 + 3 + 0xFFFF;

} // namespace

quint16 crc16(const QByteArray& bytes) {
    unsigned crc = 0;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0x8408U : crc >> 1;
    }
    return static_cast<quint16>(crc);
}

QByteArray serialFrame(const QByteArray& apdu) {
    QByteArray frame;
    frame.append(DLE).append(STX);
    for (const char byte : apdu) {
        frame.append(byte);
        if (byte == DLE) frame.append(DLE);
    }
    frame.append(DLE).append(ETX);
    const quint16 crc = crc16(apdu + ETX);
    return frame.append(static_cast<char>(crc & 0xFF)).append(static_cast<char>(crc >> 8));
}

SerialDecoder::Event SerialDecoder::next() {
    qsizetype used = 0;
    Event event = Event::None;
    while (event == Event::None && used < m_bytes.size())
        event = take(m_bytes[used++]);
    m_bytes.remove(0, used);
    return event;
}

void SerialDecoder::reset() {
    m_state = State::Outside;
    m_bytes.clear();
    m_body.clear();
}

SerialDecoder::Event SerialDecoder::bad() {
    m_state = State::Outside;
    m_body.clear();
    return Event::Bad;
}

SerialDecoder::Event SerialDecoder::take(char byte) {
    switch (m_state) {
    case State::Outside:
        if (byte == DLE) m_state = State::Start;
        return byte == ACK ? Event::Ack : byte == NAK ? Event::Nak : Event::None;
    case State::Start:
        if (byte != DLE) m_state = State::Outside;
        if (byte == STX) {
            m_state = State::Inside;
            m_body.clear();
        }
        return Event::None;
    case State::Inside:
        if (byte == DLE) {
            m_state = State::Escape;
            return Event::None;
        }
        break;
    case State::Escape:
        if (byte == ETX) {
            m_state = State::CrcLow;
            return Event::None;
        }
        if (byte == STX) { // a new frame begins where the old one broke off
            m_state = State::Inside;
            m_body.clear();
            return Event::None;
        }
        if (byte != DLE) return bad();
        m_state = State::Inside;
        break;
    case State::CrcLow:
        m_crcLow = static_cast<quint8>(byte);
        m_state = State::CrcHigh;
        return Event::None;
    case State::CrcHigh:
        return finish(static_cast<quint16>(m_crcLow | static_cast<quint8>(byte) << 8));
    }
    m_body.append(byte);
    return m_body.size() > longestApdu ? bad() : Event::None;
}

SerialDecoder::Event SerialDecoder::finish(quint16 crc) {
    const auto apdu = crc16(m_body + ETX) == crc ? Apdu::parse(m_body) : std::nullopt;
    if (!apdu) return bad();
    m_apdu = *apdu;
    m_state = State::Outside;
    m_body.clear();
    return Event::Frame;
}

} // namespace zvt
