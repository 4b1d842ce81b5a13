#include "Password.h"
#include "Support.h"

#include <jet/Functions.h>
#include <text/Sort.h>

#include <QDir>
#include <QFile>
#include <QScopeGuard>

#include <csignal>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray contentOf(const QString& file) {
    QFile f(file);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
}

void write(const QString& file, const QByteArray& content) {
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(content);
}

} // namespace

TEST_F(StoreTest, PasswordsAreAskedAndChangedOnlyInAnExclusiveStore) {
    Database::CreateDatabase(m_file, u";PWD=kestrel"_s).reset();
    EXPECT_EQ(errorOf([&] { open(); }), 3031);
    EXPECT_EQ(errorOf([&] { open(false, false, u"Kestrel"_s); }), 3031);
    EXPECT_EQ(errorOf([&] { open(false, true, u"falsch"_s); }), 3031);
    {
        auto shared = open(false, false, u"kestrel"_s);
        EXPECT_EQ(errorOf([&] { shared->NewPassword(u"kestrel"_s, u"x"_s); }), 3621);
    }
    {
        auto alone = open(true, false, u"kestrel"_s);
        EXPECT_EQ(errorOf([&] { alone->NewPassword(u"falsch"_s, u"x"_s); }), 3031);
        alone->NewPassword(u"kestrel"_s, u"brsk-604917"_s);
    }
    EXPECT_EQ(errorOf([&] { open(false, false, u"kestrel"_s); }), 3031);
    open(true, false, u"brsk-604917"_s)->NewPassword(u"brsk-604917"_s, {});
    EXPECT_EQ(errorOf([&] { open(); }), 0) << "without a password every connect text opens";
    EXPECT_EQ(errorOf([&] { open(true)->NewPassword({}, u"kestrel"_s); }), 0)
        << "an old store gets its first one";
    EXPECT_EQ(errorOf([&] { open(); }), 3031);
    if (!TestStore::onServer()) {
        EXPECT_FALSE(contentOf(m_file).contains("kestrel"))
            << "the password must not be readable in the file";
    }
}

// Test vector of RFC 7914, section 11, cut to one block.
TEST(Password, IsDerivedAsPbkdf2WithSha256) {
    EXPECT_EQ(store::pbkdf2("passwd", "salt", 1).toHex(),
              "55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc");
    const auto one = store::PasswordVerifier::make(u"kestrel"_s);
    const auto two = store::PasswordVerifier::make(u"kestrel"_s);
    EXPECT_NE(one.derived, two.derived) << "salted";
}

TEST_F(FileStoreTest, WhatIsNotOursIsToldAndLeftUntouched) {
    EXPECT_EQ(errorOf([&] { open(); }), 3024);
    EXPECT_EQ(errorOf([&] { Database::OpenDatabase(m_place.filePath(u"kein/Ordner/x.mdb"_s)); }), 3024);
    EXPECT_EQ(errorOf([&] { Database::OpenDatabase(m_place.folder()); }), 3343);

    auto db = Database::CreateDatabase(m_place.filePath(u"eigen.mdb"_s));
    db->Execute(u"CREATE TABLE T (A LONG)"_s);
    db->Close();
    QByteArray stranger = contentOf(m_place.filePath(u"eigen.mdb"_s));
    stranger.replace(68, 4, "\0\0\0\0", 4); // the same engine, another program's file
    for (const QByteArray& content : {QByteArray("x"), QByteArray(5000, 'x'), stranger}) {
        write(m_file, content);
        const auto before = QDir(m_place.folder()).entryList(QDir::Files);
        for (const bool exclusive : {false, true})
            EXPECT_EQ(errorOf([&] { open(exclusive); }), 3343);
        EXPECT_EQ(errorOf([&] { open(false, true); }), 3343);
        EXPECT_EQ(contentOf(m_file), content);
        EXPECT_EQ(QDir(m_place.folder()).entryList(QDir::Files), before) << "no file beside it either";
        EXPECT_EQ(errorOf([&] { Database::CreateDatabase(m_file); }), 3204);
    }
}

