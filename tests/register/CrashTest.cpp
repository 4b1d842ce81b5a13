#include "CrashImages.h"
#include "InterruptedSale.h"
#include "ServerTill.h"

#include <register/CashMovements.h>
#include <register/Documents.h>
#include <register/Parking.h>
#include <session/gKunde.h>
#include <store/Schema.h>
#include <text/Sort.h>

#include <QDir>
#include <QProcess>
#include <QSet>
#include <QThread>

#include <harness/NoScreen.h>
#include <random>
#include <sqlite3.h>

// A till that is killed while it sells loses nothing that was on its screen, and one that is killed while it
// books says so at its next start, and books nothing twice.

namespace {

/// What is thrown here nobody in the till catches: for the store it is a kill.
struct Killed {};

class BookingCrash : public Till {
  protected:
    void SetUp() override {
        clock.set(QDateTime({2026, 11, 23}, {14, 5}));
        gShowWechselgeldDialog = false;
        InterruptedSale::stockShop(shop);
        Till::SetUp();
    }
    /// The till is killed, or closed, and started again.
    void restart() {
        reg.reset();
        shop.reopen();
        open();
    }
    /// The till cannot move stock any more, which ends a booking behind its first line.
    void breakStock() { shop.db().Execute(u"ALTER TABLE Artikel DROP COLUMN LagerAktiv"_s); }
    void mendStock() {
        shop.db().Execute(u"ALTER TABLE Artikel ADD COLUMN LagerAktiv BIT"_s);
        shop.db().Execute(u"UPDATE Artikel SET LagerAktiv=-1"_s);
    }
    void expectFailure() {
        dialogs.expectError(3061);
        dialogs.expectMsgBox(u"Beim Erstellen der Rechnung ist ein Fehler aufgetreten."_s);
        dialogs.expectError(3061); // the stock of the selected line
    }
};

/// The engine's own check of the whole file, "ok" when nothing is wrong.
QString integrity(const QString& path) {
    sqlite3* db = nullptr;
    QString answer = u"cannot be opened"_s;
    if (sqlite3_open(path.toUtf8().constData(), &db) == SQLITE_OK) {
        sqlite3_create_collation(db, "GERMAN", SQLITE_UTF8, nullptr,
                                 [](void*, int aSize, const void* a, int bSize, const void* b) {
                                     return CompareUtf8(static_cast<const char*>(a), aSize,
                                                        static_cast<const char*>(b), bSize);
                                 });
        sqlite3_stmt* check = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &check, nullptr) == SQLITE_OK &&
            sqlite3_step(check) == SQLITE_ROW)
            answer = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)));
        else
            answer = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_finalize(check);
    }
    sqlite3_close(db);
    return answer;
}

QSet<QString> numbers(const TempShop& shop, const QString& table) {
    const QStringList all = shop.rows(u"SELECT ArtikelNummer FROM "_s + table);
    return {all.begin(), all.end()};
}

/// What the books say after the till was started again and every question got the answer of Enter.
void expectExactBooks(TempShop& shop, int& questions) {
    DefaultAnswers answers;
    NoScreen screen;
    till::Register reg(screen);
    reg.Load();
    reg.ResumeBooking();
    questions += int(answers.told.size());
    for (const QString& text : answers.told)
        ASSERT_TRUE(text.startsWith(u"Beleg "_s)) << qPrintable(text);
    ASSERT_EQ(shop.count(u"BuchungsMarke"_s), 0);
    ASSERT_EQ(
        shop.rows(u"SELECT RechnungID, Betrag_Gesamt FROM Rechnung ORDER BY 1"_s),
        shop.rows(u"SELECT RechnungID, SUM(VKPreis_Brutto * Buchungs_Menge) FROM RechnungsDetail GROUP BY "
                  "RechnungID ORDER BY 1"_s));
    for (const QString& article : {u"A"_s, u"P"_s}) {
        const int sold = shop.count(u"SELECT 1 FROM RechnungsDetail WHERE ArtikelNummer='%1'"_s.arg(article));
        ASSERT_EQ(shop.value(u"SELECT IstBestand FROM Artikel WHERE Nummer='%1'"_s.arg(article)).toInteger(),
                  InterruptedSale::stock - sold)
            << qPrintable(article);
    }
}

