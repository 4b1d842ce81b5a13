#include "Statements.h"

#include <QStringList>

namespace console {

void Splitter::take() {
    const QString statement = m_pending.trimmed();
    m_pending.clear();
    m_quote = QChar();
    if (!statement.isEmpty()) m_ready.append(statement);
}

void Splitter::feed(const QString& line) {
    if (m_quote.isNull() && line.trimmed().isEmpty()) return take();
    for (const QChar c : line) {
        if (!m_quote.isNull()) {
            if (c == m_quote) m_quote = QChar();
        } else if (c == u'\'' || c == u'"' || c == u'`' || c == u'#') {
            m_quote = c;
        } else if (c == u'[') {
            m_quote = u']';
        } else if (c == u';') {
            take();
            continue;
        }
        m_pending += c;
    }
    m_pending += u'\n';
}

void Splitter::finish() { take(); }

std::optional<QString> Splitter::next() {
    if (m_ready.isEmpty()) return std::nullopt;
    return m_ready.takeFirst();
}

} // namespace console
