#include <zvt/protocol/Describe.h>
#include <zvt/protocol/Fields.h>
#include <zvt/protocol/Messages.h>
#include <zvt/protocol/SerialFrame.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace zvt;

namespace {

QByteArray bytes(const char* hex) { return QByteArray::fromHex(hex); }
StatusInfo status(const char* hex) { return readStatus(command(0x040F, bytes(hex)), Charset::Cp437); }
std::string utf8(const QString& text) { return text.toStdString(); }

} // namespace

TEST(Stream, CutsAtLengthsOfOneAndThreeBytes) {
    const Apdu small = command(0x0601, QByteArray(254, 'a')), large = command(0x06D3, QByteArray(255, 'b'));
    EXPECT_EQ(small.encode().first(3), bytes("0601FE"));
    EXPECT_EQ(large.encode().first(5), bytes("06D3FFFF00"));
    const Apdu longest = command(0x0601, QByteArray(0xFFFF, 'c'));
    EXPECT_EQ(Apdu::parse(longest.encode()), longest);
    EXPECT_EQ(Apdu::parse(command(0x0601, QByteArray(0x10001, 'c')).encode()), longest);

    StreamDecoder stream;
    QList<int> sizes;
    for (const char byte : small.encode() + large.encode() + bytes("800000")) {
        stream.feed(QByteArray(1, byte));
        while (const auto apdu = stream.next())
            sizes << static_cast<int>(apdu->data.size());
    }
    EXPECT_EQ(sizes, (QList<int>{254, 255, 0}));
    EXPECT_FALSE(stream.isPartial());

    stream.feed(bytes("040F0527"));
    EXPECT_FALSE(stream.next());
    EXPECT_TRUE(stream.isPartial());
    stream.reset();
    stream.feed("HTTP/1.1 400 Bad Request");
    EXPECT_FALSE(stream.next());
    EXPECT_TRUE(stream.isGarbage());
    EXPECT_FALSE(Apdu::parse(bytes("06010400")));
    EXPECT_FALSE(Apdu::parse(bytes("0601000000")));
}

TEST(Serial, FramesAndTheirFaults) {
    using enum SerialDecoder::Event;
    EXPECT_EQ(crc16("123456789"), 0x2189);
    const Apdu apdu = command(0x0601, bytes("100203100600"));
    const QByteArray frame = serialFrame(apdu.encode());
    EXPECT_TRUE(frame.startsWith(bytes("1002060106101002031010"))) << frame.toHex().toStdString();

    SerialDecoder line;
    const auto events = [&](const QByteArray& fed) {
        line.feed(fed);
        QList<SerialDecoder::Event> all;
        for (auto event = line.next(); event != None; event = line.next())
            all << event;
        return all;
    };
    using All = QList<SerialDecoder::Event>;
    EXPECT_EQ(events(frame), All{Frame});
    EXPECT_EQ(line.apdu(), apdu);
    EXPECT_EQ(events(bytes("06") + "noise" + frame + bytes("15")), (All{Ack, Frame, Nak}));
    for (const char byte : frame.chopped(1))
        EXPECT_EQ(events(QByteArray(1, byte)), All{});
    EXPECT_TRUE(line.isPartial());
    EXPECT_EQ(events(frame.last(1)), All{Frame});

    QByteArray wrong = frame;
    wrong[4] = 0x55;
    EXPECT_EQ(events(wrong), All{Bad});
    EXPECT_EQ(events(serialFrame(bytes("0601050000"))), All{Bad}) << "a length that lies";
    EXPECT_EQ(events(bytes("1002060110FF")), All{Bad}) << "an escape that escapes nothing";
    EXPECT_EQ(events(bytes("10020601") + frame), All{Frame}) << "a frame after one that broke off";
    EXPECT_EQ(events(bytes("1002") + QByteArray(70000, 'x')), All{Bad}) << "without an end";
    line.reset();
    EXPECT_EQ(events(frame), All{Frame});
}