TEST_F(FileStoreTest, ADamagedStoreIsToldAndNotMadeWorse) {
    makeSample();
    QByteArray damaged = contentOf(m_file);
    for (qsizetype i = 100; i < damaged.size(); ++i)
        damaged[i] = static_cast<char>(damaged[i] ^ 0x5a);
    write(m_file, damaged);
    EXPECT_EQ(errorOf([&] { open(); }), 3049);
    write(m_file, damaged.left(3000));
    EXPECT_EQ(errorOf([&] { open(); }), 3049);
}

TEST_F(FileStoreTest, IndexesOfAnotherCollationAreBuiltAnew) {
    makeSample();
    // As if a library of another version had built them: in the opposite order.
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(m_file.toUtf8().constData(), &db), SQLITE_OK);
    sqlite3_create_collation(
        db, "GERMAN", SQLITE_UTF8, nullptr, [](void*, int aSize, const void* a, int bSize, const void* b) {
            return CompareUtf8(static_cast<const char*>(b), bSize, static_cast<const char*>(a), aSize);
        });
    ASSERT_EQ(sqlite3_exec(db, "UPDATE \"merivane$settings\" SET value='0' WHERE key='collation'; REINDEX",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_changes(db), 1);
    sqlite3_close(db);

    const QString ask = u"SELECT ID FROM T WHERE Nummer='c3'"_s;
    const QByteArray before = contentOf(m_file);
    auto reader = open(false, true);
    EXPECT_EQ(single(*reader, ask), u"3");
    EXPECT_EQ(errorOf([&] { reader->Execute(u"DELETE FROM T"_s); }), 3027);
    reader.reset();
    EXPECT_EQ(contentOf(m_file), before);

    EXPECT_EQ(single(*open(), ask), u"3");
    EXPECT_EQ(single(*open(), ask), u"3");
}

TEST_F(StoreTest, AReadOnlyConnectionReadsAndWritesNothing) {
    makeSample();
    const QByteArray before = TestStore::onServer() ? QByteArray() : contentOf(m_file);
    {
        auto db = open(false, true);
        auto rs = db->OpenRecordset(u"SELECT * FROM T ORDER BY ID"_s);
        EXPECT_EQ(rs->Text(u"Nummer"), u"A1");
        EXPECT_EQ(errorOf([&] { db->Execute(u"UPDATE T SET Preis=0"_s); }), 3027);
        EXPECT_EQ(errorOf([&] { db->Execute(u"DROP TABLE T"_s); }), 3027);
        EXPECT_EQ(errorOf([&] { rs->AddNew(); }), 3027);
        EXPECT_EQ(errorOf([&] { rs->Edit(); }), 3027);
        EXPECT_EQ(errorOf([&] { rs->Delete(); }), 3027);
        EXPECT_EQ(countOf(*db, u"T WHERE Preis>0"_s), 3);
    }
    if (!TestStore::onServer()) {
        EXPECT_EQ(contentOf(m_file), before);
    }
}

