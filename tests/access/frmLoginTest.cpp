#include <access/ui/frmLogin.h>
#include <access/ui/frmMain.h>
#include <session/Globals.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/Form.h>
#include <ui/TouchKey.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Stands for the register: a window that announces its end and can refuse it.
class Till : public QWidget {
  public:
    explicit Till(std::function<void()> unloaded_, const bool& refuse_)
        : unloaded(std::move(unloaded_))
        , refuse(refuse_) {}

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->setAccepted(!refuse);
        if (!refuse) unloaded();
    }

  private:
    std::function<void()> unloaded;
    const bool& refuse;
};

class frmLoginTest : public testing::Test {
  protected:
    frmLoginTest() {
        shop.person(u"Lena"_s, u"Brandt"_s, u"0012"_s);
        m_jonas = shop.person(u"Jonas"_s, u"Weber"_s, u"77"_s);
        shop.person(u"Mia"_s, u"Schulz"_s, u"3"_s, {{u"Gesperrt"_s, true}});
    }
    ~frmLoginTest() override {
        refuse = false;
        m_login.reset();
        for (QWidget* window : QApplication::topLevelWidgets())
            window->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    frmLogin& open() {
        m_login = std::make_unique<frmLogin>([this](std::function<void()> unloaded) -> QWidget* {
            if (fail) throw RuntimeError(3078, u"Tabelle fehlt"_s);
            ++opened;
            till = new Till(std::move(unloaded), refuse);
            till->show();
            return till;
        });
        showForm(*m_login);
        return *m_login;
    }
    static frmMain* shell() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* form = qobject_cast<frmMain*>(window); form != nullptr && form->isVisible())
                return form;
        }
        return nullptr;
    }
    static void logIn(frmLogin& form, const QString& name, const QString& pin) {
        auto& box = control<QComboBox>(form, u"cboUser"_s);
        box.setFocus();
        box.lineEdit()->selectAll();
        typeText(form, name);
        pressKey(form, Qt::Key_Return);
        EXPECT_TRUE(control<QLineEdit>(form, u"txtPIN"_s).hasFocus());
        typeText(form, pin);
        pressKey(form, Qt::Key_Return);
        QApplication::processEvents();
    }
    TempShop shop;
    ScriptedForms dialogs;
    std::unique_ptr<frmLogin> m_login;
    QPointer<QWidget> till;
    int m_jonas = 0, opened = 0;
    bool refuse = false, fail = false;
};

TEST_F(frmLoginTest, TheKeyboardLeadsToTheShellAndBack) {
    frmLogin& form = open();
    EXPECT_EQ(2, control<QComboBox>(form, u"cboUser"_s).count()); // blocked people are not there
    EXPECT_EQ(u"&Anmelden"_s, control<TouchKey>(form, u"cmdLogin"_s).text());
    EXPECT_FALSE(control<TouchKey>(form, u"cmdMain"_s).isVisible());
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    EXPECT_EQ(m_jonas, gUser.ID);
    EXPECT_FALSE(form.isVisible());
    frmMain* main = shell();
    ASSERT_NE(nullptr, main);
    EXPECT_TRUE(control<TouchKey>(*main, u"barKasse"_s).isVisible());

    pressKey(*main, Qt::Key_F12); // Abmelden
    QApplication::processEvents();
    EXPECT_EQ(nullptr, shell());
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(QString(), control<QLineEdit>(form, u"txtPIN"_s).text());
}

TEST_F(frmLoginTest, AWrongPinIsToldAndEmptied) {
    frmLogin& form = open();
    dialogs.expectMsgBox(u"Sie haben eine ungültige PIN eingegeben."_s, MsgIcon::Critical);
    logIn(form, u"Lena Brandt"_s, u"12"_s);
    auto& pin = control<QLineEdit>(form, u"txtPIN"_s);
    EXPECT_EQ(QString(), pin.text());
    EXPECT_TRUE(pin.hasFocus());
    for (const auto* digit : {u"cmdNumber0", u"cmdNumber0", u"cmdNumber1", u"cmdNumber2"})
        clickOn(form, QString::fromUtf16(digit));
    clickOn(form, u"cmdLogin"_s);
    QApplication::processEvents();
    EXPECT_NE(nullptr, shell());
}

TEST_F(frmLoginTest, ArrowsLeafThroughTheNamesAndDigitsAreThePin) {
    frmLogin& form = open();
    auto& box = control<QComboBox>(form, u"cboUser"_s);
    for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Down}) {
        pressKey(form, static_cast<Qt::Key>(key));
        ASSERT_TRUE(box.hasFocus());
    }
    EXPECT_EQ(1, box.currentIndex());
    typeText(form, u"07"_s);
    EXPECT_EQ(1, box.currentIndex());
    EXPECT_EQ(u"07"_s, control<QLineEdit>(form, u"txtPIN"_s).text());
    EXPECT_TRUE(control<QLineEdit>(form, u"txtPIN"_s).hasFocus());
}

