#include <app/DemoShop.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <templates/PropertiesList.h>
#include <templates/TemplateKind.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"<missing>"_s;
}

int errorOf(const QString& folder) {
    try {
        demo::createShop(folder);
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}

} // namespace

TEST(DemoShop, IsCreatedCompleteAndOnlyOnce) {
    QTemporaryDir place;
    const QString folder = place.filePath(u"ein/neuer Ort"_s);
    demo::createShop(folder);

    auto db = Database::OpenDatabase(folder + u"/daten/Merivane.mdb"_s);
    for (const QString& name : demo::tableNames()) {
        const auto rows = db->OpenRecordset(u"SELECT COUNT(*) AS Anzahl FROM "_s + name);
        EXPECT_EQ(rows->Long(u"Anzahl"), demo::readTable(name).rows.size()) << qPrintable(name);
    }
    const auto article = db->OpenRecordset(u"SELECT * FROM Artikel WHERE Nummer='2003000000016'"_s);
    EXPECT_EQ(article->Text(u"Name"), u"Heumilch 3,8 % 1 l"_s);
    EXPECT_EQ(article->Money(u"VKPreis").scaled(), 17900);
    EXPECT_TRUE(article->Flag(u"Aktiv"));
    EXPECT_FALSE(article->Field(u"VolumenAngabe").isNull())
        << "a flag without a column in the data must be False";
    const auto action =
        db->OpenRecordset(u"SELECT * FROM AktionsPreise WHERE ArtikelNummer='2009000000018'"_s);
    EXPECT_EQ(action->Date(u"Bis")->toQDateTime(), QDateTime(QDate(2026, 10, 31), QTime(23, 59, 59)));
    const auto sorted = db->OpenRecordset(u"SELECT Name FROM Personal WHERE PIN='0444' AND R_Rabatt=-1"_s);
    EXPECT_EQ(sorted->Text(u"Name"), u"Özdal"_s);
    db->Close();

    const QImage picture(folder + u"/daten/artimg_101.bmp"_s);
    EXPECT_EQ(picture.size(), QSize(240, 240));
    EXPECT_NE(picture.pixel(120, 140), qRgb(255, 255, 255)) << "the drawing is not blank";
    EXPECT_TRUE(contentOf(folder + u"/daten/artikel.ini"_s).contains(u"911=1"_s));
    EXPECT_TRUE(contentOf(folder + u"/daten/Zahlungsziel.rvl"_s).contains(u"DateAdd[10]"_s));
    for (const TemplateFile& file : templateFiles()) {
        PropertiesList printed;
        EXPECT_TRUE(printed.Load(folder + u"/daten/"_s + file.name.toString()))
            << file.name.toUtf8().constData();
    }
    const QString settings = contentOf(folder + u"/konfig.ini"_s);
    EXPECT_TRUE(settings.contains(u"DBPath="_s + QDir::toNativeSeparators(folder) + u"/daten\n"_s))
        << qPrintable(settings);
    EXPECT_FALSE(settings.contains(u"=@"_s));

    EXPECT_EQ(errorOf(folder), 58);
    EXPECT_EQ(contentOf(folder + u"/konfig.ini"_s), settings);
    EXPECT_EQ(QDir(place.filePath(u"ein"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1)
        << "nothing is left beside the shop";
}

TEST(DemoShop, KeepsItsHandsOffForeignPlaces) {
    QTemporaryDir place;
    QFile mine(place.filePath(u"meins.txt"_s));
    ASSERT_TRUE(mine.open(QIODevice::WriteOnly));
    mine.close();
    EXPECT_EQ(errorOf(place.path()), 58);
    EXPECT_EQ(errorOf(mine.fileName()), 58) << "a file in the way";
    EXPECT_EQ(errorOf(mine.fileName() + u"/laden"_s), 70) << "a folder below a file";
    EXPECT_EQ(QDir(place.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{u"meins.txt"_s});
    ASSERT_TRUE(QDir(place.path()).mkdir(u"leer"_s));
    EXPECT_EQ(errorOf(place.filePath(u"leer"_s)), 0) << "an empty folder may become the shop";
}

TEST(DemoShop, TellsTheRowThatTheStoreRefuses) {
    auto db = Database::CreateDatabase(u":memory:"_s);
    db->Execute(u"CREATE TABLE Waren (Nummer TEXT(3), Preis CURRENCY, Aktiv YESNO)"_s);
    const auto refused = [&](const QStringList& row) {
        try {
            demo::loadTable(*db, demo::Table{u"Waren"_s, {u"Nummer"_s, u"Preis"_s, u"Aktiv"_s}, {row}});
        } catch (const RuntimeError& error) {
            EXPECT_TRUE(error.Description.startsWith(u"Waren \"%1\": "_s.arg(row.first())));
            return error.Number;
        }
        return 0;
    };
    EXPECT_EQ(refused({u"1"_s, u"1,99"_s, u"ja"_s}), 0);
    EXPECT_EQ(refused({u"2345"_s, u"1,99"_s, u"ja"_s}), 3163);
    EXPECT_EQ(refused({u"2"_s, u"1,99"_s, u"vielleicht"_s}), 13);
    EXPECT_EQ(db->OpenRecordset(u"SELECT Preis FROM Waren"_s)->Money(u"Preis").scaled(), 19900);
}
