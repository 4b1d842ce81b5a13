#include "Till.h"

#include <devices/SerialControl.h>
#include <support/Pty.h>

#include <QElapsedTimer>

// What the customer's display shows and when the drawer opens, read at the other end of the line.

namespace {

class Devices : public Till {
  protected:
    Devices() {
        shop.article(u"1"_s, u"Früchtebrötchen groß & süß"_s, 1.5);
        shop.article(u"2"_s, u"ÄÖÜ äöü ß"_s, 4.2, {{u"Menge"_s, 0.5}, {u"Einheit"_s, u"Gläs"_s}});
        shop.article(u"3"_s, u"Linsen"_s, 12345.67, {{u"Menge"_s, 12.125}, {u"Einheit"_s, u"Säcke"_s}});
        connect(display);
        gKundenLCDPort = 4;
        gKundenLCDClearCode = 12;
    }
    void connect(const Pty& device) { shop.setIni(u"PORTS"_s, u"COM4"_s, device.name()); }
    [[nodiscard]] static QByteArray message(const QByteArray& text) { return "\x1B\x0C" + text; }
    /// The customer reads exactly this, and nothing more.
    void expectShown(const QByteArray& bytes, const char* when) {
        EXPECT_EQ(display.received(bytes.size()), bytes) << when;
    }

