#include "Support.h"

namespace {

QStringList column(Recordset& rs, QStringView name) {
    QStringList values;
    for (; !rs.Eof(); rs.MoveNext())
        values.append(rs.Text(name));
    return values;
}

class RecordsetTest : public StoreTest {
  protected:
    RecordsetTest() {
        makeSample();
        m_db = open();
    }
    /// A table N of `count` rows with ID 1.., Wert = ID modulo 10.
    void makeNumbers(int count) {
        m_db->Execute(u"CREATE TABLE N (ID COUNTER, Wert LONG)"_s);
        m_db->BeginTrans();
        for (int i = 1; i <= count; ++i)
            m_db->Execute(u"INSERT INTO N (Wert) VALUES (%1)"_s.arg(i % 10));
        m_db->CommitTrans();
    }
    std::unique_ptr<Database> m_db;
};

} // namespace

TEST_F(RecordsetTest, FieldsComeInTheirTypesAndByEveryName) {
    auto rs = m_db->OpenRecordset(u"SELECT T.*, Preis*2 AS Doppelt FROM T ORDER BY ID"_s);
    EXPECT_EQ(rs->Field(u"id"), Value(1));
    EXPECT_EQ(rs->Field(u"T.Nummer"), Value(u"A1"_s));
    EXPECT_EQ(rs->Money(u"Preis"), Currency::fromScaled(19900));
    EXPECT_EQ(rs->Money(u"Doppelt"), Currency::fromScaled(39800));
    EXPECT_EQ(rs->Number(u"Menge"), 2.5);
    EXPECT_TRUE(rs->Flag(u"Aktiv"));
    EXPECT_EQ(rs->Date(u"Am"), DateTime::fromParts(2026, 11, 22));
    EXPECT_EQ(rs->FieldType(u"Am"), Type::Date);
    EXPECT_EQ(errorOf([&] { std::ignore = rs->Field(u"Gibtsnicht"); }), 3265);
    EXPECT_EQ(errorOf([&] { std::ignore = rs->Field(99); }), 3265);
    rs->MoveNext();
    EXPECT_TRUE(rs->Field(u"Notiz").isNull());
    EXPECT_EQ(rs->Text(u"Notiz"), u"");
    EXPECT_EQ(rs->Date(u"Am"), DateTime::fromParts(2026, 1, 2, 13, 30));
    rs->MoveNext();
    EXPECT_EQ(rs->Date(u"Am"), std::nullopt);
    rs->MoveNext();
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(errorOf([&] { rs->MoveNext(); }), 3021);
    EXPECT_EQ(errorOf([&] { std::ignore = rs->Field(u"ID"); }), 3021);
    EXPECT_EQ(errorOf([&] { rs->Edit(); }), 3021);
}

TEST_F(RecordsetTest, RecordCountTellsOnlyWhatWasSeen) {
    makeNumbers(500);
    auto rs = m_db->OpenRecordset(u"N"_s);
    EXPECT_EQ(rs->RecordCount(), 1);
    rs->MoveNext();
    EXPECT_EQ(rs->RecordCount(), 2);
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 500);
    EXPECT_EQ(rs->Long(u"ID"), 500);
    rs->MoveFirst();
    EXPECT_EQ(rs->RecordCount(), 500);
    auto none = m_db->OpenRecordset(u"SELECT * FROM N WHERE ID<0"_s);
    EXPECT_TRUE(none->Eof());
    EXPECT_EQ(none->RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { none->MoveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { none->MoveLast(); }), 3021);
}

// Chunk borders lie at 64, 320, 1344, ...; nothing may be lost or doubled there, in key order and in any
// other.
TEST_F(RecordsetTest, EveryRowComesOnceAcrossTheChunks) {
    makeNumbers(3000);
    for (const auto& order : {u""_s, u" ORDER BY ID DESC"_s, u" ORDER BY Wert, ID"_s}) {
        auto rs = m_db->OpenRecordset(u"SELECT * FROM N WHERE Wert<>3"_s + order);
        QSet<int> seen;
        int count = 0;
        int before = -1;
        for (; !rs->Eof(); rs->MoveNext(), ++count) {
            const int id = rs->Long(u"ID");
            seen.insert(id);
            EXPECT_TRUE(!order.isEmpty() || id > before);
            before = id;
        }
        EXPECT_EQ(count, 2700);
        EXPECT_EQ(seen.size(), 2700);
    }
}

