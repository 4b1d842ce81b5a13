#include <support/ScriptedForms.h>
#include <ui/TouchKey.h>
#include <ui/WaitWindow.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(WaitWindow, ShowsWaitsAndCancels) {
    WaitWindow window;
    EXPECT_FALSE(window.TakeCancel());
    window.Begin(u"Kartenzahlung: 12,34 €"_s, u"Verbindung..."_s);
    auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(form, nullptr) << "the till takes no other entry";
    window.Show(u"Bitte Karte einstecken"_s);
    EXPECT_EQ(form->findChild<QLabel*>(u"lblText"_s)->text(), u"Bitte Karte einstecken"_s);

    QTest::keyClick(form, Qt::Key_Return);
    EXPECT_FALSE(window.TakeCancel()) << "the Enter of a scanner cancels nothing";
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_TRUE(form->isVisible()) << "open until the wait is over";
    EXPECT_TRUE(window.TakeCancel());
    EXPECT_FALSE(window.TakeCancel());
    QTest::mouseClick(form->findChild<TouchKey*>(u"cmdCancel"_s), Qt::LeftButton);
    EXPECT_TRUE(window.TakeCancel());
    form->close();
    EXPECT_TRUE(form->isVisible());
    window.End();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    window.End();
}