TEST(Fields, StatusOfAPayment) {
    const StatusInfo paid = status(
        "2700 04000000001234 4909780B0001230C1405590D112287004288000042 8A0A 8BF1F04D415354455220434152 "
        "22F0F867EEEEEEEEEE1234 29650000281970");
    EXPECT_TRUE(paid.isBooked() && paid.complete);
    EXPECT_EQ(paid.amount, 1234);
    EXPECT_EQ(paid.currency, euro);
    EXPECT_EQ(utf8(paid.receipt + u'/' + paid.trace + u'/' + paid.turnover), "0042/000123/000042");
    EXPECT_EQ(utf8(paid.date + u' ' + paid.time), "1122 140559");
    EXPECT_EQ(utf8(paid.cardName), "MASTER CAR");

    // The name of the card: its own, by the kind in one byte or in the container, else of its application.
    EXPECT_EQ(utf8(status("27008A05").cardName), "girocard");
    EXPECT_EQ(utf8(status("27008AFF0603410106").cardName), "Mastercard");
    EXPECT_EQ(utf8(status("27008AC806096007 4405 5669736121").cardName), "Visa!");
    EXPECT_EQ(utf8(status("27000B000000060 71F2B0412345678").trace), "12345678") << "a long trace number";
    EXPECT_EQ(utf8(status("276C06071F17044E65696E").text), "Nein");
    // "Betrag  falsch", with blanks and a NUL at its end.
    const char* additional = "3CF0F1F8 42657472616720 2066616C73636820200000";
    EXPECT_EQ(utf8(status((QByteArray("27B7") + additional).constData()).text), "Betrag falsch");
    EXPECT_EQ(utf8(status((QByteArray("276C06071F17044E65696E") + additional).constData()).text),
              "Nein: Betrag falsch");
}

TEST(Fields, WhatCannotBeReadIsNotGuessed) {
    for (const char* damaged : {"270004000000", "2700FE00", "270022F9F901", "27008B0102", "27000606270100",
                                "2700060427820100", "270006031F8181"}) {
        const StatusInfo info = status(damaged);
        EXPECT_TRUE(info.isBooked()) << damaged;
        EXPECT_FALSE(info.complete) << damaged;
        EXPECT_FALSE(info.amount) << damaged;
    }
    EXPECT_FALSE(status("270004EE0000001234").complete) << "an amount that is no number";
    EXPECT_FALSE(status("").result);

    // Containers in containers beyond reason stay closed.
    QByteArray deep;
    for (int i = 0; i < 60; ++i)
        deep = encodeTlv(0x30, deep);
    const TlvList list = decodeTlv(deep);
    int depth = 0;
    for (const auto* level = &list.objects; !level->empty(); level = &level->front().parts)
        ++depth;
    EXPECT_LT(depth, 12);
    const QByteArray value(300, 'x');
    const TlvList round = decodeTlv(encodeTlv(0x1F40, value) + encodeTlv(0x07, value.first(200)));
    ASSERT_TRUE(round.complete);
    EXPECT_EQ(round.find(0x1F40)->value, value);
    EXPECT_EQ(round.find(0x07)->value.size(), 200);
    EXPECT_EQ(bcd(123456, 3), bytes("123456"));
    EXPECT_EQ(bcdNumber(bcd(999999999999, 6)), 999999999999);
}

TEST(Messages, ActsAreToldApart) {
    const StatusInfo one = status("2700870005 0B000011"), two = status("2700870006 0B000012");
    EXPECT_FALSE(one.isSameAct(two));
    EXPECT_TRUE(one.isSameAct(status("2700870005")));
    EXPECT_FALSE(one.isSameAct(status("2700870005 0B000012"))) << "receipts begin anew after the end of day";
    EXPECT_FALSE(status("2700").isIdentified());
}