TEST_F(RecordsetTest, RowsThatComeAndGoWhileASortedSetIsReadAreNeitherLostNorDoubled) {
    makeNumbers(1000);
    auto rs = m_db->OpenRecordset(u"SELECT ID FROM N ORDER BY ID"_s);
    for (int i = 0; i < 10; ++i)
        rs->MoveNext();
    m_db->Execute(u"DELETE FROM N WHERE ID<=30 AND ID<>11"_s); // before and in the chunk that was read
    m_db->Execute(u"INSERT INTO N (ID, Wert) VALUES (5, 0)"_s);
    QList<int> rest;
    for (; !rs->Eof(); rs->MoveNext()) {
        if (errorOf([&] { rest.append(rs->Long(u"ID")); }) == 3167) continue;
    }
    QList<int> expected{11};
    for (int id = 31; id <= 1000; ++id)
        expected.append(id);
    EXPECT_EQ(QSet<int>(rest.begin(), rest.end()).size(), rest.size()) << "doubled";
    for (const int id : expected)
        EXPECT_TRUE(rest.contains(id)) << id;
}

TEST_F(RecordsetTest, RowsAreLive) {
    auto rs = m_db->OpenRecordset(u"SELECT * FROM T"_s);
    EXPECT_EQ(rs->Text(u"Nummer"), u"A1");
    m_db->Execute(u"UPDATE T SET Notiz='neu' WHERE ID<=2"_s);
    EXPECT_EQ(rs->Text(u"Notiz"), u"neu") << "the current row";
    auto other = open();
    other->Execute(u"UPDATE T SET Notiz='fremd' WHERE ID=2"_s);
    other->Execute(u"DELETE FROM T WHERE ID=3"_s);
    // From a server several rows come at a time and count as live for a moment; who changes one sees it as it
    // is.
    const auto look = [&] {
        if (!TestStore::onServer()) return;
        rs->Edit();
        rs->CancelUpdate();
    };
    rs->MoveNext();
    look();
    EXPECT_EQ(rs->Text(u"Notiz"), u"fremd") << "another connection's change";
    rs->MoveNext();
    EXPECT_FALSE(rs->Eof()) << "the key set still knows the row";
    EXPECT_EQ(errorOf([&] {
                  look();
                  std::ignore = rs->Text(u"Notiz");
              }),
              3167);
    EXPECT_EQ(errorOf([&] { rs->Edit(); }), 3167);
    EXPECT_EQ(errorOf([&] { rs->Delete(); }), 3167);
    rs->Requery();
    EXPECT_EQ(column(*rs, u"ID"), (QStringList{u"1"_s, u"2"_s}));
}

TEST_F(RecordsetTest, EditWritesOnlyWhatWasPut) {
    auto rs = m_db->OpenRecordset(u"SELECT ID, Preis, Preis*2 AS Doppelt, Notiz FROM T"_s);
    EXPECT_EQ(errorOf([&] { rs->Set(u"Preis", 1); }), 3020);
    EXPECT_EQ(errorOf([&] { rs->Update(); }), 3020);
    rs->Edit();
    rs->Set(u"Preis", u"2,345"_s);
    EXPECT_EQ(rs->Money(u"Preis"), Currency::fromScaled(23450));
    EXPECT_EQ(errorOf([&] { rs->Set(u"Doppelt", 1); }), 3164);
    EXPECT_EQ(errorOf([&] { rs->Set(u"ID", 7); }), 3164);
    EXPECT_EQ(errorOf([&] { rs->Set(u"Preis", u"abc"_s); }), 3421);
    EXPECT_EQ(errorOf([&] { rs->Set(u"Preis", 1e20); }), 6);
    open()->Execute(u"UPDATE T SET Notiz='von nebenan' WHERE ID=1"_s);
    rs->Update();
    EXPECT_FALSE(rs->Editing());
    EXPECT_EQ(rs->Text(u"Notiz"), u"von nebenan");
    EXPECT_EQ(rs->Money(u"Doppelt"), Currency::fromScaled(46900));

    rs->Edit();
    rs->Set(u"Preis", 99);
    rs->CancelUpdate();
    EXPECT_EQ(rs->Money(u"Preis"), Currency::fromScaled(23450));
    rs->Edit();
    rs->Set(u"Preis", 99);
    rs->MoveNext(); // leaving a row drops what was not written
    EXPECT_FALSE(rs->Editing());
    rs->Edit();
    rs->Set(u"Preis", 5);
    m_db->Execute(u"DELETE FROM T WHERE ID=2"_s);
    EXPECT_EQ(errorOf([&] { rs->Update(); }), 3167);
    EXPECT_EQ(single(*m_db, u"SELECT Preis FROM T WHERE ID=1"_s), u"2,345");
}

