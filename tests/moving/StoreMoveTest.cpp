#include "Shops.h"

#include <app/DemoShop.h>
#include <store/StoreName.h>
#include <store/Transfer.h>

#include <limits>
#include <moving/StoreMove.h>
#include <moving/TableSum.h>

using moving::MoveResult;
using moving::Progress;
using moving::StoreMove;

namespace {

class StoreMoveTest : public testing::Test {
  protected:
    QTemporaryDir m_folder;
    QString m_source = m_folder.filePath(u"alt.mdb"_s);
    QString m_target = m_folder.filePath(u"neu.mdb"_s);

    static std::unique_ptr<Database> open(const QString& place, const QString& password = {}) {
        return Database::OpenDatabase(place, false, false, u";PWD="_s + password);
    }

    /// Three tables of `rows` rows each.
    void makeSource(int rows = 1500, const QString& password = {}) {
        auto db = Database::CreateDatabase(m_source, u";PWD="_s + password);
        for (const QString& name : {u"Anfang"_s, u"Mitte"_s, u"Zuletzt"_s}) {
            db->Execute(u"CREATE TABLE "_s + name + u" (ID COUNTER, Name TEXT(50), Preis CURRENCY)"_s);
            db->BeginTrans();
            const auto writer = store::WriteTable(*db, name);
            for (int i = 1; i <= rows; ++i)
                writer->Add({i, u"Artikel %1"_s.arg(i), Currency::fromScaled(i * 10)});
            writer->Finish();
            db->CommitTrans();
        }
    }