TEST(FileCrash, NothingShownIsLostAndNothingIsBookedTwice) {
    TempShop shop;
    tillSession();
    gShowWechselgeldDialog = false;
    InterruptedSale::stockShop(shop);
    shop.db().Execute(u"UPDATE Artikel SET Menge=1"_s);
    ScriptedDialogs dialogs;
    int questions = 0;
    { // the files that a running shop has
        QFile cards(shop.folder() + u"karten.txt"_s);
        ASSERT_TRUE(cards.open(QIODevice::WriteOnly));
    }
    std::mt19937 random(4711);
    // Killed after some steps, somewhere in the middle of the next.
    std::uniform_int_distribution<int> steps(1, 8);
    std::uniform_int_distribution<unsigned long> microseconds(0, 12000);
    QSet<QString> open; // told as shown and not as paid, by any round so far
    int shown = 0, paid = 0;
    qint64 next = 0;
    for (int round = 0; round < 120; ++round) {
        gDB.reset();
        QProcess till;
        till.start(QStringLiteral(SELL_UNTIL_KILLED), {shop.folder().chopped(1), QString::number(next)});
        QByteArray told;
        for (const int enough = steps(random); told.count('\n') < enough;) {
            ASSERT_TRUE(till.waitForReadyRead(20000)) << till.readAllStandardError().toStdString();
            told += till.readAllStandardOutput();
        }
        QThread::usleep(microseconds(random));
        till.kill();
        ASSERT_TRUE(till.waitForFinished(20000));
        ASSERT_EQ(QProcess::CrashExit, till.exitStatus()) << till.readAllStandardError().toStdString();

        shop.reopen();
        ASSERT_EQ(u"ok"_s, integrity(shop.storePath())) << "round " << round;
        ASSERT_NO_FATAL_FAILURE(expectExactBooks(shop, questions)) << "round " << round;
        ASSERT_EQ(
            shop.count(u"SELECT ArtikelNummer FROM RechnungsDetail WHERE ArtikelNummer LIKE '414*' GROUP BY "
                       "ArtikelNummer HAVING COUNT(*)>1"_s),
            0)
            << "booked twice";
        const QSet<QString> lines = numbers(shop, u"Bestellung"_s),
                            booked = numbers(shop, u"RechnungsDetail"_s);
        for (const QByteArray& step : (told + till.readAllStandardOutput()).split('\n')) {
            const QString code = QString::fromLatin1(step.mid(1));
            if (step.startsWith('+')) {
                open.insert(code);
                next = code.mid(3).toLongLong() + 1;
                ++shown;
            } else if (step.startsWith('=')) {
                for (const QString& line : open)
                    ASSERT_TRUE(booked.contains(line)) << "paid, but not booked: " << line.toStdString();
                open.clear();
                ++paid;
            }
        }
        for (const QString& line : open)
            ASSERT_NE(lines.contains(line), booked.contains(line)) << "lost or twice: " << line.toStdString();
        // A line that was written but not yet shown keeps its number.
        for (const QString& line : lines)
            if (line.startsWith(u"414")) next = std::max(next, line.mid(3).toLongLong() + 1);
    }
    EXPECT_GT(shown, 120);
    EXPECT_GT(paid, 15);
    EXPECT_GT(questions, 10) << "kills in the middle of a booking";
}

using FileBookingCrash = BookingCrash;

TEST_F(FileBookingCrash, AfterAKillAtAnyWriteTheReceiptIsWholeAndNothingStandsOpen) {
    screen.isQuiet = true;
    CrashImages images(shop.storePath());
    reg.reset();
    shop.reopen();
    open();
    InterruptedSale::scan(shop, *reg);
    const DefaultAnswers answers;
    images.taking = true;
    reg->cmdTotal_Click();
    images.taking = false;
    InterruptedSale::expectBooked(shop, 1);
    ASSERT_GT(images.folders().size(), 100) << "a booking writes more than that";
    int unbooked = 0, unfinished = 0, whole = 0;
    for (const QString& folder : images.folders()) {
        SCOPED_TRACE(qPrintable(folder));
        reg.reset();
        gDB = Database::OpenDatabase(folder + u"/Merivane.mdb"_s);
        DefaultAnswers asked;
        open();
        const QString told = asked.told.value(0);
        unbooked += told.contains(u"bezahlt und nicht mehr gebucht"_s);
        unfinished += told.contains(u"nicht abgeschlossen.\n\nEs fehlen:"_s);
        whole += told.contains(u"Er ist vollständig. Seine 5 Zeilen"_s);
        // What nobody had begun to book is an open sale like any other.
        if (reg->basket().rowCount() > 0) {
            EXPECT_TRUE(asked.told.isEmpty());
            EXPECT_EQ(shop.count(u"Rechnung"_s), 0);
            reg->cmdTotal_Click();
        }
        InterruptedSale::expectBooked(shop, 1);
        if (HasFailure()) return;
    }
    EXPECT_GT(unbooked, 2);
    EXPECT_GT(unfinished, 50);
    EXPECT_GT(whole, 2);
    reg.reset();
}

