#include "Support.h"

namespace {

QStringList fieldNames(const Database& db, const QString& table) {
    QStringList names;
    const TableDef def = db.FindTableDef(table).value();
    for (const TableField& field : def.Fields)
        names.append(field.Name);
    return names;
}

TableField field(const QString& name, Type type, int size = 0, const QString& fallback = {}) {
    TableField f;
    f.Name = name;
    f.Type = type;
    f.Size = size;
    f.DefaultValue = fallback;
    f.AllowZeroLength = true;
    return f;
}

class StructureTest : public StoreTest {
  protected:
    StructureTest() {
        makeSample();
        m_db = open();
    }
    std::unique_ptr<Database> m_db;
};

} // namespace

TEST_F(StructureTest, TheStructureSurvivesReopeningWithAllItTells) {
    TableDef def = m_db->CreateTableDef(u"Kunden"_s);
    TableField id = def.CreateField(u"ID"_s);
    id.Type = Type::Long;
    id.Attributes = 16;
    def.Fields = {id, field(u"Name"_s, Type::Text, 50), field(u"Land"_s, Type::Text, 100, u"Deutschland"_s),
                  field(u"Größe \"x\""_s, Type::Double), field(u"Von"_s, Type::Date, 0, u"Date()"_s)};
    def.Fields[1].AllowZeroLength = false;
    m_db->AppendTableDef(def);
    m_db = open();
    EXPECT_FALSE(m_db->FindTableDef(u"kunden")) << "the program compares exact text";
    const TableDef read = m_db->FindTableDef(u"Kunden").value();
    EXPECT_EQ(read.Field(u"ID")->Attributes, 16);
    EXPECT_EQ(read.Field(u"Name")->Size, 50);
    EXPECT_FALSE(read.Field(u"Name")->AllowZeroLength);
    EXPECT_EQ(read.Field(u"Land")->DefaultValue, u"Deutschland");
    EXPECT_EQ(read.Field(u"Von")->OrdinalPosition, 4);
    EXPECT_EQ(read.Field(u"Größe \"x\"")->Type, Type::Double);
    EXPECT_EQ(read.Field(u"name"), nullptr);
    auto rs = m_db->OpenRecordset(u"Kunden"_s);
    rs->AddNew();
    EXPECT_EQ(rs->Text(u"Land"), u"Deutschland");
    EXPECT_EQ(errorOf([&] { rs->Set(u"Name", u""_s); }), 3315);
    rs->Set(u"Größe \"x\"", 1.5);
    rs->Update();
    EXPECT_EQ(countOf(*m_db, u"Kunden"_s), 1);
}

TEST_F(StructureTest, FieldsAreAppendedMovedRenamedAndDeletedWithTheirRows) {
    m_db->AppendField(u"T"_s, field(u"Neu"_s, Type::Long, 0, u"7"_s));
    auto rs = m_db->OpenRecordset(u"SELECT * FROM T ORDER BY ID"_s);
    EXPECT_TRUE(rs->Field(u"Neu").isNull()) << "a default is for rows to come";
    m_db->MoveField(u"T"_s, u"Neu"_s, 1);
    m_db->RenameField(u"T"_s, u"Nummer"_s, u"Kennung"_s);
    m_db->DeleteField(u"T"_s, u"Notiz"_s);
    EXPECT_EQ(fieldNames(*m_db, u"T"_s), (QStringList{u"ID"_s, u"Neu"_s, u"Kennung"_s, u"Preis"_s, u"Menge"_s,
                                                      u"Aktiv"_s, u"Am"_s, u"Klein"_s}));
    rs = m_db->OpenRecordset(u"SELECT * FROM T WHERE Kennung='b2'"_s);
    EXPECT_EQ(rs->FieldNames().indexOf(u"Neu"_s), 1);
    EXPECT_EQ(rs->Date(u"Am"), DateTime::fromParts(2026, 1, 2, 13, 30));
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"INSERT INTO T (Kennung) VALUES ('A1')"_s); }), 3022)
        << "the unique index follows its column";
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"INSERT INTO T (Kennung) VALUES ('12345678901')"_s); }), 3163);
    m_db->Execute(u"INSERT INTO T (Kennung) VALUES ('D4')"_s);
    EXPECT_GE(single(*m_db, u"SELECT ID FROM T WHERE Kennung='D4'"_s).toInt(), 4) << "the counter goes on";
    EXPECT_EQ(single(*m_db, u"SELECT Neu FROM T WHERE Kennung='D4'"_s), u"7");
}

