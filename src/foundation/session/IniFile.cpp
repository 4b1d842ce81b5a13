#include "IniFile.h"

#include <text/CodePage.h>
#include <text/RuntimeError.h>

#include <QStringConverter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* utf8Mark = "\xEF\xBB\xBF";

QString indexKey(const QString& section, const QString& key) { return section + u'\n' + key; }

QString folded(QStringView name) { return name.trimmed().toString().toCaseFolded(); }

bool isAscii(QByteArrayView bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void requireName(const QString& name, const QString& forbidden, const QString& forbiddenInFront = {}) {
    const QString trimmed = name.trimmed();
    const bool good = !trimmed.isEmpty() && !forbiddenInFront.contains(trimmed.front()) &&
                      std::none_of(trimmed.begin(), trimmed.end(),
                                   [&](QChar c) { return c.unicode() < u' ' || forbidden.contains(c); });
    if (!good) throw RuntimeError(5, u"\"%1\" ist kein Name für eine Ini-Datei."_s.arg(name), u"CSystem"_s);
}

} // namespace

IniFile::IniFile(const QByteArray& content) { parse(content); }

void IniFile::parse(const QByteArray& content) {
    const auto refuse = [](const QString& why) { throw RuntimeError(321, why, u"CSystem"_s); };
    if (!HasUtf16Mark(content)) {
        if (content.contains('\0')) refuse(u"Die Datei ist keine Textdatei."_s);
        return parseLines(content);
    }
    const QString text = FromUtf16File(content);
    if (content.size() % 2 != 0 || !text.isValidUtf16() || text.contains(QChar(0)))
        refuse(u"Die Datei ist beschädigt: Ihr Text (UTF-16) ist nicht zu lesen."_s);
    m_wide = content.startsWith("\xFE\xFF") ? Wide::BigEndian : Wide::LittleEndian;
    parseLines(text.toUtf8());
    m_utf8 = true;
}

void IniFile::parseLines(const QByteArray& content) {
    m_lines.clear();
    m_index.clear();
    m_mark = m_wide == Wide::No && content.startsWith(utf8Mark) ? QByteArray(utf8Mark) : QByteArray();
    const QByteArrayView rest = QByteArrayView(content).sliced(m_mark.size());
    m_utf8 = !m_mark.isEmpty() || (!isAscii(rest) && IsUtf8(rest));
    const char lineBreak = rest.contains('\n') ? '\n' : '\r';

    QString section;
    for (qsizetype from = 0; from < rest.size();) {
        const qsizetype newline = rest.indexOf(lineBreak, from);
        const qsizetype next = newline < 0 ? rest.size() : newline + 1;
        qsizetype to = newline < 0 ? rest.size() : newline;
        if (lineBreak == '\n' && newline > from && rest[newline - 1] == '\r') --to;
        Line line;
        line.text = rest.sliced(from, to - from).toByteArray();
        line.end = rest.sliced(to, next - to).toByteArray();
        classify(line, section);
        if (!line.key.isEmpty()) {
            const QString name = indexKey(line.section, line.key);
            if (!m_index.contains(name)) m_index.insert(name, m_lines.size());
        }
        m_lines.push_back(std::move(line));
        from = next;
    }
}

void IniFile::classify(Line& line, QString& section) const {
    const QByteArray trimmed = line.text.trimmed();
    if (trimmed.startsWith('[')) {
        const qsizetype close = trimmed.lastIndexOf(']');
        section =
            folded(decoded(QByteArrayView(trimmed).sliced(1, (close < 0 ? trimmed.size() : close) - 1)));
        line.isSection = true;
    } else if (!trimmed.startsWith(';')) {
        const qsizetype equals = trimmed.indexOf('=');
        if (equals > 0) line.key = folded(decoded(QByteArrayView(trimmed).first(equals)));
    }
    line.section = section;
}

QString IniFile::decoded(QByteArrayView text) const {
    return m_utf8 ? QString::fromUtf8(text) : FromWindows1252(text);
}

