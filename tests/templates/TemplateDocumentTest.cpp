#include <templates/Shipped.h>
#include <templates/TemplateCheck.h>
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
        ASSERT_EQ(document.open(path), TemplateDocument::Opened::Yes);
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

TEST_F(TemplateDocuments, OnlyTheFormsOfTheShopAreCompletedWhenTheyAreOpened) {
    using enum TemplateDocument::Opened;
    PropertiesList lean;
    for (const Property& p : document.list().properties())
        if (p.key != u"tabelle_bestellnummer_width") lean.insert(u"", p);
    ASSERT_TRUE(lean.Save(path));
    ASSERT_EQ(document.open(path), Yes);
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(stored().properties().size(), lean.properties().size() + 1);

    for (const QString& name : {u"Rechnung-alt.pld"_s, u"Meine Vorlage.pld"_s}) {
        const QString other = folder.filePath(name);
        ASSERT_TRUE(lean.Save(other));
        ASSERT_EQ(document.open(other), Yes);
        EXPECT_EQ(document.kind(), TemplateKind::Form);
        PropertiesList after;
        ASSERT_TRUE(after.Load(other));
        EXPECT_TRUE(after == lean) << name.toStdString();
    }
}

TEST_F(TemplateDocuments, WhatIsNoTemplateIsNotOpened) {
    using enum TemplateDocument::Opened;
    // The keys of a voucher tell more than a name that begins like a form.
    const QString voucher = folder.filePath(u"Rechnung-Geschenk.pld"_s);
    ASSERT_TRUE(QFile::copy(shippedTemplateFor(u"Gutschein.pld"_s), voucher));
    ASSERT_EQ(document.open(voucher), Yes);
    EXPECT_EQ(document.kind(), TemplateKind::Voucher);

    PropertiesList anything;
    anything.insert(u"", {u"farbe"_s, {}, {}, PropertyType::Text, u"rot"_s, {}, {}});
    const QString unknown = folder.filePath(u"farben.pld"_s);
    ASSERT_TRUE(anything.Save(unknown));
    EXPECT_EQ(document.open(unknown), NoTemplate);
    EXPECT_EQ(document.open(folder.filePath(u"fehlt.pld"_s)), NotLoaded);
    EXPECT_EQ(document.path(), voucher) << "what was open stays open";
    ASSERT_TRUE(anything.Load(unknown));
    EXPECT_EQ(anything.properties().size(), 1U);
}

TEST(TemplateFaults, AreToldWithTheirKey) {
    const QSizeF unknown;
    for (const QString& name : shippedTemplates()) {
        PropertiesList list;
        ASSERT_TRUE(list.Load(shippedTemplateFor(name)));
        EXPECT_EQ(templateFault(list, kindOfFile(name).value(), unknown), QString()) << name.toStdString();
    }
    PropertiesList bon;
    ASSERT_TRUE(bon.Load(shippedTemplateFor(u"Kassenbon.pld"_s)));
    bon.setValue(u"tabelle_gpreis_width", 0.0);
    EXPECT_EQ(templateFault(bon, TemplateKind::Bon, unknown),
              u"Es fehlt \"tabelle_gpreis_width\" (Breite Gesamtpreis)."_s);
    bon.setValue(u"tabelle_gpreis_width", 3.5);
    EXPECT_EQ(templateFault(bon, TemplateKind::Bon, unknown),
              u"Über das Papier hinaus reicht \"tabelle_gpreis_width\" (Breite Gesamtpreis)."_s);
    bon.setValue(u"tabelle_artikelname_width", 9.0);
    EXPECT_EQ(templateFault(bon, TemplateKind::Bon, unknown),
              u"Über das Papier hinaus reicht \"tabelle_artikelname_width\" (Breite Artikelname)."_s);
    bon.setValue(u"page_size", 0);
    EXPECT_EQ(templateFault(bon, TemplateKind::Bon, unknown), QString()) << "paper that nobody knows";
    EXPECT_NE(templateFault(bon, TemplateKind::Bon, QSizeF(80, 200)), QString()) << "the printer's own paper";

    const std::pair<TemplateKind, QString> kinds[] = {{TemplateKind::Form, u"tabelle_gpreis_width"_s},
                                                      {TemplateKind::Purchase, u"tabelle_gpreis_width"_s},
                                                      {TemplateKind::Voucher, u"gutschein_fontsize"_s},
                                                      {TemplateKind::Closing, u"table_warengruppe_summe"_s}};
    for (const auto& [kind, key] : kinds)
        EXPECT_TRUE(templateFault({}, kind, unknown).contains(key)) << key.toStdString();
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