    Pty display;
    const QByteArray thanks = message("    Vielen Dank      fuer Ihren Einkauf ");
    const QByteArray rolls = message("Fruechtebroetchen gr    1x 1 Stueck 1,50");
    const QByteArray glass = message("AeOeUe aeoeue \xDF        1x 0,5 Glaes 4,20");
    const QString openQuestion =
        u"Es sind noch nicht abgerechnete Buchungen vorhanden. Möchten Sie diese jetzt stornieren?"_s;
};

QByteArray toPay(const QByteArray& amount) { return "\x1B\x0CZu zahlender Betrag:\r" + amount; }

TEST_F(Devices, TheCustomerFollowsTheSale) {
    expectShown(thanks, "at rest");
    scan(u"1"_s);
    expectShown(rolls, "a line");
    scan(u"2"_s);
    expectShown(glass, "another");
    reg->MoveSelection(-1);
    expectShown(rolls, "chosen");
    type(u"2+"_s);
    const QByteArray three = message("Fruechtebroetchen gr    3x 1 Stueck 1,50");
    expectShown(three, "more of it");
    screen.expect(till::Dialog::FreierPreis, [] { gPreisAngabe = {1, Currency::fromDouble(0.5)}; });
    reg->cmdArtikelPreis_Click();
    expectShown(message("Fruechtebroetchen gr    3x 1 Stueck 0,50"), "another price");
    dialogs.expectMsgBox(u"Möchten Sie alle...*"_s, MsgIcon::Question, MsgAnswer::No);
    screen.expect(till::Dialog::Rabatt, [] { gRabattAngabe = {Currency::fromInteger(50), 1}; });
    reg->cmdRabatt_Click();
    expectShown(message("Fruechtebroetchen gr    3x 1 Stueck 0,25"), "a discount");
    screen.expect(till::Dialog::FreierPreis, [] { gPreisAngabe = {1, Currency::fromDouble(1.5)}; });
    reg->cmdArtikelPreis_Click();
    expectShown(three, "the old price");
    screen.expect(till::Dialog::KasseTotal,
                  [&] { expectShown(toPay("                8,70"), "before the dialog"); });
    reg->cmdTotal_Click();
    expectShown(three, "payment cancelled");
    gRoundDecimal = true;
    dialogs.expectMsgBox(u"OK, Zahlung erfolgt...*"_s, MsgIcon::Information, MsgAnswer::Cancel);
    reg->PayByKarte(u"VISA"_s);
    expectShown(toPay("                8,70"), "card");
    payCash(8.7);
    expectShown(toPay("                8,70") + thanks, "paid");

    scan(u"1"_s);
    reg->cmdStorno_Click();
    expectShown(rolls + thanks, "the last line cancelled");
    reg->SetLCDDefault();
    expectShown(thanks, "asked for");
    shop.insert(u"TMPOrder"_s, {{u"Maschine"_s, u"KASSE-1"_s}});
    dialogs.expectMsgBox(u"Es sind noch geparkte...*"_s, MsgIcon::Question, MsgAnswer::No);
    EXPECT_EQ(reg->QueryUnload(), till::Register::Unload::CloseWithParked);
    expectShown({}, "parked sales stay");
    shop.db().Execute(u"DELETE FROM TMPOrder"_s);
    scan(u"1"_s);
    dialogs.expectMsgBox(openQuestion, MsgIcon::Question, MsgAnswer::No);
    EXPECT_EQ(reg->QueryUnload(), till::Register::Unload::Stay);
    expectShown(rolls, "the register stays");
    dialogs.expectMsgBox(openQuestion, MsgIcon::Question, MsgAnswer::Yes);
    EXPECT_EQ(reg->QueryUnload(), till::Register::Unload::Close);
    expectShown(thanks, "the register closes");
    gKundenLCDPort = 0;
    reg->SetLCDDefault();
    expectShown({}, "no display");
}

TEST_F(Devices, RoundedAmountsKeepThePlaceOfTheLongerText) {
    gDecimalStellen = 3;
    gFormatPreis = u"###0.000"_s;
    shop.article(u"5"_s, u"Schrauben"_s, 12.345);
    scan(u"5"_s);
    expectShown(thanks + message("Schrauben             1x 1 Stueck 12,345"), "line");
    const QByteArray plain = toPay("              12,345"), rounded = toPay("              12,35 ");
    for (const bool round : {false, true}) {
        gRoundDecimal = round;
        screen.expect(till::Dialog::KasseTotal, [&] { expectShown(round ? rounded : plain, "cash"); });
        reg->cmdTotal_Click();
        (void)display.received(42);
    }
    dialogs.expectMsgBox(u"OK, Zahlung erfolgt...*"_s, MsgIcon::Information, MsgAnswer::Cancel);
    reg->PayByKarte(u"VISA"_s); // the terminal takes the amount as it is
    expectShown(plain, "card");
}

TEST_F(Devices, DrawerAndDisplayShareAPort) {
    gEnabledIMDisplayModus = true;
    gKassenLadePort = 4;
    gKassenLadeOpenCode = u"112"_s;
    expectShown(thanks, "at rest");
    const QByteArray select("\x1B\x3D\x02", 3), deselect("\x1B\x3D\x01", 3);
    const QByteArray drawer("\x1B\x3D\x00\r\n\x1B\x70\x00\r\n\x1B\x3D\x01\r\n", 15);
    scan(u"1"_s);
    expectShown(select + rolls + deselect, "line");
    const QByteArray amount = select + toPay("                1,50") + deselect;
    screen.expect(till::Dialog::KasseTotal, [&] {
        expectShown(amount + drawer, "the drawer is open while the cashier counts");
        gZahlung.Ergebnis = 1;
    });
    reg->cmdTotal_Click();
    expectShown(select + thanks + deselect, "paid");

    scan(u"1"_s);
    (void)display.received(48);
    dialogs.expectMsgBox(u"OK, Zahlung erfolgt...*"_s, MsgIcon::Information, MsgAnswer::OK);
    reg->PayByKarte(u"VISA"_s);
    expectShown(amount + select + thanks + deselect, "no drawer for a card");
    EXPECT_EQ(shop.count(u"Rechnung"_s), 2);

    reg->OpenLade_Click();
    expectShown({}, "switched off");
    gKFKassenlade = true;
    reg->OpenLade_Click();
    expectShown(drawer, "by key");
}

TEST_F(Devices, ALineThatIsTooLongLeavesThePortOpenUntilTheNextMessage) {
    shop.article(u"4"_s, u"Safran"_s, 1234567, {{u"Einheit"_s, u"Kilo"_s}});
    scan(u"4"_s);
    expectShown(thanks + message("Safran              1x 1 Kilo 1234567,00"), "twenty characters fit");
    const auto isFree = [] {
        SerialControl other;
        other.CommPort = 4;
        try {
            other.PortOpen(true);
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number, 70);
        }
        return other.PortOpen();
    };
    EXPECT_TRUE(isFree());
    dialogs.expectError(5);
    type(u"9+"_s);
    expectShown(message({}), "one more does not");
    EXPECT_FALSE(isFree());
    dialogs.expectError(5);
    scan(u"3"_s);
    expectShown(message({}), "nor does a long line");
    EXPECT_EQ(2, reg->basket().rowCount());
    EXPECT_EQ(2, shop.count(u"Bestellung"_s));
    scan(u"1"_s);
    expectShown(rolls, "the next message comes through");
    EXPECT_TRUE(isFree());
    dialogs.expectError(5);
    reg->ItemClick(0);
    EXPECT_FALSE(isFree());
    (void)display.received(2);
    dialogs.expectMsgBox(openQuestion, MsgIcon::Question, MsgAnswer::Yes);
    EXPECT_EQ(reg->QueryUnload(), till::Register::Unload::Close);
    expectShown(thanks, "closing");
    EXPECT_TRUE(isFree());

