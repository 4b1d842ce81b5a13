#include <printing/ui/frmKassePrintDlg.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <support/ScriptedForms.h>

#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class frmKassePrintDlgTest : public testing::Test {
  protected:
    void SetUp() override {
        ResetSession();
        gSystem = std::make_unique<CSystem>();
        gAppPath = m_till.path() + QDir::separator();
        gBonDrucker = u"Bon"_s;
        gFormularDrucker = u"Laser"_s;
        gDruckerKopies = 1;
    }
    void TearDown() override { ResetSession(); }
    /// The mode after the dialog was driven so.
    int modeAfter(const std::function<void(QDialog&)>& person) {
        gPrintMode = 3;
        dialogs.expectModal(u"frmKassePrintDlg"_s, [&](QDialog& d) {
            EXPECT_EQ(0, gPrintMode); // from the moment it opens
            person(d);
        });
        frmKassePrintDlg dialog;
        ShowModal(dialog);
        return gPrintMode;
    }
    QTemporaryDir m_till;
    ScriptedForms dialogs;
};

TEST_F(frmKassePrintDlgTest, KeysAndButtonsChooseTheMode) {
    struct Case {
        int preset;
        std::function<void(QDialog&)> person;
        int mode;
    };
    const auto key = [](Qt::Key k) { return [k](QDialog& d) { pressKey(d, k); }; };
    const auto click = [](const QString& name) { return [name](QDialog& d) { clickOn(d, name); }; };
    const Case cases[] = {{0, key(Qt::Key_F3), 1},
                          {0, key(Qt::Key_F4), 2},
                          {1, key(Qt::Key_F5), 0},
                          {1, key(Qt::Key_Escape), 0},
                          {0, key(Qt::Key_Return), 0},
                          {1, key(Qt::Key_Return), 1},
                          {2, key(Qt::Key_Enter), 2},
                          {0, click(u"cmdBon"_s), 1},
                          {0, click(u"cmdA5"_s), 2},
                          {2, click(u"cmdNone"_s), 0},
                          {1, [](QDialog& d) { d.close(); }, 0},
                          // Enter stays with the preset button, wherever the focus went.
                          {1, [](QDialog& d) { pressKey(d, Qt::Key_Tab), pressKey(d, Qt::Key_Return); }, 1}};
    for (const Case& c : cases) {
        gDruckerDefault = c.preset;
        EXPECT_EQ(c.mode, modeAfter(c.person)) << "case " << &c - cases;
    }
}

TEST_F(frmKassePrintDlgTest, EnterIsSwallowedWhenThePresetNamesNoButton) {
    gDruckerDefault = 3;
    EXPECT_EQ(0, modeAfter([](QDialog& d) {
                  pressKey(d, Qt::Key_Return);
                  EXPECT_TRUE(d.isVisible());
                  pressKey(d, Qt::Key_Escape);
              }));
}

TEST_F(frmKassePrintDlgTest, AMissingPrinterIsToldWithTheSameTextForBoth) {
    gBonDrucker.clear();
    gFormularDrucker.clear();
    for (const Qt::Key key : {Qt::Key_F3, Qt::Key_F4}) {
        EXPECT_EQ(0, modeAfter([&](QDialog& d) {
                      dialogs.expectMsgBox(u"Es ist kein Formulardrucker in der Konfiguration eingerichtet. "
                                           u"Sie können den Beleg aber "
                                           "zu einem späteren Zeitpunkt erneut drucken."_s,
                                           MsgIcon::Information, MsgAnswer::OK, u"Systemmeldung..."_s);
                      pressKey(d, key);
                  }));
    }
}

TEST_F(frmKassePrintDlgTest, CopiesCountAtOnceAndStay) {
    modeAfter([](QDialog& d) {
        auto& shown = control<QLineEdit>(d, u"txtKopie"_s);
        EXPECT_EQ(u"1"_s, shown.text());
        clickOn(d, u"cmdMore"_s);
        clickOn(d, u"cmdMore"_s);
        EXPECT_EQ(u"3"_s, shown.text());
        EXPECT_EQ(3, gDruckerKopies);
        clickOn(d, u"cmdLess"_s);
        pressKey(d, Qt::Key_Escape); // leaves the printing, not the number
    });
    EXPECT_EQ(2, gDruckerKopies);
    EXPECT_EQ(u"2"_s, gSystem->ReadProfileString(u"DRUCKER"_s, u"Kopies"_s, KonfigIni()));
}

} // namespace
