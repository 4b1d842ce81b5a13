#pragma once

#include <store/Database.h>
#include <store/Recordset.h>
#include <store/Schema.h>
#include <support/TestStore.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// The place of a store that is not made yet, on the engine of this round.
class StoreTest : public testing::Test {
  protected:
    TestStore m_place;
    QString m_file = m_place.name();

    std::unique_ptr<Database> open(bool exclusive = false, bool readOnly = false,
                                   const QString& password = {}) const {
        return Database::OpenDatabase(m_file, exclusive, readOnly, u";PWD="_s + password);
    }
    /// A store with a table T of every type and some rows.
    void makeSample() {
        auto db = Database::CreateDatabase(m_file);
        db->Execute(
            u"CREATE TABLE T (ID COUNTER, Nummer TEXT(10), Preis CURRENCY, Menge DOUBLE, Aktiv YESNO, "
            "Am DATETIME, Notiz MEMO, Klein BYTE)"_s);
        db->Execute(u"CREATE UNIQUE INDEX Nummer ON T (Nummer)"_s);
        db->Execute(u"INSERT INTO T (Nummer, Preis, Menge, Aktiv, Am, Notiz, Klein) "
                    "VALUES ('A1', 1.99, 2.5, True, #11/22/2026#, 'eins', 1)"_s);
        db->Execute(u"INSERT INTO T (Nummer, Preis, Menge, Aktiv, Am, Notiz, Klein) "
                    "VALUES ('B2', 0.5, 0, False, #1/2/2026 13:30:00#, NULL, 2)"_s);
        db->Execute(u"INSERT INTO T (Nummer, Preis, Menge, Aktiv, Am, Notiz, Klein) "
                    "VALUES ('c3', 20, 1, True, NULL, '', 3)"_s);
    }
};

/// What concerns a file alone; left out where the tests run on a server.
class FileStoreTest : public StoreTest {};
/// What concerns a server alone.
class ServerStoreTest : public StoreTest {};

/// The number of the RuntimeError that `act` raises, 0 for none.
inline int errorOf(const std::function<void()>& act) {
    try {
        act();
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}

/// The first value of a query as text; "kein" without a row, "Null" for Null.
inline QString single(Database& db, const QString& sql) {
    auto rs = db.OpenRecordset(sql);
    if (rs->Eof()) return u"kein"_s;
    const Value value = rs->Field(0);
    return value.isNull() ? u"Null"_s : value.toText();
}

inline int countOf(Database& db, const QString& table) {
    return db.OpenRecordset(u"SELECT COUNT(*) AS Anzahl FROM "_s + table)->Long(u"Anzahl");
}

/// Another process at work on a store: the console, asked line by line.
class OtherTill {
  public:
    explicit OtherTill(const QString& file, const QStringList& options = {}) {
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
        m_process.start(QStringLiteral(MERIVANE_SQL), QStringList{u"--json"_s} + options + QStringList{file});
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~OtherTill() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    void say(const QString& sql) {
        QByteArray line = QJsonDocument(QJsonArray{sql}).toJson(QJsonDocument::Compact);
        line = line.mid(1, line.size() - 2) + '\n';
        m_process.write(line);
        m_process.waitForBytesWritten();
    }
    /// One answer line; empty when the process ended.
    QByteArray hear() {
        while (!m_process.canReadLine())
            if (!m_process.waitForReadyRead(10000)) return {};
        return m_process.readLine().trimmed();
    }
    QJsonObject ask(const QString& sql) {
        say(sql);
        return QJsonDocument::fromJson(hear()).object();
    }
    QProcess& process() { return m_process; }

  private:
    QProcess m_process;
};
