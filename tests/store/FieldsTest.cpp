#include "Support.h"

#include <store/Fields.h>
#include <support/Print.h>

namespace {

struct Base {
    bool Aktiv = false;
};
struct Ware : Base {
    int ID = 7;
    QString Nummer = u"alt"_s, Notiz = u"alt"_s;
    Currency Preis;
    double Menge = 9;
    std::optional<DateTime> Am;
};

const Fields<Ware> fields{{u"ID", &Ware::ID, loadOnly}, {u"Nummer", &Ware::Nummer, 4},
                          {u"Preis", &Ware::Preis},     {u"Menge", &Ware::Menge},
                          {u"Aktiv", &Base::Aktiv},     {u"Am", &Ware::Am},
                          {u"Notiz", &Ware::Notiz}};

class FieldsTest : public StoreTest {
  protected:
    FieldsTest() {
        makeSample();
        db = open();
    }
    std::unique_ptr<Database> db;
};

} // namespace

TEST_F(FieldsTest, ARowComesAndGoesByTheTable) {
    const auto rs = db->OpenRecordset(u"SELECT * FROM T ORDER BY ID"_s);
    Ware ware;
    load(*rs, fields, ware);
    EXPECT_EQ(ware.ID, 1);
    EXPECT_EQ(ware.Nummer, u"A1"_s);
    EXPECT_EQ(ware.Preis, Currency::fromScaled(19900));
    EXPECT_EQ(ware.Menge, 2.5);
    EXPECT_TRUE(ware.Aktiv);
    EXPECT_EQ(ware.Am, DateTime::fromParts(2026, 11, 22));

    ware = {{true}, 99, u"überlang"_s, QString(), Currency::fromScaled(1), -0.5, {}};
    rs->AddNew();
    const int id = rs->Long(u"ID");
    save(*rs, fields, ware); // the number is the store's
    rs->Update();
    EXPECT_EQ(single(*db, u"SELECT Nummer & '|' & Preis & '|' & Menge & '|' & Aktiv FROM T WHERE ID="_s +
                              QString::number(id)),
              u"über|0,0001|-0,5|-1"_s);
    EXPECT_EQ(
        single(*db, u"SELECT COUNT(*) FROM T WHERE Am IS NULL AND Notiz='' AND ID="_s + QString::number(id)),
        u"1"_s);
}

TEST_F(FieldsTest, NullIsEmptyAndAnErrorChangesNothing) {
    db->Execute(u"UPDATE T SET Nummer=Null, Preis=Null, Menge=Null, Am=Null, Notiz=Null WHERE ID=1"_s);
    auto rs = db->OpenRecordset(u"SELECT * FROM T WHERE ID=1"_s);
    Ware ware;
    ware.Am = DateTime{1};
    load(*rs, fields, ware);
    EXPECT_EQ(ware.Nummer + ware.Notiz, QString());
    EXPECT_EQ(ware.Preis, Currency());
    EXPECT_EQ(ware.Menge, 0);
    EXPECT_FALSE(ware.Am);

    rs = db->OpenRecordset(u"SELECT 5 AS ID, Nummer, 'teuer' AS Preis FROM T"_s);
    EXPECT_EQ(errorOf([&] { load(*rs, fields, ware); }), 13);
    EXPECT_EQ(ware.ID, 1);
    EXPECT_EQ(errorOf([&] { save(*rs, fields, ware); }), 3020);
}
