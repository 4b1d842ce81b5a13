#include "CrashImages.h"
#include "InterruptedSale.h"
#include "ServerTill.h"

#include <register/Vouchers.h>

// A till that is killed, or cut off from its server, anywhere between a voucher and its receipt: nothing is
// booked twice, no voucher is worth anything but its old or its new rest, and where a receipt stands beside
// the old one the till says so.

namespace {

enum class Act { Sell, Redeem, PayOut };

std::string nameOf(const testing::TestParamInfo<Act>& act) {
    constexpr const char* names[]{"Sell", "Redeem", "PayOut"};
    return names[act.index];
}

/// A voucher of 50 and a sale of 20, the act, and what may be left of it.
class InterruptedVoucher {
  public:
    static void stockShop(TempShop& shop) {
        gKFGutscheinErstellen = gKFGutscheinEinloesen = gKFGutscheinAuszahlung = true;
        gShowWechselgeldDialog = false;
        shop.insert(u"Gutscheine"_s, {{u"Betrag"_s, Currency::fromInteger(50)}, {u"SteuerSatz"_s, 19}});
    }
    static void run(till::Register& reg, ScriptedScreen& screen, Act act) {
        DefaultAnswers answers;
        answers.input = u"1"_s;
        if (act == Act::Redeem) return reg.vouchers().RedeemGutschein();
        if (act == Act::PayOut) return reg.vouchers().PayoutGutschein();
        screen.isQuiet = false;
        screen.expect(till::Dialog::Gutschein, [] {
            gGutscheinAngabe.Name = u"Fest"_s;
            gGutscheinAngabe.Betrag = Currency::fromInteger(30);
            gGutscheinAngabe.Ergebnis = 1;
        });
        reg.vouchers().CreateGutschein();
        screen.isQuiet = true;
    }
    /// After the restart, whose boxes told `told`.
    void expectSound(TempShop& shop, till::Register& reg, Act act, const QStringList& told) {
        const QString all = told.join(u'\n');
        const qint64 worth =
            shop.value(u"SELECT Betrag FROM Gutscheine WHERE GutscheinID=1"_s).toCurrency().scaled() / 10000;
        const int receipts = shop.count(u"Rechnung"_s);
        EXPECT_EQ(shop.count(u"BuchungsMarke"_s), 0);
        if (act == Act::Sell) {
            const int sold = shop.count(u"Gutscheine"_s) - 1;
            EXPECT_LE(sold, 1);
            EXPECT_LE(reg.basket().rowCount(), sold) << "a line without its voucher";
            EXPECT_EQ(worth, 50);
            onlyVoucher += sold > reg.basket().rowCount();
            return;
        }
        const int newRest = act == Act::Redeem ? 30 : 0;
        EXPECT_TRUE(worth == 50 || worth == newRest) << worth;
        EXPECT_LE(receipts, 1);
        if (receipts == 0) {
            EXPECT_EQ(worth, 50);
            const bool open = reg.basket().Holds(u"401-Gutschein");
            EXPECT_EQ(all.contains(u"Die Einlösung wurde nicht zu Ende gebucht"_s), open);
            // The line of a payout must not be sold as goods.
            if (act == Act::PayOut) {
                EXPECT_TRUE(reg.basket().isEmpty());
            }
            unbooked += act == Act::Redeem ? reg.basket().rowCount() > 1
                                           : all.contains(u"wurde unterbrochen und ist nicht gebucht"_s);
            return;
        }
        EXPECT_TRUE(reg.basket().isEmpty());
        EXPECT_EQ(shop.count(u"RechnungsDetail"_s), act == Act::Redeem ? 2 : 1);
        const QString doubt = act == Act::Redeem
                                  ? u"bleiben auf ihm 30,00 €, gespeichert sind aber noch 50,00 €"_s
                                  : u"Diesen Betrag haben noch die Gutscheine Nr. 1."_s;
        EXPECT_EQ(all.contains(doubt), worth == 50) << qPrintable(all);
        (worth == 50 ? oldRest : done)++;
    }
    int onlyVoucher = 0, unbooked = 0, oldRest = 0, done = 0;
};

class FileVoucherCrash : public Till, public testing::WithParamInterface<Act> {
  protected:
    void SetUp() override {
        InterruptedVoucher::stockShop(shop);
        shop.article(u"2"_s, u"Buch"_s, 20);
    }
};

TEST_P(FileVoucherCrash, AfterAKillAtAnyWriteEveryDoubtIsTold) {
    screen.isQuiet = true;
    CrashImages images(shop.storePath());
    shop.reopen();
    open();
    if (GetParam() == Act::Redeem) scan(u"2"_s);
    images.taking = true;
    InterruptedVoucher::run(*reg, screen, GetParam());
    images.taking = false;
    ASSERT_GT(images.folders().size(), GetParam() == Act::Sell ? 5 : 30);
    InterruptedVoucher left;
    for (const QString& folder : images.folders()) {
        SCOPED_TRACE(qPrintable(folder));
        reg.reset();
        gDB = Database::OpenDatabase(folder + u"/Merivane.mdb"_s);
        DefaultAnswers asked;
        open();
        left.expectSound(shop, *reg, GetParam(), asked.told);
        if (HasFailure()) return;
    }
    if (GetParam() == Act::Sell) {
        EXPECT_GT(left.onlyVoucher, 0);
    } else {
        EXPECT_GT(left.unbooked, 0);
        EXPECT_GT(left.oldRest, 0);
        EXPECT_GT(left.done, 0);
    }
    reg.reset();
}

INSTANTIATE_TEST_SUITE_P(Acts, FileVoucherCrash, testing::Values(Act::Sell, Act::Redeem, Act::PayOut),
                         nameOf);

class ServerVoucherCrash : public ServerTill, public testing::WithParamInterface<Act> {
  protected:
    void SetUp() override {
        ServerTill::SetUp();
        if (IsSkipped()) return;
        InterruptedVoucher::stockShop(shop);
    }
    void restart() {
        reg.reset();
        gDB.reset();
        proxy->deny(false);
        shop.reopen();
        open();
    }
};

TEST_P(ServerVoucherCrash, AfterAKillBeforeAnyStatementEveryDoubtIsTold) {
    screen.isQuiet = true;
    int statement = 0;
    InterruptedVoucher left;
    for (bool whole = false; !whole; ++statement) {
        SCOPED_TRACE(statement);
        for (const QString& table :
             {u"Bestellung"_s, u"Rechnung"_s, u"RechnungsDetail"_s, u"BuchungsMarke"_s})
            shop.db().Execute(u"DELETE FROM "_s + table);
        shop.db().Execute(u"DELETE FROM Gutscheine WHERE GutscheinID>1"_s);
        shop.db().Execute(u"UPDATE Gutscheine SET Betrag='50'"_s);
        reg->LoadBestellungen();
        if (GetParam() == Act::Redeem) scan(u"2"_s);
        QStringList told;
        {
            DefaultAnswers asked;
            proxy->cut(PostgresProxy::Cut::BeforeSending, "", statement, PostgresProxy::After::Deny);
            InterruptedVoucher::run(*reg, screen, GetParam());
            whole = !proxy->hasCut();
            proxy->cut(PostgresProxy::Cut::BeforeSending, "nothing like this");
            asked.told.clear();
            restart();
            told = asked.told;
        }
        left.expectSound(shop, *reg, GetParam(), told);
        if (HasFailure()) return;
    }
    EXPECT_GT(statement, GetParam() == Act::Sell ? 3 : 15);
    EXPECT_GT(GetParam() == Act::Sell ? left.onlyVoucher : left.oldRest, 0);
}

INSTANTIATE_TEST_SUITE_P(Acts, ServerVoucherCrash, testing::Values(Act::Sell, Act::Redeem, Act::PayOut),
                         nameOf);

class ServerVoucherLine : public ServerTill {};

TEST_F(ServerVoucherLine, ARestThatMayNotHaveArrivedIsToldAsADoubt) {
    InterruptedVoucher::stockShop(shop);
    for (const auto where : {PostgresProxy::Cut::BeforeSending, PostgresProxy::Cut::BeforeAnswer}) {
        shop.db().Execute(u"UPDATE Gutscheine SET Betrag='50'"_s);
        scan(u"2"_s);
        proxy->cut(where, "UPDATE \"Gutscheine\"", 0, PostgresProxy::After::Close);
        DefaultAnswers answers;
        answers.input = u"1"_s;
        reg->vouchers().RedeemGutschein();
        ASSERT_TRUE(proxy->hasCut());
        const QString all = answers.told.join(u'\n');
        EXPECT_TRUE(all.contains(
            u"Ob das Guthaben von Gutschein Nr. 1 schon verringert ist, ist nicht sicher: Es muss "
            "von 50,00 € auf 30,00 € berichtigt werden"_s))
            << qPrintable(all);
        proxy->refuse(false);
        answers.told.clear();
        scan(u"1"_s); // the booked lines go, and with the server back the till knows
        EXPECT_EQ(reg->basket().rowCount(), 1);
        EXPECT_EQ(answers.told.join(u'\n').contains(u"gespeichert sind aber noch 50,00 €"_s),
                  onServer(u"SELECT \"Betrag\" FROM \"Gutscheine\""_s) == u"50.0000"_s);
        reg->cmdStorno_Click();
    }
    EXPECT_EQ(onServer(u"SELECT count(*) FROM \"Rechnung\""_s), u"2"_s);
}

} // namespace
