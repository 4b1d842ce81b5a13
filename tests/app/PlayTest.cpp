#include <support/Pdf.h>
#include <text/CodePage.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>
#include <play/ReceiptPrinter.h>
#include <play/Script.h>

using namespace Qt::StringLiterals;

namespace {

struct Played {
    int code = -1;
    QString out, err;
};

Played runPlayer(const QStringList& scripts, const QString& folder) {
    QProcess process;
    process.start(QStringLiteral(PLAYER), scripts + QStringList{u"--out"_s, folder});
    if (!process.waitForFinished(120'000)) process.kill();
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// The bytes of a literal with its zeros.
template <std::size_t size>
QByteArray raw(const char (&text)[size]) {
    return QByteArray(text, size - 1);
}

QString pageText(const QString& name) {
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
    return PdfText(file.readAll());
}

QString writeScript(const QTemporaryDir& place, const QByteArray& text) {
    QFile file(place.filePath(u"script.txt"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    return file.fileName();
}

const QByteArray login = "window frmLogin\n"
                         "choose cboUser Jonas Weber\n"
                         "press txtPIN\n"
                         "type 2222\n"
                         "key Return\n"
                         "window frmMain\n"
                         "press barKasse\n"
                         "window frmKasse\n";

} // namespace

TEST(Script, IsReadByLinesAndRefusesNonsense) {
    const auto steps = play::parseScript("# nothing\n\n  scan 101 \nbox Ja  Wirklich alles?\n");
    ASSERT_EQ(steps.size(), 2);
    EXPECT_EQ(steps[0].argument, u"101"_s);
    EXPECT_EQ(steps[1].line, 4);
    EXPECT_EQ(play::firstWord(steps[1].argument), std::pair(u"Ja"_s, u"Wirklich alles?"_s));
    for (const char* wrong :
         {"note x\nverkaufe 101", "note x\nscan", "note x\nbox Ja", "note x\nbooked BAR "}) {
        try {
            (void)play::parseScript(wrong);
            ADD_FAILURE() << wrong;
        } catch (const RuntimeError& error) {
            EXPECT_TRUE(error.Description.startsWith(u"Zeile 2: "_s)) << wrong;
        }
    }
}

TEST(ReceiptPrinter, TakesReceiptsByteForByte) {
    play::ReceiptPrinter printer;
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(static_cast<char>(i));
    const QByteArray first = all.repeated(40) + raw("\x1bVB\0"), second = raw("\x1bVB\0");
    QSerialPort line(printer.device());
    ASSERT_TRUE(line.open(QIODevice::WriteOnly));
    line.write(first + second + "rest");
    ASSERT_TRUE(line.waitForBytesWritten(5000));
    std::optional<QByteArray> taken;
    ASSERT_TRUE(QTest::qWaitFor([&] { return (taken = printer.takeReceipt()).has_value(); }));
    EXPECT_EQ(*taken, first);
    ASSERT_TRUE(QTest::qWaitFor([&] { return (taken = printer.takeReceipt()).has_value(); }));
    EXPECT_EQ(*taken, second);
    ASSERT_TRUE(QTest::qWaitFor([&] { return printer.pending() == "rest"; }));
    EXPECT_FALSE(printer.takeReceipt().has_value());
}

TEST(ReceiptPrinter, RendersWhatStandsOnThePaper) {
    const QByteArray bytes = raw("\x1b@\r\n\x1b"
                                 "a\x01\r\n\x1b!\x01\r\nK\xE4se\r\n\x1b"
                                 "a\0\r\nSumme 1 \x80\n\n\r\nEnde\r\n\x1b"
                                 "d\x0d\x1bVB\0");
    EXPECT_EQ(play::receiptText(bytes), u"                  Käse\nSumme 1 €\n\n\nEnde\n"_s);
}

TEST(Player, PlaysTheDayThroughTheRealForms) {
    QTemporaryDir out;
    const Played run = runPlayer(
        {DEMO_ASSETS "/day/morning.txt", DEMO_ASSETS "/day/noon.txt", DEMO_ASSETS "/day/afternoon.txt"},
        out.path());
    ASSERT_EQ(run.code, 0) << qPrintable(run.err);
    EXPECT_TRUE(run.out.contains(u"KARTE: 2 Belege, 193,47"_s)) << qPrintable(run.out);
    EXPECT_TRUE(run.out.contains(u"zusammen: 28 Belege"_s));
    QFile receipt(out.filePath(u"beleg-01.bin"_s));
    ASSERT_TRUE(receipt.open(QIODevice::ReadOnly));
    const QByteArray bytes = receipt.readAll();
    EXPECT_TRUE(bytes.startsWith("\x1b@\r\n") && bytes.endsWith(raw("\x1bVB\0")));
    EXPECT_TRUE(bytes.contains(ToWindows1252(u"Naturkost Haselbusch\r\n")));
    EXPECT_FALSE(QImage(out.filePath(u"bild-03-verkauf.png"_s)).isNull());
    EXPECT_GE(QDir(out.path()).entryList({u"beleg-*.txt"_s}).size(), 8);
    const std::pair<QString, QStringList> pages[] = {
        {u"beleg-02.pdf"_s, {u"Naturkost Haselbusch"_s, u"KARTE Bankkarte"_s, u"4,47 €"_s}},
        {u"beleg-04.pdf"_s, {u"Quittung"_s, u"Gesamtbetrag"_s, u"7,10 €"_s}},
        {u"beleg-09.pdf"_s, {u"Rechnung"_s, u"Hanna Vogt"_s, u"Lindenstraße 17"_s, u"4,82 €"_s}}};
    for (const auto& [file, texts] : pages) {
        const QString page = pageText(out.filePath(file));
        for (const QString& text : texts)
            EXPECT_TRUE(page.contains(text)) << qPrintable(file + u": "_s + text + u" in\n"_s + page);
    }
}

TEST(Player, ADialogRefusesAScanThatTheRegisterTakes) {
    QTemporaryDir out, place;
    const Played run = runPlayer(
        {writeScript(place,
                     login + "scan 2003000000016\nkey F2\nbox Nein Möchten Sie alle\nwindow frmKasseRabatt\n"
                             "scan 2003000000016\nsee lblNotice Bitte erst die Frage beantworten\n"
                             "type 10\nsee txtInput 10\nkey Escape\nlines 1\nkey F5\nlines 0\n")},
        out.path());
    EXPECT_EQ(run.code, 0) << qPrintable(run.err);
}

TEST(Player, FailsWithTheLineThatDoesNotHold) {
    const auto fails = [](const QByteArray& script, const QString& expected) {
        QTemporaryDir out, place;
        const Played run = runPlayer({writeScript(place, script)}, out.path());
        EXPECT_EQ(run.code, 1);
        EXPECT_TRUE(run.err.contains(expected)) << qPrintable(run.err);
        return QDir(out.path()).entryList({u"bild-*-fehler.png"_s}).size();
    };
    const QByteArray sale =
        login + "scan 101\nkey F10\nwindow frmKasseTotal\nkey Return\nwindow frmKassePrintDlg\n";
    EXPECT_EQ(fails(sale + "key F3\nbooked BAR 4,06\n", u"Zeile 15 (booked BAR 4,06)"_s), 1);
    EXPECT_EQ(fails(sale + "key F3\nbooked BAR 4,05\n", u"der Schlussprüfung"_s), 1)
        << "the receipt was not asked for";
    EXPECT_EQ(fails(login + "scan 2002000000354\n", u"eine Meldung steht noch offen"_s), 1);
    EXPECT_EQ(fails(sale + "key F4\nbooked BAR 4,05\npage Kassenbon\n", u"statt \"Kassenbon\""_s), 1);
    EXPECT_EQ(fails(sale + "key F4\nbooked BAR 4,05\n", u"mehr gedruckt"_s), 1);
    EXPECT_EQ(fails("nonsense\n", u"Zeile 1"_s), 0);
}
