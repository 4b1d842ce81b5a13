#include <session/Globals.h>
#include <support/Keyboard.h>
#include <support/ScriptedForms.h>
#include <ui/ListView.h>
#include <ui/Notice.h>
#include <ui/NumberDialog.h>
#include <ui/Sound.h>
#include <ui/TouchDialogs.h>
#include <ui/WaitWindow.h>
#include <ui/Work.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

class Price : public NumberDialog {
  public:
    Price()
        : NumberDialog(u"Preis"_s, u"Bitte geben Sie den Preis ein."_s, DigitPad::Decimal) {}
    int confirmed = 0;

  protected:
    void ok() override { ++confirmed; }
};

/// A form that takes codes wherever its focus is, as the register does.
class Desk : public QWidget {
  public:
    Desk() {
        TakeScans(*this, ScanEnd::Enter);
        connect(&box, &QLineEdit::returnPressed, this, [this] {
            codes << box.text();
            box.clear();
        });
        box.setFocus();
    }
    QLineEdit box{this};
    QStringList codes;
};

class ScanGuardTest : public testing::Test {
  protected:
    ScanGuardTest() {
        SetSoundHook([this] { ++sounds; });
    }
    ~ScanGuardTest() override { SetSoundHook({}); }

    const QString code = u"2005000000171"_s;
    int sounds = 0;
    Keyboard keys;
};

TEST_F(ScanGuardTest, AScanPressesAndEntersNothing) {
    Price price;
    showForm(price);
    for (const bool stamped : {true, false}) {
        keys.stamped = stamped;
        keys.type(price, u"2005000000171\r"_s, 5);
        EXPECT_EQ(u""_s, price.text());
        EXPECT_EQ(0, price.confirmed);
        EXPECT_EQ(u"Bitte erst die Frage beantworten"_s, NoticeText(price));
        keys.now += 1000;
    }
    EXPECT_EQ(2, sounds);
    const auto& line = control<QLabel>(price, u"lblNotice"_s);
    EXPECT_GE(line.contentsRect().height(), line.fontMetrics().height()) << "and it can be read";
    keys.rest();
    EXPECT_EQ(u""_s, price.text()) << "nothing comes later";

    keys.type(price, u"12,50\r"_s, 90);
    EXPECT_EQ(u"12,50"_s, price.text());
    EXPECT_EQ(1, price.confirmed);
    EXPECT_EQ(u""_s, NoticeText(price)) << "what is typed takes the line away";
    EXPECT_EQ(2, sounds);

    MessageDialog question(u"Möchten Sie alle Artikel rabattieren?"_s, MsgButtons::YesNo, MsgIcon::Question,
                           u"Frage"_s, MsgAnswer::Yes);
    showForm(question);
    keys.scan(question, u"J0N1JN23"_s); // J and N are its keys
    keys.scan(question, u"  200500  "_s);
    keys.scan(question, code, u"\t"_s);
    keys.rest();
    EXPECT_TRUE(question.isVisible());
    EXPECT_EQ(5, sounds);
    keys.key(question, Qt::Key_J, u"j"_s, 200);
    keys.rest();
    EXPECT_FALSE(question.isVisible());
    EXPECT_EQ(MsgAnswer::Yes, question.answer());
}

TEST_F(ScanGuardTest, QuickTypingArrivesWholeAndInOrder) {
    InputDialog input(u"Name?"_s, u"Eingabe"_s, u""_s);
    auto& box = control<QLineEdit>(input, u"txtInput"_s);
    showForm(input);
    keys.type(input, u"abcde"_s, 10);
    EXPECT_EQ(u""_s, box.text());
    keys.key(input, Qt::Key_Left, {}, 10); // what no scanner sends brings it out
    EXPECT_EQ(u"abcde"_s, box.text());
    keys.type(input, u"X"_s, 10);
    keys.rest();
    EXPECT_EQ(u"abcdXe"_s, box.text());
    keys.type(input, u"123456"_s, 10);
    keys.rest();
    EXPECT_EQ(u"abcdX123456e"_s, box.text()) << "many and fast, but no Enter";
    keys.type(input, u"12\r"_s, 10);
    EXPECT_FALSE(input.isVisible()) << "Enter behind two digits is a person's";
    EXPECT_EQ(u"abcdX12345612e"_s, input.text());
    EXPECT_EQ(0, sounds);
}

TEST_F(ScanGuardTest, WhateverIsTypedArrivesAsWithoutAGuard) {
    std::mt19937 chance(471147);
    const QString signs = u"0123456789, abcxyzJN"_s;
    for (int round = 0; round < 300; ++round) {
        InputDialog input(u"Name?"_s, u"Eingabe"_s, u"alt"_s);
        showForm(input);
        keys.stamped = round % 2 == 0;
        QString typed;
        int quick = 0; // keys in a row that come as fast as those of a scanner
        for (unsigned left = 1 + chance() % 15; left > 0; --left) {
            typed += signs[qsizetype(chance() % size_t(signs.size()))];
            const bool fast = quick < 4 && chance() % 2 == 0;
            quick = fast ? quick + 1 : 0;
            keys.type(input, typed.last(1), fast ? chance() % 36 : 36 + chance() % 150);
            if (chance() % 4 == 0) keys.guard.settle(); // the event loop has time now and then
        }
        keys.type(input, u"\r"_s, 106 + chance() % 100);
        ASSERT_EQ(typed, input.text()) << "round " << round;
        ASSERT_FALSE(input.isVisible());
        keys.now += 500;
    }
    EXPECT_EQ(0, sounds);
}