    gKundenLCDClearCode = 256;
    dialogs.expectError(5);
    reg->LoadBestellungen();
    EXPECT_EQ(reg->QueryUnload(), till::Register::Unload::Close); // nothing is told while closing
}

TEST_F(Devices, NoDeviceStopsTheSale) {
    expectShown(thanks, "at rest");
    gKassenLadePort = 6;
    shop.setIni(u"PORTS"_s, u"COM6"_s, u"/dev/no-such-device"_s);
    int paid = 0;
    const auto sell = [&](int drawerError) {
        QElapsedTimer timer;
        timer.start();
        scan(u"1"_s);
        EXPECT_LT(timer.elapsed(), 500);
        EXPECT_EQ(1, shop.count(u"Bestellung"_s));
        dialogs.expectError(drawerError);
        payCash(2);
        dialogs.verify();
        EXPECT_EQ(++paid, shop.count(u"Rechnung"_s));
    };
    {
        SerialControl other; // the port is taken
        other.CommPort = 4;
        other.PortOpen(true);
        sell(13); // the code is no number
    }
    expectShown({}, "busy");
    gKassenLadeOpenCode = u"112"_s;
    sell(68);
    expectShown(rolls + toPay("                1,50") + thanks, "free again");
    shop.setIni(u"PORTS"_s, u"COM4"_s, u"/dev/no-such-device"_s);
    sell(68);

    // A display that stops taking bytes is told in passing and then left alone: no window takes the keyboard
    // from the till, and no scan waits for it. A minute later it is tried again.
    gKassenLadePort = 0;
    connect(display);
    display.jam(); // it takes no byte more
    scan(u"1"_s);
    EXPECT_EQ(QStringList{u"Die Kundenanzeige antwortet nicht. Der Verkauf geht weiter."_s}, screen.hints);
    QElapsedTimer timer;
    timer.start();
    scan(u"1"_s);
    payCash(4);
    EXPECT_LT(timer.elapsed(), 900);
    EXPECT_EQ(++paid, shop.count(u"Rechnung"_s));
    EXPECT_TRUE(reg->basket().isEmpty());
    EXPECT_EQ(1, screen.hints.size());
    clock.advance(59);
    reg->SetLCDDefault();
    EXPECT_EQ(1, screen.hints.size());
    display.goOn();
    clock.advance(1);
    reg->SetLCDDefault();
    EXPECT_TRUE(display.received(thanks.size()).endsWith(thanks));
    scan(u"1"_s);
    expectShown(rolls, "it works again");
    EXPECT_EQ(1, screen.hints.size());
}

} // namespace
