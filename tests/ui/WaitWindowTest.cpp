#include <support/ScriptedForms.h>
#include <ui/TouchKey.h>
#include <ui/WaitWindow.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

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

// In the middle of a statement nothing of the till may run: no key, no click, no timer.
TEST(WaitWindow, ListensToItselfAlone) {
    QLineEdit entry;
    entry.show();
    int ticks = 0;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] { ++ticks; });
    clock.start(1);
    WaitWindow window;
    window.Listen(); // not open: nothing to listen to
    window.Begin(u"Datenbankserver"_s, u"antwortet nicht"_s);
    auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(form, nullptr);
    const auto* note = form->findChild<QLabel*>(u"lblNote"_s);
    const int before = ticks;
    for (const char c : {'4', '7', '1', '1'})
        QApplication::postEvent(&entry,
                                new QKeyEvent(QEvent::KeyPress, c, Qt::NoModifier, QString(QChar(c))));
    QTest::qSleep(20);
    for (int i = 0; i < 5; ++i)
        window.Listen();
    EXPECT_EQ(ticks, before);
    EXPECT_EQ(entry.text(), QString());
    EXPECT_TRUE(note->text().startsWith(u"Eingaben werden jetzt nicht angenommen."_s))
        << "what is lost is told";

    // What concerns the window itself comes through, a scan as words and Esc as the wish.
    const_cast<QLabel*>(note)->clear();
    QApplication::postEvent(form, new QKeyEvent(QEvent::KeyPress, Qt::Key_5, Qt::NoModifier, u"5"_s));
    window.Listen();
    EXPECT_FALSE(note->text().isEmpty());
    EXPECT_FALSE(window.TakeCancel());
    QApplication::postEvent(form, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    window.Listen();
    EXPECT_TRUE(window.TakeCancel());
    window.End();
    QTest::qWait(20);
    EXPECT_GT(ticks, before) << "the clock goes on";
}
