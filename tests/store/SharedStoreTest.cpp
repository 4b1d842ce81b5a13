#include "Support.h"
#include "sqlite/SqliteFile.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSet>

#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

/// Runs `act` in a process of its own that shares nothing open with this one; gives what it wrote to `out`.
/// What it waits for comes in at `in`.
class Child {
  public:
    explicit Child(const std::function<void(int out, int in)>& act) {
        int ends[2], back[2];
        if (pipe(ends) != 0 || pipe(back) != 0) throw std::runtime_error("pipe");
        m_pid = fork();
        if (m_pid == 0) {
            close(ends[0]);
            close(back[1]);
            int code = 0;
            try {
                act(ends[1], back[0]);
            } catch (...) {
                code = 1;
            }
            _exit(code);
        }
        close(ends[1]);
        close(back[0]);
        m_in = ends[0];
        m_out = back[1];
    }
    ~Child() {
        close(m_in);
        close(m_out);
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    QByteArray read(int bytes) {
        QByteArray text(bytes, '\0');
        const auto got = ::read(m_in, text.data(), static_cast<std::size_t>(bytes));
        return text.left(got > 0 ? got : 0);
    }
    QByteArray readAll() {
        QByteArray all;
        for (QByteArray part = read(4096); !part.isEmpty(); part = read(4096))
            all += part;
        return all;
    }
    /// Ends an await() of the child.
    void go() const { EXPECT_EQ(write(m_out, "g", 1), 1); }
    void kill9() { kill(m_pid, SIGKILL); }
    void wait() { waitpid(m_pid, nullptr, 0); }

  private:
    pid_t m_pid = -1;
    int m_in = -1, m_out = -1;
};

void await(int in) {
    char byte = 0;
    if (read(in, &byte, 1) != 1) _exit(3);
}

/// Returns when this thread of the process sleeps, since it waits for somebody else.
void untilAsleep(pid_t thread) {
    for (;;) {
        QFile stat(u"/proc/self/task/%1/stat"_s.arg(thread));
        ASSERT_TRUE(stat.open(QIODevice::ReadOnly));
        const QByteArray text = stat.readAll();
        if (text.mid(text.lastIndexOf(')') + 2, 1) == "S") return;
        std::this_thread::yield();
    }
}

void tell(int out, const QByteArray& text) {
    if (write(out, text.constData(), static_cast<std::size_t>(text.size())) != text.size()) _exit(2);
}

/// The same for a store that must do without the shared log.
class SharedStoreTest : public StoreTest, public testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        if (GetParam() && TestStore::onServer()) GTEST_SKIP() << "a server has no network folder";
        if (GetParam()) store::setNetworkProbe([](const QString&) { return true; });
        auto db = Database::CreateDatabase(m_file);
        db->Execute(u"CREATE TABLE N (ID COUNTER, Wer TEXT(10), Wert LONG)"_s);
        db->Execute(u"INSERT INTO N (Wer, Wert) VALUES ('x', 0)"_s);
    }
    ~SharedStoreTest() override { store::setNetworkProbe(nullptr); }
};

} // namespace

TEST_P(SharedStoreTest, ExclusiveMeansAlone) {
    EXPECT_EQ(open()->Warning().isEmpty(), !GetParam());
    {
        Child other([&](int out, int) {
            const auto db = open();
            tell(out, "x");
            pause();
        });
        ASSERT_EQ(other.read(1), "x");
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(errorOf([&] { open(true); }), 3045) << "somebody has it open, though idle";
        EXPECT_LT(timer.elapsed(), 1000) << "every start tries this";
        EXPECT_EQ(countOf(*open(), u"N"_s), 1) << "shared stays possible";
        other.kill9();
        other.wait();
        EXPECT_EQ(errorOf([&] { open(true); }), 0) << "the lock dies with the process";
    }
    {
        Child other([&](int out, int in) {
            const auto db = open(true);
            tell(out, "x");
            await(in);
        });
        ASSERT_EQ(other.read(1), "x");
        EXPECT_EQ(errorOf([&] { open(true); }), 3045);
        std::thread release([&, waits = gettid()] {
            untilAsleep(waits);
            other.go();
        });
        EXPECT_EQ(errorOf([&] { EXPECT_EQ(countOf(*open(), u"N"_s), 1); }), 0)
            << "a start waits while another one looks at the password";
        release.join();
        other.wait();
    }
    auto alone = open(true);
    alone->Execute(u"UPDATE N SET Wert=1"_s);
    EXPECT_EQ(errorOf([&] { open(true); }), 3045) << "the same process counts too";
}