// Rights mean nothing to root, so the console looks at the store as another user.
TEST_F(FileStoreTest, WithoutRightsItIs3050AndReadingStillWorks) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
    makeSample();
    // The build folder may be one that only root can look into.
    const QString console = m_place.filePath(u"console"_s);
    ASSERT_TRUE(QFile::copy(QStringLiteral(MERIVANE_SQL), console));
    ASSERT_EQ(chmod(console.toUtf8().constData(), 0755), 0);
    const auto asNobody = [&](const QStringList& arguments) {
        QProcess process;
        process.setChildProcessModifier([] {
            if (setgid(65534) != 0 || setuid(65534) != 0) _exit(99);
        });
        process.start(console, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    };
    ASSERT_EQ(chmod(m_place.folder().toUtf8().constData(), 0755), 0);
    ASSERT_EQ(chmod(m_file.toUtf8().constData(), 0666), 0);
    EXPECT_TRUE(asNobody({m_file, u"SELECT Nummer FROM T"_s}).startsWith(u"3050"_s)) << "folder read-only";
    EXPECT_EQ(asNobody({u"--readonly"_s, m_file, u"SELECT Nummer FROM T WHERE ID=1"_s}), u"Nummer\nA1\n");
    ASSERT_EQ(chmod(m_place.folder().toUtf8().constData(), 0777), 0);
    ASSERT_EQ(chmod(m_file.toUtf8().constData(), 0444), 0);
    EXPECT_TRUE(asNobody({m_file, u"SELECT Nummer FROM T"_s}).startsWith(u"3050"_s)) << "file read-only";
    ASSERT_EQ(chmod(m_file.toUtf8().constData(), 0), 0);
    EXPECT_TRUE(asNobody({u"--readonly"_s, m_file, u"SELECT 1"_s}).startsWith(u"3050"_s))
        << "file not readable";
}

TEST_F(StoreTest, AfterCloseEverythingTells3420) {
    makeSample();
    auto db = open();
    auto rs = db->OpenRecordset(u"T"_s);
    EXPECT_FALSE(rs->Eof());
    db->Close();
    EXPECT_EQ(errorOf([&] { rs->MoveNext(); }), 3420);
    EXPECT_EQ(errorOf([&] { std::ignore = rs->Field(u"Nummer"); }), 3420);
    EXPECT_EQ(errorOf([&] { db->Execute(u"DELETE FROM T"_s); }), 3420);
    EXPECT_EQ(errorOf([&] { std::ignore = db->TableDefs(); }), 3420);
    EXPECT_EQ(errorOf([&] { open(true); }), 0) << "the recordset must not hold the file";
    rs->CancelUpdate();
}

TEST_F(StoreTest, ATransactionIsWrittenWholeOrNotAtAll) {
    makeSample();
    auto db = open();
    db->BeginTrans();
    EXPECT_EQ(errorOf([&] { db->BeginTrans(); }), 3219);
    db->Execute(u"DELETE FROM T"_s);
    db->Execute(u"CREATE TABLE Neu (A LONG)"_s);
    db->Rollback();
    EXPECT_EQ(errorOf([&] { db->CommitTrans(); }), 3219);
    EXPECT_EQ(countOf(*db, u"T"_s), 3);
    EXPECT_FALSE(db->FindTableDef(u"Neu"));
    EXPECT_EQ(errorOf([&] { countOf(*db, u"Neu"_s); }), 3078);
    db->BeginTrans();
    db->Execute(u"DELETE FROM T WHERE ID=1"_s);
    db->CommitTrans();
    EXPECT_EQ(countOf(*open(), u"T"_s), 2);
}

TEST_F(StoreTest, ADoubledValueIsToldByItsColumnsAlone) {
    auto db = Database::CreateDatabase(m_file);
    db->Execute(u"CREATE TABLE [Die Ware] (ID COUNTER PRIMARY KEY, Nummer TEXT(9), A LONG, [B C] LONG)"_s);
    db->Execute(u"CREATE UNIQUE INDEX N ON [Die Ware] (Nummer)"_s);
    db->Execute(u"CREATE UNIQUE INDEX Zwei ON [Die Ware] (A, [B C])"_s);
    db->Execute(u"INSERT INTO [Die Ware] (ID, Nummer, A, [B C]) VALUES (5, 'x', 1, 2)"_s);
    const auto told = [&](const QString& values) {
        try {
            db->Execute(u"INSERT INTO [Die Ware] (ID, Nummer, A, [B C]) VALUES (%1)"_s.arg(values));
        } catch (const RuntimeError& error) {
            return QString::number(error.Number) + error.Description.mid(error.Description.lastIndexOf(u'('));
        }
        return QString();
    };
    EXPECT_EQ(told(u"6, 'X', 2, 2"_s), u"3022(Nummer)."_s);
    EXPECT_EQ(told(u"6, 'y', 1, 2"_s), u"3022(A, B C)."_s);
    EXPECT_EQ(told(u"5, 'y', 2, 2"_s), u"3022(ID)."_s);
    EXPECT_EQ(told(u"6, 'y', 2, 2"_s), QString());
    db->Execute(u"CREATE TABLE Doppelt (A LONG)"_s);
    db->Execute(u"INSERT INTO Doppelt VALUES (1), (1)"_s);
    try {
        db->Execute(u"CREATE UNIQUE INDEX A ON Doppelt (A)"_s);
        ADD_FAILURE();
    } catch (const RuntimeError& error) {
        EXPECT_TRUE(error.Description.endsWith(u"(A)."_s)) << error.Description.toStdString();
    }
}

