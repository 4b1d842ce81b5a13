#include <devices/ReceiptLine.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/WaitScreen.h>
#include <support/Pty.h>
#include <text/RuntimeError.h>

#include <QElapsedTimer>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Notes what the cashier reads, and acts as told while the wait is shown.
class Screen : public WaitScreen {
  public:
    Screen()
        : m_before(SetWaitScreen(this)) {}
    ~Screen() override { SetWaitScreen(m_before); }
    void Begin(const QString& title, const QString& text) override {
        calls << u"begin "_s + title;
        Show(text);
    }
    void Show(const QString& text) override {
        told = text;
        if (onShow) onShow();
    }
    bool TakeCancel() override { return cancel; }
    void End() override { calls << u"end"_s; }

    QStringList calls;
    QString told;
    std::function<void()> onShow;
    bool cancel = false;

  private:
    WaitScreen* m_before;
};

class ReceiptLine : public testing::Test {
  protected:
    ReceiptLine() {
        ResetSession();
        gSystem = std::make_unique<CSystem>();
        gAppPath = m_folder.path() + u'/';
        gPrintDirectIOPort = 3;
        gBonWartezeit = 30;
        gSystem->WriteProfileString(u"PORTS"_s, u"COM3"_s, printer.name(), KonfigIni());
        m_time.start();
    }
    ~ReceiptLine() override { ResetSession(); }
    [[nodiscard]] qint64 elapsed() const { return m_time.elapsed(); }

    QTemporaryDir m_folder;
    Pty printer;
    Screen screen;
    const QByteArray receipt = QByteArray(50'000, 'x') + "cut";
    const QStringList once{u"begin Bondruck"_s, u"end"_s};

  private:
    QElapsedTimer m_time;
};

} // namespace

TEST_F(ReceiptLine, APausingPrinterIsToldAndGetsTheRest) {
    EXPECT_TRUE(SendToReceiptPrinter(receipt));
    EXPECT_EQ(printer.received(receipt.size()), receipt);
    EXPECT_EQ(screen.calls, QStringList()) << "nobody is told of a printer that prints";

    printer.hold();
    screen.onShow = [this] {
        EXPECT_TRUE(screen.told.contains(u"Bondrucker an COM3"_s) && screen.told.contains(u"noch 28 s"_s))
            << qPrintable(screen.told);
        EXPECT_GE(elapsed(), 2000);
        printer.goOn();
    };
    EXPECT_TRUE(SendToReceiptPrinter(receipt));
    EXPECT_EQ(printer.received(receipt.size()), receipt) << "where it stopped";
    EXPECT_EQ(screen.calls, once);
}

TEST_F(ReceiptLine, TheCashierCancels) {
    printer.hold();
    screen.cancel = true;
    EXPECT_FALSE(SendToReceiptPrinter(receipt));
    EXPECT_LT(elapsed(), 4000);
    EXPECT_EQ(screen.calls, once);
}

TEST_F(ReceiptLine, TheWaitEndsAsTheSettingSays) {
    printer.hold();
    for (const double seconds : {-1.0, 2.3}) {
        gBonWartezeit = seconds;
        QElapsedTimer time;
        time.start();
        try {
            (void)SendToReceiptPrinter(receipt);
            FAIL();
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.Number, 57);
        }
        EXPECT_GE(time.elapsed(), seconds < 0 ? 900 : 2200);
        EXPECT_LT(time.elapsed(), seconds < 0 ? 2000 : 4000);
    }
    EXPECT_EQ(screen.calls, once) << "told before the end of the longer wait";
}