TEST(Messages, TextsOfTheTerminal) {
    const auto state = [](const char* hex) { return readState(command(0x04FF, bytes(hex)), Charset::Cp437); };
    EXPECT_EQ(utf8(state("0A").text), "Bitte Karte einstecken oder vorhalten");
    EXPECT_EQ(utf8(state("47").text), "Karte nicht zugelassen\nBitte Karte entnehmen");
    EXPECT_EQ(utf8(state("4B").text), "Bitte Karte entnehmen");
    EXPECT_EQ(utf8(state("FF").text), "");
    const StateInfo own = state("FF0506 0D 24 0B 0704 42818474 0703 6A6131");
    EXPECT_EQ(utf8(own.text), "Büät\nja1");
    EXPECT_EQ(own.minutes, 5);
    EXPECT_EQ(utf8(decodeText(bytes("E4F6FC80"), Charset::Latin1)), "äöü\u0080");

    EXPECT_EQ(readLines(command(0x06D1, bytes("0342")), Charset::Cp437), QStringList{u"   B"_s});
    EXPECT_EQ(readLines(command(0x06D1, bytes("FF03")), Charset::Cp437).size(), 3);
    EXPECT_EQ(
        readLines(command(0x06D3, bytes("060F250D 0901000703 416263 09 01 FF 0700")), Charset::Cp437).size(),
        3);

    const auto terminal = [](const char* hex) {
        return readTerminal(command(0x060F, bytes(hex)), Charset::Cp437);
    };
    EXPECT_EQ(utf8(terminal("F0F0F5 312E302E37 DC").version), "1.0.7");
    EXPECT_EQ(terminal("F0F0F5 312E302E37 DC").status, 0xDC);
    const TerminalInfo rich = terminal("00060FE40D1F40034142431F41043220 3031");
    EXPECT_EQ(rich.status, 0);
    EXPECT_EQ(utf8(rich.device + u'/' + rich.version), "ABC/2 01");

    EXPECT_EQ(utf8(readFailure(command(0x061E, bytes("6F0978")), Charset::Cp437).text), "falsche Währung");
    EXPECT_EQ(utf8(readFailure(command(0x8483), Charset::Cp437).text), "Funktion nicht möglich");
    EXPECT_EQ(utf8(readFailure(command(0x061E, bytes("05")), Charset::Cp437).text),
              "von der Bank abgelehnt (05)");
    EXPECT_EQ(utf8(withOwnWords(u"Betrag falsch"_s, u"BETRAG FALSCH"_s)), "Betrag falsch") << "says no more";
    EXPECT_EQ(readFailure(command(0x061E), Charset::Cp437).code, 0xFF);
}

TEST(Log, ShowsNothingOfACard) {
    const QString payment = describe(command(
        0x040F, bytes("270004000000001234 22F0F84000111122223333 23F0F84000111122223333 8BF0F456495341 "
                      "060B1F0908 4000111122223333")));
    EXPECT_EQ(
        utf8(payment),
        "04 0F 27=00 04=000000001234 22=EEEEEEEEEEEE3333 23=(8 Bytes) 8B=(4 Bytes) 06{ 1F09=(8 Bytes) }");
    EXPECT_EQ(utf8(describe(command(0x0600, bytes("12345618097806021A00")))),
              "06 00 ****** 180978 06{ 1A=(0 Bytes) }");
    EXPECT_EQ(utf8(describe(command(0x0620, bytes("1234560303")))), "06 20 ****** 03=03");
    EXPECT_EQ(utf8(describe(command(0x06D1, "\0014000111122223333"))), "06 D1 (17 Bytes)");
    EXPECT_EQ(utf8(describe(command(0x040F, bytes("270099400011112222")))), "04 0F 27=00 ...");
    EXPECT_EQ(utf8(describe(command(0x040F, bytes("22F0F412345678")))), "04 0F 22=EEEEEEEE");
}
