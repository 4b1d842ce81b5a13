#include <zvt/protocol/Fields.h>

#include <algorithm>

namespace zvt {

namespace {

constexpr int deepest = 8;
constexpr int tlvField = 0x06;

quint8 at(const QByteArray& bytes, qsizetype i) { return static_cast<quint8>(bytes[i]); }

/// How the length of a field is known.
enum class Form { Unknown, Fixed, TwoDigits, ThreeDigits, Container };
struct Shape {
    Form form = Form::Unknown;
    int size = 0;
};

Shape shapeOf(int number) {
    const auto fixed = [](int size) { return Shape{Form::Fixed, size}; };
    if ((number >= 0xE1 && number <= 0xE8) || (number >= 0xF1 && number <= 0xF8)) return {Form::TwoDigits, 0};
    switch (number) {
    case 0x06:
        return {Form::Container, 0};
    case 0x01:
    case 0x02:
    case 0x03:
    case 0x05:
    case 0x19:
    case 0x27:
    case 0x72:
    case 0x73:
    case 0x74:
    case 0x75:
    case 0x8A:
    case 0x8C:
    case 0xA0:
    case 0xD0:
    case 0xD2:
    case 0xD3:
    case 0xE0:
    case 0xE9:
    case 0xEA:
    case 0xF0:
    case 0xF9:
    case 0xFA:
    case 0xFB:
    case 0xFC:
    case 0xFD:
        return fixed(1);
    case 0x0D:
    case 0x0E:
    case 0x17:
    case 0x3A:
    case 0x49:
    case 0x87:
        return fixed(2);
    case 0x0B:
    case 0x0C:
    case 0x37:
    case 0x3D:
    case 0x88:
    case 0xAA:
        return fixed(3);
    case 0x29:
    case 0x70:
    case 0x71:
        return fixed(4);
    case 0xBA:
        return fixed(5);
    case 0x04:
        return fixed(6);
    case 0x3B:
    case 0xEB:
        return fixed(8);
    case 0x2A:
        return fixed(15);
    case 0x22:
    case 0x23:
    case 0x2D:
    case 0x4C:
    case 0x8B:
    case 0xA7:
    case 0xD1:
        return {Form::TwoDigits, 0};
    case 0x24:
    case 0x2E:
    case 0x3C:
    case 0x60:
    case 0x9A:
    case 0xAF:
        return {Form::ThreeDigits, 0};
    default:
        return {};
    }
}

/// The length of an object: one byte, or 81 and one, or 82 and two.
std::optional<qsizetype> takeLength(const QByteArray& bytes, qsizetype& i) {
    if (i >= bytes.size()) return {};
    const quint8 first = at(bytes, i++);
    if (first < 0x80) return first;
    const int more = first & 0x7F;
    if (more < 1 || more > 2 || bytes.size() - i < more) return {};
    qsizetype length = 0;
    for (int k = 0; k < more; ++k)
        length = length << 8 | at(bytes, i++);
    return length;
}

std::optional<QByteArray> takeBytes(const QByteArray& bytes, qsizetype& i, std::optional<qsizetype> count) {
    if (!count || bytes.size() - i < *count) return {};
    QByteArray value = bytes.mid(i, *count);
    i += *count;
    return value;
}

std::optional<int> takeTag(const QByteArray& bytes, qsizetype& i) {
    int tag = at(bytes, i++);
    if ((tag & 0x1F) != 0x1F) return tag;
    for (int more = 0; more < 2; ++more) {
        if (i >= bytes.size()) return {};
        const quint8 byte = at(bytes, i++);
        tag = tag << 8 | byte;
        if (!(byte & 0x80)) return tag;
    }
    return {};
}

TlvList decode(const QByteArray& bytes, int depth) {
    TlvList list;
    for (qsizetype i = 0; i < bytes.size();) {
        const auto tag = takeTag(bytes, i);
        const auto length = tag ? takeLength(bytes, i) : std::nullopt;
        auto value = takeBytes(bytes, i, length);
        if (!value) {
            list.complete = false;
            break;
        }
        Tlv object{*tag, std::move(*value), {}};
        if (object.isConstructed() && depth < deepest) {
            TlvList inner = decode(object.value, depth + 1);
            list.complete = list.complete && inner.complete;
            object.parts = std::move(inner.objects);
        }
        list.objects.push_back(std::move(object));
    }
    return list;
}

const Tlv* findIn(const std::vector<Tlv>& objects, int tag) {
    for (const Tlv& object : objects) {
        if (object.tag == tag) return &object;
        if (const Tlv* inner = findIn(object.parts, tag)) return inner;
    }
    return nullptr;
}

} // namespace

QString bcdDigits(const QByteArray& bcd) { return QString::fromLatin1(bcd.toHex().toUpper()); }

std::optional<qint64> bcdNumber(const QByteArray& bcd) {
    const QByteArray digits = bcd.toHex();
    if (digits.isEmpty() || digits.size() > 18) return {};
    bool ok = false;
    const qint64 number = digits.toLongLong(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

QByteArray bcd(qint64 number, int bytes) {
    QByteArray packed(bytes, '\0');
    for (int i = bytes - 1; i >= 0; --i) {
        packed[i] = static_cast<char>((number / 10 % 10) << 4 | number % 10);
        number /= 100;
    }
    return packed;
}

bool Tlv::isConstructed() const {
    int first = tag;
    while (first > 0xFF)
        first >>= 8;
    return first & 0x20;
}

const Tlv* Tlv::find(int wanted) const { return findIn(parts, wanted); }
const Tlv* TlvList::find(int tag) const { return findIn(objects, tag); }

TlvList decodeTlv(const QByteArray& bytes) { return decode(bytes, 0); }

QByteArray encodeTlv(int tag, const QByteArray& value) {
    QByteArray bytes;
    for (int shift = 16; shift >= 0; shift -= 8)
        if (tag >> shift) bytes.append(static_cast<char>(tag >> shift));
    if (value.size() > 0xFF)
        bytes.append('\x82').append(static_cast<char>(value.size() >> 8));
    else if (value.size() > 0x7F)
        bytes.append('\x81');
    return bytes.append(static_cast<char>(value.size())) + value;
}

const QByteArray* Bitmaps::find(int number) const {
    const auto it = std::ranges::find(fields, number, &Field::number);
    return it == fields.end() ? nullptr : &it->value;
}

std::optional<QByteArray> takeCounted(const QByteArray& bytes, qsizetype& i, int digits) {
    if (bytes.size() - i < digits) return {};
    qsizetype count = 0;
    for (int k = 0; k < digits; ++k) {
        const quint8 byte = at(bytes, i + k);
        if (byte < 0xF0 || byte > 0xF9) return {};
        count = count * 10 + (byte & 0x0F);
    }
    i += digits;
    return takeBytes(bytes, i, count);
}

Bitmaps decodeBitmaps(const QByteArray& bytes) {
    Bitmaps result;
    for (qsizetype i = 0; i < bytes.size();) {
        const int number = at(bytes, i++);
        const Shape shape = shapeOf(number);
        std::optional<QByteArray> value;
        switch (shape.form) {
        case Form::Fixed:
            value = takeBytes(bytes, i, shape.size);
            break;
        case Form::TwoDigits:
            value = takeCounted(bytes, i, 2);
            break;
        case Form::ThreeDigits:
            value = takeCounted(bytes, i, 3);
            break;
        case Form::Container: {
            const auto length = takeLength(bytes, i);
            value = takeBytes(bytes, i, length);
        } break;
        case Form::Unknown:
            break;
        }
        if (!value) {
            result.complete = false;
            break;
        }
        if (number == tlvField) {
            result.container = decodeTlv(*value);
            result.complete = result.container.complete;
        }
        result.fields.push_back({number, std::move(*value)});
    }
    return result;
}

} // namespace zvt