TEST_F(RecordsetTest, AddNewFillsDefaultsAndGivesItsNumberBeforeUpdate) {
    m_db->Execute(u"CREATE TABLE B (ID COUNTER, Am DATETIME DEFAULT Date(), Um DATETIME DEFAULT Time(), "
                  "Land TEXT(20) DEFAULT \"Deutschland\", Zahl LONG DEFAULT 0, Frei LONG, Ja YESNO)"_s);
    auto rs = m_db->OpenRecordset(u"SELECT ID, Zahl, Frei, Ja FROM B"_s);
    rs->AddNew();
    EXPECT_EQ(rs->Long(u"ID"), 1);
    EXPECT_EQ(rs->Field(u"Zahl"), Value(0));
    EXPECT_TRUE(rs->Field(u"Frei").isNull());
    EXPECT_EQ(rs->Field(u"Ja"), Value(false));
    rs->Set(u"Frei", 5);
    rs->Update();
    auto all = m_db->OpenRecordset(u"B"_s);
    EXPECT_EQ(all->Text(u"Land"), u"Deutschland") << "columns that the set does not show get theirs too";
    EXPECT_EQ(all->Date(u"Am")->date(), QDate::currentDate());
    EXPECT_EQ(all->Date(u"Um")->days, all->Date(u"Um")->timePart().days);

    rs->AddNew();
    EXPECT_EQ(rs->Long(u"ID"), 2);
    rs->CancelUpdate();
    rs->AddNew();
    rs->Set(u"Zahl", Value());
    EXPECT_EQ(rs->Long(u"ID"), 3) << "a number that was seen is never given again";
    rs->Update();
    EXPECT_TRUE(m_db->OpenRecordset(u"SELECT Zahl FROM B WHERE ID=3"_s)->Field(u"Zahl").isNull());
    m_db->Execute(u"DELETE FROM B"_s);
    rs->AddNew();
    rs->Update();
    EXPECT_EQ(single(*m_db, u"SELECT ID FROM B"_s), u"4") << "nor one that a deleted row had";
}

TEST_F(RecordsetTest, AddedAndDeletedRowsBelongToTheSet) {
    auto rs = m_db->OpenRecordset(u"SELECT * FROM T WHERE Aktiv=True"_s);
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 2);
    rs->AddNew();
    rs->Set(u"Nummer", u"Neu"_s);
    rs->Set(u"Aktiv", true);
    rs->Update();
    EXPECT_EQ(rs->RecordCount(), 3);
    EXPECT_EQ(rs->Text(u"Nummer"), u"c3") << "the current row stays";
    rs->Delete();
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_FALSE(rs->Eof());
    EXPECT_EQ(errorOf([&] { std::ignore = rs->Text(u"Nummer"); }), 3167);
    rs->MoveNext();
    EXPECT_EQ(rs->Text(u"Nummer"), u"Neu");
    rs->MoveFirst();
    EXPECT_EQ(column(*rs, u"Nummer"), (QStringList{u"A1"_s, u"Neu"_s}));
    EXPECT_EQ(countOf(*m_db, u"T"_s), 3);
}

TEST_F(RecordsetTest, AFailedUpdateKeepsTheBuffer) {
    auto rs = m_db->OpenRecordset(u"T"_s);
    rs->AddNew();
    EXPECT_EQ(errorOf([&] { rs->Set(u"Nummer", u"12345678901"_s); }), 3163);
    EXPECT_EQ(errorOf([&] { rs->Set(u"Klein", 256); }), 6);
    rs->Set(u"Nummer", u"a1"_s); // another case is the same number
    rs->Set(u"Notiz", u"bleibt"_s);
    EXPECT_EQ(errorOf([&] { rs->Update(); }), 3022);
    EXPECT_TRUE(rs->Editing());
    EXPECT_EQ(rs->Text(u"Notiz"), u"bleibt");
    rs->Set(u"Nummer", u"ÄÖÜ4567890"_s); // ten letters, thirteen bytes
    rs->Update();
    EXPECT_EQ(single(*m_db, u"SELECT Notiz FROM T WHERE Nummer='äöü4567890'"_s), u"bleibt");
}