TEST_P(SharedStoreTest, AWriteWaitsForAnotherTillAndThenTells3260) {
    auto db = open();
    auto rs = db->OpenRecordset(u"N"_s);
    rs->Edit();
    rs->Set(u"Wert", 5);
    Child other([&](int out, int in) {
        const auto theirs = open();
        theirs->BeginTrans();
        theirs->Execute(u"UPDATE N SET Wert=9"_s);
        tell(out, "x");
        await(in);
        theirs->CommitTrans();
        await(in);
        theirs->BeginTrans();
        theirs->Execute(u"UPDATE N SET Wert=10"_s);
        tell(out, "y");
        pause();
    });
    ASSERT_EQ(other.read(1), "x");
    std::thread release([&, waits = gettid()] {
        untilAsleep(waits);
        other.go();
    });
    db->Execute(u"UPDATE N SET Wer='wir'"_s);
    release.join();
    other.go();
    ASSERT_EQ(other.read(1), "y");
    EXPECT_EQ(errorOf([&] { rs->Update(); }), 3260);
    EXPECT_TRUE(rs->Editing()) << "the cashier may try again";
    other.kill9();
    other.wait();
    rs->Update();
    EXPECT_EQ(single(*db, u"SELECT Wer & Wert FROM N"_s), u"wir5") << "what was not committed is gone";
}

// An open reader must not keep an old view: the till reads, another writes, the till writes.
TEST_P(SharedStoreTest, AReaderNeverStandsInTheWayOfItsOwnWrite) {
    auto db = open();
    db->BeginTrans();
    for (int i = 0; i < 300; ++i)
        db->Execute(u"INSERT INTO N (Wer, Wert) VALUES ('x', %1)"_s.arg(i));
    db->CommitTrans();
    auto rs = db->OpenRecordset(u"N"_s);
    auto joined = db->OpenRecordset(u"SELECT a.ID FROM N AS a INNER JOIN N AS b ON a.ID=b.ID"_s);
    EXPECT_FALSE(joined->Eof());
    OtherTill other(m_file);
    for (int i = 0; i < 20; ++i) {
        rs->MoveNext();
        joined->MoveNext();
        if (!GetParam()) {
            EXPECT_EQ(other.ask(u"UPDATE N SET Wert=7"_s).value(u"affected"_s).toInt(), 301);
        }
        rs->Edit();
        rs->Set(u"Wer", u"wir"_s);
        EXPECT_EQ(errorOf([&] { rs->Update(); }), 0);
    }
    EXPECT_EQ(countOf(*db, u"N WHERE Wer='wir'"_s), 20);
}

TEST_P(SharedStoreTest, NumbersAreGivenOnceBetweenProcesses) {
    constexpr int processes = 3;
    const int each = GetParam() ? 20 : 60; // without the log every write is slow
    std::vector<std::unique_ptr<Child>> tills;
    for (int p = 0; p < processes; ++p)
        tills.push_back(std::make_unique<Child>([&, p](int out, int) {
            const auto db = open();
            auto rs = db->OpenRecordset(u"SELECT * FROM N WHERE 1=0"_s);
            for (int i = 0; i < each; ++i) {
                if (i % 7 == 3) {
                    db->Execute(u"INSERT INTO N (Wer, Wert) VALUES ('sql', 0)"_s);
                    continue;
                }
                rs->AddNew();
                rs->Set(u"Wer", u"p%1"_s.arg(p));
                const int id = rs->Long(u"ID");
                if (i % 5 == 2) {
                    rs->CancelUpdate();
                    continue;
                }
                rs->Update();
                tell(out, QByteArray::number(id) + '\n');
            }
        }));
    QSet<QByteArray> given;
    int count = 0;
    for (const auto& till : tills) {
        for (const QByteArray& id : till->readAll().trimmed().split('\n')) {
            given.insert(id);
            ++count;
        }
    }
    EXPECT_EQ(count, given.size());
    EXPECT_GT(count, processes * each / 2);
    auto db = open();
    for (const QByteArray& id : given)
        EXPECT_TRUE(single(*db, u"SELECT Wer FROM N WHERE ID="_s + QString::fromLatin1(id)).startsWith(u'p'))
            << id.constData();
}

INSTANTIATE_TEST_SUITE_P(LocalAndNetwork, SharedStoreTest, testing::Bool(),
                         [](const auto& of) { return of.param ? "Network" : "Local"; });
