#include <access/PersonalRecord.h>
#include <session/Globals.h>
#include <session/KundenFields.h>
#include <store/Database.h>
#include <support/TempShop.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QStringList columnsOf(const QString& table) {
    return gDB->OpenRecordset(u"SELECT * FROM "_s + table + u" WHERE 1=0"_s)->FieldNames();
}

TEST(PersonalRecordTest, APersonIsWrittenAndReadWhole) {
    TempShop shop;
    EXPECT_EQ(columnsOf(u"Personal"_s), PersonalFields().columns());

    PersonalRecord person;
    int n = 0;
    for (const auto& row : PersonalFields()) { // no two texts alike; every second flag
        ++n;
        take(person, row,
             std::holds_alternative<QString PersonalRecord::*>(row.member) ? Value(u"Text %1"_s.arg(n))
                                                                           : Value(n % 2));
    }
    const auto rs = gDB->OpenRecordset(u"Personal"_s);
    rs->AddNew();
    person.ID = rs->Long(u"ID");
    save(*rs, PersonalFields(), person);
    rs->Update();
    PersonalRecord read;
    load(*gDB->OpenRecordset(u"Personal"_s), PersonalFields(), read);
    for (const auto& row : PersonalFields())
        EXPECT_EQ(give(person, row), give(read, row)) << qPrintable(QString::fromUtf16(row.column));
    EXPECT_EQ(u"Text 2"_s, read.Name);
    EXPECT_NE(read.R_Artikel, read.R_Kunden);
}

TEST(PersonalRecordTest, ACustomersDiscountIsWholePercent) {
    TempShop shop;
    const int id = shop.insert(u"Kunden"_s, {{u"Name_1"_s, u"Abel"_s}, {u"Rabatt"_s, 2.5}});
    KundeRecord kunde;
    kunde.Kennzeichen = u"UL-A 1"_s;
    load(*gDB->OpenRecordset(u"Kunden"_s), KundenFields(), kunde);
    EXPECT_EQ(id, kunde.KundenID);
    EXPECT_EQ(2, kunde.Rabatt);
    EXPECT_EQ(u"Deutschland"_s, kunde.Land);
    EXPECT_EQ(u"UL-A 1"_s, kunde.Kennzeichen); // not of this table
    // In the order of the columns, so that a new row can be written by the same table.
    const QStringList all = columnsOf(u"Kunden"_s);
    QStringList inOrder = all;
    inOrder.removeIf([](const QString& c) { return !KundenFields().columns().contains(c); });
    EXPECT_EQ(inOrder, KundenFields().columns());
}

} // namespace