/// A movement of cash stands in the books once or not at all, and never as a line of the next sale.
void expectMovementOnceOrTold(TempShop& shop, till::Register& reg, const QStringList& told, int most) {
    EXPECT_TRUE(reg.basket().isEmpty());
    EXPECT_EQ(shop.count(u"Bestellung"_s), 0);
    EXPECT_EQ(shop.count(u"BuchungsMarke"_s), 0);
    const int receipts = shop.count(u"Rechnung"_s);
    EXPECT_LE(receipts, most);
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), receipts);
    EXPECT_LE(told.size(), 2) << qPrintable(told.join(u'\n'));
}

void answerEinlage(ScriptedScreen& screen) {
    gKFKasseneinlage = true;
    screen.expect(till::Dialog::KassenBuchung, [] {
        gKassenBuchung.Betrag = Currency::fromDouble(200);
        gKassenBuchung.Ergebnis = 1;
    });
}

TEST_F(FileBookingCrash, AMovementOfCashIsBookedOnceOrTold) {
    CrashImages images(shop.storePath());
    reg.reset();
    shop.reopen();
    open();
    answerEinlage(screen);
    images.taking = true;
    reg->movements().BookEinlage();
    images.taking = false;
    ASSERT_EQ(shop.count(u"Rechnung"_s), 1);
    screen.isQuiet = true;
    int unbooked = 0, unfinished = 0, whole = 0;
    for (const QString& folder : images.folders()) {
        SCOPED_TRACE(qPrintable(folder));
        reg.reset();
        gDB = Database::OpenDatabase(folder + u"/Merivane.mdb"_s);
        DefaultAnswers asked;
        open();
        expectMovementOnceOrTold(shop, *reg, asked.told, 1);
        const QString told = asked.told.value(0);
        unbooked += told.contains(u"wurde unterbrochen und ist nicht gebucht"_s);
        unfinished += told.contains(u"Es fehlen:"_s);
        whole += told.contains(u"Er ist vollständig."_s);
        if (HasFailure()) return;
    }
    EXPECT_GT(unbooked, 0);
    EXPECT_GT(unfinished, 5);
    EXPECT_GT(whole, 0);
    reg.reset();
}

TEST_F(FileBookingCrash, AParkedSaleIsNeverLostAndInTwoPlacesOnlyWithAQuestion) {
    gKFBestellungParken = true;
    CrashImages images(shop.storePath());
    reg.reset();
    shop.reopen();
    open();
    for (const bool parks : {true, false}) {
        if (parks) {
            InterruptedSale::scan(shop, *reg);
            images.taking = true;
            reg->parking().ParkBestellung();
        } else {
            images.taking = true;
            reg->parking().LoadParkedBestellung();
        }
        images.taking = false;
        EXPECT_EQ(reg->basket().isEmpty(), parks);
    }
    int asked = 0;
    for (const QString& folder : images.folders()) {
        SCOPED_TRACE(qPrintable(folder));
        reg.reset();
        gDB = Database::OpenDatabase(folder + u"/Merivane.mdb"_s);
        DefaultAnswers answers;
        open();
        const int lines = shop.count(u"Bestellung"_s), parked = shop.count(u"TMPOrder"_s);
        EXPECT_EQ(std::max(lines, parked), InterruptedSale::lines) << "lost";
        EXPECT_EQ(answers.told.size(), lines > 0 && parked > 0 ? 1 : 0);
        asked += int(answers.told.size());
        if (HasFailure()) return;
    }
    EXPECT_GT(asked, 10);
    reg.reset();
}

/// The same on a server: each statement of the booking is the one before which the till is killed.
class ServerBookingCrash : public ServerTill {};

