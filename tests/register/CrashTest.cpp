#include "Till.h"

#include <text/Sort.h>

#include <QProcess>
#include <QSet>
#include <QThread>

#include <random>
#include <sqlite3.h>

// A till that is killed while it sells loses nothing that was on its screen.

namespace {

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

TEST(FileCrash, NothingShownIsLost) {
    TempShop shop;
    ScriptedDialogs dialogs;
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
    for (int round = 0; round < 200; ++round) {
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
        // A till killed in the middle of a booking keeps the lines and books them once more; twice is not
        // lost.
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
            ASSERT_TRUE(lines.contains(line) || booked.contains(line)) << "lost: " << line.toStdString();
        // A line that was written but not yet shown keeps its number.
        for (const QString& line : lines)
            next = std::max(next, line.mid(3).toLongLong() + 1);
        ASSERT_EQ(u"ok"_s, integrity(shop.storePath())) << "round " << round;
    }
    EXPECT_GT(shown, 200);
    EXPECT_GT(paid, 20);
}

} // namespace
