#include "Till.h"

#include <register/Prices.h>

// Which price a line gets, and what may change it afterwards.

namespace {

Currency money(double value) { return Currency::fromDouble(value); }

TEST(LinePrices, EveryRowOfTheRules) {
    struct Case {
        int group;
        double second, third;
        bool mayDiscount, atPurchasePrice;
        int discount;
        double list, line;
    };
    // First price 10, purchase price 5.
    const Case cases[] = {
        {0, 8, 6, true, false, 0, 10, 10},   {0, 8, 6, true, false, 10, 10, 9},
        {0, 8, 6, false, false, 10, 10, 10}, {1, 8, 6, true, false, 10, 8, 7.2},
        {1, 8, 6, false, false, 10, 8, 8},   {1, 0, 6, true, false, 10, 10, 9},
        {1, 0, 6, false, false, 10, 10, 10}, {2, 8, 6, true, false, 10, 6, 5.4},
        {2, 8, 6, false, false, 10, 6, 6},   {2, 8, 0, true, false, 10, 10, 9},
        {2, 8, 0, false, false, 10, 10, 10}, {3, 8, 6, true, false, 10, 10, 9},
        {0, 8, 6, true, true, 10, 10, 4.5},  {0, 8, 6, false, true, 10, 10, 5},
        {1, 8, 6, true, true, 10, 8, 4.5},   {2, 8, 0, false, true, 10, 10, 5},
        {-1, 8, 6, false, false, 0, 10, 10}, {1, 8, 6, true, false, 150, 8, -4},
        {0, 8, 6, true, false, 100, 10, 0},
    };
    for (const Case& c : cases) {
        ArtikelRecord artikel;
        artikel.VKPreis = money(10);
        artikel.VKPreis2 = money(c.second);
        artikel.VKPreis3 = money(c.third);
        artikel.EKPreis = money(5);
        artikel.Rabatt = c.mayDiscount;
        KundeRecord kunde;
        kunde.PreisGruppe = c.group;
        kunde.EKPreis = c.atPurchasePrice;
        kunde.Rabatt = c.discount;
        const till::LinePrices prices = till::ChoosePrices(artikel, kunde);
        const auto which = [&] { return &c - cases; };
        EXPECT_EQ(money(c.list), prices.VKPreis) << which();
        EXPECT_EQ(money(c.line), prices.VKPreis_Rabatt) << which();
    }
}

TEST(LinePrices, DiscountIsRoundedToEvenBeforeItIsTakenOff) {
    // 0,00125 and 0,00375 of discount lie between two ten-thousandths.
    EXPECT_EQ(Currency::fromScaled(250 - 12), till::Discounted(Currency::fromScaled(250), money(5)));
    EXPECT_EQ(Currency::fromScaled(750 - 38), till::Discounted(Currency::fromScaled(750), money(5)));
    EXPECT_EQ(Currency::fromScaled(-250 + 12), till::Discounted(Currency::fromScaled(-250), money(5)));
}

class Prices : public Till {
  protected:
    Prices() {
        shop.article(u"1"_s, u"Tee"_s, 10, {{u"VKPreis3"_s, money(6)}});
        shop.article(u"2"_s, u"Buch"_s, 20, {{u"Rabatt"_s, false}});
    }
    void action(const QDateTime& from, const QDateTime& until, double price) {
        shop.insert(u"AktionsPreise"_s, {{u"ArtikelNummer"_s, u"1"_s},
                                         {u"Von"_s, DateTime::fromQDateTime(from)},
                                         {u"Bis"_s, DateTime::fromQDateTime(until)},
                                         {u"AktionsPreis"_s, money(price)}});
    }
    [[nodiscard]] QStringList prices() {
        return shop.rows(u"SELECT VKPreis, VKPreis_Rabatt FROM Bestellung ORDER BY ID"_s);
    }
    void discount(MsgAnswer all, double percent) {
        dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, all);
        screen.expect(till::Dialog::Rabatt, [percent] { gRabattAngabe = {money(percent), 1}; });
        reg->cmdRabatt_Click();
    }
};

TEST_F(Prices, ActionPriceHoldsBetweenItsDays) {
    const QDate today(2026, 11, 22);
    clock.set(today.startOfDay().addSecs(3600));
    EXPECT_EQ(money(10), till::ActionPrice(u"1"_s, money(10)));
    action(today.startOfDay(), today.startOfDay().addDays(1), 7);
    action(today.startOfDay(), today.startOfDay().addDays(1), 1); // only the first row counts
    EXPECT_EQ(money(7), till::ActionPrice(u"1"_s, money(10)));
    scan(u"1"_s);
    gKunde.PreisGruppe = 2;
    scan(u"1"_s);
    EXPECT_EQ((QStringList{u"7|7"_s, u"6|6"_s}), prices());
    clock.set(today.startOfDay().addDays(1).addSecs(1)); // a plain day ends at its start
    EXPECT_EQ(money(10), till::ActionPrice(u"1"_s, money(10)));
    clock.set(today.startOfDay().addSecs(-1));
    EXPECT_EQ(money(10), till::ActionPrice(u"1"_s, money(10)));
    shop.db().Execute(u"UPDATE AktionsPreise SET Von=Null"_s);
    clock.set(today.startOfDay().addSecs(1));
    EXPECT_EQ(money(10), till::ActionPrice(u"1"_s, money(10)));
}