QString IniFile::valueOf(const Line& line) const {
    const QString text = decoded(line.text.sliced(line.text.indexOf('=') + 1).trimmed());
    QStringView value = text;
    if (value.size() >= 2 && value.front() == value.back() &&
        (value.front() == u'"' || value.front() == u'\''))
        value = value.sliced(1, value.size() - 2);
    return value.isEmpty() ? u""_s : value.toString();
}

QString IniFile::value(QStringView section, QStringView key) const {
    const auto found = m_index.constFind(indexKey(folded(section), folded(key)));
    return found == m_index.constEnd() ? QString() : valueOf(m_lines[*found]);
}

QByteArray IniFile::lineEnd() const {
    for (const Line& line : m_lines)
        if (!line.end.isEmpty()) return line.end;
    return "\r\n";
}

void IniFile::setValue(const QString& section, const QString& key, const QString& value) {
    requireName(section, u"[]"_s);
    requireName(key, u"="_s, u"[;"_s);
    const QString name = key.trimmed();

    QString clean = value;
    clean.replace(u"\r\n"_s, u" "_s);
    for (const char16_t c : {u'\r', u'\n', u'\0'})
        clean.replace(QChar(c), u' ');

    const QString text = name + u'=' + clean;
    if (!m_utf8 && !(FitsWindows1252(text) && FitsWindows1252(section))) convertToUtf8();
    place(section, key, m_utf8 ? text.toUtf8() : ToWindows1252(text));
    // A few sequences of umlauts and signs in Windows-1252 look like UTF-8 to the next reader.
    if (!m_utf8 && !isAscii(bytes()) && IsUtf8(bytes())) convertToUtf8();
}

void IniFile::place(const QString& section, const QString& key, const QByteArray& text) {
    const auto found = m_index.constFind(indexKey(folded(section), folded(key)));
    if (found != m_index.constEnd()) {
        // The spelling of the key and the blanks around "=" stay as their author wrote them.
        QByteArray& old = m_lines[*found].text;
        qsizetype from = old.indexOf('=') + 1;
        while (from < old.size() && (old[from] == ' ' || old[from] == '\t'))
            ++from;
        old = old.first(from) + text.sliced(text.indexOf('=') + 1);
        return;
    }

    // After the last key of the section: comments behind it may belong to the next one.
    const QString wanted = folded(section);
    auto at = m_lines.end();
    for (auto line = m_lines.begin(); line != m_lines.end(); ++line) {
        if (line->section != wanted) {
            if (at != m_lines.end()) break;
        } else if (line->isSection || !line->key.isEmpty()) {
            at = line;
        }
    }
    const QByteArray end = lineEnd();
    QByteArray added;
    QByteArray content = m_mark;
    if (at == m_lines.end()) {
        content = lines();
        if (!m_lines.empty() && m_lines.back().end.isEmpty()) content += end;
        if (!m_lines.empty() && !m_lines.back().text.trimmed().isEmpty()) content += end;
        const QString head = u'[' + section.trimmed() + u']';
        content += (m_utf8 ? head.toUtf8() : ToWindows1252(head)) + end + text + end;
    } else {
        for (auto line = m_lines.begin(); line != m_lines.end(); ++line) {
            content += line->text + line->end;
            if (line == at) content += (line->end.isEmpty() ? end : QByteArray()) + text + end;
        }
    }
    const bool utf8 = m_utf8;
    parseLines(content);
    m_utf8 = utf8;
}

void IniFile::convertToUtf8() {
    if (m_utf8) return;
    for (Line& line : m_lines)
        line.text = FromWindows1252(line.text).toUtf8();
    m_utf8 = true;
    m_mark = utf8Mark;
}

QByteArray IniFile::bytes() const {
    if (m_wide == Wide::No) return lines();
    // A mark behind that of the file is a character of its first line.
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decode(lines());
    return ToUtf16File(text, m_wide == Wide::BigEndian);
}

QByteArray IniFile::lines() const {
    QByteArray content = m_mark;
    for (const Line& line : m_lines)
        content += line.text + line.end;
    return content;
}
