#include "PldFormat.h"

#include <QSet>
#include <QUtf8StringView>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace pld {

namespace {

constexpr qsizetype longestTag = 4096;

/// A tag ends within `longestTag` bytes, and besides comments there is no markup that declares anything. The
/// XML reader compares each attribute of a tag with all others and expands what a document type declares: a
/// hostile file would keep it busy for minutes.
bool isPlainMarkup(QByteArrayView bytes) {
    qsizetype at = 0;
    while ((at = bytes.indexOf('<', at)) >= 0) {
        if (bytes.sliced(at).startsWith("<!--")) {
            at = bytes.indexOf("-->", at);
            if (at < 0) return false;
            continue;
        }
        if (bytes.sliced(at).startsWith("<!")) return false;
        char quote = 0;
        const qsizetype begin = at;
        for (++at; at < bytes.size() && (quote != 0 || bytes[at] != '>'); ++at) {
            if (at - begin > longestTag) return false;
            if (quote != 0)
                quote = bytes[at] == quote ? 0 : quote;
            else if (bytes[at] == '"' || bytes[at] == '\'')
                quote = bytes[at];
        }
    }
    return true;
}

/// Reads one file. The first thing that does not fit ends the reading.
class Reader {
  public:
    explicit Reader(const QString& text)
        : m_xml(text) {
        m_xml.setNamespaceProcessing(false);
    }

    std::optional<std::vector<Property>> read() {
        if (!m_xml.readNextStartElement() || m_xml.name() != u"druckvorlage" ||
            attribute(u"version"_s) != QString::number(formatVersion)) {
            return {};
        }
        while (next()) {
            if (m_xml.name() != u"eigenschaft" || !readProperty()) return {};
        }
        // Only the end of the document may follow.
        while (!m_xml.atEnd())
            m_xml.readNext();
        if (m_xml.hasError()) return {};
        return std::move(m_properties);
    }

  private:
    /// To the next child of the element; False at its end. Text between children is refused.
    bool next() {
        while (m_xml.readNext() == QXmlStreamReader::Comment ||
               (m_xml.isCharacters() && m_xml.isWhitespace())) {
        }
        if (!m_xml.isStartElement() && !m_xml.isEndElement()) m_xml.raiseError();
        return m_xml.isStartElement();
    }

    QString attribute(const QString& name) const { return m_xml.attributes().value(name).toString(); }
    QString text() { return m_xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement); }

    bool readProperty() {
        Property p;
        p.key = attribute(u"name"_s);
        const QString type = attribute(u"typ"_s);
        const auto named =
            std::ranges::find(typeNames, type, [](const auto& t) { return t.second.toString(); });
        if (named == typeNames.end() || m_keys.contains(p.key)) return false;
        p.type = named->first;

        QSet<QString> seen;
        while (next()) {
            const QString element = m_xml.name().toString();
            if (element != u"auswahl" && seen.contains(element)) return false;
            seen.insert(element);
            if (element == u"bezeichnung")
                p.caption = text();
            else if (element == u"beschreibung")
                p.description = text();
            else if (element == u"format")
                p.format = text();
            else if (element == u"auswahl")
                p.choices << text();
            else if (element != u"wert" || !readValue(p))
                return false;
        }
        if (m_xml.hasError() || !seen.contains(u"wert"_s) || !IsStorable(p)) return false;
        m_keys.insert(p.key);
        m_properties.push_back(std::move(p));
        return true;
    }

    bool readValue(Property& p) {
        if (p.type == PropertyType::Font) return readFont(p);
        const QString value = text();
        bool sound = false;
        switch (p.type) {
        case PropertyType::Boolean:
            p.value = readTruth(value, sound);
            break;
        case PropertyType::Choice:
            p.value = value.toInt(&sound);
            break;
        case PropertyType::Text:
            p.value = value;
            sound = true;
            break;
        case PropertyType::Picture: {
            // Line breaks and indents are no part of it; everything else must be.
            QByteArray coded = value.toUtf8();
            coded.removeIf([](char c) { return c == '\n' || c == '\r' || c == ' ' || c == '\t'; });
            auto decoded = QByteArray::fromBase64Encoding(coded, QByteArray::AbortOnBase64DecodingErrors);
            sound = decoded.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
            p.value = std::move(decoded.decoded);
            break;
        }
        default:
            p.value = value.toDouble(&sound);
        }
        return sound;
    }

    bool readFont(Property& p) {
        bool size = false, bold = false, italic = false, underline = false;
        QFont font(QStringList{attribute(u"familie"_s)});
        const double points = attribute(u"punkt"_s).toDouble(&size);
        if (!size || !(points > 0)) return false;
        font.setPointSizeF(points);
        font.setBold(readTruth(attribute(u"fett"_s), bold));
        font.setItalic(readTruth(attribute(u"kursiv"_s), italic));
        font.setUnderline(readTruth(attribute(u"unterstrichen"_s), underline));
        p.value = font;
        return bold && italic && underline && text().trimmed().isEmpty();
    }

    static bool readTruth(const QString& text, bool& sound) {
        sound = text == u"ja" || text == u"nein";
        return text == u"ja";
    }

    QXmlStreamReader m_xml;
    std::vector<Property> m_properties;
    QSet<QString> m_keys;
};

} // namespace

std::optional<std::vector<Property>> read(const QByteArray& bytes) {
    if (bytes.size() > largestFile || bytes.contains('\0') || !QUtf8StringView(bytes).isValidUtf8() ||
        !isPlainMarkup(bytes)) {
        return {};
    }
    return Reader(QString::fromUtf8(bytes)).read();
}

} // namespace pld
