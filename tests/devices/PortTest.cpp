#include <devices/Port.h>
#include <devices/Printers.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <support/Pty.h>
#include <text/RuntimeError.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <termios.h>

using namespace Qt::StringLiterals;

namespace {

class Ports : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        static int count = 1;
        static char name[] = "test", *arguments[] = {name, nullptr};
        static QCoreApplication application(count, arguments); // serial lines live in its event loop
    }
    Ports() {
        gSystem = std::make_unique<CSystem>();
        gAppPath = m_folder.path() + u'/';
    }
    ~Ports() override {
        gSystem.reset();
        gAppPath.clear();
    }
    static void map(const QString& port, const QString& device) {
        gSystem->WriteProfileString(u"PORTS"_s, port, device, KonfigIni());
    }
    static int raised(const std::function<void()>& act) {
        QElapsedTimer timer;
        timer.start();
        int number = 0;
        try {
            act();
        } catch (const RuntimeError& error) {
            EXPECT_FALSE(error.Description.isEmpty());
            number = error.Number;
        }
        EXPECT_LT(timer.elapsed(), 5000) << "a port must not hang";
        return number;
    }

    QTemporaryDir m_folder;
};

QByteArray everyByte(int times) {
    QByteArray bytes;
    for (int i = 0; i < 256 * times; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

} // namespace

TEST_F(Ports, NamesAreMappedByTheIniFile) {
    map(u"COM1"_s, u"/dev/ttyUSB0"_s);
    map(u"LPT1"_s, u"/dev/usb/lp0"_s);
    EXPECT_EQ(PortDevice(u"COM1"_s), u"/dev/ttyUSB0"_s);
    EXPECT_EQ(PortDevice(u"Com1:"_s), u"/dev/ttyUSB0"_s);
    EXPECT_EQ(PortDevice(u"com01"_s), u"/dev/ttyUSB0"_s);
    EXPECT_EQ(PortDevice(u"lpt1:"_s), u"/dev/usb/lp0"_s);
    EXPECT_EQ(PortDevice(u"COM2"_s), u"/dev/ttyS1"_s);
    EXPECT_EQ(PortDevice(u"lpt2:"_s), u"/dev/lp1"_s);
    for (const char16_t* bad : {u"", u"COM", u"COM0", u"COM-1", u"COM+1", u"COM100", u"LPT10", u"COMx",
                                u"AUX1", u"/dev/null", u"COM1/.."})
        EXPECT_EQ(raised([&] { (void)PortDevice(QString::fromUtf16(bad)); }), 52)
            << qPrintable(QString::fromUtf16(bad));
}

TEST_F(Ports, PortTexts) {
    EXPECT_EQ(GetPortText(1), u"COM1:9600,n,8,1"_s);
    EXPECT_EQ(GetPortText(8), u"COM8:9600,n,8,1"_s);
    EXPECT_EQ(GetPortText(9), GetPortText(8));
    EXPECT_EQ(GetPortText(10), u"lpt1:"_s);
    EXPECT_EQ(GetPortText(11), u"lpt2:"_s);
    for (const int none : {-1, 0, 12, 13, 99})
        EXPECT_EQ(GetPortText(none), u""_s);

    const LineSettings odd = ParseLineSettings(u"19200,E,7,2");
    EXPECT_EQ(odd.baud, 19200);
    EXPECT_EQ(odd.parity, 'e');
    EXPECT_EQ(odd.dataBits, 7);
    EXPECT_EQ(odd.stopBits, 2);
    for (const char16_t* bad :
         {u"", u"9600", u"9600,n,8", u"9600,n,8,1,", u"x,n,8,1", u"0,n,8,1", u"9600,z,8,1", u"9600,,8,1",
          u"9600,n,9,1", u"9600,n,4,1", u"9600,n,8,3", u"9600,ä,8,1"})
        EXPECT_EQ(raised([&] { (void)ParseLineSettings(bad); }), 5) << qPrintable(QString::fromUtf16(bad));

    Pty device;
    map(u"COM1"_s, device.name());
    Port port = Port::Open(u"COM1:2400,n,8,2"_s);
    termios now{};
    tcgetattr(device.cable(), &now);
    EXPECT_EQ(cfgetospeed(&now), static_cast<speed_t>(B2400));
    EXPECT_NE(now.c_cflag & CSTOPB, 0u);
    port.write("a");
    port.close();
    EXPECT_EQ(device.received(1), "a");
    EXPECT_EQ(raised([] { (void)Port::Open(u""_s); }), 52);
    EXPECT_EQ(raised([] { (void)Port::Open(u"COM1:schnell"_s); }), 5);
}

TEST_F(Ports, BytesArriveAsTheyAre) {
    const QByteArray message = everyByte(40); // more than the line holds at once
    for (const std::optional<LineSettings>& settings :
         {std::optional<LineSettings>(), std::optional<LineSettings>(LineSettings{})}) {
        Pty printer;
        map(u"COM1"_s, printer.name());
        for (int round = 0; round < 2; ++round) {
            Port port(u"COM1"_s, settings);
            port.write(message.first(100));
            port.write(message.sliced(100));
            port.close();
            EXPECT_EQ(printer.received(message.size()), message) << settings.has_value() << round;
            EXPECT_EQ(raised([&] { port.write("x"); }), 52);
        }
    }
}

TEST_F(Ports, SpeedIsTheOneOfTheDeviceUnlessTold) {
    Pty printer;
    map(u"COM1"_s, printer.name());
    const auto speed = [&] {
        termios now{};
        tcgetattr(printer.cable(), &now);
        return cfgetospeed(&now);
    };
    termios outside{};
    tcgetattr(printer.cable(), &outside);
    cfsetspeed(&outside, B19200);
    tcsetattr(printer.cable(), TCSANOW, &outside);
    {
        Port port(u"COM1"_s);
        port.write("a");
        EXPECT_EQ(speed(), static_cast<speed_t>(B19200));
        port.close();
    }
    termios after{};
    tcgetattr(printer.cable(), &after);
    EXPECT_EQ(after.c_oflag, outside.c_oflag);
    {
        Port port(u"COM1"_s, LineSettings{.baud = 4800});
        EXPECT_EQ(speed(), static_cast<speed_t>(B4800));
        port.write("b");
        port.close();
    }
    EXPECT_EQ(printer.received(2), "ab");
}

TEST_F(Ports, FailuresAreFastAndHaveNumbers) {
    map(u"COM1"_s, m_folder.path() + u"/missing/port"_s);
    map(u"COM2"_s, u"/dev/no-such-device"_s);
    map(u"COM3"_s, m_folder.path());
    map(u"COM4"_s, u"/dev/full"_s);
    for (const std::optional<LineSettings>& settings :
         {std::optional<LineSettings>(), std::optional<LineSettings>(LineSettings{})}) {
        EXPECT_EQ(raised([&] { Port port(u"COM1"_s, settings); }), 68);
        EXPECT_EQ(raised([&] { Port port(u"COM2"_s, settings); }), 68);
        EXPECT_EQ(raised([&] { Port port(u"COM3"_s, settings); }), 70);
        EXPECT_EQ(raised([&] { Port(u"COM4"_s, settings).write("x"); }), 61);

        Pty pulled(1000);
        map(u"COM5"_s, pulled.name());
        EXPECT_EQ(raised([&] {
                      Port port(u"COM5"_s, settings);
                      for (int i = 0; i < 1000; ++i)
                          port.write(everyByte(4));
                      port.close();
                  }),
                  57);
        Pty held;
        held.hold();
        map(u"COM6"_s, held.name());
        EXPECT_EQ(raised([&] {
                      Port port(u"COM6"_s, settings);
                      for (int i = 0; i < 1000; ++i)
                          port.write(everyByte(4));
                      port.close();
                  }),
                  57);
    }
    EXPECT_FALSE(QFile::exists(u"/dev/no-such-device"_s));
}

TEST_F(Ports, ADeviceThatPausesGetsTheRestWhenItGoesOn) {
    class Patience : public PortPatience {
      public:
        explicit Patience(Pty& device)
            : m_device(device) {}
        bool GoOn(int stillMs) override {
            longest = std::max(longest, stillMs);
            if (stillMs > 1100) m_device.goOn(); // when an impatient writer has given up
            return stillMs < 3000;
        }
        int longest = 0;

      private:
        Pty& m_device;
    };
    const QByteArray message = everyByte(400);
    for (const std::optional<LineSettings>& settings :
         {std::optional<LineSettings>(), std::optional<LineSettings>(LineSettings{})}) {
        Pty printer;
        Patience patience(printer);
        map(u"COM1"_s, printer.name());
        printer.hold();
        Port port(u"COM1"_s, settings, &patience);
        port.write(message);
        port.close();
        EXPECT_EQ(printer.received(message.size()), message) << settings.has_value();
        EXPECT_GT(patience.longest, 1100);
    }
}

TEST_F(Ports, FilesAndPipesStandInForADevice) {
    const QString file = m_folder.path() + u"/bons.bin"_s;
    map(u"COM1"_s, file);
    for (const char* text : {"eins", "zwei"}) {
        Port port(u"COM1"_s);
        port.write(text);
        port.close();
    }
    Port(u"COM1"_s, LineSettings{}).write("drei");
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "einszweidrei");
    map(u"COM3"_s, m_folder.path() + u"/neu.bin"_s);
    Port(u"COM3"_s, LineSettings{}).write("vier");
    QFile made(m_folder.path() + u"/neu.bin"_s);
    ASSERT_TRUE(made.open(QIODevice::ReadOnly)) << "a port with parameters makes its file, too";
    EXPECT_EQ(made.readAll(), "vier");

    const QByteArray pipe = QFile::encodeName(m_folder.path() + u"/pipe"_s);
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    map(u"COM2"_s, QFile::decodeName(pipe));
    EXPECT_EQ(raised([] { Port port(u"COM2"_s); }), 68); // nobody reads
    const int reader = open(pipe.constData(), O_RDONLY | O_NONBLOCK);
    Port port(u"COM2"_s);
    port.write("vier");
    close(reader);
    EXPECT_EQ(raised([&] { port.write("fünf"); }), 57);
}

TEST_F(Ports, ThePdfPrinterExistsWithItsFolder) {
    const SystemPrinters printers;
    const QString pdf = u"PDF-Drucker"_s;
    EXPECT_FALSE(printers.names().contains(pdf));
    EXPECT_EQ(PdfFolder(), u""_s);
    gSystem->WriteProfileString(u"DRUCKER"_s, u"PdfOrdner"_s, m_folder.path(), KonfigIni());
    EXPECT_EQ(printers.names().count(pdf), 1);
    EXPECT_EQ(printers.names().last(), pdf);
    EXPECT_TRUE(printers.names().contains(printers.defaultName()));
    EXPECT_EQ(PdfFolder(), m_folder.path() + u'/');
}
