#include <session/Handle.h>
#include <support/Keyboard.h>
#include <support/ScriptedForms.h>
#include <text/DetailedError.h>
#include <ui/TouchDialogs.h>
#include <ui/TouchKey.h>

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The production host, with a person at the keys.
class TouchDialogsTest : public testing::Test {
  protected:
    void drive(std::function<void(QDialog&)> person) {
        m_before = SetModalHook([this, person](QDialog& dialog) {
            showForm(dialog);
            person(dialog);
            EXPECT_FALSE(dialog.isVisible());
            ++m_shown;
            return dialog.result();
        });
    }
    void SetUp() override { m_host = SetDialogHost(&m_touch); }
    void TearDown() override {
        SetDialogHost(m_host);
        SetModalHook(m_before);
    }
    TouchDialogHost m_touch;
    DialogHost* m_host = nullptr;
    ModalHook m_before;
    int m_shown = 0;
};

TEST_F(TouchDialogsTest, AQuestionIsAnsweredByKeyAndByTouch) {
    struct Case {
        std::function<void(QDialog&)> person;
        bool yes;
    };
    const Case cases[] = {{[](QDialog& d) { pressKey(d, Qt::Key_Return); }, true},
                          {[](QDialog& d) { pressKey(d, Qt::Key_J); }, true},
                          {[](QDialog& d) { pressKey(d, Qt::Key_N); }, false},
                          {[](QDialog& d) { pressKey(d, Qt::Key_Escape); }, false},
                          {[](QDialog& d) { clickOn(d, u"cmdYes"_s); }, true},
                          {[](QDialog& d) { clickOn(d, u"cmdNo"_s); }, false},
                          {[](QDialog& d) { d.close(); }, false},
                          {[](QDialog& d) {
                               pressKey(d, Qt::Key_Tab); // the focus decides what Enter presses
                               pressKey(d, Qt::Key_Return);
                           },
                           false}};
    for (const Case& c : cases) {
        drive(c.person);
        EXPECT_EQ(c.yes, AskYesNo(u"Möchten Sie alle Artikel rabattieren?"_s));
    }
}

TEST_F(TouchDialogsTest, ShowsTheButtonsThatWereAskedFor) {
    drive([](QDialog& d) {
        EXPECT_EQ(u"Systemmeldung..."_s, d.windowTitle());
        EXPECT_FALSE(control<TouchKey>(d, u"cmdYes"_s).isVisible());
        EXPECT_FALSE(control<TouchKey>(d, u"cmdCancel"_s).isVisible());
        EXPECT_GE(control<TouchKey>(d, u"cmdOK"_s).height(), 56);
        pressKey(d, Qt::Key_J); // no question, no answer
        EXPECT_TRUE(d.isVisible());
        pressKey(d, Qt::Key_Escape);
    });
    EXPECT_EQ(MsgAnswer::OK, MsgBox(u"Dieser Artikel kann nicht rabattiert werden."_s));
    drive([](QDialog& d) { pressKey(d, Qt::Key_Enter); });
    EXPECT_EQ(MsgAnswer::Cancel, MsgBox(u"Weiter?"_s, MsgIcon::Exclamation, MsgButtons::OKCancel, u"Titel"_s,
                                        MsgAnswer::Cancel));
}

