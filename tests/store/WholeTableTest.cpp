#include "Support.h"

#include <store/Transfer.h>

namespace {

using Rows = std::vector<std::vector<Value>>;

Rows rowsOf(Database& db, const QString& table) {
    Rows rows;
    store::ReadTable(db, table, [&](const std::vector<Value>& row) { rows.push_back(row); });
    return rows;
}

void append(Database& db, const QString& table, const Rows& rows) {
    db.BeginTrans();
    const auto writer = store::WriteTable(db, table);
    for (const auto& row : rows)
        writer->Add(row);
    writer->Finish();
    db.CommitTrans();
}

class WholeTableTest : public StoreTest {};

TEST_F(WholeTableTest, StructureTravelsWithIndexesAndRequiredColumns) {
    auto db = Database::CreateDatabase(m_file);
    db->Execute(u"CREATE TABLE A (ID COUNTER CONSTRAINT Schluessel PRIMARY KEY, Nummer TEXT(10) NOT NULL, "
                "Preis CURRENCY DEFAULT 1.5, Notiz MEMO)"_s);
    db->Execute(u"CREATE UNIQUE INDEX Eins ON A (Nummer DESC, Preis)"_s);
    db->Execute(u"CREATE INDEX Zwei ON A (Preis)"_s);
    TableDef copy = *db->FindTableDef(u"A");
    copy.Name = u"B"_s;
    db->AppendTableDef(copy);

    const TableDef made = *db->FindTableDef(u"B");
    EXPECT_EQ(copy.Indexes, made.Indexes);
    ASSERT_EQ(3U, made.Indexes.size());
    EXPECT_EQ(3314, errorOf([&] { db->Execute(u"INSERT INTO B (Preis) VALUES (1)"_s); }));
    db->Execute(u"INSERT INTO B (Nummer, Preis) VALUES ('x', 2)"_s);
    EXPECT_EQ(3022, errorOf([&] { db->Execute(u"INSERT INTO B (Nummer, Preis) VALUES ('X', 2)"_s); }));
}

TEST_F(WholeTableTest, RowsAreReadInTheirOrderAcrossTheChunks) {
    auto db = Database::CreateDatabase(m_file);
    db->Execute(u"CREATE TABLE A (N LONG)"_s);
    db->Execute(u"CREATE INDEX N ON A (N)"_s);
    Rows rows;
    for (int i = 0; i < 2000; ++i)
        rows.push_back({(i * 7919) % 2000});
    append(*db, u"A"_s, rows);
    EXPECT_EQ(rows, rowsOf(*db, u"A"_s));
    EXPECT_EQ(3376, errorOf([&] { rowsOf(*db, u"Fehlt"_s); }));
}

TEST_F(WholeTableTest, AWriterConvertsAndRefuses) {
    makeSample();
    auto db = open();
    EXPECT_EQ(3219, errorOf([&] { std::ignore = store::WriteTable(*db, u"T"_s); }));
    db->BeginTrans();
    EXPECT_EQ(3376, errorOf([&] { std::ignore = store::WriteTable(*db, u"Fehlt"_s); }));
    const auto writer = store::WriteTable(*db, u"T"_s);
    const std::vector<Value> good{9, u"Z9"_s, u"2,5"_s, 1, Value(), Value(), Value(), Value()};
    const auto with = [&](std::size_t column, const Value& value) {
        auto row = good;
        row[column] = value;
        return errorOf([&] { writer->Add(row); });
    };
    EXPECT_EQ(3163, with(1, u"elf Zeichen"_s));
    EXPECT_EQ(3421, with(3, u"viel"_s));
    EXPECT_EQ(6, with(7, 256));
    EXPECT_EQ(3219, errorOf([&] { writer->Add({1, 2}); }));
    writer->Add(good);
    writer->Finish();
    EXPECT_EQ(3219, errorOf([&] { writer->Add(good); }));
    db->CommitTrans();
    EXPECT_EQ(
        (std::vector<Value>{9, u"Z9"_s, Currency::fromScaled(25000), 1.0, false, Value(), Value(), Value()}),
        rowsOf(*db, u"T"_s).back());

    db->BeginTrans();
    EXPECT_EQ(3022, errorOf([&] {
                  const auto twice = store::WriteTable(*db, u"T"_s);
                  twice->Add(good);
                  twice->Finish();
              }));
    db->Rollback();
    EXPECT_EQ(4, countOf(*db, u"T"_s));
}

TEST_F(WholeTableTest, ACounterKeepsTheNumbersOfDeletedRows) {
    makeSample();
    auto db = open();
    db->Execute(u"CREATE TABLE Ohne (N LONG)"_s);
    EXPECT_EQ(3219, errorOf([&] { std::ignore = store::Counter(*db, u"Ohne"_s); }));
    EXPECT_EQ(3, store::Counter(*db, u"T"_s));
    db->Execute(u"DELETE FROM T WHERE ID>1"_s);
    EXPECT_EQ(3, store::Counter(*db, u"T"_s));
    store::SetCounter(*db, u"T"_s, 40);
    db->Execute(u"INSERT INTO T (Nummer) VALUES ('neu')"_s);
    EXPECT_EQ(u"41"_s, single(*db, u"SELECT MAX(ID) FROM T"_s));
    store::SetCounter(*db, u"T"_s, 5); // never below what stands there
    EXPECT_EQ(41, store::Counter(*db, u"T"_s));
}

TEST_F(WholeTableTest, TheUnfinishedTargetOfAMoveOpensOnlyForTheMover) {
    auto db = Database::CreateDatabase(m_file, u";PWD=geheim"_s, u"/alt/Merivane.mdb"_s);
    EXPECT_EQ(u"/alt/Merivane.mdb"_s, store::MoveSource(*db));
    EXPECT_EQ(3045, errorOf([&] { open(true, false, u"geheim"_s); })); // the mover holds it alone
    db->Close();
    EXPECT_EQ(3734, errorOf([&] { open(false, false, u"geheim"_s); }));
    EXPECT_EQ(3734, errorOf([&] { open(false, true, u"geheim"_s); }));
    EXPECT_EQ(3031, errorOf([&] { std::ignore = store::OpenMoveTarget(m_file); }));
    db = store::OpenMoveTarget(m_file, u";PWD=geheim"_s);
    store::SetMoveSource(*db, {});
    db->Close();
    EXPECT_EQ(QString(), store::MoveSource(*open(false, false, u"geheim"_s)));
}

} // namespace
