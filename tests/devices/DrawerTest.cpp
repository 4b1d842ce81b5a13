#include <devices/CashDrawer.h>
#include <devices/PrintJob.h>
#include <devices/SerialControl.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <support/FixedClock.h>
#include <support/Pdf.h>
#include <support/Pty.h>
#include <support/ScriptedDialogs.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <termios.h>

using namespace Qt::StringLiterals;

namespace {

class Drawer : public testing::Test {
  protected:
    Drawer() {
        gSystem = std::make_unique<CSystem>();
        gAppPath = folder.path() + u'/';
        gKassenLadeOpenCode = u"112"_s;
    }
    ~Drawer() override {
        SetPrintSpooler({});
        ResetSession();
    }
    static void ini(const QString& section, const QString& key, const QString& value) {
        gSystem->WriteProfileString(section, key, value, KonfigIni());
    }
    /// Opens it on `port` and looks at the clock: nothing that fails may hold the sale up.
    static void open(DrawerOwner owner, int port) {
        gKassenLadePort = port;
        QElapsedTimer timer;
        timer.start();
        OpenKassenLade(owner);
        EXPECT_LT(timer.elapsed(), 1500);
    }
    QTemporaryDir folder;
    ScriptedDialogs dialogs;
};

constexpr auto Kasse = DrawerOwner::Kasse, Shell = DrawerOwner::Main;

} // namespace

TEST_F(Drawer, EveryRouteOverALine) {
    std::map<QString, std::unique_ptr<Pty>> devices;
    for (const QString& port : {u"COM1"_s, u"COM8"_s, u"COM9"_s, u"LPT1"_s, u"LPT2"_s}) {
        devices[port] = std::make_unique<Pty>();
        ini(u"PORTS"_s, port, devices[port]->name());
    }
    const QString code = u"1b7000"_s, line = code + u"0d0a"_s;
    const QString framedLine = u"1b3d000d0a"_s + line + u"1b3d010d0a"_s;
    const QString framed = u"1b3d00"_s + code + u"1b3d01"_s;
    struct Case {
        DrawerOwner owner;
        int port;
        bool directIO, shared;
        QString device, bytes;
    };
    const Case cases[] = {
        {Kasse, 1, false, false, u"COM1"_s, line},  {Kasse, 1, false, true, u"COM1"_s, framedLine},
        {Kasse, 1, true, true, u"COM1"_s, line},    {Kasse, 9, false, false, u"COM8"_s, line},
        {Kasse, 9, true, false, u"COM8"_s, line},   {Kasse, 10, false, true, u"LPT1"_s, line},
        {Kasse, 11, true, false, u"LPT2"_s, line},  {Shell, 1, false, false, u"COM1"_s, code},
        {Shell, 1, false, true, u"COM1"_s, framed}, {Shell, 1, true, true, u"COM1"_s, line},
        {Shell, 9, false, false, u"COM9"_s, code},  {Shell, 9, true, false, u"COM9"_s, line},
        {Shell, 10, false, true, u"LPT1"_s, line},  {Shell, 11, false, false, u"LPT2"_s, line},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.owner == Shell ? "frmMain " : "frmKasse ") << c.port
                                        << " PrintDirectIO " << c.directIO << " shared " << c.shared);
        gPrintDirectIO = c.directIO;
        gEnabledIMDisplayModus = c.shared;
        open(c.owner, c.port);
        EXPECT_EQ(devices[c.device]->received(c.bytes.size() / 2).toHex(), c.bytes.toLatin1());
        for (const auto& [port, device] : devices) {
            EXPECT_EQ(device->received(0), "") << qPrintable(port);
        }
    }
    for (const QString& value : {u"0"_s, u"255"_s, u" 16 "_s}) {
        gEnabledIMDisplayModus = gPrintDirectIO = false;
        gKassenLadeOpenCode = value;
        open(Kasse, 1);
        EXPECT_EQ(devices[u"COM1"_s]->received(5).at(1), static_cast<char>(value.toInt()));
    }
}

TEST_F(Drawer, NoDrawerAndFailures) {
    open(Kasse, 0);
    open(Shell, -1);

    Pty device;
    ini(u"PORTS"_s, u"COM1"_s, device.name());
    ini(u"PORTS"_s, u"COM2"_s, u"/dev/no-such-device"_s);
    ini(u"PORTS"_s, u"LPT1"_s, u"/dev/no-such-device"_s);
    gEnabledIMDisplayModus = true;
    for (const DrawerOwner owner : {Kasse, Shell}) {
        for (const auto& [code, error] :
             {std::pair{u"p"_s, 13}, {QString(), 13}, {u"256"_s, 5}, {u"-1"_s, 5}, {u"1e12"_s, 6}}) {
            gKassenLadeOpenCode = code;
            dialogs.expectError(error);
            open(owner, 1);
            dialogs.verify();
        }
        EXPECT_EQ(device.received(0), "") << "no half of a sequence leaves";
        gKassenLadeOpenCode = u"112"_s;
        for (const bool directIO : {false, true}) {
            gPrintDirectIO = directIO;
            dialogs.expectError(68);
            open(owner, 2);
            dialogs.expectError(68);
            open(owner, 10);
            dialogs.verify();
        }
        gPrintDirectIO = false;
        {
            SerialControl other;
            other.PortOpen(true);
            dialogs.expectError(70);
            open(owner, 1);
            dialogs.verify();
        }
        open(owner, 1); // nothing was left open
        EXPECT_EQ(device.received(owner == Kasse ? 15 : 9).size(), owner == Kasse ? 15 : 9);
    }
    dialogs.expectError(52);
    open(Kasse, 14);
}

