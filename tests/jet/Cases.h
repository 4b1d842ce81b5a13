#pragma once

#include <text/Value.h>

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>
#include <vector>

/// The files of statements and their answers.
namespace cases {

/// A statement of a file and what it must answer: rows, a number of affected rows, or an error with its
/// place.
struct Case {
    int line = 0;
    QString statement;
    QStringList answer;
};

// "> statement", then its answer: "| value | value" for each row, "= n" for n affected rows, "! number place"
// for an error. Lines with # are remarks.
inline std::vector<Case> read(const QString& name) {
    QFile file(QStringLiteral(TEST_DATA "/statements/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
    std::vector<Case> cases;
    for (int line = 1; !file.atEnd(); ++line) {
        const QString text = QString::fromUtf8(file.readLine()).trimmed();
        if (text.startsWith(u'>'))
            cases.push_back({line, text.mid(1).trimmed(), {}});
        else if (!text.isEmpty() && !text.startsWith(u'#') && !cases.empty())
            cases.back().answer.push_back(text);
    }
    return cases;
}

inline QString shown(const Value& v) {
    if (v.isNull()) return QStringLiteral("Null");
    if (v.type() == Type::Boolean) return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (v.type() == Type::Currency) return v.toText() + QStringLiteral(" €");
    return v.toText();
}

} // namespace cases