TEST_F(TouchDialogsTest, TechnicalWordsStandBehindAKey) {
    drive([](QDialog& d) {
        auto& words = control<QLabel>(d, u"lblDetails"_s);
        EXPECT_FALSE(words.isVisible());
        const int height = d.height();
        clickOn(d, u"cmdDetails"_s);
        EXPECT_TRUE(words.isVisible());
        EXPECT_EQ(u"disk I/O error"_s, words.text());
        EXPECT_GT(d.height(), height);
        EXPECT_FALSE(control<QLabel>(d, u"lblText"_s).text().contains(u"I/O"_s));
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_FALSE(Handle("frmKasse", [] {
        throw DetailedError(3043, u"Datenträger- oder Netzwerkfehler."_s, u"disk I/O error"_s);
    }));
    drive([](QDialog& d) {
        EXPECT_FALSE(control<TouchKey>(d, u"cmdDetails"_s).isVisible()) << "those of the box before";
        pressKey(d, Qt::Key_Return);
    });
    MsgBox(u"Weiter"_s);
}

TEST_F(TouchDialogsTest, AnActIsRepeatedOrGivenUp) {
    const auto ask = [] { return MsgBox(u"Kein Server"_s, MsgIcon::Exclamation, MsgButtons::RetryCancel); };
    drive([](QDialog& d) {
        EXPECT_FALSE(control<TouchKey>(d, u"cmdOK"_s).isVisible());
        EXPECT_EQ(u"&Wiederholen"_s, control<TouchKey>(d, u"cmdRetry"_s).text());
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_EQ(MsgAnswer::Retry, ask());
    drive([](QDialog& d) { pressKey(d, Qt::Key_Escape); });
    EXPECT_EQ(MsgAnswer::Cancel, ask());
}

TEST_F(TouchDialogsTest, AnInputIsTypedOrCancelled) {
    drive([](QDialog& d) {
        typeText(d, u"12"_s); // replaces the preset, which is selected
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_EQ(u"12"_s, InputBox(u"Bitte geben Sie die Kassenabschluss Beleg-Nr. ein."_s,
                                u"Kasse abrechnen."_s, u"7"_s));
    drive([](QDialog& d) { pressKey(d, Qt::Key_Escape); });
    EXPECT_EQ(std::nullopt, InputBox(u"?"_s, u"Titel"_s));
    drive([](QDialog& d) { clickOn(d, u"cmdOK"_s); });
    EXPECT_EQ(QString(), InputBox(u"?"_s, u"Titel"_s));
}

TEST_F(TouchDialogsTest, ACodeIsScannedTypedOrTapped) {
    Keyboard keys;
    const auto ask = [] { return InputCode(u"Nummer?"_s, u"Gutscheinnummer"_s); };
    for (const QString& end : {u"\r"_s, u"\t"_s}) {
        drive([&](QDialog& d) { keys.scan(d, u"00000017"_s, end); });
        EXPECT_EQ(u"00000017"_s, ask());
    }
    drive([&](QDialog& d) { keys.scan(d, u"17"_s); }); // too short for the guard to know it
    EXPECT_EQ(u"17"_s, ask());
    drive([](QDialog& d) {
        typeText(d, u"9"_s);
        for (const QString& key : {u"cmdClear"_s, u"cmdNumber1"_s, u"cmdNumber7"_s, u"cmdOK"_s})
            clickOn(d, key);
    });
    EXPECT_EQ(u"17"_s, ask());
    drive([&](QDialog& d) {
        control<TouchKey>(d, u"cmdOK"_s).setFocus();
        keys.scan(d, u"00000017"_s);
        EXPECT_TRUE(d.isVisible()) << "the scan must not press the key";
        pressKey(d, Qt::Key_Escape);
    });
    EXPECT_EQ(std::nullopt, ask());
    drive([&](QDialog& d) {
        keys.scan(d, u"00000017"_s);
        EXPECT_TRUE(d.isVisible()) << "nobody asked for a code";
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_EQ(u"7"_s, InputBox(u"?"_s, u"Titel"_s, u"7"_s));
}

TEST_F(TouchDialogsTest, AFileDialogShowsTitleAndFilter) {
    drive([](QDialog& d) {
        EXPECT_EQ(u"Datenbank auswählen"_s, d.windowTitle());
        EXPECT_EQ(QStringList{u"Microsoft Access Datenbank (*.mdb)"_s},
                  dynamic_cast<QFileDialog&>(d).nameFilters());
        d.reject();
    });
    EXPECT_EQ(std::nullopt,
              ChooseFile({u"Datenbank auswählen"_s, u"Microsoft Access Datenbank   (*.mdb)|*.mdb"_s,
                          u"Merivane.mdb"_s, false}));
    EXPECT_EQ((QStringList{u"Text (*.txt *.csv)"_s, u"Alle (*.*)"_s}),
              NameFilters(u"Text    (*.txt)|*.txt;*.csv|Alle (*.*)|*.*"_s));
    EXPECT_EQ(QStringList{u"Alle Dateien (*)"_s}, NameFilters(u"nonsense"_s));
}

} // namespace
