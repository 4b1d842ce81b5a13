#include <templates/Shipped.h>
#include <templates/TemplateDocument.h>
#include <templates/Units.h>
#include <templates/ValueText.h>
#include <text/RuntimeError.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class TemplateDocuments : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(QFile::copy(shippedTemplateFor(path), path));
        ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
        ASSERT_TRUE(document.open(path));
        QObject::connect(&document, &TemplateDocument::changed, &document,
                         [this](const QString& key) { changes << key; });
    }
    [[nodiscard]] PropertiesList stored() const {
        PropertiesList list;
        EXPECT_TRUE(list.Load(path));
        return list;
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"Rechnung.pld"_s);
    TemplateDocument document;
    QStringList changes;
};

} // namespace

TEST_F(TemplateDocuments, ChangesAreUndoneStepByStep) {
    const PropertiesList start = document.list();
    document.setValue(u"tabelle_top", 1.0);
    document.setValue(u"tabelle_top", 12.0);
    document.setValue(u"tabelle_top", 12.0);
    document.endStep();
    document.setValue(u"tabelle_top", 13.0);
    document.setValue(u"kopfzeile_visible", false);
    document.setValue(u"kopfzeile_visible", true);
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(changes.size(), 5) << "a value that is there already is no change";

    document.undo();
    EXPECT_FALSE(document.list().Flag(u"kopfzeile_visible")) << "each tick is a step of its own";
    document.undo();
    document.undo();
    EXPECT_EQ(document.list().Number(u"tabelle_top"), 12.0) << "keystrokes of one number are one step";
    EXPECT_EQ(changes.last(), u"tabelle_top"_s);
    document.undo();
    EXPECT_TRUE(document.list() == start);
    EXPECT_FALSE(document.isModified());
    EXPECT_FALSE(document.canUndo());
    document.undo();

    document.redo();
    EXPECT_EQ(document.list().Number(u"tabelle_top"), 12.0);
    document.setValue(u"page_size", 2);
    EXPECT_FALSE(document.canRedo()) << "a new change closes the way forward";
    EXPECT_THROW(document.setValue(u"page_size", true), RuntimeError);
    EXPECT_THROW(document.setValue(u"fehlt", true), RuntimeError);
}

TEST_F(TemplateDocuments, SavedAndDeliveredStatesComeBack) {
    const PropertiesList shipped = document.list();
    document.setValue(u"formulartitel_text", u"Faktura"_s);
    EXPECT_TRUE(document.save());
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(stored().Text(u"formulartitel_text"), u"Faktura"_s);

    document.setValue(u"formulartitel_text", u"Invoice"_s);
    document.revert();
    EXPECT_EQ(document.list().Text(u"formulartitel_text"), u"Faktura"_s);
    document.undo();
    EXPECT_EQ(document.list().Text(u"formulartitel_text"), u"Invoice"_s);

    ASSERT_TRUE(document.hasShipped());
    EXPECT_TRUE(document.restoreShipped());
    EXPECT_TRUE(document.list() == shipped);
    EXPECT_TRUE(document.isModified());
    document.undo();
    EXPECT_EQ(document.list().Text(u"formulartitel_text"), u"Invoice"_s);

    const QString other = folder.filePath(u"Meine Vorlage.pld"_s);
    EXPECT_TRUE(document.saveAs(other));
    EXPECT_EQ(document.path(), other);
    EXPECT_EQ(document.kind(), TemplateKind::Form) << "told by its keys";
    EXPECT_FALSE(document.hasShipped());
    EXPECT_FALSE(document.restoreShipped());
    EXPECT_EQ(stored().Text(u"formulartitel_text"), u"Faktura"_s);
    EXPECT_FALSE(document.saveAs(folder.filePath(u"kein/Ordner.pld"_s)));
    EXPECT_EQ(document.path(), other);
}

TEST_F(TemplateDocuments, AnOldFormIsCompletedOnDiskWhenItIsOpened) {
    PropertiesList old;
    for (const Property& p : document.list().properties())
        if (p.key != u"tabelle_bestellnummer_width") old.insert(u"", p);
    ASSERT_TRUE(old.Save(path));
    ASSERT_TRUE(document.open(path));
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(stored().properties().size(), old.properties().size() + 1);

    EXPECT_FALSE(document.open(folder.filePath(u"fehlt.pld"_s)));
    EXPECT_EQ(document.path(), path) << "what was open stays open";
}

TEST(ValueText, IsGermanAndOneLine) {
    PropertiesList list;
    ASSERT_TRUE(list.Load(shippedTemplateFor(u"Rechnung.pld"_s)));
    const auto shown = [&](QStringView key, PropertyValue value) {
        list.setValue(key, std::move(value));
        return valueText(*list.find(key));
    };
    EXPECT_EQ(shown(u"tabelle_top", 4.75), u"4,8 cm"_s);
    EXPECT_EQ(shown(u"schlusstext_align", 3), u"Zentriert"_s);
    EXPECT_EQ(shown(u"schlusstext_align", 7), u"7"_s);
    EXPECT_EQ(shown(u"schlusstext_text", u"Bitte zahlen.\nDanke"_s), u"Bitte zahlen. …"_s);
    EXPECT_EQ(shown(u"kopfzeile_visible", false), u"Nein"_s);
    EXPECT_EQ(valueText(*list.find(u"kopfzeile_logo")), u"16,4 × 20,0 mm"_s);
    EXPECT_EQ(shown(u"kopfzeile_logo", QByteArray("x")), u"nicht lesbar"_s);
    EXPECT_EQ(shown(u"kopfzeile_logo", QByteArray()), u"kein Bild"_s);
    QFont font(QStringList{u"Inter"_s});
    font.setPointSizeF(8.5);
    font.setBold(true);
    EXPECT_EQ(fontText(font), u"Inter 8,5 pt, fett"_s);
}

TEST(ValueText, WhatNoTemplateHoldsIsLeftOutOrRefused) {
    EXPECT_EQ(storableText(u"a\r\nb\rc\fd\u2029e😀"_s + QChar(0xD800)), u"a\nb\ncd\ne😀\uFFFD"_s);
    EXPECT_TRUE(pictureFault("kein Bild").startsWith(u"Die Datei enthält kein Bild"_s));
    EXPECT_TRUE(pictureFault(QByteArray(5'000'000, 'x')).startsWith(u"Das Bild ist größer als 4 MB"_s));

    PropertiesList list;
    ASSERT_TRUE(list.Load(shippedTemplateFor(u"Kassenbon.pld"_s)));
    EXPECT_EQ(pictureFault(std::get<QByteArray>(list.find(u"kopfzeile_logo")->value)), QString());
    EXPECT_NEAR(paperSize(list).width(), 79.6, 0.05);
    EXPECT_FALSE(pictureRemark(list, *list.find(u"kopfzeile_logo")).contains(u"Papierrand"_s));
    list.setValue(u"kopfzeile_logo_left", 7.5);
    EXPECT_TRUE(pictureRemark(list, *list.find(u"kopfzeile_logo")).contains(u"Papierrand"_s));
}