    [[nodiscard]] MoveResult move(const StoreMove::Report& report = {}) const {
        return StoreMove(m_source, m_target).run(report);
    }
    /// Stops the move when it has reached this table.
    [[nodiscard]] bool cancelAt(const QString& table, Progress::Step step = Progress::Step::Copying) const {
        return move([&](const Progress& progress) {
                   return progress.step != step || progress.table != table || progress.row == 0;
               })
            .cancelled;
    }
};

TEST_F(StoreMoveTest, EveryTypeArrivesWithItsExtremes) {
    makeExtremes(*Database::CreateDatabase(m_source));
    const MoveResult result = move();
    EXPECT_TRUE(result.equal());
    ASSERT_EQ(3U, result.tables.size());
    EXPECT_EQ(4, result.tables[0].rows);
    EXPECT_TRUE(result.tables[0].sums.contains(u"C 0,0000"_s))
        << result.tables[0].sums.join(u'\n').toStdString();

    const auto source = open(m_source), target = open(m_target);
    EXPECT_EQ(dump(*source), dump(*target));
    expectRulesOfExtremes(*target);
}

TEST_F(StoreMoveTest, TheDemoShopComesBackAsItWent) {
    demo::createShop(m_folder.filePath(u"laden"_s));
    m_source = m_folder.filePath(u"laden/daten/Merivane.mdb"_s);
    const QByteArray before = dump(*open(m_source));
    const QByteArray file = fileOf(m_source);
    const QString back = m_folder.filePath(u"zurueck.mdb"_s);
    EXPECT_TRUE(move().equal());
    EXPECT_TRUE(StoreMove(m_target, back).run().equal());
    EXPECT_EQ(before, dump(*open(back)));
    EXPECT_EQ(file, fileOf(m_source));
}

TEST_F(StoreMoveTest, ThePasswordComesAlong) {
    for (const QString& password :
         {QString(), QString::fromUtf16(store::oldPassword), QString::fromUtf16(store::newPassword)}) {
        QFile::remove(m_source);
        QFile::remove(m_target);
        makeSource(1, password);
        EXPECT_TRUE(move().equal());
        EXPECT_EQ(password.isEmpty() ? 0 : 3031, errorOf([&] { open(m_target); }));
        EXPECT_EQ(0, errorOf([&] { open(m_target, password); }));
    }
    QFile::remove(m_source);
    QFile::remove(m_target);
    makeSource(1, u"fremd"_s);
    EXPECT_EQ(3031, errorOf([&] { std::ignore = move(); }));
    EXPECT_FALSE(QFile::exists(m_target));
}

TEST_F(StoreMoveTest, OnlyAnEmptyTargetIsTaken) {
    makeSource(3);
    {
        auto db = Database::CreateDatabase(m_target, u";PWD=kestrel"_s);
        db->Execute(u"CREATE TABLE Mitte (Anders LONG)"_s);
        db->Execute(u"CREATE TABLE Weg (ID COUNTER)"_s);
        db->Execute(u"INSERT INTO Weg (ID) VALUES (5)"_s);
    }
    const QByteArray before = fileOf(m_target);
    EXPECT_EQ(3204, errorOf([&] { std::ignore = move(); }));
    EXPECT_EQ(before, fileOf(m_target));
    EXPECT_EQ(3219,
              errorOf([&] { std::ignore = StoreMove(m_source, m_folder.path() + u"/./alt.mdb"_s).run(); }));

    // An empty store, from a first start for instance, becomes the source in everything.
    open(m_target, u"kestrel"_s)->Execute(u"DELETE FROM Weg"_s);
    EXPECT_TRUE(move().equal());
    EXPECT_EQ(dump(*open(m_source)), dump(*open(m_target)));

    QFile strange(m_folder.filePath(u"fremd"_s));
    ASSERT_TRUE(strange.open(QIODevice::WriteOnly));
    strange.write("ein Brief");
    strange.close();
    EXPECT_EQ(3343, errorOf([&] { std::ignore = StoreMove(m_source, strange.fileName()).run(); }));
    EXPECT_EQ("ein Brief", fileOf(strange.fileName()));
    EXPECT_EQ(3024, errorOf([&] { std::ignore = StoreMove(m_folder.filePath(u"fehlt"_s), m_target).run(); }));
}

TEST_F(StoreMoveTest, ACancelledMoveIsRefusedByTheTillAndGoesOnWithTheNextCall) {
    makeSource();
    const QByteArray file = fileOf(m_source);
    ASSERT_TRUE(cancelAt(u"Zuletzt"_s));
    EXPECT_EQ(3734, errorOf([&] { open(m_target); }));
    EXPECT_EQ(3734, errorOf([&] { std::ignore = StoreMove(m_target, m_folder.filePath(u"x.mdb"_s)).run(); }));
    EXPECT_EQ(3734, errorOf([&] {
                  demo::createShop(m_folder.filePath(u"laden"_s));
                  std::ignore = StoreMove(m_folder.filePath(u"laden/daten/Merivane.mdb"_s), m_target).run();
              }));
    ASSERT_TRUE(cancelAt(u"Mitte"_s, Progress::Step::Comparing));
    EXPECT_EQ(3734, errorOf([&] { open(m_target); }));
    EXPECT_EQ(file, fileOf(m_source));

    // Meanwhile the shop sold on: in rows, in a counter alone, in structure.
    {
        const auto db = open(m_source);
        db->Execute(u"UPDATE Anfang SET Preis=99 WHERE ID=700"_s);
        db->Execute(u"INSERT INTO Mitte (ID, Name) VALUES (9000, 'kurz da')"_s);
        db->Execute(u"DELETE FROM Mitte WHERE ID=9000"_s);
        db->Execute(u"DROP TABLE Zuletzt"_s);
        db->Execute(u"CREATE TABLE Neu (N LONG)"_s);
    }
    EXPECT_TRUE(move().equal());
    const auto target = open(m_target);
    EXPECT_EQ(dump(*open(m_source)), dump(*target));
    EXPECT_EQ(9000, store::Counter(*target, u"Mitte"_s));
}

TEST_F(StoreMoveTest, NobodySellsIntoTheSourceMeanwhile) {
    makeSource();
    {
        const auto till = open(m_source);
        EXPECT_EQ(3045, errorOf([&] { std::ignore = move(); }));
        EXPECT_FALSE(QFile::exists(m_target));
    }
    int tried = 0;
    EXPECT_TRUE(move([&](const Progress&) {
                    if (++tried != 3) return true;
                    EXPECT_EQ(3045, errorOf([&] { // exclusively, since that does not wait
                                  std::ignore = Database::OpenDatabase(m_source, true);
                              }));
                    return true;
                }).equal());
    EXPECT_GT(tried, 3);
}

TEST_F(StoreMoveTest, ProgressGrowsToTheEnd) {
    makeSource();
    std::vector<Progress> told;
    EXPECT_TRUE(move([&](const Progress& progress) {
                    told.push_back(progress);
                    return true;
                }).equal());
    ASSERT_FALSE(told.empty());
    for (std::size_t i = 1; i < told.size(); ++i)
        EXPECT_LE(told[i - 1].percent, told[i].percent);
    EXPECT_EQ(0, told.front().percent);
    EXPECT_EQ(100, told.back().percent);
    EXPECT_EQ(told.back().rows, told.back().row);
}

TEST(TableSum, SeesValuesOrderAndKinds) {
    const auto sum = [](const QString& name, const QStringList& rows) {
        const auto db = Database::OpenDatabase(u":memory:"_s);
        db->Execute(u"CREATE TABLE "_s + name + u" (A TEXT(9), B DOUBLE, C CURRENCY, D YESNO)"_s);
        for (const QString& row : rows)
            db->Execute(u"INSERT INTO "_s + name + u" VALUES ("_s + row + u')');
        return moving::sumOf(*db, name);
    };
    const auto base = sum(u"T"_s, {u"'x', 1.5, 2.25, True"_s, u"'y', 2, -4.5, True"_s});
    EXPECT_EQ(2, base.rows);
    const std::vector<moving::TableSum::Column> sums{
        {u"B"_s, u"3,5"_s}, {u"C"_s, u"-2,2500"_s}, {u"D"_s, u"2"_s}};
    EXPECT_EQ(sums, base.columns);
    EXPECT_EQ(base, sum(u"U"_s, {u"'x', 1.5, 2.25, True"_s, u"'y', 2, -4.5, True"_s}));
    const auto swapped = sum(u"T"_s, {u"'y', 2, -4.5, True"_s, u"'x', 1.5, 2.25, True"_s});
    EXPECT_EQ(base.columns, swapped.columns);
    EXPECT_NE(base.hash, swapped.hash);
    EXPECT_NE(base.hash, sum(u"T"_s, {u"'X', 1.5, 2.25, True"_s, u"'y', 2, -4.5, True"_s}).hash);
    EXPECT_NE(sum(u"T"_s, {u"NULL, 0, 0, True"_s}).hash, sum(u"T"_s, {u"NULL, NULL, 0, True"_s}).hash);
    EXPECT_NE(sum(u"T"_s, {u"NULL, 0, 0, True"_s}).hash, sum(u"T"_s, {u"NULL, 0, NULL, True"_s}).hash);
}

} // namespace
