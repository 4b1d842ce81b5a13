#include "Support.h"
#include "sqlite/SqliteFile.h"

#include <store/StoreLook.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>

namespace {

/// A till at work on a file that others can reach, too.
class FileGoneTest : public FileStoreTest {
  protected:
    void SetUp() override {
        auto made = Database::CreateDatabase(m_file);
        made->Execute(u"CREATE TABLE L (ID COUNTER, Nummer TEXT(20))"_s);
        made->Execute(u"INSERT INTO L (Nummer) VALUES ('alt')"_s);
        made->Close();
        ASSERT_TRUE(QFile::copy(m_file, m_older));
        m_db = open();
        m_lines = m_db->OpenRecordset(u"L"_s);
        sell();
    }
    void sell() {
        m_lines->AddNew();
        std::ignore = m_lines->Long(u"ID");
        m_lines->Set(u"Nummer", u"neu"_s);
        m_lines->Update();
    }
    [[nodiscard]] QByteArray content(const QString& file) const {
        QFile read(file);
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray("missing");
    }
    /// Nothing of any kind can be written; reading goes on.
    void expectRefused() {
        EXPECT_EQ(errorOf([&] { sell(); }), store::StoreGone);
        m_lines->CancelUpdate();
        EXPECT_EQ(errorOf([&] { m_db->Execute(u"UPDATE L SET Nummer='x'"_s); }), store::StoreGone);
        EXPECT_EQ(errorOf([&] { m_db->Execute(u"CREATE TABLE N (ID LONG)"_s); }), store::StoreGone);
        EXPECT_EQ(errorOf([&] { m_db->BeginTrans(); }), store::StoreGone);
        EXPECT_EQ(countOf(*m_db, u"L"_s), 2);
    }

    QScopedValueRollback<std::chrono::milliseconds> m_lookAlways{store::LookInterval, {}};
    QString m_older = m_file + u".aelter"_s;
    std::unique_ptr<Database> m_db;
    std::unique_ptr<Recordset> m_lines;
};

} // namespace

TEST_F(FileGoneTest, ADeletedFileIsNoticedAtTheNextWriteAndCanBeSaved) {
    ASSERT_TRUE(QFile::remove(m_file));
    expectRefused();
    EXPECT_FALSE(QFile::exists(m_file)) << "nothing was made in its place";

    const QString copy = m_file + u".kopie"_s;
    m_db->SaveCopy(copy);
    EXPECT_EQ(errorOf([&] { m_db->SaveCopy(copy); }), 3204);
    EXPECT_EQ(errorOf([&] { m_db->SaveCopy(m_file + u".d/kopie"_s); }), 3024);
    m_lines.reset();
    m_db->Close();
    ASSERT_TRUE(QFile::rename(copy, m_file));
    auto again = open();
    EXPECT_EQ(countOf(*again, u"L"_s), 2);
    again->Execute(u"INSERT INTO L (Nummer) VALUES ('weiter')"_s);
    EXPECT_EQ(single(*again, u"SELECT MAX(ID) FROM L"_s), u"3") << "the counter came along";
}

TEST_F(FileGoneTest, AReplacedFileGetsNothingOfTheOldOne) {
    for (const bool overLog : {false, true}) {
        SCOPED_TRACE(overLog);
        if (overLog) { // the second round begins on the copy that was put there
            m_lines.reset();
            m_db = open();
            m_lines = m_db->OpenRecordset(u"L"_s);
            sell();
        }
        const QString foreign = m_file + u".neu"_s;
        ASSERT_TRUE(QFile::copy(m_older, foreign));
        const QByteArray before = content(foreign);
        ASSERT_EQ(std::rename(foreign.toUtf8().constData(), m_file.toUtf8().constData()), 0);
        expectRefused();
        EXPECT_EQ(content(m_file), before);
        // Another till that starts now sees the file as it was put there, not the pages of our log.
        auto other = open();
        EXPECT_EQ(countOf(*other, u"L"_s), 1);
        other->Execute(u"UPDATE L SET Nummer='andere'"_s);
        const QString copy = m_file + u".kopie%1"_s.arg(overLog);
        m_db->SaveCopy(copy);
        m_lines.reset();
        m_db->Close();
        EXPECT_EQ(single(*other, u"SELECT Nummer FROM L"_s), u"andere");
        other->Close();
        EXPECT_EQ(countOf(*Database::OpenDatabase(copy), u"L"_s), 2);
    }
}

TEST_F(FileGoneTest, AFileThatComesBackIsTheSameAndItsLogCounts) {
    const QString aside = m_file + u".weg"_s;
    m_db->BeginTrans();
    sell();
    ASSERT_TRUE(QFile::rename(m_file, aside));
    EXPECT_EQ(errorOf([&] { m_db->CommitTrans(); }), store::StoreGone);
    m_db->Rollback();
    EXPECT_EQ(errorOf([&] { sell(); }), store::StoreGone);
    m_lines->CancelUpdate();
    m_lines.reset();
    m_db->Close();
    ASSERT_TRUE(QFile::rename(aside, m_file));

    m_db = open();
    m_lines = m_db->OpenRecordset(u"L"_s);
    sell();
    ASSERT_TRUE(QFile::remove(m_file + u"-wal"_s));
    EXPECT_EQ(errorOf([&] { sell(); }), store::StoreGone)
        << "what goes into a log without a name dies with the till";
    m_lines->CancelUpdate();
    const QString copy = m_file + u".kopie"_s;
    m_db->SaveCopy(copy);
    EXPECT_GE(countOf(*Database::OpenDatabase(copy), u"L"_s), 2);
}

TEST_F(FileGoneTest, OnANetworkFolderToo) {
    m_lines.reset();
    m_db->Close();
    store::setNetworkProbe([](const QString&) { return true; });
    m_db = open();
    m_lines = m_db->OpenRecordset(u"L"_s);
    ASSERT_TRUE(QFile::remove(m_file));
    expectRefused();
    m_db->SaveCopy(m_file + u".kopie"_s);
    m_lines.reset();
    m_db->Close();
    store::setNetworkProbe(nullptr);
    EXPECT_EQ(countOf(*Database::OpenDatabase(m_file + u".kopie"_s), u"L"_s), 2);
}

TEST_F(FileStoreTest, ATruncatedStoreIsDamagedAndNotSomebodyElses) {
    makeSample();
    QFile file(m_file);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    const auto put = [&](const QByteArray& content) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        file.close();
    };
    for (const qsizetype size :
         {qsizetype(0), qsizetype(1), qsizetype(15), qsizetype(60), qsizetype(99), qsizetype(100),
          qsizetype(1000), qsizetype(4096), whole.size() / 2, whole.size() - 1}) {
        for (const bool exclusive : {true, false}) {
            put(whole.left(size));
            EXPECT_EQ(errorOf([&] { std::ignore = countOf(*open(exclusive), u"T"_s); }), 3049) << size;
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_EQ(file.readAll(), whole.left(size)) << "it stays as it is";
            file.close();
        }
    }
    put("SQLite form of something else");
    EXPECT_EQ(errorOf([&] { open(); }), 3343);
    put(QByteArray("x"));
    EXPECT_EQ(errorOf([&] { open(); }), 3343);
}
