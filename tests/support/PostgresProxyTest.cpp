#include <support/PostgresProxy.h>
#include <support/PostgresServer.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>
#include <libpq-fe.h>

using namespace Qt::StringLiterals;

namespace {

/// A bare client with one prepared statement.
class Client {
  public:
    explicit Client(const QString& uri)
        : m_connection(PQconnectdb(uri.toUtf8().constData())) {}
    ~Client() { PQfinish(m_connection); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] bool connected() const { return PQstatus(m_connection) == CONNECTION_OK; }
    bool prepare(const char* text) { return done(PQprepare(m_connection, "s", text, 0, nullptr)); }
    bool run() { return done(PQexecPrepared(m_connection, "s", 0, nullptr, nullptr, nullptr, 0)); }
    bool run(const char* text) { return done(PQexec(m_connection, text)); }

  private:
    static bool done(PGresult* result) {
        const auto status = PQresultStatus(result);
        PQclear(result);
        return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
    }
    PGconn* m_connection;
};

TEST(PostgresProxyTest, DelaysCountsAndCutsWhereItIsTold) {
    if (!PostgresServer::available()) GTEST_SKIP() << "no server installed";
    PostgresServer server;
    server.createDatabase(u"laden"_s);
    PostgresProxy proxy(server.port());
    const QString uri = server.uri(u"laden"_s, proxy.port());
    const auto rows = [&] { return server.sql(u"laden"_s, u"SELECT count(*) FROM t"_s).toInt(); };
    {
        Client client(uri);
        ASSERT_TRUE(client.run("CREATE TABLE t (n int)") && client.prepare("INSERT INTO t VALUES (1)"));
        const int before = proxy.roundTrips();
        EXPECT_TRUE(client.run() && client.run());
        EXPECT_EQ(proxy.roundTrips() - before, 2);
        EXPECT_EQ(rows(), 2);

        QElapsedTimer timer;
        proxy.setDelay(std::chrono::milliseconds(40));
        timer.start();
        EXPECT_TRUE(client.run("SELECT 1"));
        EXPECT_GE(timer.elapsed(), 40);
        proxy.setDelay({});

        proxy.cut(PostgresProxy::Cut::BeforeSending, "insert into T", 1);
        EXPECT_TRUE(client.run());
        EXPECT_FALSE(proxy.hasCut());
        EXPECT_FALSE(client.run());
        EXPECT_TRUE(proxy.hasCut());
        EXPECT_EQ(rows(), 3) << "the second was never sent";
    }
    {
        Client client(uri);
        ASSERT_TRUE(client.prepare("INSERT INTO t VALUES (1)"));
        proxy.cut(PostgresProxy::Cut::BeforeAnswer, "insert");
        EXPECT_FALSE(client.run());
        EXPECT_EQ(rows(), 4) << "it was done, only the answer is lost";
    }
    Client client(uri);
    ASSERT_TRUE(client.run("SELECT 1"));
    proxy.cutAll();
    EXPECT_FALSE(client.run("SELECT 1"));
    proxy.refuse(true);
    EXPECT_FALSE(Client(uri).connected());
    proxy.refuse(false);
    server.stop();
    EXPECT_FALSE(Client(uri).connected());
    server.start();
    EXPECT_TRUE(Client(uri).connected());
    EXPECT_EQ(rows(), 4);
}

} // namespace
