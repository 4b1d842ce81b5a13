#include "ServerTill.h"

// How often a till waits for its server. On a line of 2 ms each time is what a cashier feels.

namespace {

class ServerTrips : public ServerTill {
  protected:
    void SetUp() override {
        ServerTill::SetUp();
        for (const QString& code :
             {u"1"_s, u"2"_s}) // what is asked for the first time is prepared on the way
            scan(code);
    }
    template <typename Act>
    qint64 trips(Act&& act) {
        const qint64 before = shop.db().RoundTrips();
        act();
        return shop.db().RoundTrips() - before;
    }
};

TEST_F(ServerTrips, AScanAsksTwiceToFindAndTwiceToWrite) {
    qint64 found = 0, written = 0;
    QObject::connect(reg.get(), &till::Register::InputChanged, reg.get(), [&](const QString& text) {
        if (text.isEmpty()) found = shop.db().RoundTrips();
    });
    QObject::connect(&reg->basket(), &QAbstractItemModel::rowsInserted, reg.get(),
                     [&] { written = shop.db().RoundTrips(); });
    const qint64 before = shop.db().RoundTrips();
    const int seen = proxy->roundTrips();
    scan(u"1"_s);
    EXPECT_EQ(line(2), u"1|Tee|1|1 Stück|10,00|10,00"_s);
    EXPECT_LE(found - before, 2);
    EXPECT_LE(written - found, 2);
    EXPECT_LE(shop.db().RoundTrips() - written, 1) << "the stock of the line";
    EXPECT_EQ(proxy->roundTrips() - seen, shop.db().RoundTrips() - before) << "the engine counts honestly";
    EXPECT_LE(trips([&] { reg->ItemClick(0); }), 2);
    EXPECT_LE(trips([&] { type(u"2+"_s); }), 5);
}

TEST_F(ServerTrips, ListsAndBookingsGrowWithTheirWritesAlone) {
    const auto sale = [&](int lines) {
        for (int i = reg->basket().rowCount(); i < lines; ++i)
            scan(u"1"_s);
        EXPECT_LE(trips([&] { reg->LoadBestellungen(); }), 4) << lines;
        gShowWechselgeldDialog = false;
        const qint64 booking = trips([&] { reg->cmdTotal_Click(); });
        EXPECT_TRUE(reg->basket().isEmpty());
        return booking;
    };
    sale(5); // prepares what a booking asks
    const qint64 few = sale(10), many = sale(50);
    // Order number, line of the receipt, stock, serial number.
    EXPECT_LE(many - few, 40 * 4);
    EXPECT_LE(few, 10 * 4 + 10);
}

} // namespace
