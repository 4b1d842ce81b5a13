#include "Support.h"

#include <store/ServerPatience.h>
#include <store/Transfer.h>
#include <support/PostgresProxy.h>
#include <support/PostgresServer.h>

#include <QElapsedTimer>

#include <thread>

// A server that takes everything and says nothing: no wait without an end, and none that nobody can cancel.

namespace {

using Cut = PostgresProxy::Cut;
using std::chrono::milliseconds;

/// Somebody who sits beside the wait.
class Watcher : public store::ServerPatience {
  public:
    Watcher()
        : m_before(store::SetServerPatience(this)) {}
    ~Watcher() override { store::SetServerPatience(m_before); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    bool GoOn(const store::ServerWait& wait) override {
        ++asked;
        open = true;
        last = wait;
        if (meanwhile) meanwhile();
        return wait.waited < cancelAfter || (fits && !fits());
    }
    void Over() noexcept override {
        EXPECT_TRUE(open) << "told of an end without a beginning";
        open = false;
    }

    int asked = 0;
    bool open = false;
    milliseconds cancelAfter{3'600'000};
    std::function<bool()> fits; ///< the wait is one to cancel
    store::ServerWait last;
    std::function<void()> meanwhile;

  private:
    store::ServerPatience* m_before;
};

class ServerSilence : public testing::Test {
  protected:
    static void SetUpTestSuite() { server = std::make_unique<PostgresServer>(); }
    static void TearDownTestSuite() { server.reset(); }
    void SetUp() override {
        static int count = 0;
        const QString name = u"stille%1"_s.arg(++count);
        server->createDatabase(name);
        m_direct = server->uri(name);
        m_through = server->uri(name, m_proxy.port());
        auto made = Database::CreateDatabase(m_direct);
        made->Execute(u"CREATE TABLE L (ID COUNTER, Nummer TEXT(20))"_s);
        made->Execute(u"CREATE TABLE A (Nummer TEXT(20), Bestand DOUBLE)"_s);
        made->Execute(u"INSERT INTO A VALUES ('1', 100)"_s);
        m_db = Database::OpenDatabase(m_through);
        m_lines = m_db->OpenRecordset(u"L"_s);
        m_watcher.fits = [this] { return m_proxy.hasCut(); };
        store::SetServerLimit(milliseconds(1500));
    }
    void TearDown() override { store::SetServerLimit(store::usualServerLimit); }

    /// The error's number; what it told is in m_told, how long it took in m_took.
    int timed(const std::function<void()>& act) {
        QElapsedTimer clock;
        clock.start();
        int number = 0;
        m_told.clear();
        try {
            act();
        } catch (const RuntimeError& error) {
            number = error.Number;
            m_told = error.Description;
        }
        m_took = clock.elapsed();
        return number;
    }
    void sell(const QString& number) {
        m_lines->AddNew();
        std::ignore = m_lines->Long(u"ID");
        m_lines->Set(u"Nummer", number);
        m_lines->Update();
    }
    QString onServer(const QString& sql) { return single(*Database::OpenDatabase(m_direct), sql); }
    /// The moment in which what the same click asks is refused unasked.
    static void rest() { std::this_thread::sleep_for(milliseconds(600)); }