namespace {

QDateTime lateInTheYear() { return {QDate(2031, 12, 31), QTime(23, 59, 58)}; }

} // namespace

TEST_F(StoreTest, StatementsAndDefaultsFollowTheClockThatIsGiven) {
    const auto systemAgain = qScopeGuard([] { jet::setClock(nullptr); });
    auto db = Database::CreateDatabase(m_file);
    db->Execute(u"CREATE TABLE T (ID COUNTER, Tag DATETIME DEFAULT Date(), Zeit DATETIME DEFAULT Time(), "
                "Stand DATETIME DEFAULT Now(), Wer TEXT(9))"_s);
    auto rs = db->OpenRecordset(u"T"_s);
    jet::setClock(lateInTheYear);
    db->Execute(u"INSERT INTO T (Wer) VALUES ('sql')"_s);
    rs->AddNew();
    rs->Set(u"Wer", u"satz"_s);
    rs->Update();
    for (const QString& who : {u"sql"_s, u"satz"_s})
        EXPECT_EQ(single(*db, u"SELECT Tag & '|' & Zeit & '|' & Stand FROM T WHERE Wer='%1'"_s.arg(who)),
                  u"31.12.2031|23:59:58|31.12.2031 23:59:58"_s);
    EXPECT_EQ(single(*db, u"SELECT Date() & '|' & Time() & '|' & Now() & '|' & Timer()"_s),
              u"31.12.2031|23:59:58|31.12.2031 23:59:58|86398"_s);
    EXPECT_EQ(single(*db, u"SELECT Count(*) FROM T WHERE Tag=Date() AND Stand=Now() AND Tag=#12/31#"_s),
              u"2"_s);
    // A date without a year is one of the year that runs.
    const QString dates =
        u"SELECT CDate('5.' & (ID + 5) & '.') & IsDate('29.2.') & DateValue(Wer & '3. Mai') "
        "FROM (SELECT ID, '' AS Wer FROM T) AS t"_s;
    EXPECT_EQ(single(*db, dates), u"05.06.2031003.05.2031"_s);
    db->BeginTrans();
    jet::setClock([] { return QDateTime(QDate(2032, 1, 1), QTime(0, 0)); });
    db->Rollback();
    EXPECT_EQ(single(*db, dates), u"05.06.2032-103.05.2032"_s);
    jet::setClock(nullptr);
    EXPECT_EQ(single(*db, u"SELECT Year('5.6.')"_s), QString::number(QDate::currentDate().year()));
}

