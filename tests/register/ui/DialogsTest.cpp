#include "Kasse.h"

#include <QComboBox>

namespace {

TEST_F(Kasse, SellsAFreeArticleWithNameRateAndGroup) {
    shop.setIni(u"SERVICE"_s, u"LastSteuerSatz"_s, u"7"_s);
    dialogs.expectModal(u"frmKasseFreierArtikel"_s, [](QDialog& d) {
        EXPECT_EQ(u"Diverser Artikel"_s, control<QLineEdit>(d, u"txtName"_s).selectedText());
        auto& rate = control<QComboBox>(d, u"cboSteuerSatz"_s);
        EXPECT_EQ(u"7,0"_s, rate.currentText());
        keep(d, d.objectName());
        rate.setCurrentIndex(0);
        typeText(d, u" "_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible()) << "a name is needed";
        typeText(d, u"Kerze"_s);
        control<QComboBox>(d, u"cboWarenGruppe"_s).setEditText(u"Deko"_s);
        pressKey(d, Qt::Key_Return);
    });
    dialogs.expectMsgBox(u"Sie müssen ein Namen für diesen Artikel eingeben."_s);
    scan(u"2,50"_s);
    EXPECT_EQ(
        QStringList{u"400-Diverses|Kerze|19|Deko|2,5"_s},
        shop.rows(u"SELECT ArtikelNummer, ArtikelName, SteuerSatz, WarenGruppe, VKPreis FROM Bestellung"_s));

    dialogs.expectModal(u"frmKasseFreierArtikel"_s, [](QDialog& d) { clickOn(d, u"cmdCancel"_s); });
    scan(u"1,00"_s);
    EXPECT_EQ(1, lines().size());
    EXPECT_EQ(u""_s, input());
}

TEST_F(Kasse, ChoosesBetweenArticlesOfOneOrderNumber) {
    for (const QString& number : {bread, milk})
        shop.insert(u"ArtikelLieferanten"_s, {{u"ArtikelNummer"_s, number}, {u"BestellNummer"_s, u"B1"_s}});
    dialogs.expectModal(u"frmKasseArtikelLieferanten"_s, [](QDialog& d) {
        EXPECT_EQ(2, control<QTableView>(d, u"lvwArtikel"_s).model()->rowCount());
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Down);
        pressKey(d, Qt::Key_Return);
    });
    scan(u"B1"_s);
    EXPECT_EQ(QStringList{u"Hafermilch 1 l|1|1 l|1,79|1,79"_s}, lines());
    dialogs.expectModal(u"frmKasseArtikelLieferanten"_s, [](QDialog& d) { pressKey(d, Qt::Key_Escape); });
    scan(u"B1"_s);
    EXPECT_EQ(1, lines().size());
    EXPECT_EQ(u""_s, input());
}

