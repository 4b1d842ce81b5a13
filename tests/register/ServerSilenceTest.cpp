#include "ServerTill.h"

#include <store/ServerPatience.h>

#include <QElapsedTimer>
#include <QThread>

#include <chrono>

// A scan while the server takes everything and says nothing: told, given up, and nothing is there twice.

namespace {

using Cut = PostgresProxy::Cut;

class ServerSilence : public ServerTill {
  protected:
    void SetUp() override {
        ServerTill::SetUp();
        gShowWechselgeldDialog = false;
        store::SetServerLimit(std::chrono::milliseconds(1500));
    }
    void TearDown() override {
        store::SetServerLimit(store::usualServerLimit);
        ServerTill::TearDown();
    }
};

TEST_F(ServerSilence, AScanIsGivenUpOnceAndComesWithTheNextTry) {
    scan(u"1"_s);
    struct Case {
        const char* statement;
        int told;
    };
    int rows = 1;
    for (const Case& c :
         {Case{"FROM \"Artikel\"", 3151}, Case{"nextval", 3151}, Case{"INSERT INTO \"Bestellung\"", 3157}}) {
        SCOPED_TRACE(c.statement);
        proxy->hush(Cut::BeforeSending, c.statement);
        dialogs.expectError(c.told);
        QElapsedTimer timer;
        timer.start();
        scan(u"2"_s);
        dialogs.verify();
        EXPECT_TRUE(proxy->hasCut());
        EXPECT_LT(timer.elapsed(), 2900) << "one wait for one scan";
        EXPECT_EQ(reg->basket().rowCount(), rows);
        EXPECT_EQ(onServer(u"SELECT count(*) FROM \"Bestellung\""_s).toInt(), rows);
        QThread::msleep(600);  // until the cashier has read it
        reg->cmdClear_Click(); // the entry may still stand in its box
        scan(u"2"_s);
        EXPECT_EQ(reg->basket().rowCount(), ++rows);
    }
    reg->cmdTotal_Click();
    EXPECT_EQ(onServer(u"SELECT count(*) FROM \"RechnungsDetail\""_s).toInt(), rows);
}

} // namespace
