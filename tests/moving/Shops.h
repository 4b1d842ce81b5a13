#pragma once

#include <store/Database.h>
#include <store/Recordset.h>
#include <store/Transfer.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <limits>

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
                line({u"COUNTER"_s, QString::number(store::Counter(db, table.Name))});
        }
        for (const TableIndex& index : table.Indexes) {
            line({u"INDEX"_s, index.Name, QString::number(index.Unique), QString::number(index.Primary)});
            for (const TableIndex::Column& column : index.Fields)
                line({column.Name, QString::number(column.Descending)});
        }
        store::ReadTable(db, table.Name, [&](const std::vector<Value>& row) {
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

/// Tables of every type with their extremes, in order, with names that need quoting and a counter whose
/// highest row is gone.
inline void makeExtremes(Database& db) {
    const auto high = std::numeric_limits<qint64>::max();
    const double huge = std::numeric_limits<double>::max(), tiny = std::numeric_limits<double>::denorm_min();
    db.Execute(
        u"CREATE TABLE Alles (ID COUNTER, Ja YESNO, B BYTE, S SHORT, L LONG DEFAULT 7, F SINGLE, D DOUBLE, "
        "C CURRENCY NOT NULL, T DATETIME DEFAULT Date(), X TEXT(12) DEFAULT 'Deutschland', M MEMO)"_s);
    db.Execute(u"CREATE UNIQUE INDEX Text_Preis ON Alles (X DESC, C)"_s);
    db.Execute(u"CREATE TABLE [Leer und Müßig] (N LONG CONSTRAINT P PRIMARY KEY, [it's] TEXT(1))"_s);
    db.Execute(u"CREATE TABLE Reihe (N LONG)"_s);
    db.Execute(u"CREATE INDEX N ON Reihe (N)"_s);
    db.Execute(u"INSERT INTO Reihe VALUES (3)"_s);
    db.Execute(u"INSERT INTO Reihe VALUES (1)"_s);
    db.Execute(u"INSERT INTO Reihe VALUES (2)"_s);
    db.BeginTrans();
    const auto writer = store::WriteTable(db, u"Alles"_s);
    const QString letter = QString::fromUtf8("\xF0\x9D\x84\x9E");
    writer->Add({2, true, 255, 32767, std::numeric_limits<int>::max(),
                 double(std::numeric_limits<float>::max()), huge, Currency::fromScaled(high),
                 DateTime::fromParts(9999, 12, 31, 23, 59, 59), letter.repeated(12),
                 QString(300000, u'ü') + u"'\"\\\t\r\n;--"_s});
    writer->Add({3, false, 0, -32768, std::numeric_limits<int>::min(), 0.1, -huge,
                 Currency::fromScaled(-high - 1), DateTime::fromParts(100, 1, 1), u"O'Neil Straße"_s.left(12),
                 u""_s});
    writer->Add({5, true, 1, 1, 1, -0.0, tiny, Currency::fromScaled(1), DateTime{-1.25}, u"äöüßÄÖÜ€"_s,
                 QString(u'\u0001')});
    writer->Add(
        {7, false, Value(), Value(), Value(), Value(), Value(), Currency(), Value(), Value(), Value()});
    writer->Add({9, false, 9, 9, 9, 1.0 / 3, 1.0 / 3, Currency::fromScaled(-1), DateTime{46349.123456789},
                 u" "_s, u"NULL"_s});
    writer->Finish();
    db.CommitTrans();
    db.Execute(u"DELETE FROM Alles WHERE ID=9"_s);
}

/// Counter, defaults and checks of the tables of makeExtremes, wherever they are.
inline void expectRulesOfExtremes(Database& db) {
    db.Execute(u"INSERT INTO Alles (C) VALUES (1)"_s);
    const auto added = db.OpenRecordset(u"SELECT * FROM Alles WHERE C=1"_s);
    EXPECT_EQ(10, added->Long(u"ID"));
    EXPECT_EQ(7, added->Long(u"L"));
    EXPECT_EQ(u"Deutschland"_s, added->Text(u"X"));
    EXPECT_EQ(3163, errorOf([&] { db.Execute(u"INSERT INTO Alles (C, X) VALUES (2, '1234567890123')"_s); }));
    EXPECT_EQ(3314, errorOf([&] { db.Execute(u"INSERT INTO Alles (X) VALUES ('x')"_s); }));
    EXPECT_EQ(3022, errorOf([&] { db.Execute(u"INSERT INTO Alles (C, X) VALUES (1, 'DEUTSCHLAND')"_s); }));
}

/// A table of so many rows and a small one behind it.
inline void makeShop(const QString& place, int rows) {
    auto db = Database::CreateDatabase(place);
    db->Execute(u"CREATE TABLE Artikel (ID COUNTER, Name TEXT(100), LangText MEMO, Preis CURRENCY)"_s);
    db->Execute(u"CREATE INDEX Name ON Artikel (Name)"_s);
    db->Execute(u"CREATE TABLE Kunden (Nummer TEXT(10))"_s);
    db->Execute(u"INSERT INTO Kunden VALUES ('K1')"_s);
    db->BeginTrans();
    const auto writer = store::WriteTable(*db, u"Artikel"_s);
    for (int i = 1; i <= rows; ++i)
        writer->Add({i, u"Artikel %1"_s.arg(i * 7919 % rows), QString(200, u'x'), Currency::fromScaled(i)});
    writer->Finish();
    db->CommitTrans();
}

/// Waits until merivane-umzug is about to copy the 20,000 rows of a shop; what it told so far.
inline QByteArray readToTheMiddle(QProcess& process) {
    process.setReadChannel(QProcess::StandardError);
    QByteArray told;
    while (!told.contains(": 20.000") && process.waitForReadyRead(20000))
        told += process.readAll();
    return told;
}