TEST_F(frmLoginTest, ANameThatNobodyHasLogsNobodyIn) {
    frmLogin& form = open();
    auto& box = control<QComboBox>(form, u"cboUser"_s);
    const auto& told = control<QLabel>(form, u"lblNiemand"_s);
    const auto& pin = control<QLineEdit>(form, u"txtPIN"_s);
    EXPECT_FALSE(told.isVisible());
    box.lineEdit()->selectAll();
    typeText(form, u"Niemand"_s);
    pressKey(form, Qt::Key_Return);
    EXPECT_TRUE(told.isVisible());
    EXPECT_EQ(u"„Niemand“ gibt es nicht. Bitte wählen Sie einen Namen aus der Liste."_s, told.text());
    EXPECT_TRUE(box.hasFocus());
    typeText(form, u"0012"_s); // Lena's, who stood there before
    EXPECT_EQ(u"0012"_s, pin.text());
    pressKey(form, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(u"Niemand"_s, box.currentText());
    EXPECT_EQ(nullptr, shell());

    // Esc takes back what was typed, the PIN and then the name, before it ends the program.
    pressKey(form, Qt::Key_Escape);
    EXPECT_EQ(QString(), pin.text());
    pressKey(form, Qt::Key_Escape);
    EXPECT_EQ(u"Lena Brandt"_s, box.currentText());
    EXPECT_FALSE(told.isVisible());
    EXPECT_TRUE(form.isVisible());
    pressKey(form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
}

TEST_F(frmLoginTest, EveryPersonHasAKeyAndEveryDigitIsThePin) {
    frmLogin& form = open();
    auto& box = control<QComboBox>(form, u"cboUser"_s);
    auto& pin = control<QLineEdit>(form, u"txtPIN"_s);
    EXPECT_TRUE(control<TouchKey>(form, u"cmdUser0"_s).isChecked());
    EXPECT_GE(control<TouchKey>(form, u"cmdUser0"_s).height(), 64);
    typeText(form, u"99"_s); // meant for somebody else
    clickOn(form, u"cmdUser1"_s);
    EXPECT_EQ(u"Jonas Weber"_s, box.currentText());
    EXPECT_TRUE(control<TouchKey>(form, u"cmdUser1"_s).isChecked());
    EXPECT_FALSE(control<TouchKey>(form, u"cmdUser0"_s).isChecked());
    EXPECT_TRUE(pin.hasFocus());
    typeText(form, u"7"_s);
    EXPECT_EQ(u"7"_s, pin.text()) << "what stood there is replaced";
    control<TouchKey>(form, u"cmdCancel"_s).setFocus();
    typeText(form, u"7"_s);
    EXPECT_TRUE(pin.hasFocus());
    typeText(form, u"7"_s);
    EXPECT_EQ(u"77"_s, pin.text());

    // A tap on the name itself opens the list; digits leave it for the PIN.
    QTest::mouseClick(box.lineEdit(), Qt::LeftButton);
    ASSERT_TRUE(box.view()->isVisible());
    QTest::keyClick(box.view(), Qt::Key_7, Qt::NoModifier);
    EXPECT_FALSE(box.view()->isVisible());
    EXPECT_EQ(u"7"_s, pin.text());
    QTest::mouseClick(box.lineEdit(), Qt::LeftButton);
    QTest::keyClick(box.view(), Qt::Key_Up);
    QTest::keyClick(box.view(), Qt::Key_Return);
    EXPECT_EQ(u"Lena Brandt"_s, box.currentText());
    EXPECT_TRUE(control<TouchKey>(form, u"cmdUser0"_s).isChecked());

    for (int i = 0; i < frmLogin::mostKeys - 2; ++i)
        shop.person(u"Person"_s, QString::number(i), u"1"_s);
    m_login.reset();
    EXPECT_TRUE(control<TouchKey>(open(), u"cmdUser11"_s).isVisible());
    shop.person(u"Eine"_s, u"mehr"_s, u"1"_s);
    m_login.reset();
    EXPECT_EQ(nullptr, open().findChild<TouchKey*>(u"cmdUser0"_s)) << "more are found in the list";
}

TEST_F(frmLoginTest, ATillThatIsNothingElseGoesToTheRegisterAndStillHasAShell) {
    gOnlyKassenModus = true;
    frmLogin& form = open();
    EXPECT_EQ(u"&Kassenbetrieb"_s, control<TouchKey>(form, u"cmdLogin"_s).text());
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    EXPECT_EQ(1, opened);
    EXPECT_EQ(m_jonas, gKassenUser.ID);
    EXPECT_EQ(nullptr, shell());
    EXPECT_FALSE(form.isVisible());
    till->close();
    EXPECT_TRUE(form.isVisible());

    control<QLineEdit>(form, u"txtPIN"_s).setText(u"77"_s);
    control<QComboBox>(form, u"cboUser"_s).setCurrentText(u"Jonas Weber"_s);
    clickOn(form, u"cmdMain"_s);
    QApplication::processEvents();
    ASSERT_NE(nullptr, shell());
    EXPECT_EQ(nullptr, shell()->findChild<TouchKey*>(u"barKasse"_s));
}

TEST_F(frmLoginTest, AnAreaTakesItsRightOpensOnceAndGoesWithTheShell) {
    frmLogin& form = open();
    gDB->Execute(u"UPDATE Personal SET R_Personal=0 WHERE ID=%1"_s.arg(m_jonas));
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    const auto areas = [] {
        QWidgetList open;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (qobject_cast<AreaForm*>(window) != nullptr && window->isVisible()) open << window;
        }
        return open;
    };
    dialogs.expectMsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen."_s,
                         MsgIcon::Critical, MsgAnswer::OK, u"Systemmeldung..."_s);
    clickOn(*shell(), u"barPersonal"_s);
    EXPECT_TRUE(areas().isEmpty());
    gUser.R_Personal = true;
    clickOn(*shell(), u"barPersonal"_s);
    ASSERT_EQ(1, areas().size());
    EXPECT_STREQ("frmPersonal", areas().constFirst()->metaObject()->className());
    areas().constFirst()->showMinimized();
    clickOn(*shell(), u"barPersonal"_s);
    ASSERT_EQ(1, areas().size());
    EXPECT_FALSE(areas().constFirst()->isMinimized());
    areas().constFirst()->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(areas().isEmpty());
    clickOn(*shell(), u"barPersonal"_s);
    clickOn(*shell(), u"barLogout"_s);
    EXPECT_TRUE(areas().isEmpty()) << "nobody's area stays open behind the login";
    EXPECT_TRUE(form.isVisible());
}

