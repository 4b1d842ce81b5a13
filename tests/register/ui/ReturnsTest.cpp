#include "Kasse.h"

namespace {

TEST_F(Kasse, TakesGoodsBackByTheSpaceBarAndByATap) {
    gKFWarenrueckgabe = gKassenUser.R_RechnungEdit = true;
    form.reset();
    open();
    scan(bread);
    scan(milk);
    payCash();
    const QString id = shop.rows(u"SELECT RechnungID FROM Rechnung"_s).value(0);
    dialogs.expectModal(u"frmKasseReklamation"_s, [&](QDialog& d) {
        auto& box = control<QLineEdit>(d, u"txtSuchBegriff"_s);
        auto& rows = control<QTableView>(d, u"lvwDetail"_s);
        typeText(d, u"x"_s + id);
        EXPECT_EQ(id, box.text());
        pressKey(d, Qt::Key_Return);
        ASSERT_EQ(2, rows.model()->rowCount());
        EXPECT_TRUE(rows.hasFocus());
        pressKey(d, Qt::Key_Space);
        EXPECT_EQ(u"Markiert: 4,50 €"_s, control<QLabel>(d, u"lblSumme"_s).text());
        QTest::mouseClick(rows.viewport(), Qt::LeftButton, {},
                          rows.visualRect(rows.model()->index(1, 2)).center());
        EXPECT_EQ(u"Markiert: 6,29 €"_s, control<QLabel>(d, u"lblSumme"_s).text());
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Space); // the milk stays with the customer
        EXPECT_EQ(u"Markiert: 4,50 €"_s, control<QLabel>(d, u"lblSumme"_s).text());
        pressKey(d, Qt::Key_Return);
    });
    dialogs.expectMsgBox(u"Möchten Sie die markierten Artikel jetzt zurück buchen?"_s, MsgIcon::Question,
                         MsgAnswer::Yes);
    dialogs.expectInput(u"Geben Sie die Anzahl der Rückgabe für den Artikel: Dinkelbrot 750 g ein."_s,
                        u"1"_s);
    dialogs.expectMsgBox(u"Möchten Sie eine Barauszahlung aus dem Kassenbestand vornehmen?"_s,
                         MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectMsgBox(u"Der Artikel wurde zurück gebucht...*"_s);
    press(Qt::Key_F9, Qt::ControlModifier);
    EXPECT_EQ(QStringList{u"-4,5"_s},
              shop.rows(u"SELECT Betrag_Gesamt FROM Rechnung WHERE ZahlArt='RUECKGABE'"_s));
    EXPECT_TRUE(inputHasFocus());
}

} // namespace
