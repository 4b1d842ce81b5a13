#include "ServerTill.h"

#include <register/IncompleteReceipts.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

#include <thread>

// What a cashier meets when the server or the line to it fails: no line that was shown is lost, nothing is
// booked twice, and the message says what is safe.

namespace {

using Cut = PostgresProxy::Cut;

class ServerTrouble : public ServerTill {
  protected:
    void SetUp() override {
        ServerTill::SetUp();
        gShowWechselgeldDialog = false;
    }
    /// The rows of this till as they really are.
    [[nodiscard]] int rows() const { return onServer(u"SELECT count(*) FROM \"Bestellung\""_s).toInt(); }
    [[nodiscard]] int receipts() const { return onServer(u"SELECT count(*) FROM \"Rechnung\""_s).toInt(); }
    [[nodiscard]] int details() const {
        return onServer(u"SELECT count(*) FROM \"RechnungsDetail\""_s).toInt();
    }
    [[nodiscard]] QString stock() const {
        return onServer(
            u"SELECT string_agg(\"IstBestand\"::text, ' ' ORDER BY \"Nummer\") FROM \"Artikel\""_s);
    }
    void expectSale(const QStringList& codes) {
        ASSERT_EQ(reg->basket().rowCount(), codes.size());
        for (int row = 0; row < codes.size(); ++row)
            EXPECT_EQ(reg->basket().cell(row, till::Basket::ArtikelNr), codes[row]);
        EXPECT_EQ(rows(), codes.size());
    }
};

TEST_F(ServerTrouble, AServerThatIsStartedAnewBetweenTwoLinesIsNotEvenNoticed) {
    scan(u"1"_s);
    for (const auto how : {PostgresServer::Stop::Fast, PostgresServer::Stop::Immediate}) {
        server->stop(how);
        server->start();
        scan(u"2"_s);
    }
    proxy->cutAll();
    scan(u"1"_s);
    expectSale({u"1"_s, u"2"_s, u"2"_s, u"1"_s});
    proxy->cutAll();
    reg->cmdTotal_Click();
    EXPECT_EQ(receipts(), 1);
    EXPECT_EQ(details(), 4);
    EXPECT_EQ(stock(), u"98 98"_s);
}

TEST_F(ServerTrouble, WithoutAServerTheLineIsRefusedAndComesWithTheServer) {
    scan(u"1"_s);
    server->stop();
    dialogs.expectError(3151);
    scan(u"2"_s);
    dialogs.expectError(3151);
    QElapsedTimer timer;
    timer.start();
    reg->cmdTotal_Click();
    dialogs.verify();
    EXPECT_LT(timer.elapsed(), 3000) << "the server was waited for once";
    EXPECT_EQ(list(), QStringList{u"1|Tee|1|1 Stück|10,00|10,00"_s}) << "what is on the screen stays there";
    EXPECT_EQ(reg->basket().Gesamt(), u"10,00"_s);
    server->start();
    expectSale({u"1"_s});
    reg->cmdEnter_Click(); // the entry still stands in its box
    expectSale({u"1"_s, u"2"_s});
    reg->cmdTotal_Click();
    EXPECT_EQ(receipts(), 1);
    EXPECT_EQ(stock(), u"99 99"_s);
}

TEST_F(ServerTrouble, ALineCutOffWhileItIsWrittenIsThereOnce) {
    QStringList codes;
    for (const auto where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        for (const char* statement :
             {"FROM \"Artikel\"", "nextval", "INSERT INTO \"Bestellung\"", "AktionsPreise"}) {
            proxy->cut(where, statement);
            scan(u"1"_s);
            EXPECT_TRUE(proxy->hasCut()) << statement;
            codes << u"1"_s;
            expectSale(codes);
        }
        proxy->cut(where, "UPDATE \"Bestellung\"");
        type(u"2+"_s);
        EXPECT_TRUE(proxy->hasCut());
        EXPECT_EQ(onServer(u"SELECT max(\"Buchungs_Menge\") FROM \"Bestellung\""_s), u"3"_s);
        reg->cmdStorno_Click();
        codes.removeLast();
        expectSale(codes);
    }
}

TEST_F(ServerTrouble, ABookingThatIsCutOffIsWholeAllTheSame) {
    for (const auto where : {Cut::BeforeSending, Cut::BeforeAnswer}) {
        for (const char* statement :
             {"INSERT INTO \"BuchungsMarke\"", "INSERT INTO \"Rechnung\"", "FROM \"ArtikelLieferanten\"",
              "INSERT INTO \"RechnungsDetail\"", "UPDATE \"Artikel\"", "UPDATE \"BuchungsMarke\"",
              "UPDATE \"ArtikelSerienNummern\"", "DELETE FROM \"Bestellung\"",
              "DELETE FROM \"BuchungsMarke\""}) {
            SCOPED_TRACE(statement);
            for (const QString& code : {u"1"_s, u"2"_s, u"1"_s})
                scan(code);
            const int receiptsBefore = receipts(), detailsBefore = details();
            const bool once = QByteArray(statement).contains("Marke") ||
                              QByteArray(statement).contains("Best") ||
                              QByteArray(statement).contains("\"Rechnung\"");
            const bool counts = QByteArray(statement).startsWith("UPDATE \"Bu");
            proxy->cut(where, statement, once && !counts ? 0 : 1); // in the middle of the second line
            reg->cmdTotal_Click();
            EXPECT_TRUE(proxy->hasCut());
            expectSale({});
            EXPECT_EQ(receipts(), receiptsBefore + 1);
            EXPECT_EQ(details(), detailsBefore + 3);
            EXPECT_EQ(stock(), u"%1 %2"_s.arg(100 - 2 * receipts()).arg(100 - receipts()));
            EXPECT_EQ(onServer(u"SELECT count(*) FROM \"BuchungsMarke\""_s), u"0");
        }
    }
}

TEST_F(ServerTrouble, ABookingWhoseServerStaysAwayIsToldAndKeepsItsLines) {
    for (const QString& code : {u"1"_s, u"2"_s, u"1"_s})
        scan(code);
    proxy->cut(Cut::BeforeAnswer, "UPDATE \"Artikel\"", 1, PostgresProxy::After::Close);
    dialogs.expectError(3157);
    dialogs.expectMsgBox(u"Beim Erstellen der Rechnung ist ein Fehler aufgetreten."_s).expectError(3151);
    reg->cmdTotal_Click();
    dialogs.verify();
    proxy->refuse(false);
    expectSale({u"1"_s, u"2"_s, u"1"_s});
    reg->cmdTotal_Click(); // the cashier decided so; the begun receipt was told
    expectSale({});
    EXPECT_EQ(receipts(), 2);
    ASSERT_EQ(till::IncompleteReceipts().size(), 1U);
    EXPECT_EQ(till::IncompleteReceipts()[0].Gebucht, 2);
    EXPECT_EQ(till::IncompleteReceipts()[0].Bestand, 2);
}

TEST_F(ServerTrouble, ALineThatWasDeniedButWrittenIsShownBeforeAnythingElseHappens) {
    scan(u"1"_s);
    const auto doubt = [&] {
        proxy->cut(Cut::BeforeAnswer, "INSERT INTO \"Bestellung\"", 0, PostgresProxy::After::Close);
        dialogs.expectError(3157);
        scan(u"2"_s);
        dialogs.verify();
        EXPECT_EQ(reg->basket().rowCount(), 1);
        proxy->refuse(false);
    };
    const QString told =
        u"Der Verkauf ist in der Datenbank ein anderer, als er hier stand:\n\nneu in der Liste: 1 × "
        "Buch, 20,00 €\n\n...*"_s;
    doubt();
    dialogs.expectMsgBox(told, MsgIcon::Exclamation);
    scan(u"2"_s); // the scanner's second try
    dialogs.verify();
    EXPECT_EQ(reg->Input(), u""_s);
    expectSale({u"1"_s, u"2"_s});
    EXPECT_EQ(reg->basket().Gesamt(), u"30,00"_s);

    reg->cmdStorno_Click();
    doubt();
    dialogs.expectMsgBox(told, MsgIcon::Exclamation);
    reg->cmdTotal_Click();
    dialogs.verify();
    EXPECT_EQ(receipts(), 0) << "first the cashier looks";
    reg->cmdTotal_Click();
    EXPECT_EQ(onServer(u"SELECT sum(\"Betrag_Gesamt\") FROM \"Rechnung\""_s), u"30.0000"_s);
    EXPECT_EQ(details(), 2);

    // A line that did not arrive leaves the list as it is, and nobody is asked to look.
    scan(u"1"_s);
    proxy->cut(Cut::BeforeSending, "INSERT INTO \"Bestellung\"", 0, PostgresProxy::After::Close);
    dialogs.expectError(3157);
    scan(u"2"_s);
    proxy->refuse(false);
    scan(u"2"_s);
    expectSale({u"1"_s, u"2"_s});
}

TEST_F(ServerTrouble, APaidSaleIsNotPaidAgainWhenTheServerGoesBeforeItsLinesDo) {
    for (const bool scanNext : {false, true}) {
        const int before = receipts();
        scan(u"1"_s);
        scan(u"2"_s);
        proxy->cut(Cut::BeforeSending, "DELETE FROM \"Bestellung\"", 0, PostgresProxy::After::Close);
        dialogs.expectError(3157);
        reg->cmdTotal_Click();
        EXPECT_TRUE(dialogs.lastMessage.contains(u"Der Verkauf ist unter der Belegnummer %1 gebucht."_s.arg(
            onServer(u"SELECT max(\"RechnungID\") FROM \"Rechnung\""_s))))
            << qPrintable(dialogs.lastMessage);
        EXPECT_EQ(reg->basket().rowCount(), 2);
        EXPECT_EQ(receipts(), before + 1);

        dialogs.expectError(3151); // still away
        reg->cmdTotal_Click();
        for (int i = 0; i < 2; ++i) {
            dialogs.expectError(3151);
            scan(u"2"_s);
            EXPECT_EQ(u""_s, reg->Input()) << "the next code must not pile up behind it";
        }
        proxy->refuse(false);
        if (scanNext) {
            scan(u"2"_s);
            expectSale({u"2"_s});
            reg->cmdStorno_Click();
        } else {
            reg->cmdTotal_Click();
        }
        expectSale({});
        EXPECT_EQ(receipts(), before + 1);
    }
    EXPECT_EQ(stock(), u"98 98"_s);
    EXPECT_EQ(shop.count(u"Stornos"_s), 1);
}

TEST_F(ServerTrouble, AFullServerIsToldAndNothingIsHalfThere) {
    const QString small = server->makeDisk(u"klein"_s, 2);
    if (small.isEmpty()) GTEST_SKIP() << "only the administrator can make a small disk";
    server->sql(u"postgres"_s, u"CREATE TABLESPACE klein LOCATION '%1'"_s.arg(small));
    server->sql(u"laden"_s, u"ALTER TABLE \"Bestellung\" SET TABLESPACE klein; CREATE TABLE fill (t text) "
                            "TABLESPACE klein; ALTER TABLE fill ALTER t SET STORAGE PLAIN"_s);
    scan(u"1"_s);
    for (int left = 0; left < 3; ++left) { // until not even one page is free
        try {
            for (;;)
                server->sql(u"laden"_s,
                            u"INSERT INTO fill SELECT repeat('x', 7000) FROM generate_series(1, 4)"_s);
        } catch (const RuntimeError&) {
        }
    }
    // What the table's own pages still hold is sold first.
    class Disk : public ScriptedDialogs {
      public:
        bool full = false;
        MsgAnswer msgBox(const QString& text, MsgButtons, MsgIcon, const QString&, MsgAnswer) override {
            EXPECT_TRUE(text.contains(u"3026 - Auf dem Datenbankserver ist kein Speicherplatz mehr frei."_s))
                << qPrintable(text);
            full = true;
            return MsgAnswer::OK;
        }
    };
    QStringList codes{u"1"_s};
    {
        for (Disk disk; !disk.full && codes.size() < 1000; codes << u"1"_s)
            scan(u"1"_s);
        codes.removeLast(); // the one that found no room
    }
    expectSale(codes);
    server->sql(u"laden"_s, u"DROP TABLE fill"_s);
    scan(u"1"_s);
    codes << u"1"_s;
    expectSale(codes);
}

TEST_F(ServerTrouble, ALockOfMoreThanTenSecondsIsToldAndThenForgotten) {
    scan(u"1"_s);
    std::thread other([this] { // holds the lock until it is sent home
        EXPECT_THROW(server->sql(u"laden"_s, u"BEGIN; LOCK TABLE \"Bestellung\" IN EXCLUSIVE MODE; "
                                             "SELECT pg_sleep(600)"_s),
                     RuntimeError);
    });
    const QString holder =
        u" FROM pg_locks WHERE mode='ExclusiveLock' AND relation='\"Bestellung\"'::regclass"_s;
    QDeadlineTimer deadline(30'000);
    while (onServer(u"SELECT count(*)"_s + holder) == u"0"_s && !deadline.hasExpired())
        QThread::msleep(20);
    dialogs.expectError(3260);
    scan(u"2"_s);
    EXPECT_EQ(reg->basket().rowCount(), 1);
    server->sql(u"laden"_s, u"SELECT pg_terminate_backend(pid)"_s + holder);
    other.join();
    scan(u"2"_s);
    expectSale({u"1"_s, u"2"_s});
}

} // namespace
