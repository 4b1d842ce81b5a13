#include "Kasse.h"

#include <QComboBox>
#include <QPlainTextEdit>

namespace {

TEST_F(Kasse, BooksDepositsByKeys) {
    dialogs.expectModal(u"frmKassePfand"_s, [](QDialog& d) {
        keep(d, d.objectName());
        typeText(d, u"3*"_s);
        EXPECT_EQ(u"3"_s, control<QLineEdit>(d, u"txtAnzahl"_s).text());
        typeText(d, u"x0.25"_s);
        EXPECT_EQ(u"0,25"_s, control<QLineEdit>(d, u"txtInput"_s).text());
        pressKey(d, Qt::Key_F4);
    });
    press(Qt::Key_F8);
    dialogs.expectModal(u"frmKassePfand"_s, [](QDialog& d) {
        clickOn(d, u"cmdNumber2"_s);
        clickOn(d, u"cmdMal"_s);
        clickOn(d, u"cmdNumber1"_s);
        pressKey(d, Qt::Key_F2);
    });
    click(u"cmdPfand"_s);
    dialogs.expectModal(u"frmKassePfand"_s, [](QDialog& d) {
        typeText(d, u"5"_s);
        pressKey(d, Qt::Key_Escape);
    });
    press(Qt::Key_F8);
    EXPECT_EQ((QStringList{u"Pfand|3|1 Stück|0,25|0,75"_s, u"Pfand|2|1 Stück|-1,00|-2,00"_s}), lines());
}

TEST_F(Kasse, AsksForVolumeAndSerialNumber) {
    shop.article(u"88"_s, u"Olivenöl lose"_s, 9.5,
                 {{u"VolumenAngabe"_s, true}, {u"SNAngabe"_s, true}, {u"Einheit"_s, u"l"_s}});
    shop.insert(u"ArtikelSerienNummern"_s, {{u"ArtikelNummer"_s, u"88"_s}, {u"SNNummer"_s, u"Fass-12"_s}});
    dialogs.expectModal(u"frmKasseVolumenAngabe"_s, [](QDialog& d) {
        EXPECT_EQ(u"l"_s, control<QLabel>(d, u"lblEinheit"_s).text());
        EXPECT_EQ(u"1"_s, control<QLineEdit>(d, u"txtInput"_s).selectedText());
        keep(d, d.objectName());
        typeText(d, u"0.5"_s);
        pressKey(d, Qt::Key_Return);
    });
    dialogs.expectModal(u"frmKasseSNAngabe"_s, [](QDialog& d) {
        auto& number = control<QComboBox>(d, u"cboSN"_s);
        EXPECT_EQ(u"Fass-12"_s, number.itemText(0));
        typeText(d, u"Fass-1"_s);
        EXPECT_EQ(u"Fass-1"_s, number.currentText()) << "not the number that begins like it";
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Return);
    });
    scan(u"88"_s);
    EXPECT_EQ(QStringList{u"Olivenöl lose|1|0,5 l|4,75|4,75"_s}, lines());
    EXPECT_EQ(2, shop.count(u"ArtikelSerienNummern"_s));
}

TEST_F(Kasse, WritesALongTextOfSeveralLines) {
    gKFLangText = true;
    form.reset();
    open();
    scan(bread);
    dialogs.expectModal(u"frmKasseLangText"_s, [](QDialog& d) {
        typeText(d, u"eins"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible()) << "Enter begins a line";
        typeText(d, u"zwei"_s);
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Return, Qt::ControlModifier);
    });
    press(Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(u"eins\nzwei"_s, shop.value(u"SELECT LangText FROM Bestellung"_s).toText());
}

} // namespace
