#include "Support.h"

#include <QFile>

// The texts from which a shop is made. A difference is either a fault or a decision; for a decision, write
// the new text over the old one: the test leaves it in the folder of temporary files.
TEST(Schema, IsMadeFromTheTextsOnRecord) {
    for (const auto& engine : {u"sqlite"_s, u"postgres"_s}) {
        const QString name = u"schema."_s + engine + u".sql"_s;
        QFile golden(QStringLiteral(TEST_DATA "/") + name);
        const QString text = schema::ddlText(engine);
        if (golden.open(QIODevice::ReadOnly) && QString::fromUtf8(golden.readAll()) == text) continue;
        QFile fresh(QDir::temp().filePath(name + u".new"_s));
        ASSERT_TRUE(fresh.open(QIODevice::WriteOnly));
        fresh.write(text.toUtf8());
        ADD_FAILURE() << "the data dictionary has changed; compare " << fresh.fileName().toStdString();
    }
}

TEST_F(StoreTest, AShopIsMadeAndItsRulesHold) {
    auto db = Database::CreateDatabase(m_file);
    schema::createTables(*db);
    EXPECT_EQ(db->TableDefs().size(), schema::tables().size());
    EXPECT_EQ(errorOf([&] { schema::createTables(*db); }), 3010);

    auto artikel = db->OpenRecordset(u"Artikel"_s);
    artikel->AddNew();
    artikel->Set(u"Nummer", u"4711a"_s);
    artikel->Update();
    artikel->AddNew();
    artikel->Set(u"Nummer", u"4711A"_s);
    EXPECT_EQ(errorOf([&] { artikel->Update(); }), 3022);
    artikel->CancelUpdate();
    EXPECT_EQ(artikel->Money(u"VKPreis3"), Currency());
    EXPECT_FALSE(artikel->Field(u"Aktiv").isNull());

    auto zeile = db->OpenRecordset(u"Bestellung"_s);
    zeile->AddNew();
    EXPECT_EQ(zeile->Date(u"Datum")->date(), QDate::currentDate());
    EXPECT_EQ(zeile->Date(u"Zeit")->dayPart().days, 0);
    EXPECT_EQ(zeile->Long(u"ID"), 1);
    EXPECT_EQ(db->FindTableDef(u"AngebotsDetail")->Field(u"VKPreis_Netto")->Type, Type::Double);
    EXPECT_EQ(db->FindTableDef(u"RechnungsDetail")->Field(u"VKPreis_Brutto")->Type, Type::Currency);
    auto kunde = db->OpenRecordset(u"Kunden"_s);
    kunde->AddNew();
    EXPECT_EQ(kunde->Text(u"Land"), u"Deutschland");
}
