#include "Kasse.h"

#include <QTreeView>

// Looking an article up without leaving the register.

namespace {

class ArticleSearch : public Kasse {
  protected:
    void search(const std::function<void(QDialog&)>& drive, bool byKey = true) {
        dialogs.expectModal(u"frmKasseArtikelSuche"_s, drive);
        byKey ? press(Qt::Key_F3) : click(u"cmdSearch"_s);
    }
    static QStringList hits(QDialog& d, int column = 1) {
        QStringList shown;
        const auto* model = control<QTableView>(d, u"lvwArtikel"_s).model();
        for (int row = 0; row < model->rowCount(); ++row)
            shown << model->index(row, column).data().toString();
        return shown;
    }
    static QString told(QDialog& d) { return control<QLabel>(d, u"lblTreffer"_s).text(); }
    static bool done(QDialog& d) {
        return waitFor([&] { return told(d).contains(u"Treffer"_s); });
    }
};

TEST_F(ArticleSearch, ThreeOfTheChosenOne) {
    typeText(*form, u"3*brot"_s); // what stands in the box is looked for
    search([&](QDialog& d) {
        EXPECT_EQ(u"brot"_s, control<QLineEdit>(d, u"txtSuchBegriff"_s).text());
        ASSERT_TRUE(done(d));
        EXPECT_EQ(QStringList{u"Dinkelbrot 750 g"_s}, hits(d));
        EXPECT_EQ(QStringList{u"/"_s}, hits(d, 2)) << "no purchase prices without the right";
        EXPECT_EQ(u"Kein Artikelbild verfügbar"_s, control<QLabel>(d, u"sspArtBild"_s).text());
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_EQ(QStringList{u"Dinkelbrot 750 g|3|1 Stück|4,50|13,50"_s}, lines());
    EXPECT_EQ(u""_s, input() + mal());

    typeText(*form, u"2*"_s);
    search(
        [&](QDialog& d) {
            ASSERT_TRUE(done(d));
            EXPECT_EQ(3, hits(d).size());
            pressKey(d, Qt::Key_Escape);
        },
        false);
    EXPECT_EQ(u""_s, input() + mal());
    EXPECT_EQ(1, list().model()->rowCount());
}

TEST_F(ArticleSearch, EnterWaitsForTheHits) {
    search([&](QDialog& d) {
        ASSERT_TRUE(done(d)); // all of them; the first one is selected
        typeText(d, milk);
        pressKey(d, Qt::Key_Return); // as a scanner, before any hit stands
        EXPECT_TRUE(d.isVisible());
        ASSERT_TRUE(done(d));
        EXPECT_EQ(QStringList{u"Hafermilch 1 l"_s}, hits(d));
        pressKey(d, Qt::Key_Return);
    });
    EXPECT_EQ(QStringList{u"Hafermilch 1 l|1|1 l|1,79|1,79"_s}, lines());
    search([&](QDialog& d) {
        typeText(d, u"gibt es nicht"_s);
        ASSERT_TRUE(done(d));
        EXPECT_EQ(u"keine Treffer"_s, told(d));
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible()) << "nothing has been found";
        control<QLineEdit>(d, u"txtSuchBegriff"_s).clear();
        ASSERT_TRUE(done(d));
        pressKey(d, Qt::Key_Down);
        pressKey(d, Qt::Key_Down);
        EXPECT_EQ(&control<QLineEdit>(d, u"txtSuchBegriff"_s), d.focusWidget());
        shop.db().Execute(u"DELETE FROM Artikel WHERE Nummer='"_s + milk + u'\'');
        dialogs.expectMsgBox(u"Die angeforderten Daten konnten nicht gefunden werden....*"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible());
        ASSERT_TRUE(done(d));
        EXPECT_EQ(2, hits(d).size());
        pressKey(d, Qt::Key_Escape);
    });
    EXPECT_EQ(1, list().model()->rowCount());
}

TEST_F(ArticleSearch, GroupsAndTheirArticles) {
    gKassenUser.R_Artikel = gHeron = true;
    shop.db().Execute(
        u"UPDATE Artikel SET WarenGruppe='Obst & ''Gemüse''', EKPreis=1.25 WHERE Nummer='77'"_s);
    search([&](QDialog& d) {
        auto& tree = control<QTreeView>(d, u"tvwGruppe"_s);
        const QModelIndex root = tree.model()->index(0, 0);
        EXPECT_EQ(u"Alle Warengruppen"_s, root.data().toString());
        ASSERT_TRUE(done(d));
        tree.setFocus();
        tree.setCurrentIndex(root.model()->index(0, 0, root));
        EXPECT_EQ(u"Obst & 'Gemüse'"_s, tree.currentIndex().data().toString());
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(QStringList{u"Blumenstrauß"_s}, hits(d));
        EXPECT_EQ(QStringList{u"1,25"_s}, hits(d, 2));
        EXPECT_EQ(u"Gebotspr."_s,
                  control<QTableView>(d, u"lvwArtikel"_s).model()->headerData(2, Qt::Horizontal).toString());
        tree.setFocus();
        tree.setCurrentIndex(root);
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(3, hits(d).size());
        pressKey(d, Qt::Key_Escape);
    });
}

} // namespace
