#include "Shops.h"

#include <app/DemoShop.h>
#include <store/StoreName.h>
#include <support/PostgresProxy.h>
#include <support/PostgresServer.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <moving/StoreMove.h>
#include <random>

using moving::Progress;
using moving::StoreMove;

namespace {

class ServerMoveTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!PostgresServer::available()) GTEST_SKIP() << "no server installed";
        m_server = std::make_unique<PostgresServer>();
        m_server->createDatabase(u"laden"_s);
        m_uri = m_server->uri(u"laden"_s);
    }

    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }

    /// Moves and expects both sides to be equal.
    static void move(const QString& source, const QString& target) {
        const moving::MoveResult result = StoreMove(source, target).run();
        for (const moving::ComparedTable& table : result.tables)
            EXPECT_EQ(QString(), table.differences.join(u' ')) << table.name.toStdString();
        EXPECT_TRUE(result.equal());
    }

    QTemporaryDir m_folder;
    std::unique_ptr<PostgresServer> m_server;
    QString m_uri;
};

TEST_F(ServerMoveTest, EveryTypeGoesThereAndComesBack) {
    makeExtremes(*Database::CreateDatabase(file(u"alt.mdb"_s)));
    move(file(u"alt.mdb"_s), m_uri);
    const QByteArray before = dump(*Database::OpenDatabase(file(u"alt.mdb"_s)));
    EXPECT_EQ(before, dump(*Database::OpenDatabase(m_uri)));
    move(m_uri, file(u"neu.mdb"_s));
    const QString connect = u";PWD="_s + QString::fromUtf16(store::newPassword);
    const auto back = Database::OpenDatabase(file(u"neu.mdb"_s), false, false, connect);
    EXPECT_EQ(before, dump(*back));
    expectRulesOfExtremes(*back);
    expectRulesOfExtremes(*Database::OpenDatabase(m_uri));
}

TEST_F(ServerMoveTest, TheDemoShopComesBackAsItWent) {
    demo::createShop(file(u"laden"_s));
    const QString source = file(u"laden/daten/Merivane.mdb"_s);
    move(source, m_uri);
    m_server->createDatabase(u"zweiter"_s);
    move(m_uri, m_server->uri(u"zweiter"_s));
    move(m_server->uri(u"zweiter"_s), file(u"neu.mdb"_s));
    const QString connect = u";PWD="_s + QString::fromUtf16(store::newPassword);
    EXPECT_EQ(dump(*Database::OpenDatabase(source)),
              dump(*Database::OpenDatabase(file(u"neu.mdb"_s), false, false, connect)));
}

TEST_F(ServerMoveTest, ARestoredBackupIsTheSameShop) {
    makeExtremes(*Database::CreateDatabase(m_uri));
    m_server->createDatabase(u"probe"_s);
    const QString backup = file(u"laden.dump"_s), probe = m_server->uri(u"probe"_s);
    EXPECT_EQ(0, QProcess::execute(u"pg_dump"_s, {u"-Fc"_s, u"-f"_s, backup, m_uri}));
    EXPECT_EQ(0, QProcess::execute(u"pg_restore"_s, {u"--exit-on-error"_s, u"-d"_s, probe, backup}));
    const auto restored = Database::OpenDatabase(probe);
    EXPECT_EQ(dump(*Database::OpenDatabase(m_uri)), dump(*restored));
    expectRulesOfExtremes(*restored);
}

TEST_F(ServerMoveTest, OnlyAnEmptyDatabaseIsTaken) {
    makeShop(file(u"alt.mdb"_s), 10);
    EXPECT_EQ(3024,
              errorOf([&] { std::ignore = StoreMove(file(u"alt.mdb"_s), m_server->uri(u"fehlt"_s)).run(); }));
    m_server->createDatabase(u"fremd"_s);
    m_server->sql(u"fremd"_s, u"CREATE TABLE public.brief (a int); INSERT INTO brief VALUES (7)"_s);
    EXPECT_EQ(3343,
              errorOf([&] { std::ignore = StoreMove(file(u"alt.mdb"_s), m_server->uri(u"fremd"_s)).run(); }));
    EXPECT_EQ(u"1"_s,
              m_server->sql(u"fremd"_s, u"SELECT count(*) FROM pg_tables WHERE schemaname='public'"_s));

    move(file(u"alt.mdb"_s), m_uri);
    EXPECT_EQ(3204, errorOf([&] { std::ignore = StoreMove(file(u"alt.mdb"_s), m_uri).run(); }));
    EXPECT_EQ(3219, errorOf([&] { std::ignore = StoreMove(m_uri, m_uri).run(); }));
    const auto db = Database::OpenDatabase(m_uri);
    db->Execute(u"DELETE FROM Artikel"_s);
    db->Execute(u"DELETE FROM Kunden"_s);
    db->Close();
    move(file(u"alt.mdb"_s), m_uri);
}

