#include <zvt/protocol/Describe.h>
#include <zvt/protocol/Fields.h>

#include <QStringList>

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

QString hex(const QByteArray& bytes) { return QString::fromLatin1(bytes.toHex().toUpper()); }
QString hex(int number, int places) {
    return QString::number(number, 16).toUpper().rightJustified(places, u'0');
}
QString hidden(const QByteArray& bytes) { return u"(%1 Bytes)"_s.arg(bytes.size()); }

bool isHarmless(int field) {
    switch (field) {
    case 0x03:
    case 0x04:
    case 0x0B:
    case 0x0C:
    case 0x0D:
    case 0x19:
    case 0x27:
    case 0x29:
    case 0x37:
    case 0x49:
    case 0x87:
    case 0x88:
    case 0x8A:
    case 0x8C:
    case 0xA0:
    case 0xAA:
        return true;
    default:
        return false;
    }
}

bool isHarmlessTag(int tag) {
    switch (tag) {
    case 0x14:
    case 0x41:
    case 0x1F16:
    case 0x1F2B:
    case 0x1F40:
    case 0x1F41:
        return true;
    default:
        return false;
    }
}

QString masked(const QByteArray& number) {
    QString digits = hex(number);
    while (digits.endsWith(u'F'))
        digits.chop(1);
    for (qsizetype i = 0; i < digits.size() - 4; ++i)
        digits[i] = u'E';
    // A number this short would be shown whole.
    return digits.size() > 8 ? digits : QString(digits.size(), u'E');
}

void describeTlv(const std::vector<Tlv>& objects, QStringList& parts) {
    for (const Tlv& object : objects) {
        const QString tag = hex(object.tag, 2);
        if (!object.parts.empty()) {
            parts << tag + u'{';
            describeTlv(object.parts, parts);
            parts << u"}"_s;
        } else {
            parts << tag + u'=' + (isHarmlessTag(object.tag) ? hex(object.value) : hidden(object.value));
        }
    }
}

QStringList describeFields(const QByteArray& bytes) {
    const Bitmaps fields = decodeBitmaps(bytes);
    QStringList parts;
    for (const auto& [number, value] : fields.fields) {
        const QString name = hex(number, 2);
        if (number == 0x06) {
            parts << u"06{"_s;
            describeTlv(fields.container.objects, parts);
            parts << u"}"_s;
        } else if (number == 0x22) {
            parts << name + u'=' + masked(value);
        } else {
            parts << name + u'=' + (isHarmless(number) ? hex(value) : hidden(value));
        }
    }
    if (!fields.complete) parts << u"..."_s;
    return parts;
}

/// How many bytes of password stand in front of the fields of a command.
int passwordLength(int code) {
    switch (code) {
    case 0x0501:
    case 0x0600:
    case 0x0620:
    case 0x0630:
    case 0x0631:
    case 0x0650:
        return 3;
    default:
        return 0;
    }
}

} // namespace

QString describe(const Apdu& apdu) {
    QStringList parts{hex(apdu.cls, 2) + u' ' + hex(apdu.instr, 2)};
    QByteArray data = apdu.data;
    if (const int password = passwordLength(apdu.code()); password && data.size() >= password) {
        parts << u"******"_s;
        data.remove(0, password);
    }
    switch (apdu.code()) {
    case 0x0600: // config byte and currency, then fields
        parts << hex(data.first(std::min<qsizetype>(data.size(), 3)));
        parts += describeFields(data.mid(3));
        break;
    case 0x04FF:
    case 0x061E:
        parts << hex(data.first(std::min<qsizetype>(data.size(), 1)));
        if (data.size() > 1) parts << hidden(data.mid(1));
        break;
    case 0x0601:
    case 0x0620:
    case 0x0630:
    case 0x0631:
    case 0x0650:
    case 0x0501:
    case 0x040F:
        parts += describeFields(data);
        break;
    default:
        if (!data.isEmpty()) parts << hidden(data);
    }
    return parts.join(u' ');
}

} // namespace zvt
