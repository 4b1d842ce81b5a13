#include "Kasse.h"

#include <page/ui/PagePreview.h>
#include <support/TestPrinters.h>
#include <templates/Shipped.h>
#include <ui/ListView.h>

#include <QDateEdit>

namespace {

TEST_F(Kasse, LooksThroughTheReceiptsByKeys) {
    TestPrinters printers({u"Epos"_s});
    gBonDrucker = u"Epos"_s;
    gKFRechnungsHistorie = gKFArtikelInfo = true;
    gShowWechselgeldDialog = false;
    gPrintMode = 0;
    form.reset();
    open();
    const auto file = [&](const QString& name, const QByteArray& content) {
        QFile to(shop.folder() + name);
        ASSERT_TRUE(to.open(QIODevice::WriteOnly));
        to.write(content);
    };
    for (int i = 0; i < 3; ++i) {
        scan(i % 2 ? milk : bread);
        press(Qt::Key_F10);
    }
    shop.db().Execute(u"UPDATE Rechnung SET Datum=Date()-1 WHERE RechnungID=1"_s);
    scan(bread);
    const auto numbers = [](QDialog& d) {
        QStringList shown;
        const auto& model = *control<ListView>(d, u"lvwRechnung"_s).model();
        for (int row = 0; row < model.rowCount(); ++row)
            shown << model.index(row, 0).data().toString();
        return shown;
    };
    dialogs.expectModal(u"frmKasseBonHistorie"_s, [&](QDialog& d) {
        EXPECT_EQ((QStringList{u"3"_s, u"2"_s}), numbers(d));
        auto& told = control<QLabel>(d, u"lblVorschau"_s);
        EXPECT_TRUE(QTest::qWaitFor([&] { return told.text().contains(u"Druckvorlage"_s); }))
            << "no template yet";
        file(u"Kassenbon.pld"_s, shippedTemplate(u"Kassenbon.pld"_s));
        pressKey(d, Qt::Key_Down);
        auto& preview = *d.findChild<PagePreview*>();
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return preview.isVisible() && preview.document().pageCount() == 1; }));
        keep(d, d.objectName());
        pressKey(d, Qt::Key_F7);
        EXPECT_EQ(QStringList{u"1"_s}, numbers(d));
        pressKey(d, Qt::Key_F8);
        clickOn(d, u"cmdNextDay"_s);
        EXPECT_EQ(QStringList{}, numbers(d));
        EXPECT_FALSE(control<TouchKey>(d, u"cmdPrint"_s).isEnabled());
        auto& box = control<QLineEdit>(d, u"txtNummer"_s);
        box.setFocus();
        typeText(d, u"77"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(control<QLabel>(d, u"lblStatus"_s).text().contains(u"77"_s));
        typeText(d, u"1"_s); // replaces it
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(u"ID1"_s, control<ListView>(d, u"lvwRechnung"_s).currentKey());
        clickOn(d, u"cmdShowAll"_s);
        EXPECT_EQ(3, numbers(d).size());
        EXPECT_EQ(u"ID1"_s, control<ListView>(d, u"lvwRechnung"_s).currentKey()) << "stays where one looks";
        pressKey(d, Qt::Key_Escape);
    });
    press(Qt::Key_F8, Qt::ControlModifier);
    EXPECT_EQ(1, lines().size()) << "the open sale is as before";
    dialogs.expectModal(u"frmKasseArtikelInfo"_s, [](QDialog& d) {
        keep(d, d.objectName());
        pressKey(d, Qt::Key_Return);
    });
    control<QAction>(*form, u"FileArtikelInfo"_s).trigger();
}

} // namespace
