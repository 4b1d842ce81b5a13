#include <devices/PrintJob.h>
#include <page/ui/PagePreview.h>
#include <printing/ui/frmFormularEdit.h>
#include <session/Globals.h>
#include <support/ScriptedForms.h>
#include <templates/PropertiesList.h>
#include <templates/Shipped.h>
#include <templates/ui/PropertyGrid.h>
#include <ui/TouchKey.h>

#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class frmFormularEditTest : public testing::Test {
  protected:
    void SetUp() override { ResetSession(); }
    void TearDown() override { ResetSession(); }
    /// A copy of the delivered template in the designer.
    void open(const QString& name, const QString& printer = {}) {
        path = folder.filePath(name);
        ASSERT_TRUE(QFile::copy(shippedTemplateFor(name), path));
        ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
        ASSERT_TRUE(form.Open(path, printer));
        showForm(form);
    }
    [[nodiscard]] PropertyGrid& grid() const { return control<PropertyGrid>(form, u"mainProperty"_s); }
    [[nodiscard]] QString preview() const {
        const PageDocument& document = control<PagePreview>(form, u"mainPreview"_s).document();
        return document.pageCount() == 0 ? QString() : document.plainText(0);
    }
    /// Writes a text into a property as a person does.
    void write(const QString& key, const QString& text) {
        ASSERT_TRUE(grid().select(key));
        grid().list().setFocus();
        pressKey(form, Qt::Key_F2);
        control<QPlainTextEdit>(form, u"txtValue"_s).selectAll();
        typeText(form, text);
    }
    [[nodiscard]] QString titleOnDisk() const {
        PropertiesList list;
        EXPECT_TRUE(list.Load(path));
        return list.Text(u"formulartitel_text");
    }

    QTemporaryDir folder;
    QString path;
    frmFormularEdit form;
    ScriptedForms dialogs;
};

} // namespace

TEST_F(frmFormularEditTest, EveryDeliveredTemplateIsShown) {
    for (const QString& name : shippedTemplates()) {
        open(name);
        EXPECT_TRUE(preview().contains(u"Jonas Weber"_s) || name == u"Warenankauf.pld") << name.toStdString();
        EXPECT_GT(preview().size(), 100) << name.toStdString();
    }
}

TEST_F(frmFormularEditTest, ThePreviewFollowsEachChangeWithinATenthOfASecond) {
    open(u"Rechnung.pld"_s);
    QElapsedTimer clock;
    clock.start();
    write(u"formulartitel_text"_s, u"Faktura"_s);
    EXPECT_TRUE(waitFor([&] { return preview().contains(u"Faktura\n"_s); }, 1000));
    EXPECT_LT(clock.elapsed(), 500) << "generous, for machines that do other things";
    pressKey(form, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([&] { return preview().contains(u"Rechnung\n"_s); }));
    pressKey(form, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([&] { return preview().contains(u"Faktura\n"_s); }));
}

