#include <access/ShellBar.h>
#include <session/Globals.h>
#include <support/ScriptedDialogs.h>
#include <text/RuntimeError.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(ShellBarTest, TestsTheRightBeforeTheAct) {
    ResetSession();
    ScriptedDialogs dialogs;
    ShellBar bar;
    QStringList done;
    bar.Add({u"Kunden"_s, u"Kunden"_s, u"Verwalten Sie Ihre Kunden"_s, &Rechte::R_Kunden,
             [&] { done << u"Kunden"_s; }, u"F4"_s});
    ShellEntry settle{u"KassenAbrechnung"_s,
                      u"Kasse abrechnen"_s,
                      {},
                      &Rechte::R_KassenAbschluss,
                      [&] { done << u"Abrechnung"_s; },
                      {}};
    settle.RefusalIcon = MsgIcon::Information;
    settle.Refusal = u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s;
    bar.Add(settle);
    bar.Add({u"Logout"_s, u"Abmelden"_s, {}, nullptr, [&] { done << u"Logout"_s; }, {}});

    gUser.R_KassenAbschluss = false;
    dialogs.expectMsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen."_s,
                         MsgIcon::Critical, MsgAnswer::OK, u"Systemmeldung..."_s);
    EXPECT_FALSE(bar.Click(u"Kunden"_s));
    dialogs.expectMsgBox(settle.Refusal, MsgIcon::Information);
    EXPECT_FALSE(bar.Click(u"KassenAbrechnung"_s));
    EXPECT_TRUE(bar.Click(u"Logout"_s));
    EXPECT_EQ(QStringList{u"Logout"_s}, done);

    gUser.R_Kunden = true; // its own right and no other
    EXPECT_TRUE(bar.Click(u"Kunden"_s));
    EXPECT_EQ((QStringList{u"Logout"_s, u"Kunden"_s}), done);
    ResetSession();
}

TEST(ShellBarTest, KeysAreUniqueAndUnknownOnesDoNothing) {
    ShellBar bar;
    bar.Add({u"Kasse"_s, u"Kassenbetrieb"_s, {}, nullptr, {}, {}});
    EXPECT_THROW(bar.Add({u"Kasse"_s, {}, {}, nullptr, {}, {}}), RuntimeError);
    EXPECT_FALSE(bar.Click(u"Gibtsnicht"_s));
    bar.Remove(u"Kasse"_s);
    bar.Remove(u"Kasse"_s);
    EXPECT_TRUE(bar.Entries().empty());
}

} // namespace
