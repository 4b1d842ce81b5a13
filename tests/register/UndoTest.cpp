#include "Till.h"

#include <store/Database.h>

// What a cashier did last to the open sale, and the way back.

namespace {

class Undo : public Till {
  protected:
    Undo() {
        shop.article(u"1"_s, u"Bergkäse"_s, 10, {{u"Zusatz1"_s, u"Alm"_s}});
        shop.article(u"2"_s, u"Buch"_s, 20, {{u"Rabatt"_s, false}});
        shop.article(u"3"_s, u"Brot"_s, 4);
        shop.article(u"10"_s, u"Kasten"_s, 9.9);
        shop.article(u"11"_s, u"Pfandflasche"_s, 0.08);
        shop.article(u"12"_s, u"Pfandkiste"_s, 1.5);
        for (const auto& [to, count] : {std::pair(u"11"_s, 20), std::pair(u"12"_s, 1)})
            shop.insert(
                u"VerbundArtikel"_s,
                {{u"SourceArtikelNummer"_s, u"10"_s}, {u"DestArtikelNummer"_s, to}, {u"Anzahl"_s, count}});
    }
    void storno(int row) {
        reg->ItemClick(row);
        reg->cmdStorno_Click();
    }
    void discount(MsgAnswer all, double percent) {
        dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, all);
        screen.expect(till::Dialog::Rabatt, [percent] {
            gRabattAngabe = {Currency::fromDouble(percent), 1};
        });
        reg->cmdRabatt_Click();
    }
    void price(int row, double price) {
        reg->ItemClick(row);
        screen.expect(till::Dialog::FreierPreis, [price] {
            gPreisAngabe = {1, Currency::fromDouble(price)};
        });
        reg->cmdArtikelPreis_Click();
    }
    /// Names and amounts of the list.
    [[nodiscard]] QStringList sums() {
        QStringList texts;
        for (int row = 0; row < reg->basket().rowCount(); ++row)
            texts << reg->basket().cell(row, till::Basket::Artikelname) + u' ' +
                         reg->basket().cell(row, till::Basket::GPreis);
        return texts;
    }
    void expectChangedElsewhere() {
        dialogs.expectMsgBox(
            u"Das lässt sich nicht mehr rückgängig machen: Der Verkauf wurde inzwischen an anderer Stelle ...*"_s);
    }
};

TEST_F(Undo, ACancelledLineComesBackAsANewOneWithPriceAndCustomer) {
    EXPECT_FALSE(reg->CanTakeBack());
    reg->TakeBack(); // nothing to do, nothing to tell
    gKunde.KundenID = 7;
    type(u"3*"_s);
    scan(u"1"_s);
    scan(u"3"_s);
    reg->ItemClick(0);
    discount(MsgAnswer::No, 10);
    const QString columns =
        u"SELECT KundenNummer, ArtikelNummer, Buchungs_Menge, VKPreis, VKPreis_Rabatt, "
        "SteuerSatz, IsRabatt, Zusatz1, Maschine FROM Bestellung WHERE ArtikelNummer='1'"_s;
    const QStringList before = shop.rows(columns);
    const qint64 id = shop.value(u"SELECT ID FROM Bestellung WHERE ArtikelNummer='1'"_s).toInteger();
    storno(0);
    EXPECT_EQ(u"Rückgängig: Storno Bergkäse"_s, reg->UndoCaption());
    gKunde.KundenID = 0;
    gKassenUser.ID = 9;
    reg->TakeBack();
    EXPECT_EQ((QStringList{u"Brot 4,00"_s, u"Bergkäse 27,00"_s}), sums());
    EXPECT_EQ(u"31,00"_s, reg->basket().Gesamt());
    EXPECT_EQ(1, reg->basket().selected());
    EXPECT_EQ(before, shop.rows(columns));
    EXPECT_LT(id, shop.value(u"SELECT ID FROM Bestellung WHERE ArtikelNummer='1'"_s).toInteger());
    EXPECT_EQ(u"9"_s,
              shop.rows(u"SELECT PersonalNummer FROM Bestellung WHERE ArtikelNummer='1'"_s).join(u' '));
    EXPECT_EQ(1, shop.count(u"Stornos"_s)) << "what was recorded stays recorded";

    // The discount belongs to the line, which has another number now.
    EXPECT_EQ(u"Rückgängig: Rabatt Bergkäse"_s, reg->UndoCaption());
    reg->TakeBack();
    EXPECT_EQ((QStringList{u"Brot 4,00"_s, u"Bergkäse 30,00"_s}), sums());
    EXPECT_EQ(u"Rückgängig"_s, reg->UndoCaption());
}

TEST_F(Undo, ALineComesBackWithItsDeposit) {
    scan(u"1"_s);
    scan(u"10"_s);
    scan(u"10"_s);
    const QStringList all = sums();
    ASSERT_EQ(7, all.size());
    storno(3);
    EXPECT_EQ(u"Rückgängig: Storno Pfandkiste"_s, reg->UndoCaption());
    storno(1);
    storno(1);
    EXPECT_EQ(u"Rückgängig: Storno Kasten (3 Zeilen)"_s, reg->UndoCaption()) << "in whatever order";
    storno(1);
    EXPECT_EQ(u"Rückgängig: Storno Kasten"_s, reg->UndoCaption()) << "another case is another step";
    storno(2);
    EXPECT_EQ(u"Rückgängig: Storno Kasten (2 Zeilen)"_s, reg->UndoCaption());
    EXPECT_EQ((QStringList{u"Bergkäse 10,00"_s, u"Pfandflasche 1,60"_s}), sums());
    reg->TakeBack();
    reg->TakeBack();
    EXPECT_EQ(
        (QStringList{u"Bergkäse 10,00"_s, u"Pfandflasche 1,60"_s, u"Kasten 9,90"_s, u"Pfandkiste 1,50"_s,
                     u"Kasten 9,90"_s, u"Pfandflasche 1,60"_s, u"Pfandkiste 1,50"_s}),
        sums());
    EXPECT_FALSE(reg->CanTakeBack());

    storno(4); // the bottles of the first case do not follow from the second
    storno(1);
    EXPECT_EQ(u"Rückgängig: Storno Pfandflasche"_s, reg->UndoCaption());
}