TEST_F(ServerMoveTest, WhatTheServerCannotKeepIsToldWithItsTable) {
    {
        auto db = Database::CreateDatabase(file(u"alt.mdb"_s));
        db->Execute(u"CREATE TABLE Notizen (Inhalt MEMO)"_s);
        db->BeginTrans();
        const auto writer = store::WriteTable(*db, u"Notizen"_s);
        writer->Add({QString(u"a\0b"_s)});
        writer->Finish();
        db->CommitTrans();
    }
    try {
        std::ignore = StoreMove(file(u"alt.mdb"_s), m_uri).run();
        FAIL() << "moved a text that the server cannot keep";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(3421, error.Number);
        EXPECT_TRUE(error.Description.startsWith(u"Tabelle Notizen, bis Zeile 1: "_s)) << error.what();
    }
    EXPECT_EQ(3734, errorOf([&] { std::ignore = Database::OpenDatabase(m_uri); }));
}

TEST_F(ServerMoveTest, NobodySellsOnEitherSideMeanwhile) {
    makeShop(m_uri, 2000);
    {
        const auto till = Database::OpenDatabase(m_uri);
        EXPECT_EQ(3045, errorOf([&] { std::ignore = StoreMove(m_uri, file(u"neu.mdb"_s)).run(); }));
    }
    m_server->createDatabase(u"zweiter"_s);
    const QString target = m_server->uri(u"zweiter"_s);
    int tried = 0;
    const auto result = StoreMove(m_uri, target).run([&](const Progress&) {
        if (++tried != 3) return true;
        for (const QString& place : {m_uri, target})
            EXPECT_EQ(3045, errorOf([&] { std::ignore = Database::OpenDatabase(place, true); }));
        return true;
    });
    EXPECT_TRUE(result.equal());
    EXPECT_GE(tried, 3);
}

TEST_F(ServerMoveTest, ACutConnectionLeavesAMoveThatGoesOn) {
    makeShop(file(u"alt.mdb"_s), 5000);
    PostgresProxy proxy(m_server->port());
    const QString far = m_server->uri(u"laden"_s, proxy.port());
    EXPECT_EQ(3151, errorOf([&] {
                  std::ignore = StoreMove(file(u"alt.mdb"_s), far).run([&](const Progress& progress) {
                      if (progress.table == u"Artikel" && progress.row == 2500) proxy.cutAll();
                      return true;
                  });
              }));
    EXPECT_EQ(3734, errorOf([&] { std::ignore = Database::OpenDatabase(m_uri); }));
    move(file(u"alt.mdb"_s), far);
    const QByteArray wanted = dump(*Database::OpenDatabase(file(u"alt.mdb"_s)));
    EXPECT_EQ(wanted, dump(*Database::OpenDatabase(m_uri)));

    // What only reads is asked again.
    const auto back = StoreMove(far, file(u"neu.mdb"_s)).run([&](const Progress& progress) {
        if (progress.table == u"Artikel" && progress.row == 2500) proxy.cutAll();
        return true;
    });
    EXPECT_TRUE(back.equal());
    const QString connect = u";PWD="_s + QString::fromUtf16(store::newPassword);
    EXPECT_EQ(wanted, dump(*Database::OpenDatabase(file(u"neu.mdb"_s), false, false, connect)));
}

TEST_F(ServerMoveTest, KilledOnTheWayThereItIsCompletedByTheNextCall) {
    makeShop(file(u"alt.mdb"_s), 20000);
    const QByteArray wanted = dump(*Database::OpenDatabase(file(u"alt.mdb"_s)));
    qputenv("PGPASSWORD", QString::fromUtf16(PostgresServer::Password).toUtf8());
    const QString uri = store::withoutPassword(m_uri);
    std::mt19937 random(4711);
    std::uniform_int_distribution<unsigned long> microseconds(0, 500000);
    int interrupted = 0;
    for (int round = 0; round < 5; ++round) {
        QProcess process;
        process.start(QStringLiteral(MERIVANE_UMZUG), {file(u"alt.mdb"_s), uri});
        const QByteArray told = readToTheMiddle(process);
        QThread::usleep(microseconds(random));
        process.kill();
        ASSERT_TRUE(process.waitForFinished(20000));
        // The server notices a little later that nobody is there.
        int opened = 3045;
        QElapsedTimer timer;
        timer.start();
        while (opened == 3045 && timer.elapsed() < 20000)
            opened = errorOf([&] { std::ignore = Database::OpenDatabase(uri); });
        if (opened == 3734) {
            ++interrupted;
            continue; // once more, on what is there
        }
        ASSERT_EQ(0, opened) << told.toStdString();
        break;
    }
    EXPECT_GT(interrupted, 0);
    if (errorOf([&] { std::ignore = Database::OpenDatabase(uri); }) != 0) move(file(u"alt.mdb"_s), uri);
    EXPECT_EQ(wanted, dump(*Database::OpenDatabase(uri)));
}

} // namespace