// What an update of an old store does: a wider column beside the old one, copied, exchanged, moved to its
// place.
TEST_F(StructureTest, AColumnIsWidenedInTheProgramsWay) {
    m_db->AppendField(u"T"_s, field(u"Tmp"_s, Type::Text, 100));
    for (auto rs = m_db->OpenRecordset(u"SELECT Nummer, Tmp FROM T"_s); !rs->Eof(); rs->MoveNext()) {
        rs->Edit();
        rs->Set(u"Tmp", rs->Field(u"Nummer"));
        rs->Update();
    }
    EXPECT_EQ(errorOf([&] { m_db->DeleteField(u"T"_s, u"Nummer"_s); }), 3280)
        << "unique is a rule, not only speed";
    m_db->Execute(u"DROP INDEX Nummer ON T"_s);
    m_db->Execute(u"CREATE INDEX Nummer ON T (Nummer)"_s);
    m_db->DeleteField(u"T"_s, u"Nummer"_s);
    m_db->RenameField(u"T"_s, u"Tmp"_s, u"Nummer"_s);
    m_db->MoveField(u"T"_s, u"Nummer"_s, 1);
    EXPECT_EQ(fieldNames(*m_db, u"T"_s).at(1), u"Nummer");
    EXPECT_EQ(m_db->FindTableDef(u"T")->Field(u"Nummer")->Size, 100);
    m_db->Execute(u"UPDATE T SET Nummer='"_s + QString(100, u'x') + u"' WHERE ID=1"_s);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"UPDATE T SET Nummer='"_s + QString(101, u'x') + u"'"_s); }),
              3163);
}

TEST_F(StructureTest, AlterColumnConvertsOrLeavesEverythingAsItWas) {
    m_db->Execute(u"ALTER TABLE T ALTER COLUMN Preis DOUBLE"_s);
    EXPECT_EQ(m_db->FindTableDef(u"T")->Field(u"Preis")->Type, Type::Double);
    EXPECT_EQ(single(*m_db, u"SELECT Preis FROM T WHERE ID=1"_s), u"1,99");
    m_db->Execute(u"ALTER TABLE T ALTER COLUMN Preis TEXT(10)"_s);
    EXPECT_EQ(single(*m_db, u"SELECT Preis FROM T WHERE ID=1"_s), u"1,99");
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"ALTER TABLE T ALTER COLUMN Nummer LONG"_s); }), 3421);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"ALTER TABLE T ALTER COLUMN Nummer TEXT(1)"_s); }), 3163);
    EXPECT_EQ(single(*m_db, u"SELECT Nummer FROM T WHERE ID=1"_s), u"A1");
    EXPECT_EQ(m_db->FindTableDef(u"T")->Field(u"Nummer")->Size, 10);
    m_db->Execute(u"ALTER TABLE T ADD COLUMN Frei TEXT(5)"_s);
    m_db->Execute(u"ALTER TABLE T DROP COLUMN Klein"_s);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"SELECT Klein INTO X FROM T"_s); }), 3061);
    m_db->Execute(u"SELECT Nummer, Am INTO Kopie FROM T WHERE ID<3"_s);
    EXPECT_EQ(countOf(*m_db, u"Kopie"_s), 2);
    EXPECT_EQ(m_db->FindTableDef(u"Kopie")->Field(u"Am")->Type, Type::Date);
}