TEST_F(Undo, PricesGoBackStepByStep) {
    for (const auto* number : {u"1", u"2", u"3"})
        scan(QString::fromUtf16(number));
    price(0, 8);
    EXPECT_EQ(u"Rückgängig: Preis Bergkäse"_s, reg->UndoCaption());
    discount(MsgAnswer::Yes, 50);
    EXPECT_EQ(u"Rückgängig: Rabatt (2 Zeilen)"_s, reg->UndoCaption());
    EXPECT_EQ((QStringList{u"Bergkäse 4,00"_s, u"Buch 20,00"_s, u"Brot 2,00"_s}), sums());
    discount(MsgAnswer::Yes, 50); // changes nothing, so it is no step
    scan(u"3"_s);                 // came later and stays as it is
    type(u"2+"_s);
    reg->TakeBack();
    EXPECT_EQ((QStringList{u"Bergkäse 8,00"_s, u"Buch 20,00"_s, u"Brot 4,00"_s, u"Brot 12,00"_s}), sums());
    reg->TakeBack();
    EXPECT_EQ(0, reg->basket().selected()) << "the line that it was about";
    EXPECT_EQ((QStringList{u"10|10"_s, u"20|20"_s, u"4|4"_s, u"4|4"_s}),
              shop.rows(u"SELECT VKPreis, VKPreis_Rabatt FROM Bestellung ORDER BY ID"_s));
    EXPECT_EQ(u"46,00"_s, reg->basket().Gesamt());
    EXPECT_FALSE(reg->CanTakeBack());
}

TEST_F(Undo, BelongsToOneSale) {
    int changes = 0;
    QObject::connect(reg.get(), &till::Register::UndoChanged, reg.get(), [&] { ++changes; });
    scan(u"1"_s);
    scan(u"3"_s);
    storno(0);
    EXPECT_EQ(1, changes);
    payCash(4);
    EXPECT_FALSE(reg->CanTakeBack()) << "it is paid";
    EXPECT_EQ(2, changes);
    reg->TakeBack();
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));

    scan(u"1"_s);
    storno(0);
    EXPECT_TRUE(reg->CanTakeBack()) << "the only line comes back as well";
    reg->TakeBack();
    EXPECT_EQ(QStringList{u"Bergkäse 10,00"_s}, sums());
    storno(0);
    scan(u"3"_s);
    EXPECT_FALSE(reg->CanTakeBack()) << "a new sale has begun";

    price(0, 1);
    reg->LoadBestellungen(); // another form worked on the rows
    EXPECT_FALSE(reg->CanTakeBack());
}

TEST_F(Undo, ASaleChangedElsewhereIsToldAndLeftAlone) {
    scan(u"1"_s);
    scan(u"3"_s);
    storno(0);
    shop.db().Execute(u"DELETE FROM Bestellung;"_s);
    expectChangedElsewhere();
    reg->TakeBack();
    dialogs.verify();
    EXPECT_EQ(QStringList{}, sums());
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));
    EXPECT_FALSE(reg->CanTakeBack());

    scan(u"1"_s);
    scan(u"3"_s);
    discount(MsgAnswer::Yes, 10);
    shop.db().Execute(u"UPDATE Bestellung SET VKPreis_Rabatt=1 WHERE ArtikelNummer='3';"_s);
    expectChangedElsewhere();
    reg->TakeBack();
    dialogs.verify();
    EXPECT_EQ((QStringList{u"Bergkäse 9,00"_s, u"Brot 1,00"_s}), sums()) << "no price of the two went back";
}

TEST_F(Undo, ANumberThatMayBeTakenDoesNotComeBack) {
    scan(u"1"_s);
    scan(u"3"_s);
    storno(0);
    shop.db().Execute(u"UPDATE Bestellung SET SNNummer='S-77';"_s);
    storno(0);
    EXPECT_FALSE(reg->CanTakeBack());
}

TEST_F(Undo, WhatTheStoreRefusesIsTakenBackNotAtAll) {
    type(u"5*"_s);
    scan(u"1"_s);
    scan(u"10"_s);
    for (int i = 0; i < 3; ++i)
        storno(1);
    ASSERT_EQ(u"Rückgängig: Storno Kasten (3 Zeilen)"_s, reg->UndoCaption());
    // The first two of the three lines fit, the last one has the quantity of the first.
    shop.db().Execute(u"CREATE UNIQUE INDEX nur_einmal ON Bestellung (Buchungs_Menge);"_s);
    dialogs.expectError(3022);
    reg->TakeBack();
    dialogs.verify();
    EXPECT_EQ(1, shop.count(u"Bestellung"_s));
    shop.db().Execute(u"DROP INDEX nur_einmal ON Bestellung;"_s);
    reg->TakeBack();
    EXPECT_EQ(
        (QStringList{u"Bergkäse 50,00"_s, u"Kasten 9,90"_s, u"Pfandflasche 1,60"_s, u"Pfandkiste 1,50"_s}),
        sums());
}

} // namespace
