#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// How a failed comparison shows texts; found by their type's namespace, which is the global one.

inline void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QStringList& list, std::ostream* os) {
    *os << "{ \"" << list.join(QStringLiteral("\", \"")).toStdString() << "\" }";
}