TEST_F(Drawer, TheControlOfAForm) {
    auto device = std::make_unique<Pty>();
    ini(u"PORTS"_s, u"COM3"_s, device->name());
    SerialControl mainCom;
    mainCom.CommPort = 3;
    EXPECT_FALSE(mainCom.PortOpen());
    mainCom.PortOpen(false);
    EXPECT_THROW(mainCom.Output("x"), RuntimeError);
    mainCom.PortOpen(true);
    mainCom.Output("eins");
    EXPECT_EQ(device->received(4), "eins");
    mainCom.PortOpen(true); // as after a message that broke off
    EXPECT_TRUE(mainCom.PortOpen());
    termios now{};
    tcgetattr(device->cable(), &now);
    EXPECT_EQ(cfgetospeed(&now), static_cast<speed_t>(B9600));
    mainCom.Output("zwei");
    mainCom.PortOpen(false);
    EXPECT_EQ(device->received(4), "zwei");

    mainCom.PortOpen(true);
    device.reset(); // pulled out while it is open
    EXPECT_THROW(
        for (int i = 0; i < 100; ++i) {
            mainCom.Output("x");
            QThread::msleep(5);
        },
        RuntimeError);
    EXPECT_TRUE(mainCom.PortOpen());
    EXPECT_THROW(mainCom.PortOpen(true), RuntimeError);
    EXPECT_FALSE(mainCom.PortOpen());
}

TEST_F(Drawer, FontOfThePrinter) {
    const FixedClock clock;
    QList<QByteArray> jobs;
    SetPrintSpooler([&](const QString& printer, const QString&, const QByteArray& pdf, QSizeF) {
        EXPECT_EQ(printer, u"PDF-Drucker"_s);
        jobs << pdf;
    });
    const QString papers = folder.path() + u"/belege"_s;
    ini(u"DRUCKER"_s, u"PdfOrdner"_s, papers);
    gKassenLadeOpenCode = u"pppppppppp"_s; // any text will do on this route
    for (const QString& unknown : {QString(), u"Nadeldrucker"_s, u"pdf-drucker"_s}) {
        gBonDrucker = unknown;
        open(Kasse, 12);
    }
    EXPECT_TRUE(jobs.isEmpty());

    gBonDrucker = u"PDF-Drucker"_s;
    ini(u"KassenLade"_s, u"ControlFontName"_s, u"DejaVu Sans Mono"_s);
    open(Kasse, 12);
    ini(u"KassenLade"_s, u"ControlFontName"_s, u"Inter"_s); // read anew each time
    open(Shell, 12);
    ASSERT_EQ(jobs.size(), 2);
    EXPECT_TRUE(jobs[0].contains("+DejaVuSansMono") && !jobs[0].contains("+Inter"));
    EXPECT_TRUE(jobs[1].contains("+Inter"));
    EXPECT_EQ(PdfText(jobs[0]), u"pppppppppp"_s);
    // Ten letters of this typeface are 0.602 of its size wide each.
    constexpr double mmPerPoint = 25.4 / 72;
    EXPECT_NEAR(ReadPdf(jobs[0]).word(u"pppppppppp"_s).area.width(), 10 * 0.602 * 9.5 * mmPerPoint, 0.1);

    SetPrintSpooler({});
    open(Kasse, 12);
    open(Kasse, 12);
    EXPECT_EQ(QDir(papers).entryList(QDir::Files, QDir::Name),
              (QStringList{u"Kassenlade 20261122-140500-2.pdf"_s, u"Kassenlade 20261122-140500.pdf"_s}));
    QFile paper(papers + u"/Kassenlade 20261122-140500-2.pdf"_s);
    ASSERT_TRUE(paper.open(QIODevice::ReadOnly));
    EXPECT_EQ(PdfText(paper.readAll()), u"pppppppppp"_s);

    ini(u"DRUCKER"_s, u"PdfOrdner"_s, KonfigIni()); // no folder
    dialogs.expectError(70);
    open(Kasse, 12);
    SetPrintSpooler([](auto&&...) { throw RuntimeError(482, u"Druckerfehler"_s); });
    dialogs.expectError(482);
    open(Shell, 12);
}

TEST_F(Drawer, HelperProgramIsStartedAndNotWaitedFor) {
    const QString program = gAppPath + u"OKL.exe"_s, trace = gAppPath + u"trace"_s;
    dialogs.expectMsgBox(
        u"Das System konnte die Datei "_s + program +
            u" zum Öffnen der Kassenlade nicht finden. Stellen Sie sicher, dass sich die Datei im "
            u"Pfad der Anwendung befinden oder ändern Sie die Konfiguration entsprechend ab."_s,
        MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
    open(Kasse, 13);
    dialogs.verify();

    QFile file(program);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\necho \"$#\" > '" + QFile::encodeName(trace) + "'\nsleep 5\n");
    file.close();
    dialogs.expectError(70); // it may not be run
    open(Shell, 13);
    file.setPermissions(file.permissions() | QFile::ExeOwner);
    open(Kasse, 13);
    QFile written(trace);
    for (int i = 0; i < 200 && written.size() == 0; ++i)
        QThread::msleep(10);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "0\n");
}
