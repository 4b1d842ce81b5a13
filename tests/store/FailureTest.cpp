#include "Support.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>

#include <csignal>
#include <cstring>
#include <sqlite3.h>
#include <sys/resource.h>

namespace {

/// The engine's file layer with a disk that is full after so many writes.
struct FullDisk {
    sqlite3_vfs vfs{};
    sqlite3_vfs* real = nullptr;
    int writesLeft = -1; ///< -1: as many as one likes
    bool hit = false;
};

FullDisk disk;

struct File {
    sqlite3_file base;
    sqlite3_io_methods methods;
    const sqlite3_io_methods* realMethods;
    // the real file follows
};

sqlite3_file* realFile(sqlite3_file* file) {
    return reinterpret_cast<sqlite3_file*>(reinterpret_cast<char*>(file) + sizeof(File));
}

int failingWrite(sqlite3_file* file, const void* data, int amount, sqlite3_int64 offset) {
    if (disk.writesLeft == 0) {
        disk.hit = true;
        return SQLITE_FULL;
    }
    if (disk.writesLeft > 0) --disk.writesLeft;
    return realFile(file)->pMethods->xWrite(realFile(file), data, amount, offset);
}

template <auto Member, typename... Args>
int pass(sqlite3_file* file, Args... args) {
    sqlite3_file* real = realFile(file);
    return (real->pMethods->*Member)(real, args...);
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
    auto* f = reinterpret_cast<File*>(file);
    f->base.pMethods = nullptr;
    realFile(file)->pMethods = nullptr;
    const int code = disk.real->xOpen(disk.real, name, realFile(file), flags, out);
    if (code != SQLITE_OK || !realFile(file)->pMethods) return code;
    using M = sqlite3_io_methods;
    f->methods = *realFile(file)->pMethods;
    f->methods.xClose = pass<&M::xClose>;
    f->methods.xRead = pass<&M::xRead, void*, int, sqlite3_int64>;
    f->methods.xWrite = failingWrite;
    f->methods.xTruncate = pass<&M::xTruncate, sqlite3_int64>;
    f->methods.xSync = pass<&M::xSync, int>;
    f->methods.xFileSize = pass<&M::xFileSize, sqlite3_int64*>;
    f->methods.xLock = pass<&M::xLock, int>;
    f->methods.xUnlock = pass<&M::xUnlock, int>;
    f->methods.xCheckReservedLock = pass<&M::xCheckReservedLock, int*>;
    f->methods.xFileControl = pass<&M::xFileControl, int, void*>;
    f->methods.xSectorSize = pass<&M::xSectorSize>;
    f->methods.xDeviceCharacteristics = pass<&M::xDeviceCharacteristics>;
    f->methods.xShmMap = pass<&M::xShmMap, int, int, int, void volatile**>;
    f->methods.xShmLock = pass<&M::xShmLock, int, int, int>;
    f->methods.xShmBarrier = [](sqlite3_file* shm) { realFile(shm)->pMethods->xShmBarrier(realFile(shm)); };
    f->methods.xShmUnmap = pass<&M::xShmUnmap, int>;
    f->methods.xFetch = nullptr;
    f->methods.iVersion = 2;
    f->base.pMethods = &f->methods;
    return code;
}

class FileFailureTest : public StoreTest {
  protected:
    FileFailureTest() {
        disk.real = sqlite3_vfs_find(nullptr);
        disk.vfs = *disk.real;
        disk.vfs.zName = "full-disk";
        disk.vfs.szOsFile = static_cast<int>(sizeof(File)) + disk.real->szOsFile;
        disk.vfs.xOpen = openFile;
        disk.writesLeft = -1;
        sqlite3_vfs_register(&disk.vfs, 1);
    }
    ~FileFailureTest() override {
        sqlite3_vfs_unregister(&disk.vfs);
        sqlite3_vfs_register(disk.real, 1);
    }
};

QString integrity(const QString& file) {
    sqlite3* db = nullptr;
    sqlite3_open(file.toUtf8().constData(), &db);
    sqlite3_create_collation(db, "GERMAN", SQLITE_UTF8, nullptr,
                             [](void*, int n, const void* a, int m, const void* b) {
                                 return QString::fromUtf8(static_cast<const char*>(a), n)
                                     .compare(QString::fromUtf8(static_cast<const char*>(b), m));
                             });
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &statement, nullptr);
    QString result;
    if (sqlite3_step(statement) == SQLITE_ROW)
        result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return result;
}

} // namespace

