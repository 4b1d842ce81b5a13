#include <access/ui/frmDesktopLogin.h>
#include <session/gUser.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/ListView.h>
#include <ui/TouchKey.h>

#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class frmDesktopLoginTest : public testing::Test {
  protected:
    frmDesktopLoginTest() {
        shop.person(u"Lena"_s, u"Brandt"_s, u"0012"_s);
        m_jonas = shop.person(u"Jonas"_s, u"Weber"_s, u"77"_s, {{u"R_Rabatt"_s, false}});
        shop.person(u"Mia"_s, u"Schulz"_s, u"3"_s, {{u"Gesperrt"_s, true}});
        gKassenUser.ID = m_jonas;
    }
    static QString selected(QDialog& d) {
        return control<ListView>(d, u"lvwUsers"_s).currentIndex().data().toString();
    }
    static QString status(QDialog& d) {
        return control<ListView>(d, u"lvwUsers"_s).currentIndex().siblingAtColumn(1).data().toString();
    }
    TempShop shop;
    ScriptedForms dialogs;
    int m_jonas = 0;
};

TEST_F(frmDesktopLoginTest, DigitsArrowsAndEnterLogAnotherPersonIn) {
    frmDesktopLogin form;
    dialogs.expectModal(u"frmDesktopLogin"_s, [&](QDialog& d) {
        EXPECT_EQ(u"Jonas Weber"_s, selected(d)); // who works here now
        pressKey(d, Qt::Key_Down);
        pressKey(d, Qt::Key_Down);
        EXPECT_EQ(u"Mia Schulz"_s, selected(d));
        EXPECT_EQ(u"gesperrt"_s, status(d));
        for (int i = 0; i < 4; ++i)
            pressKey(d, Qt::Key_Up);
        EXPECT_EQ(u"Lena Brandt"_s, selected(d));
        EXPECT_EQ(QString(), status(d));
        EXPECT_FALSE(control<QLabel>(d, u"lblPflicht"_s).isVisible());
        auto& pin = control<QLineEdit>(d, u"txtPIN"_s);
        clickOn(d, u"cmdNumber9"_s);
        clickOn(d, u"cmdClear"_s);
        for (const auto* digit : {u"cmdNumber0", u"cmdNumber0", u"cmdNumber1"})
            clickOn(d, QString::fromUtf16(digit));
        typeText(d, u"2"_s);
        EXPECT_EQ(u"0012"_s, pin.text());
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_EQ(int(QDialog::Accepted), ShowModal(form));
    EXPECT_EQ(1, gKassenUser.Result);
    EXPECT_EQ(u"Brandt"_s, gKassenUser.Name);
    EXPECT_TRUE(gKassenUser.R_Rabatt);
}

TEST_F(frmDesktopLoginTest, ARefusalEmptiesThePinAndEscLeavesThePerson) {
    frmDesktopLogin form;
    dialogs.expectModal(u"frmDesktopLogin"_s, [&](QDialog& d) {
        dialogs.expectMsgBox(u"Sie haben eine falsche PIN eingeben."_s, MsgIcon::Critical);
        typeText(d, u"78"_s);
        clickOn(d, u"cmdLogin"_s);
        EXPECT_EQ(QString(), control<QLineEdit>(d, u"txtPIN"_s).text());
        pressKey(d, Qt::Key_Down);
        dialogs.expectMsgBox(u"Das System konnte Sie nicht anmelden...*"_s, MsgIcon::Critical);
        typeText(d, u"3"_s);
        pressKey(d, Qt::Key_Return);
        pressKey(d, Qt::Key_Escape);
    });
    ShowModal(form);
    EXPECT_EQ(0, gKassenUser.Result);
    EXPECT_EQ(m_jonas, gKassenUser.ID);
}

TEST_F(frmDesktopLoginTest, AForcedLoginCannotBeLeft) {
    gLoginPflicht = true;
    frmDesktopLogin form;
    dialogs.expectModal(u"frmDesktopLogin"_s, [&](QDialog& d) {
        EXPECT_FALSE(control<TouchKey>(d, u"cmdCancel"_s).isEnabled());
        EXPECT_TRUE(control<QLabel>(d, u"lblPflicht"_s).isVisible()) << "and it says why";
        pressKey(d, Qt::Key_Escape);
        d.close();
        EXPECT_TRUE(d.isVisible());
        typeText(d, u"77"_s);
        pressKey(d, Qt::Key_Return);
    });
    ShowModal(form);
    EXPECT_EQ(1, gKassenUser.Result);
}

TEST_F(frmDesktopLoginTest, NobodySelectedMeansNothingHappens) {
    gKassenUser.ID = 0;
    frmDesktopLogin form;
    dialogs.expectModal(u"frmDesktopLogin"_s, [&](QDialog& d) {
        EXPECT_EQ(QString(), selected(d));
        typeText(d, u"77"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible());
        pressKey(d, Qt::Key_Escape);
    });
    ShowModal(form);
}

} // namespace
