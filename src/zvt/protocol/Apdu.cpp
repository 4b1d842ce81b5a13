#include <zvt/protocol/Apdu.h>

namespace zvt {

namespace {

constexpr int longLength = 0xFF;

/// The classes that a terminal uses towards a till.
bool isKnownClass(quint8 cls) {
    switch (cls) {
    case 0x04:
    case 0x05:
    case 0x06:
    case 0x08:
    case 0x0F:
    case 0x80:
    case 0x84:
        return true;
    default:
        return false;
    }
}

struct Head {
    qsizetype head = 0, data = 0;
};

/// How long the message is that `bytes` begin with, as soon as that can be told.
std::optional<Head> measure(const QByteArray& bytes) {
    if (bytes.size() < 3) return {};
    const auto at = [&](qsizetype i) { return static_cast<quint8>(bytes[i]); };
    if (at(2) != longLength) return Head{3, at(2)};
    if (bytes.size() < 5) return {};
    return Head{5, at(3) | at(4) << 8};
}

Apdu take(const QByteArray& bytes, const Head& head) {
    return {static_cast<quint8>(bytes[0]), static_cast<quint8>(bytes[1]), bytes.mid(head.head, head.data)};
}

} // namespace

QByteArray Apdu::encode() const {
    const QByteArray body = data.first(std::min<qsizetype>(data.size(), 0xFFFF));
    QByteArray bytes;
    bytes.reserve(body.size() + 5);
    bytes.append(static_cast<char>(cls)).append(static_cast<char>(instr));
    if (body.size() < longLength) {
        bytes.append(static_cast<char>(body.size()));
    } else {
        bytes.append(static_cast<char>(longLength));
        bytes.append(static_cast<char>(body.size() & 0xFF)).append(static_cast<char>(body.size() >> 8));
    }
    return bytes + body;
}

std::optional<Apdu> Apdu::parse(const QByteArray& bytes) {
    const auto head = measure(bytes);
    if (!head || head->head + head->data != bytes.size()) return {};
    return take(bytes, *head);
}

std::optional<Apdu> StreamDecoder::next() {
    if (!m_bytes.isEmpty() && !isKnownClass(static_cast<quint8>(m_bytes[0]))) m_garbage = true;
    if (m_garbage) return {};
    const auto head = measure(m_bytes);
    if (!head || m_bytes.size() < head->head + head->data) return {};
    Apdu apdu = take(m_bytes, *head);
    m_bytes.remove(0, head->head + head->data);
    return apdu;
}

void StreamDecoder::reset() {
    m_bytes.clear();
    m_garbage = false;
}

} // namespace zvt
