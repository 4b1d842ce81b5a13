#include "Till.h"

#include <QRegularExpression>

// Cancelled lines, and leaving the register with open and parked sales.

namespace {

using Unload = till::Register::Unload;

const QString openQuestion =
    u"Es sind noch nicht abgerechnete Buchungen vorhanden. Möchten Sie diese jetzt stornieren?"_s;
const QString parkedQuestion =
    u"Es sind noch geparkte Bestellungen vorhanden. Möchten Sie diese jetzt stornieren?"_s;

class Closing : public Till {
  protected:
    Closing() {
        shop.article(u"1"_s, u"Tee"_s, 10, {{u"WarenGruppe"_s, u"Getränke"_s}});
        shop.article(u"2"_s, u"Buch"_s, 20);
    }
    /// A voucher that was created in this sale, as its line in `table`.
    int voucher(const QString& table, const QString& machine = u"KASSE-1"_s) {
        const int id = shop.insert(u"Gutscheine"_s, {{u"Betrag"_s, 10}});
        shop.insert(table, {{u"Maschine"_s, machine},
                            {u"ArtikelNummer"_s, u"401-Gutschein"_s},
                            {u"Buchungs_Menge"_s, 1},
                            {u"SNNummer"_s, QString::number(id)}});
        return id;
    }
    [[nodiscard]] QStringList stornos() {
        return shop.rows(
            u"SELECT Maschine, PersonalNummer, PersonalName, ArtikelNummer, ArtikelName, WarenGruppe, "
            u"Buchungs_Menge, Menge, Einheit FROM Stornos"_s);
    }
};

TEST_F(Closing, CancelledLineLeavesItsTrace) {
    reg->cmdStorno_Click();
    type(u"2*"_s);
    scan(u"1"_s);
    scan(u"2"_s);
    scan(u"1"_s);
    reg->ItemClick(0);
    reg->cmdStorno_Click();
    EXPECT_EQ(QStringList{u"KASSE-1|3|Jana Koch|1|Tee|Getränke|2|1|Stück"_s}, stornos());
    EXPECT_EQ(1, reg->basket().selected()); // the last row, not the neighbour
    EXPECT_EQ(u"30,00"_s, reg->basket().Gesamt());
    reg->cmdStorno_Click();
    reg->cmdStorno_Click();
    reg->cmdStorno_Click();
    EXPECT_EQ(3, shop.count(u"Stornos"_s));
    EXPECT_TRUE(reg->basket().isEmpty());
}

TEST_F(Closing, CancelledVoucherIsDeleted) {
    const int other = shop.insert(u"Gutscheine"_s, {{u"Betrag"_s, 5}});
    const int id = voucher(u"Bestellung"_s);
    reg->LoadBestellungen();
    dialogs.expectMsgBox(u"Der Gutschein mit der Nummer "_s + QString::number(id) + u" wurde gelöscht."_s);
    reg->cmdStorno_Click();
    EXPECT_EQ(QStringList{QString::number(other)}, shop.rows(u"SELECT GutscheinID FROM Gutscheine"_s));
}

TEST_F(Closing, OpenSaleKeptOrCancelled) {
    EXPECT_EQ(Unload::Close, reg->QueryUnload());
    scan(u"1"_s);
    voucher(u"Bestellung"_s);
    voucher(u"Bestellung"_s, u"KASSE-2"_s);
    reg->LoadBestellungen();
    dialogs.expectMsgBox(openQuestion, MsgIcon::Question, MsgAnswer::No, u"Systemmeldung..."_s);
    EXPECT_EQ(Unload::Stay, reg->QueryUnload());
    EXPECT_EQ(2, reg->basket().rowCount());
    EXPECT_EQ(0, shop.count(u"Stornos"_s));
    dialogs.expectMsgBox(openQuestion, MsgIcon::Question, MsgAnswer::Yes);
    EXPECT_EQ(Unload::Close, reg->QueryUnload());
    EXPECT_EQ((QStringList{u"KASSE-1|3|Jana Koch|1|Tee|Getränke|1|1|Stück"_s,
                           u"KASSE-1|3|Jana Koch|401-Gutschein||"_s}),
              stornos().replaceInStrings(QRegularExpression(u"Gutschein.*"_s), u"Gutschein||"_s));
    EXPECT_EQ(QStringList{u"KASSE-2"_s}, shop.rows(u"SELECT Maschine FROM Bestellung"_s));
    EXPECT_EQ(1, shop.count(u"Gutscheine"_s));
}

TEST_F(Closing, ParkedSaleKeptOrCancelled) {
    voucher(u"TMPOrder"_s);
    dialogs.expectMsgBox(parkedQuestion, MsgIcon::Question, MsgAnswer::No, u"Systemmeldung..."_s);
    EXPECT_EQ(Unload::CloseWithParked, reg->QueryUnload());
    EXPECT_EQ(1, shop.count(u"TMPOrder"_s));
    voucher(u"TMPOrder"_s, u"KASSE-2"_s);
    dialogs.expectMsgBox(parkedQuestion, MsgIcon::Question, MsgAnswer::Yes);
    EXPECT_EQ(Unload::Close, reg->QueryUnload());
    EXPECT_EQ(QStringList{u"KASSE-2"_s}, shop.rows(u"SELECT Maschine FROM TMPOrder"_s));
    EXPECT_EQ(1, shop.count(u"Gutscheine"_s));
    EXPECT_EQ(0, shop.count(u"Stornos"_s));
}

TEST_F(Closing, GoesOnWhateverFails) {
    scan(u"1"_s);
    shop.db().Execute(u"DROP TABLE Gutscheine"_s);
    shop.db().Execute(u"DROP TABLE Stornos"_s);
    dialogs.expectError(3078);
    reg->cmdStorno_Click(); // at the key a failure is told and the line stays
    EXPECT_EQ(1, reg->basket().rowCount());
    dialogs.expectMsgBox(openQuestion, MsgIcon::Question, MsgAnswer::Yes);
    EXPECT_EQ(Unload::Close, reg->QueryUnload());
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));
}

} // namespace
