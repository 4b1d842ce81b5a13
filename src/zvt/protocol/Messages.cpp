#include <zvt/protocol/Fields.h>
#include <zvt/protocol/Messages.h>

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

constexpr int tagText = 0x07, tagAttribute = 0x09, tagCardType = 0x41, tagErrorText = 0x1F17,
              tagLongTrace = 0x1F2B, tagDevice = 0x1F40, tagVersion = 0x1F41, tagSerial = 0x1F42,
              tagAppName = 0x44, tagLabel = 0x42;

QString digits(const Bitmaps& fields, int number) {
    const QByteArray* value = fields.find(number);
    return value ? bcdDigits(*value) : QString();
}

std::optional<int> byteOf(const Bitmaps& fields, int number) {
    const QByteArray* value = fields.find(number);
    return value ? std::optional<int>(static_cast<quint8>(value->front())) : std::nullopt;
}

QString textOf(const TlvList& container, int tag, Charset charset) {
    const Tlv* object = container.find(tag);
    return object ? decodeText(object->value, charset).trimmed() : QString();
}

QString cardNameOf(const Bitmaps& fields, Charset charset) {
    if (const QByteArray* name = fields.find(0x8B)) {
        const QString text = decodeText(*name, charset).trimmed();
        if (!text.isEmpty()) return text;
    }
    int type = byteOf(fields, 0x8A).value_or(0xFF);
    if (type == 0xFF) {
        const Tlv* object = fields.container.find(tagCardType);
        if (object && object->value.size() >= 1 && object->value.size() <= 2)
            type = object->value.toHex().toInt(nullptr, 16);
    }
    const QString known = cardTypeName(type);
    if (!known.isEmpty()) return known;
    const QString preferred = textOf(fields.container, tagAppName, charset);
    return preferred.isEmpty() ? textOf(fields.container, tagLabel, charset) : preferred;
}

/// Lines with their attributes, in their order at any depth.
void collectLines(const std::vector<Tlv>& objects, Charset charset, QStringList& lines) {
    for (const Tlv& object : objects) {
        if (object.tag == tagText) {
            lines << decodeText(object.value, charset);
        } else if (object.tag == tagAttribute && object.value == "\xFF") {
            lines << QString();
        } else {
            collectLines(object.parts, charset, lines);
        }
    }
}

/// What it tells the cashier: the text of the error, and the additional text that many send instead.
QString ownWords(const Bitmaps& fields, Charset charset) {
    const QString error = textOf(fields.container, tagErrorText, charset).simplified();
    const QByteArray* additional = fields.find(0x3C);
    const QString words = additional ? decodeText(*additional, charset).simplified() : QString();
    return error.isEmpty() ? words : withOwnWords(error, words);
}

bool agree(const QString& a, const QString& b) { return a.isEmpty() || b.isEmpty() || a == b; }

} // namespace

bool StatusInfo::isSameAct(const StatusInfo& other) const {
    return agree(receipt, other.receipt) && agree(trace, other.trace) && agree(turnover, other.turnover) &&
           agree(date, other.date) && agree(time, other.time);
}

bool StatusInfo::isComparable(const StatusInfo& other) const {
    return (!receipt.isEmpty() && !other.receipt.isEmpty()) || (!trace.isEmpty() && !other.trace.isEmpty());
}

StatusInfo readStatus(const Apdu& apdu, Charset charset) {
    const Bitmaps fields = decodeBitmaps(apdu.data);
    StatusInfo info;
    info.complete = fields.complete;
    info.result = byteOf(fields, 0x27);
    if (const QByteArray* amount = fields.find(0x04)) info.amount = bcdNumber(*amount);
    // A field that is there and cannot be read must not pass for one that is not there.
    if (fields.find(0x04) && !info.amount) info.complete = false;
    if (const QByteArray* currency = fields.find(0x49))
        info.currency = static_cast<int>(bcdNumber(*currency).value_or(0));
    info.receipt = digits(fields, 0x87);
    info.trace = digits(fields, 0x0B);
    if (const Tlv* trace = fields.container.find(tagLongTrace); trace && info.trace.toLongLong() == 0)
        info.trace = bcdDigits(trace->value);
    info.turnover = digits(fields, 0x88);
    info.date = digits(fields, 0x0D);
    info.time = digits(fields, 0x0C);
    info.cardName = cardNameOf(fields, charset);
    info.text = ownWords(fields, charset);
    return info;
}

