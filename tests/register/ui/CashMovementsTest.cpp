#include "Kasse.h"

#include <QComboBox>

namespace {

TEST_F(Kasse, BooksAFloatFromTheKeyboardAndFromThePad) {
    gKFKasseneinlage = gKFKassenentnahme = true;
    form.reset();
    open();
    dialogs.expectModal(u"frmKasseEinlage"_s, [](QDialog& d) {
        EXPECT_EQ(u"Einlage"_s, control<QComboBox>(d, u"cboWarenGruppe"_s).currentText());
        EXPECT_EQ(u"Einlage"_s, control<QLineEdit>(d, u"txtName"_s).text());
        EXPECT_TRUE(control<QLineEdit>(d, u"txtBetrag"_s).hasFocus()) << "the rest is filled";
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible());
        typeText(d, u"x200.5"_s);
        EXPECT_EQ(u"200,5"_s, control<QLineEdit>(d, u"txtBetrag"_s).text());
        pressKey(d, Qt::Key_Return);
    });
    dialogs.expectMsgBox(u"Bitte geben Sie einen Betrag > Null ein."_s);
    control<QAction>(*form, u"FileEinlage"_s).trigger();
    dialogs.expectModal(u"frmKasseEinlage"_s, [](QDialog& d) {
        EXPECT_TRUE(d.windowTitle().startsWith(u"Entnahme"_s));
        clickOn(d, u"cmdNumber5"_s);
        clickOn(d, u"cmdNumber0"_s);
        auto& rate = control<QComboBox>(d, u"cboSteuerSatz"_s);
        rate.setFocus();
        rate.lineEdit()->selectAll();
        typeText(d, u"-7.5"_s);
        EXPECT_EQ(u"7,5"_s, rate.currentText());
        clickOn(d, u"cmdOK"_s);
    });
    control<QAction>(*form, u"FileEntnahme"_s).trigger();
    EXPECT_EQ((QStringList{u"EINLAGE|200,5"_s, u"ENTNAHME|50"_s}),
              shop.rows(u"SELECT ZahlArt, Betrag_Gesamt FROM Rechnung ORDER BY RechnungID"_s));
    dialogs.expectModal(u"frmKasseEinlage"_s, [](QDialog& d) { pressKey(d, Qt::Key_Escape); });
    control<QAction>(*form, u"FileEinlage"_s).trigger();
    EXPECT_EQ(2, shop.count(u"Rechnung"_s));
}

} // namespace