TEST_F(StructureTest, NonsenseInAStructureIsRefusedByItsNumber) {
    const auto append = [&](const QString& name, const TableField& column) {
        TableDef def = m_db->CreateTableDef(name);
        def.Fields = {column};
        return errorOf([&] { m_db->AppendTableDef(def); });
    };
    EXPECT_EQ(append(u"t"_s, field(u"A"_s, Type::Long)), 3010);
    for (const auto& name :
         {u""_s, u"a.b"_s, u"a[b"_s, u"merivane$columns"_s, u"sqlite_master"_s, QString(65, u'x')})
        EXPECT_EQ(append(name, field(u"A"_s, Type::Long)), 3125) << name.toStdString();
    EXPECT_EQ(append(u"X"_s, field(u"A"_s, Type::Text, 256)), 3292);
    EXPECT_EQ(append(u"X"_s, field(u"A"_s, Type::Null)), 3292);
    EXPECT_EQ(append(u"X"_s, field(u"_ROWID_"_s, Type::Long)), 3125);
    EXPECT_EQ(errorOf([&] { m_db->AppendTableDef(m_db->CreateTableDef(u"X"_s)); }), 3264);
    EXPECT_EQ(errorOf([&] { m_db->AppendField(u"T"_s, field(u"NUMMER"_s, Type::Long)); }), 3380);
    EXPECT_EQ(errorOf([&] { m_db->AppendField(u"Nichts"_s, field(u"A"_s, Type::Long)); }), 3376);
    EXPECT_EQ(errorOf([&] { m_db->DeleteField(u"T"_s, u"Nichts"_s); }), 3381);
    EXPECT_EQ(errorOf([&] { m_db->RenameField(u"T"_s, u"Am"_s, u"Menge"_s); }), 3380);
    EXPECT_EQ(errorOf([&] { m_db->DeleteTableDef(u"Nichts"_s); }), 3376);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"CREATE TABLE X (A LONG, a TEXT(5))"_s); }), 3191);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"CREATE INDEX I ON T (Nichts)"_s); }), 3061);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"CREATE INDEX nummer ON T (Am)"_s); }), 3375);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"DROP INDEX Nichts ON T"_s); }), 3372);
    m_db->Execute(u"CREATE TABLE Doppelt (A LONG)"_s);
    m_db->Execute(u"INSERT INTO Doppelt VALUES (1)"_s);
    m_db->Execute(u"INSERT INTO Doppelt VALUES (1)"_s);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"CREATE UNIQUE INDEX A ON Doppelt (A)"_s); }), 3022);
    m_db->Execute(u"CREATE TABLE P (A LONG PRIMARY KEY, B TEXT(5) NOT NULL)"_s);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"INSERT INTO P (B) VALUES ('x')"_s); }), 3314);
    EXPECT_EQ(errorOf([&] { m_db->Execute(u"INSERT INTO P (A) VALUES (1)"_s); }), 3314);
    EXPECT_FALSE(m_db->FindTableDef(u"X"));
}

TEST_F(StructureTest, AnotherTillsChangeOfStructureIsNoticed) {
    const auto all = u"SELECT * FROM T"_s;
    EXPECT_EQ(m_db->OpenRecordset(all)->Text(u"Nummer"), u"A1");
    auto waiting = m_db->OpenRecordset(u"T"_s);
    EXPECT_FALSE(waiting->Eof());
    {
        OtherTill other(m_file);
        EXPECT_TRUE(other.ask(u"ALTER TABLE T ADD COLUMN Dazu LONG"_s).contains(u"affected"_s));
        EXPECT_TRUE(other.ask(u"UPDATE T SET Dazu=5"_s).contains(u"affected"_s));
        auto rs = m_db->OpenRecordset(all);
        EXPECT_FALSE(rs->Eof());
        EXPECT_EQ(rs->Long(u"Dazu"), 5) << "the cached translation knew no such column";
        waiting->Requery();
        EXPECT_FALSE(waiting->Eof());
        EXPECT_EQ(waiting->Long(u"Dazu"), 5);
        EXPECT_EQ(m_db->Execute(u"UPDATE T SET Dazu=6"_s), 3);
        other.ask(u"ALTER TABLE T DROP COLUMN Dazu"_s);
        EXPECT_EQ(errorOf([&] { m_db->Execute(u"UPDATE T SET Dazu=6"_s); }), 3061);
        auto again = m_db->OpenRecordset(all);
        EXPECT_FALSE(again->Eof());
        EXPECT_EQ(errorOf([&] { std::ignore = again->Field(u"Dazu"); }), 3265);
        other.ask(u"DROP TABLE T"_s);
    }
    EXPECT_EQ(errorOf([&] { std::ignore = m_db->OpenRecordset(all)->Eof(); }), 3078);
    EXPECT_FALSE(m_db->FindTableDef(u"T"));
}