TEST_F(RecordsetTest, FindFirstSeesTheSetAsItIsNowAndMoveNextGoesOnFromThere) {
    makeNumbers(2000);
    auto rs = m_db->OpenRecordset(u"SELECT * FROM N WHERE Wert<>0"_s);
    rs->FindFirst(u"ID=1501"_s);
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Long(u"ID"), 1501);
    rs->MoveNext();
    EXPECT_EQ(rs->Long(u"ID"), 1502);
    rs->FindFirst(u"ID=10"_s);
    EXPECT_TRUE(rs->NoMatch()) << "the row does not belong to the set";
    rs->FindFirst(u"Wert=7 AND ID>20"_s);
    EXPECT_EQ(rs->Long(u"ID"), 27);
    rs->Edit();
    rs->Set(u"Wert", 77);
    rs->Update();
    m_db->Execute(u"INSERT INTO N (ID, Wert) VALUES (9000, 8)"_s);
    rs->Requery();
    rs->FindFirst(u"ID=9000"_s);
    ASSERT_FALSE(rs->NoMatch());
    rs->MoveNext();
    EXPECT_TRUE(rs->Eof());
    rs->FindFirst(u"Wert=77"_s);
    rs->Delete();
    rs->MoveNext();
    EXPECT_EQ(rs->Long(u"ID"), 28);
    auto sorted = m_db->OpenRecordset(u"SELECT * FROM N ORDER BY ID DESC"_s);
    sorted->FindFirst(u"Wert=5"_s);
    EXPECT_EQ(sorted->Long(u"ID"), 1995) << "the first in the order of the set";
    sorted->MoveNext();
    EXPECT_EQ(sorted->Long(u"ID"), 1994);
    EXPECT_NE(errorOf([&] { sorted->FindFirst(u"Wert=="_s); }), 0);
    EXPECT_EQ(sorted->Long(u"ID"), 1994) << "a fault in the criteria moves nothing";
}

TEST_F(RecordsetTest, ARowHasAPlaceAndIsReachedByIt) {
    makeNumbers(2000);
    for (const auto& sql :
         {u"SELECT * FROM N ORDER BY ID DESC"_s,
          u"SELECT a.ID, b.Wert FROM N AS a INNER JOIN N AS b ON a.ID=b.ID ORDER BY a.ID DESC"_s}) {
        auto rs = m_db->OpenRecordset(sql);
        EXPECT_EQ(rs->AbsolutePosition(), 0);
        rs->AbsolutePosition(1500);
        const int id = rs->Long(u"ID");
        rs->MoveNext();
        EXPECT_EQ(rs->Long(u"ID"), id - 1);
        EXPECT_EQ(rs->AbsolutePosition(), 1501);
        rs->FindFirst(u"ID="_s + QString::number(id));
        EXPECT_EQ(rs->AbsolutePosition(), 1500) << "found, not walked to";
        rs->AbsolutePosition(3);
        EXPECT_EQ(errorOf([&] { rs->AbsolutePosition(2000); }), 3021);
        EXPECT_EQ(errorOf([&] { rs->AbsolutePosition(-1); }), 3021);
        EXPECT_EQ(rs->AbsolutePosition(), 3) << "a place outside moves nothing";
    }
    auto rs = m_db->OpenRecordset(u"SELECT * FROM N ORDER BY ID"_s);
    rs->AbsolutePosition(7);
    rs->Delete();
    rs->AbsolutePosition(7);
    EXPECT_EQ(rs->Long(u"ID"), 9) << "the next one stands there now";
    EXPECT_EQ(errorOf([&] {
                  std::ignore = m_db->OpenRecordset(u"SELECT * FROM N WHERE ID<0"_s)->AbsolutePosition();
              }),
              3021);
}

TEST_F(RecordsetTest, GroupsJoinsAndUnionsAreReadOnly) {
    for (const auto& sql : {u"SELECT Aktiv, COUNT(*) AS Anzahl FROM T GROUP BY Aktiv ORDER BY Aktiv"_s,
                            u"SELECT a.ID, b.Nummer AS Anzahl FROM T AS a INNER JOIN T AS b ON a.ID=b.ID"_s,
                            u"SELECT ID AS Anzahl FROM T UNION SELECT ID+10 FROM T"_s}) {
        auto rs = m_db->OpenRecordset(sql);
        EXPECT_FALSE(rs->Eof()) << sql.toStdString();
        EXPECT_EQ(errorOf([&] { rs->AddNew(); }), 3027);
        EXPECT_EQ(errorOf([&] { rs->Edit(); }), 3027);
        EXPECT_EQ(errorOf([&] { rs->Delete(); }), 3027);
        EXPECT_EQ(rs->RecordCount(), 1);
        rs->MoveLast();
        EXPECT_GT(rs->RecordCount(), 1);
    }
    auto rs = m_db->OpenRecordset(
        u"SELECT a.ID, b.Nummer FROM T AS a INNER JOIN T AS b ON a.ID=b.ID ORDER BY a.ID;"_s);
    rs->FindFirst(u"Nummer='c3'"_s);
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Long(u"ID"), 3);
    rs->FindFirst(u"Nummer='zz'"_s);
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_EQ(errorOf([&] { std::ignore = m_db->OpenRecordset(u"DELETE FROM T"_s); }), 3219);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"SELECT * FROM T"_s); }), 3065);
}