TEST_F(frmLoginTest, TheShellOpensOneRegisterAndComesBackFromIt) {
    frmLogin& form = open();
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    frmMain* main = shell();
    ASSERT_NE(nullptr, main);
    const auto& atTill = control<QLabel>(*main, u"lblKassenUser"_s);
    EXPECT_EQ(QString(), atTill.text());
    clickOn(*main, u"barKasse"_s);
    pressKey(*main, Qt::Key_F2);
    EXPECT_EQ(1, opened);
    EXPECT_EQ(u"An der Kasse: Weber Jonas"_s, atTill.text());
    gKassenUser.Vorname = u"Mia"_s; // somebody else has taken over
    main->activateWindow();
    EXPECT_TRUE(waitFor([&] { return atTill.text() == u"An der Kasse: Weber Mia"_s; }));
    till->close();
    EXPECT_TRUE(waitFor([&] { return atTill.text().isEmpty(); }));
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(form.isVisible()); // the shell is what the register goes back to
    EXPECT_EQ(main, shell());
    clickOn(*main, u"barKasse"_s);
    EXPECT_EQ(2, opened);
    main->close(); // takes the register along
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(till.isNull());
    EXPECT_TRUE(form.isVisible());
}

TEST_F(frmLoginTest, ARegisterThatKeepsItsSaleKeepsTheProgram) {
    gOnlyKassenModus = true;
    frmLogin& form = open();
    bool ended = false;
    QObject::connect(&form, &frmLogin::Unloaded, [&] { ended = true; });
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    form.show();
    refuse = true;
    clickOn(form, u"cmdCancel"_s);
    EXPECT_FALSE(ended);
    refuse = false;
    gUser.Ergebnis = 1;
    pressKey(form, Qt::Key_Escape);
    EXPECT_TRUE(ended);
    EXPECT_EQ(0, gUser.Ergebnis);
}

TEST_F(frmLoginTest, AFailureOnTheWayBringsTheLoginBack) {
    gOnlyKassenModus = true;
    fail = true;
    frmLogin& form = open();
    dialogs.expectError(3078);
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    EXPECT_TRUE(form.isVisible());
}

TEST_F(frmLoginTest, TheStartingChangeIsAskedAndBooked) {
    gOnlyKassenModus = gAbfrageKassenBestand = true;
    frmLogin& form = open();
    dialogs.expectModal(u"frmKasseWechselGeld"_s, [&](QDialog& d) {
        dialogs.expectError(13); // an empty box is no amount
        clickOn(d, u"cmdClear"_s);
        pressKey(d, Qt::Key_Return);
        typeText(d, u"150.5"_s);
        clickOn(d, u"cmdOK"_s);
    });
    logIn(form, u"Jonas Weber"_s, u"77"_s);
    EXPECT_EQ(Currency::fromDouble(150.5), gKassenBestand);
    EXPECT_EQ(QStringList{u"KASSE-1|150,5"_s}, shop.rows(u"SELECT Maschine, Bestand FROM KassenBestand"_s));
    EXPECT_EQ(1, opened);
}

TEST_F(frmLoginTest, WithoutAnybodyOnlyTheWayOutIsOpen) {
    shop.db().Execute(u"DELETE FROM Personal"_s);
    frmLogin& form = open();
    EXPECT_FALSE(control<TouchKey>(form, u"cmdLogin"_s).isEnabled());
    pressKey(form, Qt::Key_Return); // in the PIN box
    EXPECT_TRUE(form.isVisible());
    clickOn(form, u"cmdCancel"_s);
    EXPECT_FALSE(form.isVisible());
}

} // namespace
