#pragma once

#include <store/Database.h>
#include <store/Recordset.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// The number of the RuntimeError that `act` raises, 0 for none.
template <typename Act>
int errorOf(Act act) {
    try {
        act();
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}

/// Everything that a store holds, as text: structure, counters and rows in their order. Doubles and dates are
/// written to the last bit.
inline QByteArray dump(Database& db) {
    QByteArray text;
    const auto line = [&](const QStringList& parts) { text += parts.join(u'|').toUtf8() + '\n'; };
    for (const TableDef& table : db.TableDefs()) {
        line({u"TABLE"_s, table.Name});
        for (const TableField& field : table.Fields) {
            line({field.Name, QString::number(static_cast<int>(field.Type)), QString::number(field.Size),
                  field.DefaultValue, QString::number(field.AllowZeroLength), QString::number(field.Required),
                  QString::number(field.Attributes)});
            if (field.Attributes == dbAutoIncrField)
                line({u"COUNTER"_s, QString::number(db.Counter(table.Name))});
        }
        for (const TableIndex& index : table.Indexes) {
            line({u"INDEX"_s, index.Name, QString::number(index.Unique), QString::number(index.Primary)});
            for (const TableIndex::Column& column : index.Fields)
                line({column.Name, QString::number(column.Descending)});
        }
        db.ReadTable(table.Name, [&](const std::vector<Value>& row) {
            QStringList parts;
            for (const Value& value : row) {
                const QString kind = QString::number(value.data().index()) + u':';
                if (const auto* number = std::get_if<double>(&value.data()))
                    parts.append(kind + QString::fromLatin1(QByteArray::number(*number, 'g', 17)));
                else if (const auto* date = std::get_if<DateTime>(&value.data()))
                    parts.append(kind + QString::fromLatin1(QByteArray::number(date->days, 'g', 17)));
                else if (const auto* money = std::get_if<Currency>(&value.data()))
                    parts.append(kind + QString::number(money->scaled()));
                else
                    parts.append(kind + (value.isNull() ? u"Null"_s : value.toText()));
            }
            line(parts);
        });
    }
    return text;
}

inline QByteArray fileOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
