#include "Kasse.h"

#include <QComboBox>
#include <QDateEdit>

// Offers, delivery notes and their invoice, by the keyboard.

namespace {

class KasseDocuments : public Kasse {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {14, 5}));
        gKFAuftrag = gKFAngebotsHistorie = gKFLieferscheinHistorie = true;
        customer =
            shop.insert(u"Kunden"_s, {{u"KundenNummer"_s, u"1001"_s}, {u"Name_1"_s, u"Gasthof Linde"_s}});
        Kasse::SetUp();
    }
    void bookNote(const QString& code) {
        scan(code);
        gKunde.KundenID = customer;
        gKunde.Name_1 = u"Gasthof Linde"_s;
        dialogs.expectMsgBox(u"Möchten Sie den Lieferschein jetzt ausdrucken?"_s, MsgIcon::Question,
                             MsgAnswer::No);
        form->findChild<QAction*>(u"Auftrag_Lieferschein"_s)->trigger();
        EXPECT_TRUE(lines().isEmpty());
    }
    [[nodiscard]] static QString cell(const QDialog& d, const QString& name, int row, int column) {
        return control<QTableView>(d, name).model()->index(row, column).data().toString();
    }

    int customer = 0;
};

TEST_F(KasseDocuments, TheHistoryIsLeafedThroughAndANoteLoaded) {
    bookNote(bread);
    clock.set(QDateTime({2026, 11, 24}, {9, 0}));
    bookNote(milk);
    dialogs.expectModal(u"frmKasseLieferung"_s, [this](QDialog& d) {
        const auto& papers = control<QTableView>(d, u"lvwAngebot"_s);
        EXPECT_EQ(papers.model()->rowCount(), 1);
        EXPECT_EQ(cell(d, u"lvwDetail"_s, 0, 1), u"Hafermilch 1 l"_s);
        keep(d, u"frmKasseLieferung"_s);
        clickOn(d, u"cmdNextDay"_s);
        EXPECT_EQ(papers.model()->rowCount(), 0);
        pressKey(d, Qt::Key_Return); // there is nothing to load
        clickOn(d, u"cmdPrevDay"_s);
        clickOn(d, u"cmdPrevDay"_s);
        EXPECT_EQ(cell(d, u"lvwAngebot"_s, 0, 3), u"4,50"_s);
        EXPECT_EQ(cell(d, u"lvwAngebot"_s, 0, 1), u"23.11.2026 14:05"_s);
        clickOn(d, u"cmdAlle"_s);
        EXPECT_EQ(papers.model()->rowCount(), 2);
        EXPECT_EQ(cell(d, u"lvwAngebot"_s, 0, 0), u"2"_s) << "the latest first";
        shop.db().Execute(u"UPDATE Lieferung SET InRechnung=-1 WHERE LieferungID=2"_s);
        dialogs.expectMsgBox(u"Der von Ihnen gewählte Lieferschein wurde bereits als Rechnung erstellt."_s);
        control<QTableView>(d, u"lvwAngebot"_s).setFocus();
        pressKey(d, Qt::Key_Up); // the one that was selected stays so
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(cell(d, u"lvwAngebot"_s, 0, 4), u"X"_s);
        pressKey(d, Qt::Key_Down);
        EXPECT_EQ(cell(d, u"lvwDetail"_s, 0, 1), u"Dinkelbrot 750 g"_s);
        pressKey(d, Qt::Key_Return);
    });
    press(Qt::Key_F12, Qt::ControlModifier);
    EXPECT_EQ(lines().size(), 1);
    EXPECT_EQ(label(u"lblGesamt"_s), u"4,50"_s);
    dialogs.expectModal(u"frmKasseAngebote"_s, [](QDialog& d) {
        EXPECT_FALSE(control<QWidget>(d, u"cmdCSV"_s).isVisible());
        pressKey(d, Qt::Key_Escape);
    });
    press(Qt::Key_F11, Qt::ControlModifier);
}

TEST_F(KasseDocuments, TheWizardMakesOneInvoiceAndNoneOfWhatAnotherTillTook) {
    bookNote(bread);
    bookNote(milk);
    dialogs.expectModal(u"frmRechnungFromLieferschein"_s, [this](QDialog& d) {
        dialogs.expectMsgBox(u"Sie müssen ein Kunden auswählen bevor Sie den Vorgang fortsetzen können."_s);
        pressKey(d, Qt::Key_Return);
        pressKey(d, Qt::Key_Down);
        EXPECT_EQ(control<QComboBox>(d, u"cboKunden"_s).currentText(), u"Gasthof Linde (1001)"_s);
        pressKey(d, Qt::Key_Return);
        dialogs.expectMsgBox(u"Sie müssen mindestens ein Lieferschein auswählen."_s);
        pressKey(d, Qt::Key_Return);
        clickOn(d, u"cmdAll"_s);
        EXPECT_EQ(control<QLabel>(d, u"lblSumme"_s).text(), u"2 Lieferscheine · 6,29 "_s + gWaehrungsSymbol);
        keep(d, u"frmRechnungFromLieferschein1"_s);
        pressKey(d, Qt::Key_Return);
        shop.db().Execute(u"UPDATE Lieferung SET InRechnung=-1 WHERE LieferungID=2"_s);
        control<QAbstractButton>(d, u"chkPrint"_s).setChecked(false);
        dialogs.expectMsgBox(u"Der Lieferschein 2 steht inzwischen in einer Rechnung ...*"_s,
                             MsgIcon::Exclamation);
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(shop.count(u"Rechnung"_s), 0);
        EXPECT_EQ(control<QTableView>(d, u"lvwLieferschein"_s).model()->rowCount(), 1);
        clickOn(d, u"cmdTick"_s);
        pressKey(d, Qt::Key_Return);
        keep(d, u"frmRechnungFromLieferschein2"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(shop.rows(u"SELECT Kunde, ZahlArt, Betrag_Gesamt FROM Rechnung"_s),
                  QStringList{u"Gasthof Linde|RECHNUNG_OFFEN|4,5"_s});
        keep(d, u"frmRechnungFromLieferschein3"_s);
        pressKey(d, Qt::Key_Return); // closes, and books nothing again
    });
    form->findChild<QAction*>(u"Auftrag_RechnungFromLieferschein"_s)->trigger();
    EXPECT_EQ(shop.count(u"Rechnung"_s), 1);
    EXPECT_EQ(shop.count(u"SELECT 1 FROM Lieferung WHERE InRechnung=0"_s), 0);
}

} // namespace