// The disk fills at every single write of a sale, once each: what was told as written is there, what was
// refused is not, and the store goes on as soon as there is space.
TEST_F(FileFailureTest, AFullDiskIsToldAndLosesNothing) {
    Database::CreateDatabase(m_file)->Execute(u"CREATE TABLE N (ID COUNTER, Wert TEXT(200))"_s);
    int written = 0;
    int failures = 0;
    for (int allowed = 0; allowed < 400; allowed = allowed < 40 ? allowed + 1 : allowed + 17) {
        auto db = open();
        disk.hit = false;
        disk.writesLeft = allowed;
        for (int i = 0; i < 30 && !disk.hit; ++i) {
            const int error = errorOf([&] {
                auto rs = db->OpenRecordset(u"N"_s);
                rs->AddNew();
                std::ignore = rs->Long(u"ID");
                rs->Set(u"Wert", QString(200, u'x'));
                rs->Update();
            });
            if (error == 0)
                ++written;
            else {
                EXPECT_EQ(error, 3026);
                ++failures;
            }
        }
        disk.writesLeft = -1;
        EXPECT_EQ(errorOf([&] { db->Execute(u"UPDATE N SET Wert='y' WHERE ID=1"_s); }), 0);
        db->Close();
        ASSERT_EQ(countOf(*open(), u"N"_s), written) << allowed;
        ASSERT_EQ(integrity(m_file), u"ok");
    }
    EXPECT_GT(failures, 30);
}

TEST_F(FileFailureTest, AChangeOfStructureOnAFullDiskLeavesTheOldOne) {
    makeSample();
    for (int allowed = 0, error = 1; error != 0; ++allowed) {
        auto db = open();
        disk.writesLeft = allowed;
        error = errorOf([&] { db->Execute(u"ALTER TABLE T ALTER COLUMN Nummer TEXT(99)"_s); });
        disk.writesLeft = -1;
        const int size = db->FindTableDef(u"T")->Field(u"Nummer")->Size;
        EXPECT_EQ(size, error == 0 ? 99 : 10);
        EXPECT_TRUE(error == 0 || error == 3026) << error;
        EXPECT_EQ(errorOf([&] { db->Execute(u"UPDATE T SET Notiz='geht'"_s); }), 0);
        db = open();
        EXPECT_EQ(db->FindTableDef(u"T")->Field(u"Nummer")->Size, size);
        EXPECT_EQ(countOf(*db, u"T WHERE Notiz='geht'"_s), 3);
        ASSERT_LT(allowed, 200);
    }
}

TEST_F(FileStoreTest, AFileThatMayNotGrowIsAFullDiskToo) {
    Database::CreateDatabase(m_file)->Execute(u"CREATE TABLE N (ID COUNTER, Wert MEMO)"_s);
    QProcess process;
    process.setChildProcessModifier([] {
        const rlimit limit{200000, 200000};
        setrlimit(RLIMIT_FSIZE, &limit);
        signal(SIGXFSZ, SIG_IGN);
    });
    process.start(QStringLiteral(MERIVANE_SQL), {m_file});
    for (int i = 0; i < 10; ++i)
        process.write("INSERT INTO N (Wert) VALUES ('" + QByteArray(50000, 'x') + "');\n");
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().startsWith("3026"));
    EXPECT_EQ(integrity(m_file), u"ok");
    EXPECT_LT(countOf(*open(), u"N"_s), 10);
}

// A till is killed at any moment of its work, over and over: what it was told as done is there.
TEST_F(StoreTest, KilledAtAnyMomentNothingThatWasDoneIsLost) {
    Database::CreateDatabase(m_file)->Execute(u"CREATE TABLE N (ID COUNTER, Wert LONG, Text MEMO)"_s);
    int done = 0;
    int sent = 0;
    for (int round = 0; round < 40; ++round) {
        OtherTill till(m_file);
        // In most rounds it is at work before its end comes, however long it takes to start.
        if (round % 4 != 0) {
            till.say(u"INSERT INTO N (Wert, Text) VALUES (%1, '%2')"_s.arg(sent++).arg(QString(500, u'x')));
            ASSERT_TRUE(till.process().waitForReadyRead(10000));
        }
        QElapsedTimer timer;
        timer.start();
        const int life = 15 + QRandomGenerator::global()->bounded(60);
        const auto listen = [&] {
            for (QByteArray answer = till.hear(); !answer.isEmpty(); answer = till.hear()) {
                ASSERT_TRUE(answer.startsWith("{\"affected\"")) << answer.constData();
                ++done;
            }
        };
        while (timer.elapsed() < life) {
            for (int i = 0; i < 5; ++i, ++sent)
                till.say(u"INSERT INTO N (Wert, Text) VALUES (%1, '%2')"_s.arg(sent).arg(QString(500, u'x')));
            if (till.process().waitForReadyRead(1)) {
                while (till.process().canReadLine()) {
                    ASSERT_TRUE(till.process().readLine().startsWith("{\"affected\""));
                    ++done;
                }
            }
        }
        till.process().kill();
        listen();
        const auto db = open();
        const int there = countOf(*db, u"N"_s);
        ASSERT_GE(there, done) << "round " << round;
        ASSERT_LE(there, sent);
        done = there; // an answer that was on its way counts as done from here on
        ASSERT_EQ(single(*db, u"SELECT COUNT(*) FROM N WHERE LEN(Text)<>500"_s).toInt(), 0);
    }
    if (!TestStore::onServer()) {
        EXPECT_EQ(integrity(m_file), u"ok");
    }
    EXPECT_GT(done, 40);
}
