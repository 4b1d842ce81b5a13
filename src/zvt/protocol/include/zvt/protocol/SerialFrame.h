#pragma once

#include <zvt/protocol/Apdu.h>

#include <QByteArray>

namespace zvt {

inline constexpr char DLE = 0x10, STX = 0x02, ETX = 0x03, ACK = 0x06, NAK = 0x15;

/// CRC-16/KERMIT: reflected 0x8408, start 0.
[[nodiscard]] quint16 crc16(const QByteArray& bytes);
/// DLE STX, the message with every DLE doubled, DLE ETX, checksum with the low byte first.
[[nodiscard]] QByteArray serialFrame(const QByteArray& apdu);

/// Reads what the other end of a serial line sends. Noise between the frames is skipped.
class SerialDecoder {
  public:
    enum class Event {
        None,  ///< more bytes are needed
        Ack,   ///< the other end has our frame
        Nak,   ///< the other end wants our frame again
        Frame, ///< a sound frame, in apdu()
        Bad,   ///< a frame with a wrong checksum, a length that lies or without an end
    };
    void feed(const QByteArray& bytes) { m_bytes += bytes; }
    /// The next event; to be asked until it is None.
    [[nodiscard]] Event next();
    [[nodiscard]] const Apdu& apdu() const { return m_apdu; }
    /// Stands in the middle of a frame: the time limit between two bytes is running.
    [[nodiscard]] bool isPartial() const { return m_state != State::Outside; }
    void reset(); ///< gives the frame up

  private:
    enum class State { Outside, Start, Inside, Escape, CrcLow, CrcHigh };
    Event take(char byte);
    Event bad();
    Event finish(quint16 crc);

    State m_state = State::Outside;
    QByteArray m_bytes, m_body;
    quint8 m_crcLow = 0;
    Apdu m_apdu;
};

} // namespace zvt
