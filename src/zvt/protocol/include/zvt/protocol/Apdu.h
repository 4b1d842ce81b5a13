#pragma once

#include <QByteArray>

#include <optional>

namespace zvt {

/// One message between till and terminal: class, instruction and up to 65535 bytes of data. An answer carries
/// 0x80 and 0x00, or 0x84 and an error code in these two bytes.
struct Apdu {
    quint8 cls = 0, instr = 0;
    QByteArray data;

    /// Both control bytes as one number: 0x0601 is the authorisation.
    [[nodiscard]] int code() const { return cls << 8 | instr; }
    [[nodiscard]] bool isAnswer() const { return cls == 0x80 || cls == 0x84; }
    /// "84 00" means the same as "80 00".
    [[nodiscard]] bool isPositive() const { return isAnswer() && instr == 0; }

    /// The length takes one byte, from 255 bytes of data on three.
    [[nodiscard]] QByteArray encode() const;
    /// The message that fills `bytes` exactly; nothing when the length says otherwise.
    [[nodiscard]] static std::optional<Apdu> parse(const QByteArray& bytes);

    bool operator==(const Apdu&) const = default;
};

[[nodiscard]] inline Apdu command(int code, const QByteArray& data = {}) {
    return {static_cast<quint8>(code >> 8), static_cast<quint8>(code), data};
}
[[nodiscard]] inline Apdu positiveAnswer() { return command(0x8000); }
[[nodiscard]] inline Apdu negativeAnswer(int error) { return command(0x8400 | error); }

/// Cuts a stream that has no framing into messages, however its bytes arrive.
class StreamDecoder {
  public:
    void feed(const QByteArray& bytes) { m_bytes += bytes; }
    /// The next whole message. Nothing when bytes are missing, or when isGarbage() says that what came is no
    /// message of a terminal: from there on the stream has no meaning any more.
    [[nodiscard]] std::optional<Apdu> next();
    [[nodiscard]] bool isGarbage() const { return m_garbage; }
    /// A message has begun and is not complete.
    [[nodiscard]] bool isPartial() const { return !m_bytes.isEmpty() && !m_garbage; }
    void reset();

  private:
    QByteArray m_bytes;
    bool m_garbage = false;
};

} // namespace zvt
