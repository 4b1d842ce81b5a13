#include <access/ui/frmLogin.h>
#include <app/DemoShop.h>
#include <app/ui/Program.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <support/ScriptedForms.h>
#include <text/RuntimeError.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class NoWaiter : public PaintWaiter {
  public:
    void Wait(int) override {}
};

/// A fresh demo shop in a folder of its own.
class ProgramTest : public testing::Test {
  protected:
    void SetUp() override {
        demo::createShop(home());
        for (const char* name : {"MERIVANE_HOME", "MERIVANE_RUNTIME", "MERIVANE_STATE"})
            qputenv(name, home().toLocal8Bit());
    }
    void TearDown() override {
        for (const char* name : {"MERIVANE_HOME", "MERIVANE_RUNTIME", "MERIVANE_STATE"})
            qunsetenv(name);
        ResetSession();
    }
    [[nodiscard]] QString home() const { return m_place.filePath(u"laden"_s); }

    QTemporaryDir m_place;
    NoWaiter m_waiter;
};

QWidget* visible(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->objectName() == name) return window;
    }
    return nullptr;
}

struct Outcome {
    int code = -1;
    QString out, err;
};

/// The program as on a machine without a display.
Outcome runTill(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
        environment.remove(name);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TILL), arguments);
    if (!process.waitForFinished(60'000)) process.kill();
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

TEST_F(ProgramTest, StartsOnAFreshDemoShopToTheLogin) {
    Program program(m_waiter);
    ASSERT_EQ(program.Start(), StartResult::Running);
    QWidget* login = visible(u"frmLogin"_s);
    ASSERT_NE(login, nullptr);
    EXPECT_EQ(visible(u"frmSplash"_s), nullptr);
    EXPECT_EQ(login->findChild<QComboBox*>(u"cboUser"_s)->count(), 4) << "the blocked person is not listed";
    EXPECT_EQ(gVollerSteuerSatz, 19);
    EXPECT_EQ(gKopf1, u"Naturkost Haselbusch"_s);
    EXPECT_TRUE(gKFRabatt && gKFMinusBuchung) << "the functions are on at the very first start";
    EXPECT_FALSE(gBonDrucker.isEmpty()) << "the PDF printer stands in where the machine has none";
    EXPECT_EQ(gColorBack4, 9533303);
}

TEST_F(ProgramTest, TheSecondStartFindsTheStoreProtected) {
    for (int i = 0; i < 2; ++i) {
        Program program(m_waiter);
        ASSERT_EQ(program.Start(), StartResult::Running) << i;
        ASSERT_NE(visible(u"frmLogin"_s), nullptr);
    }
    EXPECT_EQ(visible(u"frmLogin"_s), nullptr) << "the screens go with the program";
}

TEST_F(ProgramTest, AStoreThatIsNotOursIsToldAndLeftAlone) {
    const QString path = home() + u"/daten/Merivane.mdb"_s;
    QFile store(path);
    ASSERT_TRUE(store.open(QIODevice::WriteOnly | QIODevice::Truncate));
    store.write("Einkaufsliste: Hafer, Milch");
    store.close();
    {
        Program program(m_waiter);
        ScriptedForms dialogs;
        dialogs.expectError(3343);
        EXPECT_EQ(program.Start(), StartResult::Failed);
    }
    ASSERT_TRUE(store.open(QIODevice::ReadOnly));
    EXPECT_EQ(store.readAll(), "Einkaufsliste: Hafer, Milch");
}

TEST_F(ProgramTest, ClosingTheLoginEndsTheProgram) {
    Program program(m_waiter);
    ASSERT_EQ(program.Start(), StartResult::Running);
    QMetaObject::invokeMethod(
        qApp, [] { QTest::keyClick(visible(u"frmLogin"_s), Qt::Key_Escape); }, Qt::QueuedConnection);
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(ProgramTest, AnExceptionThatNobodyCaughtIsToldAndTheTillGoesOn) {
    class Careless : public QObject {
      public:
        bool event(QEvent*) override { throw RuntimeError(3026, u"Der Datenträger ist voll."_s); }
    } careless;
    Program program(m_waiter);
    ScriptedForms dialogs;
    dialogs.expectError(3026);
    QEvent event(QEvent::User);
    EXPECT_FALSE(QCoreApplication::sendEvent(&careless, &event));
    QFile log(home() + u"/merivane.log"_s);
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(log.readAll()).contains(u"Der Datenträger ist voll."_s));
}

TEST(CommandLine, WorksWithoutADisplay) {
    QTemporaryDir place;
    EXPECT_EQ(runTill({u"--version"_s}).out, u"Merivane "_s + QStringLiteral(MERIVANE_VERSION) + u'\n');
    EXPECT_EQ(runTill({u"--create-demo"_s}).code, 2) << "the folder is missing";
    EXPECT_EQ(runTill({u"--dance"_s}).code, 2);
    const QString folder = place.filePath(u"laden"_s);
    EXPECT_EQ(runTill({u"--create-demo"_s, folder}).code, 0);
    const Outcome again = runTill({u"--create-demo"_s, folder});
    EXPECT_EQ(again.code, 1);
    EXPECT_TRUE(again.err.contains(u"schon belegt"_s)) << qPrintable(again.err);
}