TEST_F(frmFormularEditTest, KeysSaveRestoreAndBringBackTheDeliveredState) {
    open(u"Rechnung.pld"_s);
    EXPECT_FALSE(control<TouchKey>(form, u"cmdSave"_s).isEnabled());
    write(u"formulartitel_text"_s, u"Faktura"_s);
    EXPECT_TRUE(form.windowTitle().contains(u"geändert"_s));
    pressKey(form, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(titleOnDisk(), u"Faktura"_s);
    EXPECT_FALSE(form.windowTitle().contains(u"geändert"_s));

    write(u"formulartitel_text"_s, u"Invoice"_s);
    pressKey(form, Qt::Key_F5);
    EXPECT_EQ(grid().list().currentIndex().siblingAtColumn(1).data().toString(), u"Faktura"_s);
    pressKey(form, Qt::Key_F8);
    EXPECT_EQ(grid().list().currentIndex().siblingAtColumn(1).data().toString(), u"Rechnung"_s);
    EXPECT_EQ(titleOnDisk(), u"Faktura"_s) << "until it is saved";

    const QString other = folder.filePath(u"Rechnung-neu"_s);
    dialogs.expectFile(u"Druckvorlage speichern..."_s, other);
    clickOn(form, u"cmdSaveAs"_s);
    EXPECT_TRUE(QFile::exists(other + u".pld"_s));
    EXPECT_TRUE(form.windowTitle().startsWith(u"Rechnung-neu.pld"_s));
    dialogs.expectFile(u"Druckvorlage speichern..."_s, folder.filePath(u"kein/Ordner.pld"_s)).expectError(70);
    clickOn(form, u"cmdSaveAs"_s);
}

TEST_F(frmFormularEditTest, ClosingAsksBeforeChangesAreLost) {
    const QString question = u"Die Druckvorlage wurde geändert...*"_s;
    open(u"Angebot.pld"_s);
    write(u"formulartitel_text"_s, u"Offerte"_s);
    pressKey(form, Qt::Key_Escape);
    EXPECT_TRUE(form.isVisible()) << "the first Esc leaves the value";
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::No);
    pressKey(form, Qt::Key_Escape);
    EXPECT_TRUE(form.isVisible());
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::No);
    form.close();
    EXPECT_TRUE(form.isVisible());
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::Yes);
    clickOn(form, u"cmdClose"_s);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(titleOnDisk(), u"Angebot"_s);
}

TEST_F(frmFormularEditTest, WhatIsNoTemplateIsRefused) {
    QFile file(folder.filePath(u"Rechnung.pld"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x01\x02 kein Text");
    file.close();
    for (const QString& name : {u"Rechnung.pld"_s, u"fehlt.pld"_s}) {
        dialogs.expectMsgBox(u"Die Druckvorlage konnte nicht geöffnet werden."_s, MsgIcon::Critical,
                             MsgAnswer::OK, u"Systemmeldung..."_s);
        EXPECT_FALSE(form.Open(folder.filePath(name), {}));
    }
    PropertiesList colours;
    colours.insert(u"", {u"farbe"_s, {}, {}, PropertyType::Text, u"rot"_s, {}, {}});
    ASSERT_TRUE(colours.Save(folder.filePath(u"farben.pld"_s)));
    dialogs.expectMsgBox(u"Die Druckvorlage konnte nicht geöffnet werden.\n\nIn \"farben.pld\" fehlen...*"_s,
                         MsgIcon::Critical);
    EXPECT_FALSE(form.Open(folder.filePath(u"farben.pld"_s), {}));
}

TEST_F(frmFormularEditTest, AColumnBeyondThePaperIsToldAndNotPrinted) {
    open(u"Kassenbon.pld"_s, u"Bondrucker"_s);
    const auto& fault = control<QLabel>(form, u"lblFault"_s);
    EXPECT_FALSE(fault.isVisible());
    ASSERT_TRUE(grid().select(u"tabelle_artikelname_width"_s));
    grid().list().setFocus();
    typeText(form, u"9"_s);
    EXPECT_TRUE(waitFor([&] { return fault.isVisible(); }));
    EXPECT_TRUE(fault.text().contains(u"\"tabelle_artikelname_width\""_s)) << qPrintable(fault.text());
    dialogs.expectMsgBox(fault.text());
    clickOn(form, u"cmdTestPrint"_s);
}

TEST_F(frmFormularEditTest, ATestPrintNeedsAPrinter) {
    open(u"Kassenbon.pld"_s);
    dialogs.expectMsgBox(u"Für diese Druckvorlage ist kein Drucker eingerichtet."_s);
    pressKey(form, Qt::Key_P, Qt::ControlModifier);
    ASSERT_TRUE(form.Open(path, u"Gibt es nicht"_s));
    dialogs.expectError(482);
    clickOn(form, u"cmdTestPrint"_s);
}