TEST_F(ServerBookingCrash, AfterAKillBeforeAnyStatementTheReceiptIsWholeAndNothingStandsOpen) {
    gShowWechselgeldDialog = false;
    screen.isQuiet = true;
    InterruptedSale::stockShop(shop);
    int statement = 0;
    for (bool whole = false; !whole; ++statement) {
        SCOPED_TRACE(statement);
        InterruptedSale::scan(shop, *reg);
        DefaultAnswers asked;
        proxy->cut(PostgresProxy::Cut::BeforeSending, "", statement, PostgresProxy::After::Deny);
        reg->cmdTotal_Click();
        whole = !proxy->hasCut();
        proxy->cut(PostgresProxy::Cut::BeforeSending, "nothing like this");
        reg.reset();
        gDB.reset();
        proxy->deny(false);
        shop.reopen();
        open();
        if (reg->basket().rowCount() > 0) reg->cmdTotal_Click();
        InterruptedSale::expectBooked(shop, statement + 1);
        if (HasFailure()) return;
    }
    EXPECT_GT(statement, 25);
}

TEST_F(ServerBookingCrash, AMovementOfCashIsBookedOnceOrTold) {
    int statement = 0;
    for (bool whole = false; !whole; ++statement) {
        SCOPED_TRACE(statement);
        DefaultAnswers asked;
        answerEinlage(screen);
        proxy->cut(PostgresProxy::Cut::BeforeSending, "", statement + 3, PostgresProxy::After::Deny);
        reg->movements().BookEinlage();
        whole = !proxy->hasCut();
        proxy->cut(PostgresProxy::Cut::BeforeSending, "nothing like this");
        reg.reset();
        gDB.reset();
        proxy->deny(false);
        shop.reopen();
        asked.told.clear();
        screen.isQuiet = true;
        open();
        screen.isQuiet = false;
        expectMovementOnceOrTold(shop, *reg, asked.told, statement + 1);
        if (HasFailure()) return;
    }
    EXPECT_GT(statement, 8);
    EXPECT_GT(shop.count(u"Rechnung"_s), 3);
}

/// After a kill in the middle of a delivery note: a sale that stands on one is told, and no other. The
/// cashier gives the answer that keeps his lines.
void expectNoteTold(TempShop& shop, const DefaultAnswers& asked, int& inDoubt) {
    const int written = shop.count(u"LieferungDetail"_s), open = shop.count(u"Bestellung"_s);
    ASSERT_LE(shop.count(u"Lieferung"_s), 1);
    ASSERT_TRUE(open == InterruptedSale::lines || (open == 0 && written == InterruptedSale::lines));
    const bool doubt = written > 0 && open > 0;
    ASSERT_EQ(asked.told.size(), doubt ? 1 : 0) << qPrintable(asked.told.join(u'|'));
    inDoubt += doubt;
    if (!doubt) return;
    const QString progress =
        written < InterruptedSale::lines ? u"erst %1 von 5"_s.arg(written) : u"seine 5 Zeilen"_s;
    ASSERT_TRUE(asked.told[0].contains(progress)) << qPrintable(asked.told[0]);
}

TEST_F(FileBookingCrash, ADeliveryNoteThatWasKilledAtAnyWriteIsToldAsADoubt) {
    screen.isQuiet = true;
    CrashImages images(shop.storePath());
    reg.reset();
    shop.reopen();
    open();
    InterruptedSale::scan(shop, *reg);
    gKunde.KundenID = 12;
    {
        struct SaysNo : DefaultAnswers {
            MsgAnswer msgBox(const QString&, MsgButtons, MsgIcon, const QString&, MsgAnswer) override {
                return MsgAnswer::No;
            }
        } const answers;
        images.taking = true;
        reg->documents().BookLieferschein();
        images.taking = false;
    }
    EXPECT_EQ(shop.count(u"LieferungDetail"_s), InterruptedSale::lines);
    EXPECT_EQ(shop.count(u"Bestellung"_s), 0);
    int inDoubt = 0;
    for (const QString& folder : images.folders()) {
        SCOPED_TRACE(qPrintable(folder));
        reg.reset();
        gDB = Database::OpenDatabase(folder + u"/Merivane.mdb"_s);
        DefaultAnswers asked;
        open();
        ASSERT_NO_FATAL_FAILURE(expectNoteTold(shop, asked, inDoubt));
    }
    EXPECT_GT(inDoubt, 20);
    reg.reset();
}