TEST_F(Kasse, FindsTheCustomerByNameTownAndNumber) {
    const auto customer = [this](const QString& number, const QString& name, const QString& town,
                                 bool blocked) {
        return shop.insert(u"Kunden"_s, {{u"KundenNummer"_s, number},
                                         {u"Anrede"_s, u"Frau"_s},
                                         {u"Name_1"_s, name},
                                         {u"Ort"_s, town},
                                         {u"Rabatt"_s, 10},
                                         {u"Gesperrt"_s, blocked}});
    };
    const int brandt = customer(u"100"_s, u"Brandt & Co"_s, u"Kiel"_s, false);
    shop.insert(u"KundenKFZInfo"_s, {{u"KundenID"_s, brandt},
                                     {u"Kennzeichen"_s, u"KI-A 1"_s},
                                     {u"Erstzulassung"_s, DateTime::fromParts(2020, 2, 1)}});
    customer(u"200"_s, u"Weber"_s, u"Husum"_s, false);
    customer(u"300"_s, u"Brandes"_s, u"Kiel"_s, true);
    const auto shown = [](QDialog& d) {
        QStringList names;
        const auto* model = control<QTableView>(d, u"lvwKunden"_s).model();
        for (int row = 0; row < model->rowCount(); ++row)
            names << model->index(row, 1).data().toString();
        return names;
    };
    dialogs.expectModal(u"frmKasseKundenSuche"_s, [&](QDialog& d) {
        EXPECT_FALSE(control<QTableView>(d, u"lvwKFZ"_s).isVisible());
        clickOn(d, u"optSuche2"_s);
        typeText(d, u"husum"_s);
        EXPECT_EQ((QStringList{u"Standardkunde"_s, u"Weber"_s}), shown(d));
        clickOn(d, u"optSuche1"_s);
        control<QLineEdit>(d, u"txtSuchBegriff"_s).clear();
        typeText(d, u"bran"_s);
        EXPECT_EQ((QStringList{u"Standardkunde"_s, u"Brandt & Co"_s}), shown(d))
            << "a blocked one never appears";
        pressKey(d, Qt::Key_Return);
    });
    press(Qt::Key_F4);
    EXPECT_EQ(u"Frau Brandt & Co  -  Rabatt: 10/100"_s, label(u"Title_Bestellung"_s));
    scan(bread);
    EXPECT_EQ(u"4,05"_s, label(u"lblGesamt"_s));

    dialogs.expectModal(u"frmKasseKundenSuche"_s, [&](QDialog& d) {
        clickOn(d, u"optSuche0"_s);
        typeText(d, u"20"_s);
        EXPECT_EQ(u"200"_s,
                  control<QTableView>(d, u"lvwKunden"_s).currentIndex().siblingAtColumn(0).data().toString());
        pressKey(d, Qt::Key_Escape);
    });
    click(u"cmdKunde"_s);
    EXPECT_EQ(100, shop.value(u"SELECT KundenNummer FROM Kunden WHERE KundenID="_s +
                              QString::number(gKunde.KundenID))
                       .toLong());

    gShowKundenKFZInfo = true;
    dialogs.expectModal(u"frmKasseKundenSuche"_s, [&](QDialog& d) {
        const auto& vehicles = control<QTableView>(d, u"lvwKFZ"_s);
        EXPECT_TRUE(vehicles.isVisible());
        EXPECT_EQ(0, vehicles.model()->rowCount());
        typeText(d, u"bra"_s);
        ASSERT_EQ(1, vehicles.model()->rowCount());
        EXPECT_EQ(u"KI-A 1"_s, vehicles.model()->index(0, 0).data().toString());
        EXPECT_EQ(u"01.02.2020"_s, vehicles.model()->index(0, 4).data().toString());
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Up);
        EXPECT_EQ(0, vehicles.model()->rowCount());
        typeText(d, u"'"_s);
        EXPECT_EQ(QStringList{u"Standardkunde"_s}, shown(d)) << "nobody's name, but no error";
        control<QLineEdit>(d, u"txtSuchBegriff"_s).clear();
        typeText(d, u"niemand"_s);
        EXPECT_TRUE(control<QLabel>(d, u"lblNiemand"_s).isVisible());
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible()) << "nobody has been chosen";
        control<QLineEdit>(d, u"txtSuchBegriff"_s).clear();
        typeText(d, u"20"_s);
        EXPECT_EQ(u"Weber"_s,
                  control<QTableView>(d, u"lvwKunden"_s).currentIndex().siblingAtColumn(1).data().toString())
            << "a number is one whichever column is chosen";
        EXPECT_FALSE(control<QLabel>(d, u"lblNiemand"_s).isVisible());
        clickOn(d, u"optSuche0"_s);
        typeText(d, u"99"_s);
        EXPECT_TRUE(control<QLabel>(d, u"lblNiemand"_s).isVisible());
        pressKey(d, Qt::Key_Down);
        EXPECT_EQ(u"Standardkunde"_s,
                  control<QTableView>(d, u"lvwKunden"_s).currentIndex().siblingAtColumn(1).data().toString());
        pressKey(d, Qt::Key_Return);
    });
    press(Qt::Key_F4);
    EXPECT_EQ(0, gKunde.KundenID);
    EXPECT_EQ(u" Standardkunde  -  Rabatt: 0/100"_s, label(u"Title_Bestellung"_s));
}

} // namespace