    static std::unique_ptr<PostgresServer> server;
    PostgresProxy m_proxy{server->port()};
    QString m_direct, m_through, m_told;
    qint64 m_took = 0;
    Watcher m_watcher;
    std::unique_ptr<Database> m_db;
    std::unique_ptr<Recordset> m_lines;
};
std::unique_ptr<PostgresServer> ServerSilence::server;

} // namespace

TEST_F(ServerSilence, ConnectingIsBoundedToldAndCancelled) {
    m_proxy.setSilent(true);
    for (const QString& address : {m_through, QString(m_through).replace(u"disable"_s, u"prefer"_s)}) {
        EXPECT_EQ(timed([&] { Database::OpenDatabase(address); }), 3151);
        EXPECT_TRUE(m_told.contains(u"ist nicht zu erreichen"_s)) << qPrintable(m_told);
        EXPECT_GE(m_took, 1400);
        EXPECT_LT(m_took, 3500);
    }
    EXPECT_TRUE(m_watcher.last.connecting);
    EXPECT_EQ(m_watcher.last.server, u"127.0.0.1"_s);
    EXPECT_GT(m_watcher.asked, 10);
    EXPECT_FALSE(m_watcher.open);

    m_watcher.cancelAfter = milliseconds(200);
    EXPECT_EQ(timed([&] { Database::OpenDatabase(m_through); }), 3151);
    EXPECT_TRUE(m_told.contains(u"wurde abgebrochen"_s)) << qPrintable(m_told);
    EXPECT_LT(m_took, 1400);
}

TEST_F(ServerSilence, AQuestionIsGivenUpAndNotAskedASecondTime) {
    for (const bool cancelled : {false, true}) {
        m_watcher.cancelAfter = milliseconds(cancelled ? 200 : 3'600'000);
        m_proxy.hush(cancelled ? Cut::BeforeSending : Cut::BeforeAnswer, "FROM \"A\"");
        const auto ask = [&] { return single(*m_db, u"SELECT Bestand FROM A"_s); };
        EXPECT_EQ(timed(ask), 3151);
        EXPECT_TRUE(m_told.contains(cancelled ? u"wurde abgebrochen"_s
                                              : u"hat 1,5 Sekunden lang nicht geantwortet"_s))
            << qPrintable(m_told);
        EXPECT_TRUE(m_told.contains(u"Es wurde nichts gebucht"_s));
        EXPECT_LT(m_took, cancelled ? 1400 : 2900);
        EXPECT_FALSE(m_watcher.last.connecting);
        // What the same click still wants is refused without a wait.
        m_proxy.setSilent(true);
        EXPECT_EQ(timed(ask), 3151);
        EXPECT_LT(m_took, 1000);
        m_proxy.setSilent(false);
        rest();
        EXPECT_EQ(ask(), u"100"_s) << "over a new connection";
    }
    EXPECT_FALSE(m_watcher.open);
}

TEST_F(ServerSilence, AWriteIsADoubtUnlessItsRowCanBeLookedUp) {
    const QString sale = u"UPDATE A SET Bestand = Bestand - 1"_s;
    int stock = 100;
    for (const Cut where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        m_proxy.hush(where, "UPDATE \"A\"");
        EXPECT_EQ(timed([&] { m_db->Execute(sale); }), 3157);
        EXPECT_TRUE(m_told.contains(u"nicht geantwortet, während er schrieb"_s)) << qPrintable(m_told);
        EXPECT_TRUE(m_told.contains(u"steht nicht fest"_s));
        if (where == Cut::BeforeAnswer) --stock;
        EXPECT_EQ(onServer(u"SELECT Bestand FROM A"_s).toInt(), stock);
        rest();
        m_proxy.hush(where, "INSERT INTO \"L\"");
        EXPECT_EQ(timed([&] { sell(u"eins"_s); }), 3157);
        m_lines->CancelUpdate();
        EXPECT_LT(m_took, 2900);
        rest();
        m_watcher.cancelAfter = milliseconds(100);
        m_proxy.hush(where, "INSERT INTO \"L\"");
        EXPECT_EQ(timed([&] { sell(u"zwei"_s); }), 3157);
        EXPECT_TRUE(m_told.contains(u"abgebrochen, während er schrieb"_s)) << qPrintable(m_told);
        m_lines->CancelUpdate();
        m_watcher.cancelAfter = milliseconds(3'600'000);
        rest();
        EXPECT_EQ(timed([&] { sell(u"drei"_s); }), 0) << "the till goes on";
    }
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"4")
        << "two sales, and of each doubt the one that arrived";
}

TEST_F(ServerSilence, ATransactionIsTakenBackOrIsADoubt) {
    m_db->BeginTrans();
    sell(u"eins"_s);
    m_proxy.hush(Cut::BeforeAnswer, "INSERT INTO \"L\"");
    EXPECT_EQ(timed([&] { sell(u"zwei"_s); }), 3151);
    m_lines->CancelUpdate();
    EXPECT_EQ(timed([&] { m_db->Rollback(); }), 0);
    EXPECT_LT(m_took, 2900);
    rest();
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"0");
    m_db->BeginTrans();
    sell(u"drei"_s);
    m_proxy.hush(Cut::BeforeAnswer, "COMMIT");
    EXPECT_EQ(timed([&] { m_db->CommitTrans(); }), 3157);
    rest();
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"1");
    m_db->BeginTrans();
    sell(u"vier"_s);
    m_proxy.setSilent(true);
    EXPECT_EQ(timed([&] { m_db->Rollback(); }), 0);
    EXPECT_LT(m_took, 2900);
    m_proxy.setSilent(false);
    rest();
    EXPECT_EQ(timed([&] { sell(u"fünf"_s); }), 0);
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"2");
}

