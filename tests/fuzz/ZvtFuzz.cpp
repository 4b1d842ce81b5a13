#include "Fuzz.h"

#include <zvt/protocol/Describe.h>
#include <zvt/protocol/Fields.h>
#include <zvt/protocol/Messages.h>
#include <zvt/protocol/SerialFrame.h>

using namespace zvt;

namespace {

void read(const Apdu& apdu) {
    fuzz::require(Apdu::parse(apdu.encode()) == apdu);
    (void)readStatus(apdu, Charset::Cp437);
    (void)readState(apdu, Charset::Latin1);
    (void)readLines(apdu, Charset::Cp437);
    (void)readTerminal(apdu, Charset::Cp437);
    (void)readFailure(apdu, Charset::Cp437);
    (void)describe(apdu);
}

} // namespace

/// The first byte says how the rest arrives: in which pieces, on which line. However it is cut, the same
/// messages come out; a message that was framed comes back from its frame.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const qsizetype piece = 1 + (data[0] & 0x3F);
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));

    QList<QByteArray> whole, cut;
    StreamDecoder stream, pieces;
    stream.feed(bytes);
    while (const auto apdu = stream.next()) {
        whole << apdu->encode();
        read(*apdu);
    }
    for (qsizetype i = 0; i < bytes.size(); i += piece) {
        pieces.feed(bytes.mid(i, piece));
        while (const auto apdu = pieces.next())
            cut << apdu->encode();
    }
    fuzz::require(whole == cut && stream.isGarbage() == pieces.isGarbage());

    SerialDecoder serial;
    serial.feed(bytes);
    for (auto event = serial.next(); event != SerialDecoder::Event::None; event = serial.next())
        if (event == SerialDecoder::Event::Frame) read(serial.apdu());

    if (bytes.size() >= 2) {
        const Apdu apdu{data[1], static_cast<quint8>(bytes[1]), bytes.mid(2)};
        read(apdu);
        SerialDecoder again;
        again.feed(serialFrame(apdu.encode()));
        fuzz::require(again.next() == SerialDecoder::Event::Frame && again.apdu() == apdu);
    }
    return 0;
}
