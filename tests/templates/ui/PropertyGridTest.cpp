#include <support/ScriptedForms.h>
#include <templates/Shipped.h>
#include <templates/TemplateDocument.h>
#include <templates/ui/PropertyGrid.h>
#include <ui/TouchKey.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class PropertyGridTest : public testing::Test {
  protected:
    void open(const QString& name) {
        const QString path = folder.filePath(name);
        ASSERT_TRUE(QFile::copy(shippedTemplateFor(name), path));
        ASSERT_EQ(document.open(path), TemplateDocument::Opened::Yes);
        grid.setDocument(document);
        showForm(grid);
        grid.list().setFocus();
    }
    [[nodiscard]] bool isShown(const QString& name) const {
        const auto* widget = grid.findChild<QWidget*>(name);
        return widget != nullptr && widget->isVisible();
    }

    QTemporaryDir folder;
    TemplateDocument document;
    PropertyGrid grid;
    ScriptedForms dialogs;
};

} // namespace

TEST_F(PropertyGridTest, ANumberIsTypedInTheListAndStepsByPlusAndMinus) {
    open(u"Rechnung.pld"_s);
    ASSERT_TRUE(grid.select(u"tabelle_top"_s));
    auto& box = control<QDoubleSpinBox>(grid, u"spnValue"_s);
    EXPECT_EQ(box.text(), u"11,6 cm"_s);
    typeText(grid, u"+"_s);
    EXPECT_DOUBLE_EQ(document.list().Number(u"tabelle_top"), 11.7);
    typeText(grid, u"9,5"_s);
    EXPECT_TRUE(box.hasFocus());
    EXPECT_DOUBLE_EQ(document.list().Number(u"tabelle_top"), 9.5);
    pressKey(grid, Qt::Key_Return);
    EXPECT_TRUE(grid.list().hasFocus());
    document.undo();
    EXPECT_DOUBLE_EQ(document.list().Number(u"tabelle_top"), 11.7) << "one step for all that was typed";
    EXPECT_EQ(box.text(), u"11,7 cm"_s);
    clickOn(grid, u"cmdLess"_s);
    EXPECT_DOUBLE_EQ(document.list().Number(u"tabelle_top"), 11.6);
    EXPECT_EQ(grid.list().currentIndex().siblingAtColumn(1).data(), u"11,6 cm"_s);
}

TEST_F(PropertyGridTest, SelectingChangesNothing) {
    open(u"Kassenbon.pld"_s);
    document.setValue(u"tabelle_top", -2.345);
    QFont foreign(QStringList{u"Gibt es nicht"_s});
    foreign.setPointSizeF(300);
    document.setValue(u"page_font", foreign);
    document.setValue(u"schlusstext_text", u"Zeile 1\rZeile 2"_s);
    document.setValue(u"schlusstext_align", 9);
    const PropertiesList before = document.list();
    for (int key = 0; key < 60; ++key)
        pressKey(grid, Qt::Key_Down);
    for (const Property& p : before.properties())
        EXPECT_TRUE(grid.select(p.key));
    EXPECT_TRUE(document.list() == before);
    grid.select(u"page_font"_s);
    EXPECT_EQ(control<QLabel>(grid, u"lblSample"_s).text(), u"Diese Schrift fehlt auf diesem Rechner."_s);
}

