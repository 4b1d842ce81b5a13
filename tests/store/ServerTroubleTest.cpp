#include "Support.h"

#include <support/PostgresProxy.h>
#include <support/PostgresServer.h>
#include <text/DetailedError.h>

#include <QElapsedTimer>

#include <latch>
#include <thread>

namespace {

using Cut = PostgresProxy::Cut;

/// A till whose line to the server can be cut.
class ServerTroubleTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { server = std::make_unique<PostgresServer>(); }
    static void TearDownTestSuite() { server.reset(); }
    void SetUp() override {
        static int count = 0;
        const QString name = u"laden%1"_s.arg(++count);
        server->createDatabase(name);
        m_direct = server->uri(name);
        m_through = server->uri(name, m_proxy.port());
        auto made = Database::CreateDatabase(m_direct);
        made->Execute(u"CREATE TABLE L (ID COUNTER, Nummer TEXT(20), Menge DOUBLE)"_s);
        made->Execute(u"CREATE TABLE A (Nummer TEXT(20), Bestand DOUBLE)"_s);
        made->Execute(u"INSERT INTO A VALUES ('1', 100)"_s);
        m_db = Database::OpenDatabase(m_through);
        m_lines = m_db->OpenRecordset(u"L"_s);
    }
    /// Writes a line as the till does; the error's number.
    int sell(const QString& number) {
        return errorOf([&] {
            m_lines->AddNew();
            std::ignore = m_lines->Long(u"ID");
            m_lines->Set(u"Nummer", number);
            m_lines->Set(u"Menge", 1);
            m_lines->Update();
        });
    }
    QString onServer(const QString& sql) { return single(*Database::OpenDatabase(m_direct), sql); }

    static std::unique_ptr<PostgresServer> server;
    PostgresProxy m_proxy{server->port()};
    QString m_direct, m_through;
    std::unique_ptr<Database> m_db;
    std::unique_ptr<Recordset> m_lines;
};
std::unique_ptr<PostgresServer> ServerTroubleTest::server;

} // namespace

TEST_F(ServerTroubleTest, ALineThatBrokeBetweenTwoActionsIsNotNoticed) {
    EXPECT_EQ(sell(u"eins"_s), 0);
    m_proxy.cutAll();
    EXPECT_EQ(sell(u"zwei"_s), 0);
    m_proxy.cutAll();
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"UPDATE A SET Bestand=99"_s); }), 0);
    m_proxy.cutAll();
    m_lines->FindFirst(u"Nummer='zwei'"_s);
    EXPECT_FALSE(m_lines->NoMatch());
    m_proxy.cutAll();
    EXPECT_EQ(errorOf([&] {
                  m_lines->Edit();
                  m_proxy.cutAll();
                  m_lines->Set(u"Menge", 7);
                  m_lines->Update();
              }),
              0);
    m_proxy.cutAll();
    EXPECT_EQ(errorOf([&] { m_db->BeginTrans(); }), 0);
    m_db->Rollback();
    EXPECT_EQ(onServer(u"SELECT Sum(Menge) FROM L"_s), u"8");
}

TEST_F(ServerTroubleTest, AQuestionWhoseAnswerIsLostIsAskedAgain) {
    EXPECT_EQ(sell(u"eins"_s), 0);
    for (const Cut where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        m_proxy.cut(where, "\"Nummer\"");
        m_lines->FindFirst(u"Nummer='eins'"_s);
        EXPECT_FALSE(m_lines->NoMatch());
        m_proxy.cut(where, "FROM \"A\"");
        EXPECT_EQ(single(*m_db, u"SELECT Bestand FROM A"_s), u"100");
        EXPECT_TRUE(m_proxy.hasCut());
        int rows = 0;
        m_proxy.cut(where, "SELECT");
        m_db->ForEachRow(
            u"SELECT Nummer FROM A"_s, [](const auto&) {}, [&](const auto&) { ++rows; });
        EXPECT_EQ(rows, 1);
        EXPECT_TRUE(m_proxy.hasCut());
    }
}

