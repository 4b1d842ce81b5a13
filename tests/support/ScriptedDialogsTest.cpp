#include <session/Error.h>
#include <support/ScriptedForms.h>

#include <QTimer>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A script that let something pass would make every test of a form worthless: each way to depart from it must
// fail.

namespace {

// The macro that catches failures sees nothing local.
ScriptedForms* script = nullptr;
QDialog* shown = nullptr;

TEST(ScriptedDialogsTest, AcceptsWhatWasExpectedInItsOrder) {
    ScriptedDialogs dialogs;
    dialogs.expectMsgBox(u"Es sind noch...*"_s, MsgIcon::Question, MsgAnswer::Yes)
        .expectInput(u"Name?"_s, u"Brot"_s);
    dialogs.expectError(13);
    EXPECT_TRUE(AskYesNo(u"Es sind noch geparkte Bestellungen vorhanden."_s));
    EXPECT_EQ(u"Brot"_s, InputBox(u"Name?"_s, u"Titel"_s, u"alt"_s));
    EXPECT_EQ(u"alt"_s, dialogs.lastPreset);
    ShowProgrammFehler(13, u"frmKasse"_s, u"Typen unverträglich"_s);
    EXPECT_TRUE(dialogs.done());
}

TEST(ScriptedDialogsTest, FailsOnEveryDeparture) {
    ScriptedForms dialogs;
    script = &dialogs;
    EXPECT_NONFATAL_FAILURE(MsgBox(u"Hallo"_s), "nobody expected");
    dialogs.expectMsgBox(u"A"_s);
    EXPECT_NONFATAL_FAILURE(MsgBox(u"B"_s), "expected: A");
    dialogs.expectMsgBox(u"A"_s, MsgIcon::Critical);
    EXPECT_NONFATAL_FAILURE(MsgBox(u"A"_s), "critical");
    dialogs.expectMsgBox(u"A"_s, MsgIcon::Information, MsgAnswer::Yes);
    EXPECT_NONFATAL_FAILURE(MsgBox(u"A"_s), "no such button");
    dialogs.expectMsgBox(u"A"_s, MsgIcon::Information, MsgAnswer::OK, u"Andere"_s);
    EXPECT_NONFATAL_FAILURE(MsgBox(u"A"_s), "Andere");
    dialogs.expectInput(u"A"_s, u"1"_s);
    EXPECT_NONFATAL_FAILURE(MsgBox(u"A"_s), "input");
    EXPECT_NONFATAL_FAILURE(script->verify(), "never came");
    dialogs.expectError(13);
    EXPECT_NONFATAL_FAILURE(ShowProgrammFehler(6, u"x"_s, u"Überlauf"_s), "expected error 13");
    EXPECT_NONFATAL_FAILURE(ShowProgrammFehler(6, u"x"_s, u"Überlauf"_s), "nobody expected");
}

TEST(ScriptedFormsTest, FailsOnAFormThatIsAnotherOrStaysOpen) {
    ScriptedForms dialogs;
    QDialog form;
    shown = &form;
    form.setObjectName(u"frmX"_s);
    EXPECT_NONFATAL_FAILURE(ShowModal(*shown), "nobody expected: form QDialog");
    dialogs.expectModal(u"frmY"_s, [](QDialog& d) { d.accept(); });
    EXPECT_NONFATAL_FAILURE(ShowModal(*shown), "expected: frmY");
    dialogs.expectModal(u"frmX"_s, [](QDialog&) {});
    EXPECT_NONFATAL_FAILURE(ShowModal(*shown), "still open");
    EXPECT_FALSE(form.isVisible());
    dialogs.expectModal(u"frmX"_s, [](QDialog& d) { d.accept(); });
    EXPECT_EQ(int(QDialog::Accepted), ShowModal(form));
}

TEST(ShowModalTest, WaitsForThePersonWhenNobodyDrives) {
    QDialog form;
    QTimer::singleShot(0, &form, [&] {
        EXPECT_TRUE(form.isModal());
        form.accept();
    });
    EXPECT_EQ(int(QDialog::Accepted), ShowModal(form));
}

} // namespace