TEST_F(ScanGuardTest, KeysBehindOneThatClosesAWindowGoToTheNext) {
    MessageDialog question(u"Alle?"_s, MsgButtons::YesNo, MsgIcon::Question, u"Frage"_s, MsgAnswer::Yes);
    showForm(question);
    keys.type(question, u"n10"_s, 20);
    keys.guard.settle();
    keys.rest();
    EXPECT_FALSE(question.isVisible());
    Price price;
    price.setModal(true);
    showForm(price);
    QApplication::processEvents();
    EXPECT_EQ(u"10"_s, price.text());
    price.hide();

    showForm(question);
    keys.type(question, u"n"_s, 100);
    keys.type(question, u"20\r"_s, 60); // the first of them finds the window gone
    EXPECT_FALSE(question.isVisible());
    price.setText({});
    showForm(price);
    QApplication::processEvents();
    EXPECT_EQ(u"20"_s, price.text());
    EXPECT_EQ(1, price.confirmed);
    EXPECT_EQ(0, sounds);
}

TEST_F(ScanGuardTest, HeldKeysComeOutByThemselves) {
    keys.guard.setClock({}); // the real one
    Price price;
    showForm(price);
    QTest::keyClick(price.focusWidget(), Qt::Key_7);
    EXPECT_EQ(u""_s, price.text());
    QElapsedTimer waited;
    waited.start();
    EXPECT_TRUE(waitFor([&] { return price.text() == u"7"_s; }));
    EXPECT_GE(waited.elapsed(), 30);
    keys.guard.setEnabled(false);
    QTest::keyClick(price.focusWidget(), Qt::Key_8);
    EXPECT_EQ(u"78"_s, price.text()) << "at once when it is off";
}

TEST_F(ScanGuardTest, KeysOfTheSystemTakeTheSameWay) {
    keys.guard.setClock({});
    Price price;
    showForm(price);
    QWindow* window = price.windowHandle();
    ASSERT_NE(nullptr, window);
    for (const char digit : QByteArray("2005000000171"))
        QTest::keyClick(window, digit);
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_EQ(1, sounds);
    QTest::keyClick(window, Qt::Key_Backspace);
    EXPECT_EQ(u""_s, price.text());
    EXPECT_EQ(0, price.confirmed);
    QTest::keyClick(window, '7', Qt::NoModifier, 60);
    QTest::keyClick(window, Qt::Key_Return, Qt::NoModifier, 60);
    EXPECT_EQ(u"7"_s, price.text());
    EXPECT_EQ(1, price.confirmed);
}

TEST_F(ScanGuardTest, BoxesThatWaitForACodeTakeIt) {
    QDialog form;
    QVBoxLayout layout(&form);
    QLineEdit name, number, search;
    QPushButton button;
    ListView list;
    for (QWidget* part : std::initializer_list<QWidget*>{&name, &number, &search, &button, &list})
        layout.addWidget(part);
    TakeScans(number);
    list.takeArrowsFrom(search);
    showForm(form);
    number.setFocus();
    keys.type(form, u"2005"_s, 5);
    EXPECT_EQ(u"2005"_s, number.text()) << "as it comes";
    keys.type(form, u"000000171\t"_s, 5);
    EXPECT_EQ(u"2005000000171"_s, number.text());
    EXPECT_TRUE(search.hasFocus()) << "Tab is Tab in a dialog";
    keys.scan(form, code);
    EXPECT_EQ(u"2005000000171"_s, search.text());
    EXPECT_EQ(0, sounds);
    name.setFocus();
    keys.scan(form, code);
    EXPECT_EQ(u""_s, name.text());
    EXPECT_EQ(1, sounds);
    QWidget shell;
    QPushButton key(&shell);
    bool pressed = false;
    QObject::connect(&key, &QPushButton::clicked, [&] { pressed = true; });
    showForm(shell);
    key.setFocus();
    keys.scan(shell, u"  2005  "_s);
    EXPECT_FALSE(pressed);
    EXPECT_EQ(u"Hier wird kein Code erwartet"_s, NoticeText(shell));
    ShowNotice(shell, u"Die Kundenanzeige antwortet nicht."_s);
    keys.now += 200;
    keys.scan(form, code);
    keys.type(shell, u" "_s, 200);
    keys.rest();
    EXPECT_TRUE(pressed) << "the space bar of a person";
    EXPECT_FALSE(NoticeText(shell).isEmpty()) << "what others tell stays";
    for (QWidget* part : std::initializer_list<QWidget*>{&name, &number, &search, &button, &list})
        part->setParent(nullptr);
}