// The number of a line is its own, so that it can be looked up whether it arrived.
TEST_F(ServerTroubleTest, ALineIsWrittenOnceHoweverItsWayBreaks) {
    int count = 0;
    for (const Cut where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        m_proxy.cut(where, "INSERT INTO \"L\"");
        EXPECT_EQ(sell(QString::number(++count)), 0);
        EXPECT_TRUE(m_proxy.hasCut());
        EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s).toInt(), count);
    }
    m_lines->Requery();
    m_lines->MoveLast();
    EXPECT_EQ(m_lines->RecordCount(), 2);
}

TEST_F(ServerTroubleTest, AChangeOfARowIsRepeatedSinceThatDoublesNothing) {
    EXPECT_EQ(sell(u"eins"_s), 0);
    for (const Cut where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        m_lines->Requery();
        m_lines->Edit();
        m_lines->Set(u"Menge", 5);
        m_proxy.cut(where, "UPDATE \"L\"");
        EXPECT_EQ(errorOf([&] { m_lines->Update(); }), 0);
        EXPECT_EQ(onServer(u"SELECT Menge FROM L"_s), u"5");
    }
    for (const Cut where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        EXPECT_EQ(sell(u"mehr"_s), 0);
        m_lines->FindFirst(u"Nummer='mehr'"_s);
        m_proxy.cut(where, "DELETE FROM \"L\"");
        EXPECT_EQ(errorOf([&] { m_lines->Delete(); }), 0);
        EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"1");
    }
}

TEST_F(ServerTroubleTest, AMovementOfStockIsNeverDoubled) {
    const QString sale = u"UPDATE A SET Bestand = Bestand - 1 WHERE Nummer='1'"_s;
    EXPECT_EQ(m_db->Execute(sale), 1);
    for (const Cut where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        const int before = onServer(u"SELECT Bestand FROM A"_s).toInt();
        m_proxy.cut(where, "UPDATE \"A\"");
        EXPECT_EQ(errorOf([&] { m_db->Execute(sale); }), 3157) << "nobody knows, so a person has to look";
        EXPECT_EQ(onServer(u"SELECT Bestand FROM A"_s).toInt(),
                  where == Cut::BeforeAnswer ? before - 1 : before);
        EXPECT_EQ(errorOf([&] { m_db->Execute(u"UPDATE A SET Bestand = Bestand"_s); }), 0)
            << "the till goes on";
    }
}

TEST_F(ServerTroubleTest, WhatWasAlreadySentIsADoubtWhenNobodyCanBeAsked) {
    EXPECT_EQ(sell(u"eins"_s), 0);
    const auto cut = [&](const QByteArray& statement, const auto& act) {
        m_proxy.cut(Cut::BeforeAnswer, statement, 0, PostgresProxy::After::Deny);
        const int told = errorOf(act);
        m_lines->CancelUpdate();
        m_proxy.deny(false);
        return told;
    };
    m_lines->Requery();
    EXPECT_EQ(cut("INSERT INTO \"L\"",
                  [&] {
                      m_lines->AddNew();
                      std::ignore = m_lines->Long(u"ID");
                      m_lines->Set(u"Menge", 2);
                      m_lines->Update();
                  }),
              3157);
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"2") << "it is there";
    m_lines->Requery();
    EXPECT_EQ(cut("UPDATE \"L\"",
                  [&] {
                      m_lines->Edit();
                      m_lines->Set(u"Menge", 5);
                      m_lines->Update();
                  }),
              3157);
    EXPECT_EQ(cut("DELETE FROM \"L\"", [&] { m_db->Execute(u"DELETE FROM L"_s); }), 3157);
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"0");
    EXPECT_EQ(cut("FROM \"A\"", [&] { std::ignore = single(*m_db, u"SELECT Bestand FROM A"_s); }), 3029)
        << "a question changes nothing";
}