TEST_F(ServerBookingCrash, ADeliveryNoteThatWasKilledBeforeAnyStatementIsToldAsADoubt) {
    screen.isQuiet = true;
    InterruptedSale::stockShop(shop);
    int statement = 0, inDoubt = 0;
    for (bool whole = false; !whole; ++statement) {
        SCOPED_TRACE(statement);
        InterruptedSale::scan(shop, *reg);
        gKunde.KundenID = 12;
        {
            const DefaultAnswers answers;
            proxy->cut(PostgresProxy::Cut::BeforeSending, "", statement, PostgresProxy::After::Deny);
            reg->documents().BookLieferschein();
            whole = !proxy->hasCut();
        }
        proxy->cut(PostgresProxy::Cut::BeforeSending, "nothing like this");
        reg.reset();
        gDB.reset();
        proxy->deny(false);
        shop.reopen();
        DefaultAnswers asked;
        open();
        ASSERT_NO_FATAL_FAILURE(expectNoteTold(shop, asked, inDoubt));
        for (const QString& table : {u"Bestellung"_s, u"Lieferung"_s, u"LieferungDetail"_s})
            shop.db().Execute(u"DELETE FROM "_s + table);
        reg->LoadBestellungen();
    }
    EXPECT_GT(inDoubt, 5);
}

TEST_F(BookingCrash, AReceiptThatStandsAtThePrintChoiceIsToldAndCanBePrinted) {
    gPrintMode = 3;
    InterruptedSale::scan(shop, *reg);
    screen.expect(till::Dialog::PrintDlg, [] { throw Killed(); });
    EXPECT_THROW(reg->cmdTotal_Click(), Killed);
    EXPECT_EQ(shop.count(u"Bestellung"_s), InterruptedSale::lines);
    clock.set(QDateTime({2026, 11, 24}, {9, 0}));
    gDruckerDefault = 3;
    dialogs.expectMsgBox(
        u"Beleg 1 über 56,62 € wurde am 23.11.2026 um 14:05 gebucht und nicht abgeschlossen.\n\nEr ist "
        "vollständig. Seine 5 Zeilen verlassen jetzt den Verkauf und werden nicht noch einmal "
        "gebucht."_s);
    bool printed = false;
    screen.expect(till::Dialog::PrintDlg, [&] {
        EXPECT_EQ(shop.count(u"Bestellung"_s), 0);
        gPrintMode = 0;
        printed = true;
    });
    restart();
    EXPECT_TRUE(printed);
    EXPECT_TRUE(reg->basket().isEmpty());
    InterruptedSale::expectBooked(shop, 1);
    restart(); // and that was all
}

TEST_F(BookingCrash, AnIncompleteReceiptIsFinishedWhenTheCashierWantsIt) {
    gKunde.KundenID = 12;
    gKunde.Name_1 = u"Müller"_s;
    InterruptedSale::scan(shop, *reg);
    breakStock();
    expectFailure();
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), 1);
    mendStock();
    clock.set(QDateTime({2026, 11, 23}, {14, 30}));
    dialogs.expectMsgBox(
        u"Beleg 1 über 56,62 € wurde um 14:05 gebucht und nicht abgeschlossen.\n\nEs fehlen:\n"
        "im Bestand: A  Saft, 1 × 1,99 €\nP  Pfand, 1 × 0,25 €\nS  Radio, 1 × 49,90 €, Nr. ...*"_s,
        MsgIcon::Question, MsgAnswer::Yes, u"Unterbrochene Buchung..."_s);
    dialogs.expectMsgBox(
        u"Beleg 1 über 56,62 € ist jetzt vollständig gebucht.\n\nSoll der Beleg jetzt gedruckt werden?"_s,
        MsgIcon::Question, MsgAnswer::No);
    restart();
    InterruptedSale::expectBooked(shop, 1);
    EXPECT_EQ(shop.rows(u"SELECT DISTINCT KundenNummer, Kunde FROM RechnungsDetail"_s),
              QStringList{u"12|Müller"_s});
    EXPECT_FALSE(reg->HasIncompleteReceipts());
}