StateInfo readState(const Apdu& apdu, Charset charset) {
    StateInfo info;
    if (apdu.data.isEmpty()) return info;
    info.state = static_cast<quint8>(apdu.data[0]);
    if (apdu.data.size() > 1) {
        if (const auto minutes = bcdNumber(apdu.data.mid(1, 1))) info.minutes = static_cast<int>(*minutes);
        QStringList lines;
        collectLines(decodeBitmaps(apdu.data.mid(2)).container.objects, charset, lines);
        for (const QString& line : lines)
            if (const QString words = line.simplified(); !words.isEmpty())
                info.text += (info.text.isEmpty() ? QString() : u"\n"_s) + words;
    }
    if (info.text.isEmpty()) info.text = stateText(info.state);
    return info;
}

QStringList readLines(const Apdu& apdu, Charset charset) {
    QStringList lines;
    if (apdu.code() == 0x06D3) {
        collectLines(decodeBitmaps(apdu.data).container.objects, charset, lines);
        return lines;
    }
    if (apdu.data.isEmpty()) return {QString()};
    const auto attribute = static_cast<quint8>(apdu.data[0]);
    if (attribute == 0xFF) {
        const int feeds = apdu.data.size() > 1 ? static_cast<quint8>(apdu.data[1]) : 1;
        lines.fill(QString(), std::max(feeds, 1));
        return lines;
    }
    const bool attributes = !(attribute & 0x80);
    const int indent = attributes ? attribute & 0x0F : 0;
    return {QString(indent, u' ') + decodeText(apdu.data.mid(1), charset)};
}

TerminalInfo readTerminal(const Apdu& apdu, Charset charset) {
    TerminalInfo info;
    qsizetype at = 0;
    // Some terminals leave the version out, others send fields with numbers as after a registration.
    if (const auto version = takeCounted(apdu.data, at, 3)) {
        info.version = decodeText(*version, charset).trimmed();
    } else {
        at = 0;
    }
    if (at < apdu.data.size()) {
        const auto next = static_cast<quint8>(apdu.data[at]);
        if (next != 0x06 && next != 0x19) {
            info.status = next;
            ++at;
        }
    }
    const TlvList container = decodeBitmaps(apdu.data.mid(at)).container;
    info.device = textOf(container, tagDevice, charset);
    if (info.version.isEmpty()) info.version = textOf(container, tagVersion, charset);
    if (const Tlv* serial = container.find(tagSerial)) info.serial = bcdDigits(serial->value);
    return info;
}

QString withOwnWords(const QString& reason, const QString& own) {
    return own.isEmpty() || reason.contains(own, Qt::CaseInsensitive) ? reason : reason + u": "_s + own;
}

Failure readFailure(const Apdu& apdu, Charset charset) {
    Failure failure;
    if (apdu.cls == 0x84)
        failure.code = apdu.instr;
    else if (!apdu.data.isEmpty())
        failure.code = static_cast<quint8>(apdu.data[0]);
    failure.text = resultText(failure.code);
    if (apdu.cls == 0x06) {
        // A wrong currency is followed by the one that the terminal takes.
        const qsizetype skip = failure.code == 0x6F && apdu.data.size() >= 3 && apdu.data[1] != 0x06 ? 3 : 1;
        failure.text = withOwnWords(failure.text, ownWords(decodeBitmaps(apdu.data.mid(skip)), charset));
    }
    return failure;
}

} // namespace zvt
