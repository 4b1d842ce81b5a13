#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Log.h>
#include <support/ScriptedDialogs.h>
#include <text/RuntimeError.h>
#include <zvt/CZVT.h>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Notes what the cashier reads; presses the key to cancel when a text comes that is waited for.
class Screen : public WaitScreen {
  public:
    void Begin(const QString& title, const QString& text) override {
        EXPECT_FALSE(open);
        open = true;
        heads << title;
        Show(text);
    }
    void Show(const QString& text) override {
        shown << text;
        if (!cancelAt.isEmpty() && text.startsWith(cancelAt)) m_cancel = true;
        if (onShow) onShow();
    }
    bool TakeCancel() override { return std::exchange(m_cancel, false); }
    void End() override { open = false; }

    QStringList heads, shown;
    QString cancelAt;
    bool open = false;
    std::function<void()> onShow;

  private:
    bool m_cancel = false;
};

/// The simulator as a process of its own.
class Terminal {
  public:
    explicit Terminal(const QStringList& arguments) {
        m_process.setReadChannel(QProcess::StandardOutput);
        m_process.start(QStringLiteral(ZVT_SIMULATOR), arguments);
        if (!m_process.waitForReadyRead(5000)) ADD_FAILURE() << "no simulator";
        name = QString::fromLocal8Bit(m_process.readLine()).trimmed();
    }
    ~Terminal() {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    /// The commands that it got since the last look.
    QStringList journal() {
        while (m_process.waitForReadyRead(30)) {
        }
        return QString::fromLatin1(m_process.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }
    QString name;

  private:
    QProcess m_process;
};

/// A till with a terminal on the network (false) or on a serial line (true).
class CardTerminalTest : public testing::TestWithParam<bool> {
  protected:
    CardTerminalTest() {
        config.connectMs = 1000;
        config.answerMs = 300;
        config.dialogueMs = 800;
        config.settleMs = 6000;
    }
    void plug(const QStringList& acts) {
        till.reset();
        terminal.reset();
        terminal = std::make_unique<Terminal>(QStringList{GetParam() ? u"serial"_s : u"tcp"_s} + acts);
        if (GetParam()) {
            config.device = terminal->name;
        } else {
            config.address = u"127.0.0.1"_s;
            config.port = terminal->name.toInt();
        }
        till = std::make_unique<CZVT>(config, screen, print);
    }
    bool pay(double amount) { return till->Bezahlen(Currency::fromDouble(amount)); }
    void expectTold(const QString& text, MsgIcon icon = MsgIcon::Exclamation) {
        dialogs.expectMsgBox(text + u"...*"_s, icon, MsgAnswer::OK, u"EC - Terminal..."_s);
    }
    [[nodiscard]] qsizetype sent(const QString& code) { return terminal->journal().filter(code).size(); }

    zvt::TerminalConfig config;
    Screen screen;
    ScriptedDialogs dialogs;
    CZVT::Print print;
    std::unique_ptr<Terminal> terminal;
    std::unique_ptr<CZVT> till;
};

const QString unknownEnd = u"ACHTUNG: Der Ausgang ist unbekannt!\n\nDie Kartenzahlung über 12,34 €"_s;

} // namespace

TEST_P(CardTerminalTest, FindsAndPays) {
    plug({u"ok"_s, u"slow"_s, u"refuse"_s, u"reject"_s, u"unknown"_s});
    ASSERT_TRUE(till->FindTerminal());
    EXPECT_EQ(till->Hersteller(), u"SIM 1"_s);
    EXPECT_EQ(till->Version(), u"1.0.7"_s);
    EXPECT_TRUE(screen.shown.isEmpty());
    (void)terminal->journal();

    ASSERT_TRUE(pay(12.34));
    EXPECT_EQ(till->KartenName(), u"Karo"_s);
    EXPECT_EQ(screen.heads, QStringList{u"Kartenzahlung: 12,34 €"_s});
    EXPECT_TRUE(screen.shown.contains(u"Bitte Karte einstecken oder vorhalten"_s));
    EXPECT_FALSE(screen.open);
    const QStringList commands = terminal->journal();
    EXPECT_TRUE(commands.value(0).startsWith(u"0600 000000180978"_s)) << commands.value(0).toStdString();
    EXPECT_TRUE(commands.contains(u"0601 04000000001234490978"_s));

    EXPECT_TRUE(pay(5)) << "each sign of life gives it more time";
    expectTold(u"Die Kartenzahlung wurde nicht ausgeführt.\n\nvon der Bank abgelehnt (05)"_s);
    EXPECT_FALSE(pay(5));
    EXPECT_EQ(till->KartenName(), QString());
    expectTold(u"Die Kartenzahlung wurde nicht ausgeführt.\n\nHöchstbetrag überschritten"_s);
    EXPECT_FALSE(pay(5));
    (void)terminal->journal();
    EXPECT_TRUE(pay(6));
    EXPECT_EQ(sent(u"reply 8483"_s), 1) << "a command that the till does not know";
    for (const double none : {0.0, -3.0, 0.004}) {
        expectTold(u"Das Kartenterminal kann nur Beträge über 0,00 € buchen."_s);
        EXPECT_FALSE(pay(none));
    }
    EXPECT_EQ(terminal->journal(), QStringList());
}

TEST_P(CardTerminalTest, TheCashierReadsWhatTheTerminalSaysOfARefusal) {
    plug({u"abort-words"_s, u"end-words"_s});
    for (int end = 0; end < 2; ++end) {
        dialogs.expectMsgBox(
            u"Die Kartenzahlung wurde nicht ausgeführt.\n\nAbbruch oder Zeitüberschreitung am "
            "Terminal: Karte abgelehnt"_s,
            MsgIcon::Exclamation);
        EXPECT_FALSE(pay(12.34));
    }
    EXPECT_TRUE(pay(12.34));
}

TEST_P(CardTerminalTest, AnotherAmountIsNotPaid) {
    plug({u"wrong"_s, u"unreadable"_s});
    expectTold(u"Die Kartenzahlung gilt nicht: Das Kartenterminal meldet 13,34 € statt 12,34 €."_s,
               MsgIcon::Critical);
    EXPECT_FALSE(pay(12.34));
    EXPECT_EQ(sent(u"reply 84B7"_s), 1) << "which makes the terminal take it back";
    expectTold(u"Die Kartenzahlung gilt nicht: Das Kartenterminal meldet einen unlesbaren Betrag"_s,
               MsgIcon::Critical);
    EXPECT_FALSE(pay(12.34));
    EXPECT_TRUE(pay(12.34));
}

TEST_P(CardTerminalTest, TheCashierCancels) {
    plug({u"cancel"_s, u"noabort"_s});
    screen.cancelAt = u"Bitte Karte einstecken"_s;
    EXPECT_FALSE(pay(12.34)) << "and nobody needs to be told";
    EXPECT_EQ(sent(u"06B0"_s), 1);
    EXPECT_TRUE(pay(12.34)) << "the terminal did not let go";
    EXPECT_TRUE(
        screen.shown.contains(u"Das Terminal kann jetzt nicht abbrechen. Bitte am Terminal abbrechen."_s));
    screen.cancelAt = u"Verbindung zum"_s;
    (void)terminal->journal();
    (void)pay(12.34);
    EXPECT_EQ(sent(u"0601"_s), 0) << "cancelled before anything was sent";
}

TEST_P(CardTerminalTest, AfterALostLineTheTerminalIsAsked) {
    struct Case {
        QString act;
        bool paid;
    };
    const Case cases[] = {
        {u"break-command"_s, false}, {u"break-answer"_s, false}, {u"break-unacked"_s, false},
        {u"silent"_s, false},        {u"garbage"_s, false},      {u"half"_s, false},
        {u"break-booked"_s, true},   {u"break-status"_s, true},  {u"nostatus"_s, true},
        {u"stall"_s, true},          {u"abort-after"_s, true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.act.toStdString());
        plug({u"last=1234"_s, u"busy=2"_s, c.act});
        ASSERT_TRUE(till->FindTerminal());
        if (!c.paid)
            expectTold(
                u"Die Kartenzahlung wurde nicht ausgeführt.\n\nDas Terminal hat sie nicht ausgeführt."_s);
        EXPECT_EQ(pay(12.34), c.paid);
        EXPECT_EQ(till->KartenName(), c.paid ? u"Karo"_s : QString());
        EXPECT_EQ(sent(u"0601"_s), 1) << "a payment is never sent twice";
        dialogs.verify();
    }
}

TEST_P(CardTerminalTest, WhatRemainsUnknownIsToldAndAskedAgain) {
    // It cannot say: no repetition, no act to compare with, or a booking of another amount in between.
    for (const QStringList& acts : {QStringList{u"norepeat"_s, u"last=500"_s, u"break-booked"_s},
                                    QStringList{u"break-booked"_s}, QStringList{u"last=500"_s, u"other"_s}}) {
        SCOPED_TRACE(acts.join(u' ').toStdString());
        plug(acts);
        ASSERT_TRUE(till->FindTerminal());
        expectTold(unknownEnd, MsgIcon::Critical);
        EXPECT_FALSE(pay(12.34));
        EXPECT_EQ(sent(u"0601"_s), 1);
        // Before the next payment it is asked again; the cashier decides, and No is what Enter says.
        dialogs.expectMsgBox(u"Der Ausgang des vorigen Vorgangs am Kartenterminal über 12,34 €...*"_s,
                             MsgIcon::Question, MsgAnswer::No);
        EXPECT_FALSE(pay(12.34));
        EXPECT_EQ(sent(u"0601"_s), 0);
        dialogs.expectMsgBox(u"Der Ausgang des vorigen Vorgangs am Kartenterminal über 12,34 €...*"_s,
                             MsgIcon::Question, MsgAnswer::Yes);
        EXPECT_TRUE(pay(12.34));
        EXPECT_EQ(sent(u"0601"_s), 1);
        dialogs.verify();
    }
}

TEST_P(CardTerminalTest, AnEarlierPaymentTurnsOutPaid) {
    for (const double next : {12.34, 5.0}) {
        plug({u"last=1234"_s, u"busy=3"_s, u"break-booked"_s});
        ASSERT_TRUE(till->FindTerminal());
        screen.cancelAt = u"Die Verbindung ist unterbrochen"_s; // the cashier gives up waiting
        expectTold(unknownEnd, MsgIcon::Critical);
        EXPECT_FALSE(pay(12.34));
        screen.cancelAt.clear();
        (void)terminal->journal();
        expectTold(u"Der vorige, ungeklärte Vorgang am Kartenterminal über 12,34 € wurde ausgeführt."_s,
                   MsgIcon::Information);
        EXPECT_EQ(pay(next), next == 12.34) << "a sale of another amount is not what was paid";
        EXPECT_EQ(sent(u"0601"_s), 0);
        dialogs.verify();
        EXPECT_TRUE(pay(next));
    }
}

TEST_P(CardTerminalTest, ReversalRefundAndEndOfDay) {
    plug({});
    ASSERT_TRUE(pay(12.34));
    dialogs.expectInput(
        u"Bitte geben Sie die Belegnummer der Kartenzahlung ein, die storniert werden soll."_s, u"1"_s);
    dialogs.expectMsgBox(u"Die Kartenzahlung mit der Belegnummer 1 wurde storniert."_s);
    till->Storno();
    EXPECT_EQ(dialogs.lastPreset, u"0001"_s);
    dialogs.expectInput(u"Bitte geben Sie den Betrag ein, der auf die Karte gutgeschrieben werden soll."_s,
                        u"3,50"_s);
    dialogs.expectMsgBox(u"Die Gutschrift über 3,50 € wurde ausgeführt."_s);
    till->Gutschrift();
    dialogs.expectMsgBox(u"Der Kassenschnitt des Kartenterminals wurde ausgeführt....*"_s);
    till->Kassenschnitt();
    const QStringList commands = terminal->journal();
    EXPECT_TRUE(commands.contains(u"0630 00000087000104000000001234490978"_s));
    EXPECT_TRUE(commands.contains(u"0631 00000004000000000350490978"_s));
    EXPECT_TRUE(commands.contains(u"0650 000000"_s));

    for (const QString& nonsense : {u"abc"_s, u"0"_s, u"12345"_s}) {
        dialogs.expectInput(u"...*"_s, nonsense);
        expectTold(u"Eine Belegnummer"_s);
        till->Storno();
    }
    for (const QString& nonsense : {u"abc"_s, u"-3"_s, u""_s}) {
        dialogs.expectInput(u"...*"_s, nonsense);
        expectTold(u"Das ist kein Betrag"_s);
        till->Gutschrift();
    }
    dialogs.expectInput(u"...*"_s, {});
    till->Storno();
    EXPECT_EQ(terminal->journal(), QStringList());
}

TEST_P(CardTerminalTest, ReceiptsGoToTheTillOnlyWhenItPrints) {
    QStringList printed;
    plug({u"print"_s});
    EXPECT_TRUE(pay(1));
    config.printReceipts = true;
    print = [&](const QStringList& lines) { printed = lines; };
    plug({u"print"_s, u"print"_s});
    EXPECT_TRUE(pay(1));
    EXPECT_EQ(printed, (QStringList{u"Beleg"_s, QString()}));
    EXPECT_EQ(sent(u"0600 0000009E0978"_s.toLower()), 1);
    print = [](const QStringList&) { throw RuntimeError(68, u"kein Papier"_s); };
    till = std::make_unique<CZVT>(config, screen, print);
    expectTold(u"Der Beleg des Kartenterminals konnte nicht gedruckt werden: kein Papier"_s);
    EXPECT_TRUE(pay(1)) << "paid is paid";
}

TEST_P(CardTerminalTest, FaultsOfALine) {
    plug({u"plain"_s, u"bad-block"_s, u"complain"_s, u"old-end"_s});
    EXPECT_TRUE(pay(1)) << "a terminal that knows no containers; a block with a wrong checksum";
    EXPECT_TRUE(pay(2)) << "a block that is refused once";
    EXPECT_TRUE(pay(3)) << "the end of an earlier dialogue is not the end of this one";
    // A call while the terminal works, from whatever event.
    bool once = false;
    screen.onShow = [&] {
        if (std::exchange(once, true)) return;
        expectTold(u"Das Kartenterminal ist noch beschäftigt."_s);
        EXPECT_FALSE(pay(4));
    };
    EXPECT_TRUE(pay(5));
}

INSTANTIATE_TEST_SUITE_P(Lines, CardTerminalTest, testing::Bool(),
                         [](const auto& line) { return line.param ? "Serial" : "Network"; });

TEST(CardTerminal, NobodyThere) {
    ScriptedDialogs dialogs;
    Screen screen;
    zvt::TerminalConfig config;
    config.connectMs = config.answerMs = 300;
    config.settleMs = 300;
    const auto refused = [&](const QString& reason) {
        CZVT till(config, screen);
        QElapsedTimer time;
        time.start();
        EXPECT_FALSE(till.FindTerminal());
        EXPECT_EQ(till.Version(), u"unbekannt"_s);
        dialogs.expectMsgBox(u"Die Kartenzahlung wurde nicht ausgeführt.\n\n"_s + reason,
                             MsgIcon::Exclamation);
        EXPECT_FALSE(till.Bezahlen(Currency::fromInteger(3)));
        EXPECT_LT(time.elapsed(), 3000);
    };
    QTcpServer mute; // takes connections and says nothing
    ASSERT_TRUE(mute.listen(QHostAddress::LocalHost));
    config.address = u"127.0.0.1"_s;
    config.port = mute.serverPort();
    refused(u"Das Kartenterminal antwortet nicht."_s);
    mute.close();
    refused(u"Das Kartenterminal ist nicht erreichbar."_s);
    config.address.clear();
    for (const QString& device : {u"/dev/ttyNirgends"_s, u"COM0"_s, u"/dev/null"_s}) {
        config.device = device;
        refused(u"Das Kartenterminal ist nicht erreichbar."_s);
    }

    // The terminal goes for good in the middle of a payment.
    Terminal terminal({u"tcp"_s, u"die"_s});
    config.address = u"127.0.0.1"_s;
    config.port = terminal.name.toInt();
    CZVT till(config, screen);
    ASSERT_TRUE(till.FindTerminal());
    dialogs.expectMsgBox(unknownEnd + u"...*"_s, MsgIcon::Critical);
    EXPECT_FALSE(till.Bezahlen(Currency::fromDouble(12.34)));
}

TEST(CardTerminal, SettingsAndLog) {
    QTemporaryDir folder;
    ResetSession();
    gAppPath = folder.path() + u'/';
    const QString ini = folder.filePath(u"konfig.ini"_s);
    const auto read = [&](const QByteArray& lines) {
        QFile file(ini);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[ECTerminal]\n" + lines);
        file.close();
        return zvt::TerminalConfig::Read(CSystem(), ini);
    };
    EXPECT_FALSE(read("").isConfigured());
    auto config = read("Geraet=COM3\nBaudrate=115200\nStopBits=1\nPasswort=012345\nZeichensatz=8859-1\n"
                       "ZeitAntwort=0,25\nZeitVorgang=20\nBelegDruck=1\n");
    EXPECT_TRUE(config.isConfigured() && config.printReceipts);
    EXPECT_EQ(config.baud + config.stopBits, 115201);
    EXPECT_EQ(config.password, QByteArray::fromHex("012345"));
    EXPECT_EQ(config.charset, zvt::Charset::Latin1);
    EXPECT_EQ(config.answerMs + config.dialogueMs, 20250);
    config =
        read("Adresse=x\nPort=99999\nBaudrate=schnell\nPasswort=12a456\nZeitAntwort=-1\nZeitVorgang=nie\n");
    EXPECT_EQ(config.port, 20007);
    EXPECT_EQ(config.baud, 9600);
    EXPECT_EQ(config.password, QByteArray(3, '\0'));
    EXPECT_EQ(config.answerMs + config.dialogueMs, 185000);

    QFile old(folder.filePath(u"zvt.log"_s));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(1024 * 1024 + 1, 'x'));
    old.close();
    ScriptedDialogs dialogs;
    Screen screen;
    Terminal terminal({u"tcp"_s});
    config.address = u"127.0.0.1"_s;
    config.port = terminal.name.toInt();
    CZVT till(config, screen);
    till.SetProtokoll(true);
    EXPECT_TRUE(till.Bezahlen(Currency::fromDouble(12.34)));
    EXPECT_EQ(QFile(folder.filePath(u"zvt.1.log"_s)).size(), 1024 * 1024 + 1);
    QFile log(folder.filePath(u"zvt.log"_s));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QByteArray content = log.readAll();
    EXPECT_TRUE(content.contains("-> 06 01 04=000000001234 49=0978"));
    EXPECT_TRUE(content.contains("22=EEEEEEEEEEEE1234") && !content.contains("66EE"));
    till.SetProtokoll(false);
    EXPECT_TRUE(till.Bezahlen(Currency::fromDouble(1)));
    EXPECT_EQ(log.size(), content.size());
    ResetSession();
}