TEST_F(BookingCrash, AnIncompleteReceiptThatIsLeftStaysListedForTheOwner) {
    InterruptedSale::scan(shop, *reg);
    breakStock();
    expectFailure();
    reg->cmdTotal_Click();
    mendStock();
    dialogs.expectMsgBox(u"Beleg 1 über 56,62 € wurde um 14:05 gebucht ...*"_s, MsgIcon::Question,
                         MsgAnswer::No);
    restart();
    EXPECT_EQ(reg->basket().rowCount(), InterruptedSale::lines) << "the lines stay open";
    restart(); // it is asked once
    EXPECT_EQ(reg->basket().rowCount(), InterruptedSale::lines);
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.count(u"Rechnung"_s), 2);
    const auto left = till::IncompleteReceipts();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].RechnungID, 1);
    EXPECT_EQ(left[0].Maschine, u"KASSE-1"_s);
    EXPECT_TRUE(left[0].hasHead);
    EXPECT_EQ(left[0].Zeilen, 5);
    EXPECT_EQ(left[0].Gebucht, 1);
    EXPECT_EQ(left[0].Bestand, 0);
    dialogs.expectMsgBox(
        u"Diese Belege sind unvollständig geblieben:\n\nBeleg 1 über 56,62 € (BAR), um 14:05 an "
        "KASSE-1: gebucht 1 von 5 Zeilen, im Bestand 0."_s);
    reg->ShowIncompleteReceipts();
    till::SettleIncompleteReceipt(1);
    EXPECT_TRUE(till::IncompleteReceipts().empty());
}

TEST_F(BookingCrash, PayingAgainAfterAFailureLeavesTheBegunReceiptToTheOwner) {
    InterruptedSale::scan(shop, *reg);
    breakStock();
    expectFailure();
    reg->cmdTotal_Click();
    mendStock();
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.rows(u"SELECT RechnungID, COUNT(*) FROM RechnungsDetail GROUP BY RechnungID ORDER BY 1"_s),
              (QStringList{u"1|1"_s, u"2|5"_s}));
    ASSERT_EQ(till::IncompleteReceipts().size(), 1U);
    EXPECT_EQ(till::IncompleteReceipts()[0].RechnungID, 1);
    restart(); // nothing to ask
}

TEST_F(BookingCrash, WhatFailedCanBeFinishedWhenTheRegisterIsLeft) {
    InterruptedSale::scan(shop, *reg);
    breakStock();
    expectFailure();
    reg->cmdTotal_Click();
    mendStock();
    dialogs.expectMsgBox(u"Beleg 1 über 56,62 € wurde um 14:05 gebucht ...*"_s, MsgIcon::Question,
                         MsgAnswer::Yes);
    dialogs.expectMsgBox(u"Beleg 1 über 56,62 € ist jetzt vollständig gebucht....*"_s, MsgIcon::Question,
                         MsgAnswer::No);
    EXPECT_EQ(reg->QueryUnload(), till::Register::Unload::Close) << "there are no lines to give up";
    InterruptedSale::expectBooked(shop, 1);
    EXPECT_EQ(shop.count(u"Stornos"_s), 0);
}

TEST_F(BookingCrash, LinesThatNoLongerFitTheirReceiptAreToldAndLeftAlone) {
    InterruptedSale::scan(shop, *reg);
    breakStock();
    expectFailure();
    reg->cmdTotal_Click();
    mendStock();
    reg->cmdStorno_Click();
    dialogs.expectMsgBox(
        u"Beleg 1 über 56,62 € wurde um 14:05 gebucht und nicht abgeschlossen.\n\nIm Beleg stehen 1 von "
        "5 Zeilen, und die offenen Zeilen des Verkaufs passen nicht mehr dazu. ...*"_s,
        MsgIcon::Exclamation);
    restart();
    EXPECT_EQ(reg->basket().rowCount(), 4);
    EXPECT_EQ(till::IncompleteReceipts().size(), 1U);
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), 1);
}

TEST_F(BookingCrash, AStoreOfAnOlderProgramIsToldAndSold) {
    shop.db().DeleteTableDef(u"BuchungsMarke"_s);
    reg.reset();
    shop.reopen();
    dialogs.expectMsgBox(u"Diese Datenbank stammt aus einer älteren Version...*"_s, MsgIcon::Exclamation);
    open();
    InterruptedSale::scan(shop, *reg);
    reg->cmdTotal_Click();
    EXPECT_EQ(shop.count(u"RechnungsDetail"_s), InterruptedSale::lines);
    EXPECT_EQ(shop.count(u"Bestellung"_s), 0);
    EXPECT_FALSE(reg->HasIncompleteReceipts());
    schema::createMissingTables(shop.db());
    restart();
    InterruptedSale::scan(shop, *reg);
    reg->cmdTotal_Click();
    InterruptedSale::expectBooked(shop, 2);
}

} // namespace
