#include <support/ScriptedForms.h>
#include <text/RuntimeError.h>
#include <ui/DigitPad.h>
#include <ui/NumberDialog.h>
#include <ui/Panels.h>
#include <ui/RowsModel.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(TouchKeyTest, WrapsLongCaptionsAndCutsWhatDoesNotFit) {
    TouchKey key(u"Roggenvollkornbrot mit Sonnenblumenkernen aus dem Holzofen, geschnitten, 1000 g"_s);
    key.resize(200, 56);
    const QStringList lines = key.shownLines();
    ASSERT_GE(lines.size(), 2);
    const QFontMetrics fm(Theme::Current().font());
    EXPECT_LE(lines.size() * fm.lineSpacing(), 56);
    EXPECT_TRUE(lines.last().endsWith(u'…')) << lines.last().toStdString();
    for (const QString& line : lines)
        EXPECT_LE(fm.horizontalAdvance(line), 200) << line.toStdString();
    // Where a word is too long for the key, the letters become smaller before the word is torn apart.
    key.resize(150, 56);
    EXPECT_EQ(u"Roggenvollkornbrot"_s, key.shownLines().first().section(u' ', 0, 0));
    key.setText(u"Sauerteigbrot 750 g"_s);
    key.resize(140, 56);
    ASSERT_EQ(2, key.shownLines().size());
    EXPECT_TRUE(key.shownLines().last().startsWith(u"750"_s));

    key.setText(u"Käse && Wurst"_s);
    EXPECT_EQ(QStringList{u"Käse & Wurst"_s}, key.shownLines());
    key.setText(u"&Anmelden"_s);
    EXPECT_EQ(QStringList{u"Anmelden"_s}, key.shownLines());
    key.resize(1, 1);
    key.grab(); // no room at all is no reason to fall
}

TEST(TouchKeyTest, IsTallEnoughForAFingerAndLeavesTheFocusAlone) {
    QWidget form;
    auto* layout = new QVBoxLayout(&form);
    auto* box = new QLineEdit;
    auto* key = new TouchKey(u"Storno"_s);
    key->setObjectName(u"cmdStorno"_s);
    layout->addWidget(box);
    layout->addWidget(key);
    showForm(form);
    box->setFocus();
    QSignalSpy clicks(key, &TouchKey::clicked);
    EXPECT_GE(key->height(), 56);
    clickOn(form, u"cmdStorno"_s);
    EXPECT_TRUE(box->hasFocus());
    key->setFocus();
    pressKey(form, Qt::Key_Return);
    pressKey(form, Qt::Key_Space);
    EXPECT_EQ(3, clicks.count());
}

TEST(TitlePanelTest, KeepsItsLayoutBelowTheBar) {
    TitlePanel panel;
    panel.setTitleName(u"Title_NumPad"_s);
    auto* layout = new QVBoxLayout(&panel);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* inside = new QLabel(u"x"_s);
    layout->addWidget(inside);
    panel.setTitle(u"Eingabe"_s);
    panel.resize(300, 200);
    showForm(panel);
    auto& title = control<QLabel>(panel, u"Title_NumPad"_s);
    EXPECT_EQ(u"Eingabe"_s, title.text());
    EXPECT_GE(inside->y(), title.geometry().bottom());
    panel.setTitle({});
    QApplication::processEvents();
    EXPECT_EQ(0, inside->y());
}

/// Writes down how it ended.
class Amount : public NumberDialog {
  public:
    explicit Amount(DigitPad::Keys keys)
        : NumberDialog(u"Betrag..."_s, u"Geben Sie einen Betrag ein."_s, keys) {}
    QString result = u"open"_s;
    bool fail = false;

  protected:
    void ok() override {
        if (fail) throw RuntimeError(13, u"Typen unverträglich"_s);
        result = text();
        accept();
    }
    bool cancelled() override {
        result = u"cancelled"_s;
        return true;
    }
};