TEST_F(PropertyGridTest, DependentPropertiesAreSwitchedByTheirMasters) {
    open(u"Kassenbon.pld"_s);
    grid.select(u"page_useprinterfont"_s);
    pressKey(grid, Qt::Key_Space);
    EXPECT_TRUE(document.list().Flag(u"page_useprinterfont"));
    EXPECT_TRUE(control<QCheckBox>(grid, u"chkValue"_s).isChecked());
    grid.select(u"page_font"_s);
    EXPECT_FALSE(control<QComboBox>(grid, u"cboFamily"_s).isEnabled());
    EXPECT_EQ(control<QLabel>(grid, u"lblDescription"_s).text(), u"Gilt nur ohne die Druckerschrift."_s);
    pressKey(grid, Qt::Key_Return);
    EXPECT_TRUE(grid.list().hasFocus()) << "there is nothing to edit";
    grid.setFontNames({u"Courier"_s, u"FontA11"_s});
    grid.select(u"page_fontname"_s);
    auto& names = control<QComboBox>(grid, u"cboFontName"_s);
    EXPECT_TRUE(names.isEnabled());
    EXPECT_EQ(names.findText(u"FontA11"_s), 1);
    pressKey(grid, Qt::Key_Return);
    typeText(grid, u"FontB"_s);
    EXPECT_EQ(document.list().Text(u"page_fontname"), u"FontB"_s);

    grid.select(u"page_width"_s);
    EXPECT_TRUE(control<QDoubleSpinBox>(grid, u"spnValue"_s).isEnabled());
    document.setValue(u"page_size", 1);
    EXPECT_FALSE(control<QDoubleSpinBox>(grid, u"spnValue"_s).isEnabled());
}

TEST_F(PropertyGridTest, TextsChoicesAndFontsReachTheDocument) {
    open(u"Angebot.pld"_s);
    grid.select(u"schlusstext_text"_s);
    pressKey(grid, Qt::Key_F2);
    auto& text = control<QPlainTextEdit>(grid, u"txtValue"_s);
    text.selectAll();
    typeText(grid, u"Gültig "_s);
    pressKey(grid, Qt::Key_Return);
    clickOn(grid, u"cmdDateAdd"_s);
    EXPECT_EQ(document.list().Text(u"schlusstext_text"), u"Gültig \nDateAdd[14]"_s);
    pressKey(grid, Qt::Key_Escape);
    EXPECT_TRUE(grid.list().hasFocus());
    document.undo();
    EXPECT_EQ(text.toPlainText(), document.list().Text(u"schlusstext_text"));
    grid.select(u"formulartitel_text"_s);
    EXPECT_FALSE(isShown(u"cmdDateAdd"_s));

    grid.select(u"schlusstext_align"_s);
    pressKey(grid, Qt::Key_Return);
    pressKey(grid, Qt::Key_Down);
    pressKey(grid, Qt::Key_Down);
    EXPECT_EQ(document.list().Choice(u"schlusstext_align"), 3);

    grid.select(u"tabelle_font"_s);
    clickOn(grid, u"chkItalic"_s);
    EXPECT_TRUE(document.list().Font(u"tabelle_font").italic());
    EXPECT_EQ(document.list().Font(u"tabelle_font").family(), u"Inter"_s);
}

TEST_F(PropertyGridTest, APictureIsChosenCheckedAndRemoved) {
    open(u"Rechnung.pld"_s);
    const QByteArray shipped = std::get<QByteArray>(document.list().find(u"kopfzeile_logo")->value);
    grid.select(u"kopfzeile_logo"_s);
    const QString copy = folder.filePath(u"Kopie.png"_s), bad = folder.filePath(u"kein.png"_s);
    dialogs.expectFile(u"Bild speichern..."_s, copy);
    clickOn(grid, u"cmdExport"_s);
    clickOn(grid, u"cmdRemove"_s);
    EXPECT_TRUE(document.list().Picture(u"kopfzeile_logo").isNull());
    EXPECT_FALSE(control<TouchKey>(grid, u"cmdRemove"_s).isEnabled());

    QFile file(bad);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Text");
    file.close();
    dialogs.expectFile(u"Bild wählen..."_s, bad)
        .expectMsgBox(u"Die Datei enthält kein Bild...*"_s, MsgIcon::Exclamation)
        .expectFile(u"Bild wählen..."_s, std::nullopt)
        .expectFile(u"Bild wählen..."_s, folder.filePath(u"fehlt.png"_s))
        .expectError(70)
        .expectFile(u"Bild wählen..."_s, copy);
    for (int i = 0; i < 4; ++i)
        clickOn(grid, u"cmdChoose"_s);
    EXPECT_EQ(std::get<QByteArray>(document.list().find(u"kopfzeile_logo")->value), shipped);
    EXPECT_TRUE(control<QLabel>(grid, u"lblRemark"_s).text().startsWith(u"16,4 × 20,0 mm"_s));
}