TEST_F(ServerSilence, RowsThatAreReadOneByOneAndRowsByTheThousand) {
    const QString many = u"SELECT a.Nummer FROM A AS a"_s;
    for (int i = 0; i < 7; ++i) // 128 rows
        m_db->Execute(u"INSERT INTO A (Nummer, Bestand) SELECT Nummer, Bestand FROM A"_s);
    const auto read = [&](const std::function<void()>& atRow) {
        m_db->ForEachRow(
            many, [](const auto&) {}, [&](const auto&) { atRow(); });
    };
    m_proxy.hush(Cut::BeforeSending, "FROM \"A\" AS");
    EXPECT_EQ(timed([&] { read([] {}); }), 3151);
    EXPECT_LT(m_took, 2900);
    rest();
    // Ended early, in front of a server that hears no wish to stop.
    EXPECT_EQ(timed([&] {
                  read([&] {
                      m_proxy.setSilent(true);
                      throw RuntimeError(7, u"genug"_s);
                  });
              }),
              7);
    EXPECT_LT(m_took, 4000);
    m_proxy.setSilent(false);
    rest();
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM A"_s), u"128");
    EXPECT_EQ(single(*m_db, u"SELECT Count(*) FROM A"_s), u"128") << "the connection is whole again";

    // Rows by the thousand.
    m_db->BeginTrans();
    auto writer = store::WriteTable(*m_db, u"L"_s);
    EXPECT_EQ(timed([&] {
                  for (int number = 1; number < 50'000; ++number) {
                      if (number == 1000) m_proxy.setSilent(true);
                      writer->Add({Value(number), Value(u"zwanzig Zeichen lang"_s)});
                  }
                  writer->Finish();
              }),
              3151);
    EXPECT_LT(m_took, 10000);
    writer.reset();
    EXPECT_EQ(timed([&] { m_db->Rollback(); }), 0);
    m_proxy.setSilent(false);
    rest();
    EXPECT_EQ(single(*m_db, u"SELECT Count(*) FROM L"_s), u"0");
}

TEST_F(ServerSilence, ClosingWaitsForNobody) {
    m_proxy.setSilent(true);
    EXPECT_EQ(timed([&] { m_db->Close(); }), 0);
    EXPECT_LT(m_took, 1000);
}

// Who lets events run while a statement is on its way must not get a second one onto the line.
TEST_F(ServerSilence, NothingElseIsAskedWhileAnAnswerIsWaitedFor) {
    m_proxy.setDelay(milliseconds(300));
    int refused = 0;
    m_watcher.meanwhile = [&] {
        EXPECT_EQ(errorOf([&] { m_db->Execute(u"UPDATE A SET Bestand=0"_s); }), 3219);
        ++refused;
    };
    EXPECT_EQ(single(*m_db, u"SELECT Bestand FROM A"_s), u"100"_s);
    EXPECT_GT(refused, 0);
    m_watcher.meanwhile = {};
    m_proxy.setDelay({});
    EXPECT_EQ(onServer(u"SELECT Bestand FROM A"_s), u"100"_s);
}

TEST_F(ServerSilence, AServerThatAnswersSlowlyIsNotGivenUp) {
    m_proxy.setDelay(milliseconds(700));
    EXPECT_EQ(timed([&] { sell(u"eins"_s); }), 0) << "two answers of less than a second";
    EXPECT_GT(m_took, 1000);
    m_proxy.setDelay({});
    EXPECT_FALSE(m_watcher.open);
}

TEST(ServerLimit, StaysWithinItsBounds) {
    store::SetServerLimit(milliseconds(0));
    EXPECT_EQ(store::ServerLimit(), store::leastServerLimit);
    store::SetServerLimit(std::chrono::hours(100));
    EXPECT_EQ(store::ServerLimit(), store::mostServerLimit);
    store::SetServerLimit(store::usualServerLimit);
}