TEST(NumberDialogTest, TakesOnlyTheKeysOfItsKind) {
    struct Case {
        DigitPad::Keys keys;
        QString typed, expected;
    };
    const Case cases[] = {{DigitPad::Decimal | DigitPad::Minus, u"-1a2.5 x,0"_s, u"-12,5,0"_s},
                          {DigitPad::Decimal, u"-3.50€"_s, u"3,50"_s},
                          {DigitPad::Keys(), u"1.5,7-"_s, u"157"_s}};
    for (const Case& c : cases) {
        ScriptedForms dialogs;
        Amount dialog(c.keys);
        dialog.setText(u"99"_s);
        dialogs.expectModal(u"NumberDialog"_s, [&](QDialog& d) {
            typeText(d, c.typed); // replaces the selected text
            pressKey(d, Qt::Key_Return);
        });
        EXPECT_EQ(int(QDialog::Accepted), ShowModal(dialog));
        EXPECT_EQ(c.expected, dialog.result);
    }
}

TEST(NumberDialogTest, DigitKeysAreKeystrokes) {
    ScriptedForms dialogs;
    Amount dialog(DigitPad::Decimal | DigitPad::Minus);
    dialog.setText(u"4,00"_s);
    dialogs.expectModal(u"NumberDialog"_s, [&](QDialog& d) {
        for (const QString& key : {u"cmdMinus"_s, u"cmdNumber7"_s, u"cmdDecimal"_s, u"cmdDecimal"_s,
                                   u"cmdMinus"_s, u"cmdNumber0"_s, u"cmdNumber5"_s})
            clickOn(d, key);
        EXPECT_EQ(u"-7,05"_s, dialog.text()); // one comma, one sign, however often they are pressed
        clickOn(d, u"cmdClear"_s);
        EXPECT_EQ(QString(), dialog.text());
        clickOn(d, u"cmdNumber1"_s);
        pressKey(d, Qt::Key_Backspace);
        clickOn(d, u"cmdNumber2"_s);
        clickOn(d, u"cmdEnter"_s);
    });
    ShowModal(dialog);
    EXPECT_EQ(u"2"_s, dialog.result);

    Amount percent({});
    EXPECT_EQ(nullptr, percent.pad()->key(DigitPad::Decimal));
    EXPECT_EQ(nullptr, percent.pad()->key(DigitPad::Minus));
}

TEST(NumberDialogTest, EscCancelsAndAFailureLeavesItOpen) {
    ScriptedForms dialogs;
    Amount dialog({});
    dialog.fail = true;
    dialogs.expectModal(u"NumberDialog"_s, [&](QDialog& d) {
        dialogs.expectError(13);
        typeText(d, u"5"_s);
        pressKey(d, Qt::Key_Enter);
        EXPECT_TRUE(d.isVisible());
        QApplication::clipboard()->setText(u"1x2"_s);
        QTest::keyClick(dialog.input(), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(u"512"_s, dialog.text());
        pressKey(d, Qt::Key_Escape);
    });
    EXPECT_EQ(int(QDialog::Rejected), ShowModal(dialog));
    EXPECT_EQ(u"cancelled"_s, dialog.result);
}

TEST(NumberDialogTest, RulesOfADialogComeBeforeThoseOfTheBox) {
    ScriptedForms dialogs;
    Amount dialog({});
    dialog.input()->setFilter([](QChar typed) {
        return typed == u'x' ? QChar(u'0') : typed.isDigit() ? typed : QChar();
    });
    dialogs.expectModal(u"NumberDialog"_s, [&](QDialog& d) {
        typeText(d, u"1x,2-"_s);
        QApplication::clipboard()->setText(u"3x,"_s);
        QTest::keyClick(dialog.input(), Qt::Key_V, Qt::ControlModifier);
        pressKey(d, Qt::Key_Return);
    });
    ShowModal(dialog);
    EXPECT_EQ(u"10230"_s, dialog.result);
}

TEST(RowsModelTest, FormatsCellsOnDemandAndFollowsItsRows) {
    QStringList rows{u"Brot"_s, u"Käse"_s};
    int painted = 0;
    RowsModel model({{u"Name"_s, Qt::AlignLeft, [&](int r) { return ++painted, rows.at(r); }}},
                    [&] { return static_cast<int>(rows.size()); });
    EXPECT_EQ(2, model.rowCount());
    EXPECT_EQ(0, painted);
    EXPECT_EQ(u"Käse"_s, model.index(1, 0).data().toString());
    rows.clear();
    model.refresh();
    EXPECT_EQ(0, model.rowCount());
    EXPECT_FALSE(model.data(model.index(5, 0)).isValid());
    model.rowChanged(7);
}

} // namespace
