#include "Kasse.h"

#include <support/Keyboard.h>
#include <ui/TouchDialogs.h>

#include <QComboBox>

namespace {

class VoucherForms : public Kasse {
  protected:
    VoucherForms() {
        gKFGutscheinErstellen = gKFGutscheinEinloesen = gKFGutscheinAuszahlung = true;
        shop.db().Execute(u"UPDATE Artikel SET WarenGruppe='Backwaren'"_s);
    }
    void start(const QString& entry) { control<QAction>(*form, entry).trigger(); }
};

TEST_F(VoucherForms, AVoucherIsSoldByKeysAndByTouch) {
    const auto& menu = control<QMenu>(*form, u"popFunction"_s);
    QStringList captions;
    for (const QAction* entry : menu.actions())
        if (entry->text().contains(u"utschein"_s)) captions << entry->text();
    EXPECT_EQ(captions, (QStringList{u"Neuen Gutschein erstellen"_s, u"Gutschein einlösen"_s,
                                     u"Gutscheinbetrag Bar auszahlen"_s}));

    const auto missing = u"Der Gutschein kann nicht gedruckt werden...*"_s;
    dialogs.expectModal(u"frmKasseGutschein"_s, [](QDialog& d) {
        EXPECT_EQ(control<QComboBox>(d, u"cboWarenGruppe"_s).currentText(), u"Gutschein"_s);
        EXPECT_EQ(control<QComboBox>(d, u"cboSteuerSatz"_s).currentText(), u"19,0"_s);
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(control<QLineEdit>(d, u"txtName"_s).hasFocus());
        typeText(d, u"Für Oma"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(control<QLineEdit>(d, u"txtBetrag"_s).hasFocus());
        typeText(d, u"abc12.5x0"_s);
        pressKey(d, Qt::Key_Return);
    });
    dialogs.expectMsgBox(u"Sie müssen eine Bezeichnung für diesen Gutschein eingeben."_s);
    dialogs.expectMsgBox(u"Sie müssen ein Betrag größer 0,00 für den Gutschein eingeben."_s);
    dialogs.expectMsgBox(missing);
    start(u"FileNewGutschein"_s);
    EXPECT_EQ(lines(), QStringList{u"Für Oma|1|1 Stück|12,50|12,50"_s});

    dialogs.expectModal(u"frmKasseGutschein"_s, [](QDialog& d) {
        control<QComboBox>(d, u"cboWarenGruppe"_s).setCurrentText(u"Backwaren"_s);
        control<QComboBox>(d, u"cboSteuerSatz"_s).setCurrentIndex(1);
        typeText(d, u"Brot"_s);
        for (const QString& key : {u"cmdNumber2"_s, u"cmdNumber0"_s, u"cmdOK"_s})
            clickOn(d, key);
    });
    dialogs.expectMsgBox(missing);
    start(u"FileNewGutschein"_s);
    EXPECT_EQ(
        shop.rows(u"SELECT WarenGruppe, Name, Betrag, SteuerSatz FROM Gutscheine ORDER BY GutscheinID"_s),
        (QStringList{u"Gutschein|Für Oma|12,5|19"_s, u"Backwaren|Brot|20|7"_s}));
    dialogs.expectModal(u"frmKasseGutschein"_s, [](QDialog& d) { pressKey(d, Qt::Key_Escape); });
    start(u"FileNewGutschein"_s);
    EXPECT_EQ(shop.count(u"Gutscheine"_s), 2);
}

TEST_F(VoucherForms, AScannedVoucherPaysTheSaleAndTheRestIsPaidOut) {
    shop.insert(u"Gutscheine"_s, {{u"Betrag"_s, Currency::fromInteger(3)}, {u"SteuerSatz"_s, 19}});
    Keyboard keys;
    scan(bread); // 4,50
    // The real boxes, one behind the other.
    TouchDialogHost touch;
    DialogHost* const before = SetDialogHost(&touch);
    int shown = 0;
    const ModalHook hook = SetModalHook([&](QDialog& d) {
        showForm(d);
        keep(d, u"voucher%1"_s.arg(shown));
        switch (shown++) {
        case 0:
            keys.scan(d, u"00000001"_s);
            break;
        case 1:
            keys.scan(d, u"00000001"_s);
            EXPECT_TRUE(d.isVisible()) << "a second scan answers no question";
            pressKey(d, Qt::Key_J);
            keys.rest();
            break;
        default:
            keys.scan(d, u"00000001"_s);
            EXPECT_TRUE(d.isVisible()) << "and pays nothing";
            EXPECT_EQ(control<QLineEdit>(d, u"txtSumme"_s).text(), u"1,50"_s);
            typeText(d, u"2"_s);
            keys.rest();
            pressKey(d, Qt::Key_Return);
        }
        EXPECT_FALSE(d.isVisible());
        return d.result();
    });
    start(u"FileFromGutschein"_s);
    SetModalHook(hook);
    SetDialogHost(before);
    EXPECT_EQ(shown, 3);
    EXPECT_EQ(shop.rows(u"SELECT ZahlArt, Betrag_Gesamt, Betrag_Zurueck FROM Rechnung"_s),
              QStringList{u"BAR|1,5|0,5"_s});
    EXPECT_EQ(shop.rows(u"SELECT Betrag FROM Gutscheine"_s), QStringList{u"0"_s});
    EXPECT_EQ(lines(), QStringList());
    EXPECT_TRUE(inputHasFocus());

    shop.db().Execute(u"UPDATE Gutscheine SET Betrag='7'"_s);
    dialogs.expectInput(u"Bitte geben Sie die gewünschte Gutscheinnummer ein."_s, u"1"_s);
    start(u"FileGutscheinAuszahlung"_s);
    EXPECT_EQ(shop.count(u"SELECT * FROM Rechnung WHERE ZahlArt='ENTNAHME' AND Betrag_Gesamt=7"_s), 1);
    EXPECT_TRUE(inputHasFocus());
}

} // namespace
