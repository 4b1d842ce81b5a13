#include "Output.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace console {

namespace {

QString money(Currency value) {
    const qint64 scaled = value.scaled();
    const quint64 size = scaled < 0 ? 0 - static_cast<quint64>(scaled) : static_cast<quint64>(scaled);
    QString text = QString::number(size / 10000);
    if (const quint64 part = size % 10000; part != 0) {
        QString digits = QString::number(part).rightJustified(4, u'0');
        while (digits.endsWith(u'0'))
            digits.chop(1);
        text += u'.' + digits;
    }
    return scaled < 0 ? u'-' + text : text;
}

QString real(double value) {
    QString text = QString::number(value, 'g', QLocale::FloatingPointShortest);
    return text;
}

QString plain(const Value& value) {
    switch (value.type()) {
    case Type::Null:
        return {};
    case Type::Boolean:
        return value.toBool() ? u"-1"_s : u"0"_s;
    case Type::Long:
        return QString::number(value.toInteger());
    case Type::Single:
        return value.toText().replace(u',', u'.');
    case Type::Double:
        return real(value.toDouble());
    case Type::Currency:
        return money(value.toCurrency());
    case Type::Date:
        return value.toDate().toQDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s);
    default:
        return value.toText();
    }
}

} // namespace

QByteArray tabbed(const Value& value) {
    QString text = plain(value);
    text.replace(u'\\', u"\\\\"_s).replace(u'\t', u"\\t"_s).replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s);
    return text.toUtf8();
}

QByteArray jsonText(const QString& text) {
    QByteArray out = "\"";
    for (const QChar c : text) {
        if (c == u'"' || c == u'\\')
            out.append('\\').append(c.toLatin1());
        else if (c == u'\n')
            out.append("\\n");
        else if (c == u'\t')
            out.append("\\t");
        else if (c == u'\r')
            out.append("\\r");
        else if (c < u' ' || c.isSurrogate())
            out.append("\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0'));
        else if (c < QChar(0x80))
            out.append(c.toLatin1());
        else
            out.append(QString(c).toUtf8());
    }
    return out + '"';
}

QByteArray json(const Value& value) {
    if (value.isNull()) return "null";
    const Type type = value.type();
    if (type == Type::Text || type == Type::Memo || type == Type::Date) return jsonText(plain(value));
    if (type == Type::Double && !std::isfinite(value.toDouble())) return "null";
    return plain(value).toUtf8();
}

QString typeText(Type type) {
    switch (type) {
    case Type::Boolean:
        return u"YESNO"_s;
    case Type::Byte:
        return u"BYTE"_s;
    case Type::Short:
        return u"SHORT"_s;
    case Type::Long:
        return u"LONG"_s;
    case Type::Single:
        return u"SINGLE"_s;
    case Type::Double:
        return u"DOUBLE"_s;
    case Type::Currency:
        return u"CURRENCY"_s;
    case Type::Date:
        return u"DATETIME"_s;
    case Type::Text:
        return u"TEXT"_s;
    case Type::Memo:
        return u"MEMO"_s;
    case Type::Null:
        break;
    }
    return u"VARIANT"_s;
}

} // namespace console
