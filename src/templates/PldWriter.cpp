#include "PldFormat.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace pld {

namespace {

constexpr qsizetype base64Line = 76;

enum class Place { Content, Attribute };

QByteArray escaped(QStringView text, Place place) {
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'<':
            out += u"&lt;"_s;
            break;
        case u'>':
            out += u"&gt;"_s;
            break;
        case u'&':
            out += u"&amp;"_s;
            break;
        case u'"':
            out += place == Place::Attribute ? u"&quot;"_s : u"\""_s;
            break;
        case u'\r':
            out += u"&#13;"_s;
            break; // bare, it would be read as a line break
        case u'\n':
            out += place == Place::Attribute ? u"&#10;"_s : u"\n"_s;
            break;
        case u'\t':
            out += place == Place::Attribute ? u"&#9;"_s : u"\t"_s;
            break;
        default:
            out += c;
        }
    }
    return out.toUtf8();
}

QByteArray number(double value) {
    return QString::number(value, 'f', QLocale::FloatingPointShortest).toLatin1();
}

QByteArray truth(bool value) { return value ? "ja" : "nein"; }

void addElement(QByteArray& out, const char* name, const QString& text) {
    if (!text.isEmpty()) {
        out += QByteArray("    <") + name + '>' + escaped(text, Place::Content) + "</" + name + ">\n";
    }
}

QByteArray fontElement(const QFont& font) {
    return "    <wert familie=\"" + escaped(font.family(), Place::Attribute) + "\" punkt=\"" +
           number(font.pointSizeF()) + "\" fett=\"" + truth(font.bold()) + "\" kursiv=\"" +
           truth(font.italic()) + "\" unterstrichen=\"" + truth(font.underline()) + "\"/>\n";
}

QByteArray pictureElement(const QByteArray& picture) {
    if (picture.isEmpty()) return "    <wert/>\n";
    QByteArray out = "    <wert>\n";
    const QByteArray text = picture.toBase64();
    for (qsizetype i = 0; i < text.size(); i += base64Line)
        out += text.sliced(i, std::min(base64Line, text.size() - i)) + '\n';
    return out + "    </wert>\n";
}

QByteArray valueElement(const Property& p) {
    switch (p.type) {
    case PropertyType::Font:
        return fontElement(std::get<QFont>(p.value));
    case PropertyType::Picture:
        return pictureElement(std::get<QByteArray>(p.value));
    default:
        break;
    }
    QByteArray text;
    switch (p.type) {
    case PropertyType::Boolean:
        text = truth(std::get<bool>(p.value));
        break;
    case PropertyType::Choice:
        text = QByteArray::number(std::get<int>(p.value));
        break;
    case PropertyType::Text:
        text = escaped(std::get<QString>(p.value), Place::Content);
        break;
    default:
        text = number(std::get<double>(p.value));
    }
    return "    <wert>" + text + "</wert>\n";
}

QByteArray typeName(PropertyType type) {
    return std::ranges::find(typeNames, type, &std::pair<PropertyType, QStringView>::first)
        ->second.toLatin1();
}

} // namespace

QByteArray write(const std::vector<Property>& properties) {
    QByteArray out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<druckvorlage version=\"" +
                     QByteArray::number(formatVersion) + "\">\n";
    for (const Property& p : properties) {
        out += "  <eigenschaft name=\"" + escaped(p.key, Place::Attribute) + "\" typ=\"" + typeName(p.type) +
               "\">\n";
        addElement(out, "bezeichnung", p.caption);
        addElement(out, "beschreibung", p.description);
        addElement(out, "format", p.format);
        // Its place tells the value, so an empty caption stands there, too.
        for (const QString& choice : p.choices)
            out += "    <auswahl>" + escaped(choice, Place::Content) + "</auswahl>\n";
        out += valueElement(p) + "  </eigenschaft>\n";
    }
    return out + "</druckvorlage>\n";
}

} // namespace pld