TEST_F(ServerTroubleTest, WhatIsWrittenTogetherIsThereTogetherOrNotAtAll) {
    const QStringList sale{u"UPDATE A SET Bestand = Bestand - 1 WHERE Nummer='1'"_s,
                           u"UPDATE L SET Menge = Menge + 1"_s};
    EXPECT_EQ(sell(u"eins"_s), 0);
    m_db->ExecuteTogether(sale);
    const qint64 before = m_db->RoundTrips();
    m_db->ExecuteTogether(sale);
    EXPECT_EQ(m_db->RoundTrips() - before, 1);
    const auto state = [&] {
        return onServer(u"SELECT Bestand FROM A"_s) + u' ' + onServer(u"SELECT Menge FROM L"_s);
    };
    EXPECT_EQ(state(), u"98 3");
    for (const char* statement : {"UPDATE \"A\"", "UPDATE \"L\""}) {
        const QString was = state();
        m_proxy.cut(Cut::BeforeSending, statement);
        EXPECT_EQ(errorOf([&] { m_db->ExecuteTogether(sale); }), 3157);
        EXPECT_EQ(state(), was);
    }
    m_proxy.cut(Cut::BeforeAnswer, "UPDATE \"A\"");
    EXPECT_EQ(errorOf([&] { m_db->ExecuteTogether(sale); }), 3157);
    EXPECT_EQ(state(), u"97 4");
    const QStringList end{u"DELETE FROM L WHERE ID<100"_s, u"DELETE FROM A WHERE Nummer='1'"_s};
    m_proxy.cut(Cut::BeforeAnswer, "DELETE");
    EXPECT_EQ(errorOf([&] { m_db->ExecuteTogether(end); }), 0) << "what is gone may go once more";
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"0");
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM A"_s), u"0");
}

// A server that restarts, or a machine between that closes what comes.
TEST_F(ServerTroubleTest, AClosedConnectionIsTriedForFiveSecondsAndNotCalledAFaultOfTls) {
    QString through = m_through;
    through.replace(u"sslmode=disable"_s, u"sslmode=prefer"_s);
    auto db = Database::OpenDatabase(through);
    const auto ask = [&] { return errorOf([&] { std::ignore = single(*db, u"SELECT Bestand FROM A"_s); }); };
    EXPECT_EQ(ask(), 0);
    m_proxy.refuse(true);
    m_proxy.cutAll();
    QElapsedTimer clock;
    clock.start();
    QString told, details;
    try {
        std::ignore = single(*db, u"SELECT Bestand FROM A"_s);
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number, 3151);
        told = error.Description;
        details = DetailsOf(error);
    }
    EXPECT_GT(clock.elapsed(), 4500);
    EXPECT_LT(clock.elapsed(), 8000);
    EXPECT_TRUE(told.contains(u"ist nicht zu erreichen."_s)) << qPrintable(told);
    EXPECT_EQ(details, u"die Gegenseite schließt die Verbindung"_s);
    m_proxy.refuse(false);
    EXPECT_EQ(ask(), 0);

    m_proxy.refuse(true);
    m_proxy.cutAll();
    std::thread back([&] {
        std::this_thread::sleep_for(std::chrono::seconds(2));
        m_proxy.refuse(false);
    });
    EXPECT_EQ(ask(), 0) << "it came back in time";
    back.join();
}

