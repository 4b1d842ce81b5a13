#include "Till.h"

#include <printing/Seiten.h>
#include <register/ReceiptHistory.h>
#include <support/TestPrinters.h>
#include <templates/Shipped.h>

// What was booked, looked at again.

namespace {

class ReceiptHistory : public Till {
  protected:
    void SetUp() override {
        gShowWechselgeldDialog = false;
        gKassenUser.R_RechnungEdit = true;
        shop.article(u"1"_s, u"Brot"_s, 4.05, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 50}});
        clock.set(QDateTime({2026, 11, 22}, {18, 0}));
        Till::SetUp();
        sell();
        clock.set(QDateTime({2026, 11, 23}, {9, 0}));
        sell();
        sell();
    }
    void sell() {
        scan(u"1"_s);
        reg->cmdTotal_Click();
    }
    QStringList listed(std::optional<QDate> day) {
        const sql::Query query = till::ReceiptHistory::List(day);
        QStringList ids;
        for (const QString& row : shop.rows(query.select + u" ORDER BY "_s + query.order))
            ids << row.section(u'|', 0, 0);
        return ids;
    }
};

TEST_F(ReceiptHistory, ListsADayOrAllAndFindsANumber) {
    EXPECT_EQ((QStringList{u"3"_s, u"2"_s}), listed(QDate(2026, 11, 23)));
    EXPECT_EQ((QStringList{u"3"_s, u"2"_s, u"1"_s}), listed(std::nullopt));
    EXPECT_EQ(QStringList{}, listed(QDate(2026, 11, 24)));
    EXPECT_EQ(QDate(2026, 11, 22), till::ReceiptHistory::DayOf(1));
    EXPECT_FALSE(till::ReceiptHistory::DayOf(99));
    shop.db().Execute(u"UPDATE Rechnung SET Datum=NULL WHERE RechnungID=2"_s);
    EXPECT_FALSE(till::ReceiptHistory::DayOf(2)->isValid());
}

TEST_F(ReceiptHistory, DeletesTheRowsAndNothingElse) {
    const QString question =
        u"ACHTUNG: Diese Aktion könnte Ihr Betriebsergebnis verfälschen. Auch müssen Sie sich über "
        "die rechtlichen Folgen im klaren sein.\n\nMöchten Sie diesen Beleg wirklich löschen?"_s;
    till::ReceiptHistory history = reg->receipts();
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::No, u"Beleg löschen..."_s);
    EXPECT_FALSE(history.Delete(2));
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::Yes);
    EXPECT_TRUE(history.Delete(2));
    EXPECT_EQ((QStringList{u"3"_s, u"1"_s}), listed(std::nullopt));
    EXPECT_EQ(2, shop.count(u"RechnungsDetail"_s));
    EXPECT_EQ(47, shop.value(u"SELECT IstBestand FROM Artikel WHERE Nummer='1'"_s).toInteger());
    gKassenUser.R_RechnungEdit = false;
    dialogs.expectMsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen."_s);
    EXPECT_FALSE(history.Delete(1));
    EXPECT_EQ(2, shop.count(u"Rechnung"_s));
}

TEST_F(ReceiptHistory, AFailureBetweenBothDeletionsIsTold) {
    dialogs.expectMsgBox(u"ACHTUNG...*"_s, MsgIcon::Question, MsgAnswer::Yes);
    shop.db().Execute(u"ALTER TABLE Rechnung DROP COLUMN RechnungID"_s);
    try {
        reg->receipts().Delete(2);
        ADD_FAILURE();
    } catch (const RuntimeError& error) {
        EXPECT_TRUE(error.Description.contains(u"Die Zeilen von Beleg 2 sind gelöscht"_s))
            << qPrintable(error.Description);
    }
}

TEST_F(ReceiptHistory, AnInterruptedReceiptIsMarkedUntilTheOwnerHasSeenIt) {
    shop.insert(u"BuchungsMarke"_s,
                {{u"Maschine"_s, u"KASSE-9"_s}, {u"RechnungID"_s, 2}, {u"Unvollstaendig"_s, true}});
    EXPECT_TRUE(till::ReceiptHistory::IsIncomplete(2));
    EXPECT_FALSE(till::ReceiptHistory::IsIncomplete(3));
    for (const auto answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        dialogs.expectMsgBox(u"Die Buchung von Beleg 2 wurde unterbrochen...*"_s, MsgIcon::Question, answer);
        EXPECT_EQ(answer == MsgAnswer::Yes, till::ReceiptHistory::Settle(2));
    }
    EXPECT_FALSE(reg->HasIncompleteReceipts());
}

TEST_F(ReceiptHistory, PrintsByTheWayThatIsChosenAndLooksTheSame) {
    for (const QString& name : {u"Kassenbon.pld"_s, u"Quittung.pld"_s, u"Rechnung.pld"_s})
        writeFile(name, shippedTemplate(name));
    TestPrinters printers({u"Epos"_s, u"Laser"_s});
    gBonDrucker = u"Epos"_s;
    gFormularDrucker = u"Laser"_s;
    gDruckerKopies = 3;
    gKunde.Name_1 = u"wer gerade kauft"_s;
    till::ReceiptHistory history = reg->receipts();
    for (const int mode : {1, 2, 0}) {
        screen.expect(till::Dialog::PrintDlg, [mode] { gPrintMode = mode; });
        history.Print(2);
    }
    ASSERT_EQ(2u, printers.jobs.size()) << "one copy each, and none where none is wanted";
    shop.db().Execute(u"UPDATE Rechnung SET ZahlArt='RECHNUNG_OFFEN' WHERE RechnungID=3"_s);
    history.Print(3); // an invoice needs no choice
    EXPECT_EQ(3u, printers.jobs.size());
    EXPECT_EQ(u"wer gerade kauft"_s, gKunde.Name_1);

    const BelegSeiten page = BonSeiten(2);
    EXPECT_EQ(QString(), page.fault);
    EXPECT_EQ(1, page.document.pageCount());
    EXPECT_EQ(u"wer gerade kauft"_s, gKunde.Name_1);
    EXPECT_EQ(u"Der Beleg 99 ist nicht mehr da."_s, BonSeiten(99).fault);
    EXPECT_EQ(1, FormularSeiten(3, u"Rechnung.pld"_s, 0).document.pageCount());
    EXPECT_FALSE(FormularSeiten(3, u"Fehlt.pld"_s, 0).fault.isEmpty());
    EXPECT_THROW((void)FormularSeiten(3, u"Rechnung.pld"_s, 7), RuntimeError);
}

TEST_F(ReceiptHistory, ArticleInformationIsOfTheSelectedLine) {
    gKFArtikelInfo = true;
    reg->ShowArtikelInfo(); // nothing selected
    scan(u"1"_s);
    screen.expect(till::Dialog::ArtikelInfo, [] { EXPECT_EQ(u"Brot"_s, gArtikel.Name); });
    reg->ShowArtikelInfo();
    shop.db().Execute(u"DELETE FROM Artikel WHERE Nummer='1'"_s);
    dialogs.expectMsgBox(u"Zu dieser Zeile gibt es keinen Artikel in der Datenbank."_s);
    reg->ShowArtikelInfo();
    gKFArtikelInfo = gKFRechnungsHistorie = false;
    reg->ShowArtikelInfo();
    reg->ShowBonHistorie();
}

} // namespace
