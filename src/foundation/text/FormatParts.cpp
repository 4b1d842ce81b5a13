#include "FormatParts.h"

#include <charconv>

namespace format {

namespace {

char16_t lower(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }

/// Length of "[Red]" and the like at the start of `text`, 0 when it is something else.
qsizetype colourLength(QStringView text) {
    for (const QStringView colour :
         {u"[Black]", u"[Blue]", u"[Green]", u"[Cyan]", u"[Red]", u"[Magenta]", u"[Yellow]", u"[White]"})
        if (text.startsWith(colour, Qt::CaseInsensitive)) return colour.size();
    return 0;
}

} // namespace

void Output::number(int value, int width) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    for (auto n = end - digits; n < width; ++n)
        put(u'0');
    for (const char* at = digits; at != end; ++at)
        put(static_cast<char16_t>(*at));
}

char16_t Scanner::next(QStringView& literal) {
    while (m_at != m_end) {
        const char16_t c = *m_at++;
        switch (c) {
        case u'\\':
            literal = {m_at == m_end ? m_at - 1 : m_at, 1};
            if (m_at != m_end) ++m_at;
            return isLiteral;
        case u'"': {
            const char16_t* const start = m_at;
            while (m_at != m_end && *m_at != u'"')
                ++m_at;
            literal = {start, m_at};
            if (m_at != m_end) ++m_at;
            if (literal.isEmpty()) break;
            return isLiteral;
        }
        case u'*': // fills a column in print, which a text has not
            if (m_at != m_end) ++m_at;
            break;
        case u'[':
            if (const qsizetype length = colourLength({m_at - 1, m_end})) {
                m_at += length - 1;
                break;
            }
            return c;
        case 0:
        case isLiteral: // our own signals
            literal = {m_at - 1, 1};
            return isLiteral;
        default:
            return c;
        }
    }
    return 0;
}

int Scanner::run(char16_t c, int most) {
    int count = 0;
    while (count < most && m_at != m_end && lower(*m_at) == lower(c)) {
        ++m_at;
        ++count;
    }
    return count;
}

Kind kindOf(QStringView format) {
    Scanner scanner(format);
    QStringView literal;
    while (const char16_t c = scanner.next(literal)) {
        switch (lower(c)) {
        case u'0':
        case u'#':
        case u'%':
        case u'.':
        case u',':
            return Kind::Number;
        case u'@':
        case u'&':
        case u'<':
        case u'>':
        case u'!':
            return Kind::Text;
        case u'd':
        case u'm':
        case u'y':
        case u'h':
        case u'n':
        case u's':
        case u'w':
        case u'q':
        case u'c':
            return Kind::Date;
        case u't':
            if (scanner.run(u't', 4) == 4) return Kind::Date;
            break;
        case u'a':
            if (scanner.rest().startsWith(u"M/PM", Qt::CaseInsensitive) ||
                scanner.rest().startsWith(u"/P", Qt::CaseInsensitive) ||
                scanner.rest().startsWith(u"MPM", Qt::CaseInsensitive))
                return Kind::Date;
            break;
        default:
            break;
        }
    }
    return Kind::Literal;
}

Sections split(QStringView format) {
    Sections sections;
    if (!format.contains(u';')) {
        sections.part.append(format);
        return sections;
    }
    const char16_t* start = format.utf16();
    Scanner scanner(format);
    QStringView literal;
    for (;;) {
        const char16_t c = scanner.next(literal);
        if (c != 0 && c != u';') continue;
        const char16_t* const end = scanner.rest().utf16();
        sections.part.append(QStringView(start, c == 0 ? end : end - 1));
        if (c == 0 || sections.part.size() == 4) return sections;
        start = end;
    }
}

QString literalText(QStringView section) {
    Scanner scanner(section);
    Output out;
    QStringView literal;
    while (const char16_t c = scanner.next(literal)) {
        if (c == Scanner::isLiteral)
            out.put(literal);
        else
            out.put(c);
    }
    return out.text();
}

} // namespace format