TEST_F(ServerTroubleTest, ATransactionGoesWholeWithItsLine) {
    m_db->BeginTrans();
    EXPECT_EQ(sell(u"eins"_s), 0);
    m_proxy.cutAll();
    EXPECT_EQ(sell(u"zwei"_s), 3151);
    EXPECT_EQ(sell(u"drei"_s), 3151) << "not as a sale of its own either";
    EXPECT_EQ(errorOf([&] { m_db->CommitTrans(); }), 3151);
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"0");
    m_db->BeginTrans();
    EXPECT_EQ(sell(u"vier"_s), 0);
    m_proxy.cut(Cut::BeforeAnswer, "INSERT INTO \"L\"");
    EXPECT_EQ(sell(u"fünf"_s), 3151);
    EXPECT_EQ(errorOf([&] { m_db->Rollback(); }), 0);
    m_db->BeginTrans();
    EXPECT_EQ(sell(u"sechs"_s), 0);
    m_proxy.cut(Cut::BeforeAnswer, "COMMIT");
    EXPECT_EQ(errorOf([&] { m_db->CommitTrans(); }), 3157);
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"1");
    EXPECT_EQ(sell(u"sieben"_s), 0);
}

TEST_F(ServerTroubleTest, AServerThatIsAwayIsToldAndTheTillGoesOnWhenItIsBack) {
    EXPECT_EQ(sell(u"eins"_s), 0);
    server->stop();
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(sell(u"zwei"_s), 3151);
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_TRUE(m_lines->Editing()) << "the cashier may try again";
    clock.start();
    EXPECT_EQ(sell(u"drei"_s), 3151);
    EXPECT_LT(clock.elapsed(), 2000) << "only the first failure takes its time";
    EXPECT_EQ(errorOf([&] { Database::OpenDatabase(m_direct); }), 3151);
    server->start();
    EXPECT_EQ(sell(u"vier"_s), 0);

    // One that comes back within seconds is not even noticed.
    server->stop(PostgresServer::Stop::Immediate);
    std::latch begun(1);
    std::thread till([&] {
        begun.count_down();
        EXPECT_EQ(sell(u"fünf"_s), 0);
    });
    begun.wait();
    server->start(); // takes longer than the first try of the sale
    till.join();
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"3");
}

TEST_F(ServerTroubleTest, AConnectionThatTheServerEndsIsMadeAnew) {
    const auto end = [&] {
        server->sql(u"postgres"_s, u"SELECT pg_terminate_backend(pid) FROM pg_stat_activity "
                                   "WHERE application_name='Merivane'"_s);
    };
    EXPECT_EQ(sell(u"eins"_s), 0);
    end();
    EXPECT_EQ(sell(u"zwei"_s), 0);
    m_lines->Requery();
    end();
    EXPECT_FALSE(m_lines->Eof());
    EXPECT_EQ(onServer(u"SELECT Count(*) FROM L"_s), u"2");
}

TEST_F(ServerTroubleTest, WhatTheServerRefusesIsToldByItsNumber) {
    const auto refuse = [&](const QString& state) {
        server->sql(m_direct.section(u'/', 3).section(u'?', 0, 0),
                    u"CREATE OR REPLACE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE "
                    "EXCEPTION 'x' USING ERRCODE='%1'; END $$; DROP TRIGGER IF EXISTS t ON \"A\"; "
                    "CREATE TRIGGER t BEFORE UPDATE ON \"A\" FOR EACH ROW EXECUTE FUNCTION f()"_s.arg(state));
        return errorOf([&] { m_db->Execute(u"UPDATE A SET Bestand=1"_s); });
    };
    EXPECT_EQ(refuse(u"53100"_s), 3026) << "out of space";
    EXPECT_EQ(refuse(u"40P01"_s), 3260) << "deadlock";
    EXPECT_EQ(refuse(u"42501"_s), 3112) << "rights";
    EXPECT_EQ(refuse(u"57014"_s), 3059) << "cancelled";
    EXPECT_EQ(refuse(u"25006"_s), 3027) << "read-only";
    EXPECT_EQ(refuse(u"J0013"_s), 13) << "a function of the dialect";
    EXPECT_EQ(refuse(u"XX001"_s), 3049) << "damaged";
    EXPECT_EQ(refuse(u"42000"_s), 3000) << "anything else";
}