TEST_F(ScanGuardTest, AFormForCodesGetsThemWhateverTheScannerSendsAround) {
    Desk desk;
    showForm(desk);
    keys.scan(desk, code);
    keys.scan(desk, code, u"\t"_s);
    EXPECT_EQ((QStringList{code, code}), desk.codes);
    desk.codes.clear();

    keys.guard.setEnabled(false);
    Keyboard around({6, 35, u'$', u'%'});
    around.scan(desk, u"$104%"_s, {});
    around.scan(desk, u"$104"_s);
    around.scan(desk, u"$104%"_s);
    EXPECT_EQ((QStringList{u"104"_s, u"104"_s, u"104"_s}), desk.codes);
    EXPECT_EQ(u""_s, desk.box.text());
    around.now += 500;
    around.type(desk, u"$9%"_s, 100);
    around.rest();
    EXPECT_EQ(u"$9%"_s, desk.box.text()) << "a person may type them";
}

TEST_F(ScanGuardTest, ADialogThatMayBeAnsweredHandsTheScanOn) {
    Desk desk;
    showForm(desk);
    QDialog choice(&desk);
    int answers = 0;
    AnswerScans(choice, [&] {
        ++answers;
        choice.reject();
    });
    choice.setModal(true);
    showForm(choice);
    keys.scan(choice, u"2005<000'0"_s);
    EXPECT_EQ(1, answers);
    EXPECT_FALSE(choice.isVisible());
    EXPECT_EQ(QStringList{u"2005<000'0"_s}, desk.codes);
    EXPECT_EQ(0, sounds);

    QDialog alone; // nobody is behind it
    AnswerScans(alone, [&] { ++answers; });
    showForm(alone);
    keys.scan(alone, code);
    EXPECT_EQ(1, answers);
    EXPECT_EQ(1, sounds);
}

TEST_F(ScanGuardTest, AScanThatRunsIntoAWindowThatOpens) {
    Desk desk;
    showForm(desk);
    keys.now += 500;
    keys.type(desk, u"20050000"_s, 5);
    Price price;
    price.setModal(true);
    showForm(price);
    keys.type(price, u"00171\r"_s, 5); // its end
    keys.rest();
    EXPECT_EQ(u""_s, price.text());
    EXPECT_EQ(0, price.confirmed);
    EXPECT_EQ(1, sounds);
    price.hide();
    // What went to a window that a dialog bars is lost on the way; the end alone is left.
    showForm(price);
    keys.type(price, u"171\r"_s, 5);
    keys.rest();
    EXPECT_EQ(u""_s, price.text());
    EXPECT_EQ(0, price.confirmed);
    EXPECT_EQ(2, sounds);
}

TEST_F(ScanGuardTest, WaitingAndWorkTellAScanThatTheySwallow) {
    WaitWindow wait;
    wait.Begin(u"Bondrucker"_s, u"Der Drucker hat kein Papier."_s);
    QWidget* window = QApplication::activeModalWidget();
    ASSERT_NE(nullptr, window);
    keys.scan(*window, code);
    keys.rest();
    EXPECT_FALSE(wait.TakeCancel());
    EXPECT_TRUE(NoticeText(*window).startsWith(u"Bitte warten"_s));
    EXPECT_EQ(1, sounds);
    wait.End();

    Price form;
    WorkBar bar(&form);
    showForm(form);
    {
        Work work(bar, u"Mitarbeiter werden exportiert..."_s, 10);
        keys.scan(form, code);
        EXPECT_EQ(u"Bitte warten, bis die Arbeit fertig ist"_s, NoticeText(form));
        EXPECT_EQ(2, sounds);
        keys.type(form, u"12\r"_s, 100);
        keys.rest();
        EXPECT_TRUE(work.advance());
        keys.key(form, Qt::Key_Escape, {}, 100);
        EXPECT_FALSE(work.advance());
    }
    EXPECT_EQ(u""_s, form.text());
    EXPECT_EQ(0, form.confirmed);
    EXPECT_EQ(2, sounds);
}

TEST(SignalTest, EverySignalCanBeHeard) {
    for (const bool card : {false, true}) {
        gIsSoundCardAktiv = card;
        for (const Signal signal : {Signal::UnknownArticle, Signal::ScanRefused}) {
            int length = 0;
            for (const Tone& tone : TonesOf(signal))
                length += tone.milliseconds;
            EXPECT_GE(length, 100);
            EXPECT_LE(length, 1200);
        }
        // Seven times, 150 ms apart, or the tones of a PC speaker.
        EXPECT_EQ(card ? 7 * 150 : 1100,
                  ToneSamples(TonesOf(Signal::UnknownArticle)).size() / 2 * 1000 / toneSampleRate);
    }
    gIsSoundCardAktiv = false;
}

} // namespace