TEST_F(Prices, SecondDiscountReplacesTheFirst) {
    reg->cmdRabatt_Click(); // an empty list asks nothing
    scan(u"1"_s);
    discount(MsgAnswer::No, 10);
    EXPECT_EQ(u"9,00"_s, reg->basket().Gesamt());
    discount(MsgAnswer::No, 5);
    EXPECT_EQ(QStringList{u"10|9,5"_s}, prices());
    EXPECT_EQ(u"1|Tee|1|1 Stück|9,50|9,50"_s, line(0));
}

TEST_F(Prices, DiscountOnAllSparesWhatMayNotBeDiscounted) {
    scan(u"1"_s);
    scan(u"2"_s);
    type(u"3*"_s);
    scan(u"1"_s);
    shop.db().Execute(u"INSERT INTO Bestellung (Maschine, VKPreis, VKPreis_Rabatt, IsRabatt) "
                      u"VALUES ('KASSE-2', 4, 4, -1)"_s);
    discount(MsgAnswer::Yes, 25);
    EXPECT_EQ((QStringList{u"10|7,5"_s, u"20|20"_s, u"10|7,5"_s, u"4|4"_s}), prices());
    EXPECT_EQ(u"50,00"_s, reg->basket().Gesamt());
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::Yes);
    screen.expect(till::Dialog::Rabatt, [] {}); // cancelled
    reg->cmdRabatt_Click();
    EXPECT_EQ(u"50,00"_s, reg->basket().Gesamt());
}

TEST_F(Prices, FreePriceIsTheBaseOfALaterDiscount) {
    type(u"2*"_s);
    scan(u"1"_s);
    screen.expect(till::Dialog::FreierPreis, [] {
        EXPECT_EQ(money(10), gPreisAngabe.Preis);
        gPreisAngabe = {1, money(8)};
    });
    reg->cmdArtikelPreis_Click();
    EXPECT_EQ(u"1|Tee|2|1 Stück|8,00|16,00"_s, line(0));
    discount(MsgAnswer::No, 10);
    EXPECT_EQ(QStringList{u"8|7,2"_s}, prices());
    EXPECT_EQ(u"14,40"_s, reg->basket().Gesamt());
    screen.expect(till::Dialog::FreierPreis, [] { gPreisAngabe.Preis = money(1); }); // cancelled
    reg->cmdArtikelPreis_Click();
    EXPECT_EQ(QStringList{u"8|7,2"_s}, prices());
}

TEST_F(Prices, WhoMayChangePrices) {
    const QString notThis = u"Dieser Artikel kann nicht rabattiert werden."_s;
    scan(u"2"_s);
    dialogs.expectMsgBox(notThis);
    reg->cmdArtikelPreis_Click();
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::No);
    dialogs.expectMsgBox(notThis);
    reg->cmdRabatt_Click();
    gKunde.Rabatt = 1;
    dialogs.expectMsgBox(
        u"Diese Aktion ist nicht möglich, da der ausgewählte Kunde bereits rabattiert wurde."_s);
    reg->cmdRabatt_Click();
    gKassenUser.R_Rabatt = false;
    for (int i = 0; i < 2; ++i)
        dialogs.expectMsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s);
    reg->cmdRabatt_Click();
    reg->cmdArtikelPreis_Click();
    gKFRabatt = gKFFreierArtikelPreis = false;
    reg->cmdRabatt_Click();
    reg->cmdArtikelPreis_Click();
    EXPECT_EQ(QStringList{u"20|20"_s}, prices());
}

TEST_F(Prices, NewCustomerDoesNotRepriceOldLines) {
    scan(u"1"_s);
    screen.expect(till::Dialog::KundenSuche, [] {
        gKunde = KundeRecord::Standard();
        gKunde.Anrede = u"Firma"_s;
        gKunde.Name_1 = u"Müller & Sohn"_s;
        gKunde.Rabatt = 10;
        gKunde.Ergebnis = 1;
    });
    reg->cmdKunde_Click();
    EXPECT_EQ(u"Firma Müller && Sohn  -  Rabatt: 10/100"_s, reg->Title());
    scan(u"1"_s);
    EXPECT_EQ((QStringList{u"10|10"_s, u"10|9"_s}), prices());
    payCash(19);
    EXPECT_EQ(u"Müller & Sohn"_s, shop.value(u"SELECT Kunde FROM Rechnung"_s).toText());
    EXPECT_EQ(u" Standardkunde  -  Rabatt: 0/100"_s, reg->Title());

    gKassenUser.R_Kunden = false;
    dialogs.expectMsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s);
    reg->cmdKunde_Click();
    gKFKunden = false;
    reg->cmdKunde_Click();
}

} // namespace