TEST_F(StoreTest, TheNumberThatWasGivenLastIsAnswered) {
    auto db = Database::CreateDatabase(m_file);
    db->Execute(u"CREATE TABLE T (ID COUNTER, Wer TEXT(9))"_s);
    db->Execute(u"CREATE TABLE Ohne (Wer TEXT(9))"_s);
    const auto last = [&] { return single(*db, u"SELECT @@IDENTITY AS Nr"_s); };
    EXPECT_EQ(last(), u"0"_s);
    db->Execute(u"INSERT INTO T (Wer) VALUES ('a'), ('b')"_s);
    EXPECT_EQ(last(), u"2"_s);
    db->Execute(u"INSERT INTO Ohne VALUES ('x')"_s);
    db->Execute(u"INSERT INTO T (Wer) SELECT Wer FROM Ohne WHERE Wer='y'"_s);
    EXPECT_EQ(last(), u"2"_s) << "no number was given";
    EXPECT_EQ(db->Execute(u"INSERT INTO T (Wer) SELECT Wer FROM T ORDER BY ID"_s), 2);
    EXPECT_EQ(last(), u"4"_s);
    auto rs = db->OpenRecordset(u"T"_s);
    rs->AddNew();
    rs->Set(u"Wer", u"c"_s);
    rs->Update();
    EXPECT_EQ(last(), u"5"_s);
    Database::OpenDatabase(m_file)->Execute(u"INSERT INTO T (Wer) VALUES ('andere')"_s);
    EXPECT_EQ(last(), u"5"_s) << "what another till writes does not count";
    rs->FindFirst(u"ID = @@identity"_s);
    EXPECT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Text(u"Wer"), u"c"_s);
    EXPECT_EQ(db->Execute(u"UPDATE T SET Wer='d' WHERE ID=@@IDENTITY"_s), 1);
    EXPECT_EQ(errorOf([&] { std::ignore = db->OpenRecordset(u"SELECT @@NICHTS"_s); }), 3061);
}

TEST_F(StoreTest, WritesThatBelongTogetherAreAllDoneOrNone) {
    makeSample();
    auto db = open();
    auto rs = db->OpenRecordset(u"SELECT * FROM T ORDER BY ID"_s);
    EXPECT_EQ(rs->Number(u"Menge"), 2.5);
    const QString more = u"UPDATE T SET Menge = Menge + 1 WHERE Nummer='%1'"_s;
    db->ExecuteTogether({more.arg(u"A1"_s), more.arg(u"B2"_s), u"DELETE FROM T WHERE Nummer='c3'"_s});
    EXPECT_EQ(rs->Number(u"Menge"), 3.5) << "an open record set sees it";
    EXPECT_EQ(single(*open(), u"SELECT Sum(Menge) FROM T"_s), u"4,5");
    // The third is refused, so the others are not there either.
    const QString twice = u"INSERT INTO T (Nummer) VALUES ('A1')"_s;
    EXPECT_EQ(errorOf([&] { db->ExecuteTogether({more.arg(u"A1"_s), more.arg(u"B2"_s), twice}); }), 3022);
    EXPECT_EQ(single(*open(), u"SELECT Sum(Menge) FROM T"_s), u"4,5");
    EXPECT_EQ(errorOf([&] { db->ExecuteTogether({more.arg(u"A1"_s), u"SELECT * FROM T"_s}); }), 3065);
    EXPECT_EQ(errorOf([&] { db->ExecuteTogether({more.arg(u"A1"_s), u"DROP TABLE T"_s}); }), 3219);
    EXPECT_EQ(errorOf([&] { open(false, true)->ExecuteTogether({more.arg(u"A1"_s)}); }), 3027);
    // In a transaction they go with it.
    db->BeginTrans();
    db->ExecuteTogether({more.arg(u"A1"_s), more.arg(u"B2"_s)});
    EXPECT_EQ(errorOf([&] { db->ExecuteTogether({more.arg(u"A1"_s), twice}); }), 3022);
    db->Rollback();
    EXPECT_EQ(single(*open(), u"SELECT Sum(Menge) FROM T"_s), u"4,5");
    // Another program changes the structure in between.
    open()->Execute(u"ALTER TABLE T ADD COLUMN Neu LONG"_s);
    db->ExecuteTogether({more.arg(u"A1"_s), u"UPDATE T SET Neu=7"_s});
    EXPECT_EQ(single(*open(), u"SELECT Sum(Neu) FROM T"_s), u"14");
}
