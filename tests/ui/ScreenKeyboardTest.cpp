#include <session/gBildschirmTastatur.h>
#include <support/ScriptedForms.h>
#include <ui/DigitPad.h>
#include <ui/Form.h>
#include <ui/ScreenKeyboard.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class ScreenKeyboardTest : public testing::Test {
  protected:
    ScreenKeyboardTest() {
        gBildschirmTastatur = true;
        auto* column = new QVBoxLayout(&form);
        for (QWidget* box :
             std::initializer_list<QWidget*>{&name, &remark, &number, &count, &group, &shown, &key})
            column->addWidget(box);
        group.setEditable(true);
        shown.setReadOnly(true);
        shown.setText(u"4711"_s);
        showForm(form);
        name.setFocus();
    }
    ~ScreenKeyboardTest() override { gBildschirmTastatur = false; }

    [[nodiscard]] QWidget* board() const {
        return keyboard.board() != nullptr && keyboard.board()->isVisible() ? keyboard.board() : nullptr;
    }
    static void tap(QWidget& box) { QTest::mouseClick(&box, Qt::LeftButton); }
    /// The keys by their names behind "key".
    void press(const QStringList& names) {
        for (const QString& one : names) {
            ASSERT_NE(nullptr, board());
            clickOn(*board(), u"key"_s + one);
        }
    }

    ScreenKeyboard keyboard;
    QDialog form;
    QLineEdit name, shown;
    QPlainTextEdit remark;
    NumberEdit number;
    QSpinBox count;
    QComboBox group;
    TouchKey key;
};

TEST_F(ScreenKeyboardTest, WritesLettersUmlautsAndSignsWithoutTheFocus) {
    EXPECT_EQ(nullptr, board());
    tap(name);
    ASSERT_NE(nullptr, board());
    press({u"Shift"_s, u"Ä"_s, u"P"_s, u"F"_s, u"E"_s, u"L"_s, u"Space"_s, u"7"_s, u"5"_s, u","_s, u"X"_s,
           u"Backspace"_s});
    EXPECT_EQ(u"Äpfel 75,"_s, name.text()) << "shift is for one letter";
    press({u"Shift"_s, u"Shift"_s, u"S"_s, u"7"_s, u"Q"_s, u"Shift"_s, u"ß"_s});
    EXPECT_EQ(u"Äpfel 75,S/Qß"_s, name.text()) << "twice is for all";
    press({u"Left"_s, u"Ö"_s});
    EXPECT_EQ(u"Äpfel 75,S/Qöß"_s, name.text());
    EXPECT_TRUE(name.hasFocus());
    EXPECT_EQ(&form, QApplication::activeWindow());
    for (const auto* one : board()->findChildren<TouchKey*>()) {
        EXPECT_GE(one->height(), 56) << one->objectName().toStdString();
        EXPECT_GE(one->width(), 56) << one->objectName().toStdString();
    }

    bool entered = false;
    QObject::connect(&name, &QLineEdit::returnPressed, [&] { entered = true; });
    press({u"Enter"_s});
    EXPECT_TRUE(entered);
}

TEST_F(ScreenKeyboardTest, GoesWithEscWithFertigAndWithTheBox) {
    tap(name);
    pressKey(form, Qt::Key_Escape);
    EXPECT_EQ(nullptr, board());
    EXPECT_TRUE(form.isVisible()) << "the first Esc is the keyboard's";
    tap(name);
    press({u"Done"_s});
    EXPECT_EQ(nullptr, board());

    tap(name);
    remark.setFocus();
    ASSERT_NE(nullptr, board()) << "it follows from box to box";
    press({u"A"_s, u"Enter"_s, u"B"_s});
    EXPECT_EQ(u"a\nb"_s, remark.toPlainText());
    key.setFocus();
    EXPECT_EQ(nullptr, board()) << "and goes when the focus leaves the boxes";

    tap(name);
    form.close();
    EXPECT_EQ(nullptr, board());
}

TEST_F(ScreenKeyboardTest, BoxesOfNumbersGetDigits) {
    const auto hasLetters = [this] { return board()->findChild<TouchKey*>(u"keyQ"_s) != nullptr; };
    number.setFocus();
    tap(number);
    ASSERT_NE(nullptr, board());
    EXPECT_FALSE(hasLetters());
    for (const auto* digit : {u"cmdNumber1", u"cmdNumber2", u"cmdDecimal", u"cmdNumber5"})
        clickOn(*board(), QString::fromUtf16(digit));
    EXPECT_EQ(u"12,5"_s, number.text());
    press({u"Backspace"_s});
    EXPECT_EQ(u"12,"_s, number.text());
    EXPECT_EQ(nullptr, board()->findChild<TouchKey*>(u"cmdMinus"_s)) << "the box does not take it";

    auto& line = *count.findChild<QLineEdit*>();
    count.setFocus();
    tap(line);
    ASSERT_NE(nullptr, board());
    EXPECT_FALSE(hasLetters());
    clickOn(*board(), u"cmdClear"_s);
    clickOn(*board(), u"cmdNumber4"_s);
    EXPECT_EQ(4, count.value());

    group.setFocus();
    tap(*group.lineEdit());
    EXPECT_TRUE(hasLetters());

    DigitPad pad;
    pad.setTarget(&number);
    number.setFocus();
    tap(number);
    EXPECT_EQ(nullptr, board()) << "the form has digits for it";
}

TEST_F(ScreenKeyboardTest, OpensOnlyWhereItIsWanted) {
    tap(shown);
    EXPECT_EQ(nullptr, board()) << "nothing can be written there";
    name.setProperty("screenKeyboard", false);
    tap(name);
    EXPECT_EQ(nullptr, board());
    name.setProperty("screenKeyboard", {});
    gBildschirmTastatur = false;
    tap(name);
    EXPECT_EQ(nullptr, board());
}

TEST_F(ScreenKeyboardTest, NeverCoversTheBox) {
    for (const QSize screen : {QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080)}) {
        const QRect area(QPoint(0, 0), screen);
        const QSize size(screen.width() * 3 / 4, 340);
        for (int y = 0; y + 60 <= screen.height(); y += 7) {
            const QRect box(200, y, 300, 60);
            const auto place = ScreenKeyboard::Place(box, area, size);
            ASSERT_TRUE(place) << screen.height() << ' ' << y;
            const QRect board(*place, size);
            EXPECT_FALSE(board.intersects(box)) << y;
            EXPECT_TRUE(area.contains(board)) << y;
        }
        EXPECT_FALSE(ScreenKeyboard::Place(area, area, size)) << "rather none than over a box that fills all";
    }

    // The real ones, at the top and at the bottom of the screen.
    const QRect screen = form.screen()->availableGeometry();
    for (const int y : {screen.top(), screen.bottom() - form.height()}) {
        form.move(screen.left() + 50, y);
        for (QWidget* box : {static_cast<QWidget*>(&name), static_cast<QWidget*>(&number)}) {
            box->setFocus();
            tap(*box);
            ASSERT_NE(nullptr, board());
            EXPECT_FALSE(board()->geometry().intersects(QRect(box->mapToGlobal(QPoint()), box->size())));
            press({u"Done"_s});
        }
    }
}

} // namespace
