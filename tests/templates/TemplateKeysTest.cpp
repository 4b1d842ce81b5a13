#include <templates/TemplateKeys.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// A template with every key of its kind.
PropertiesList complete(TemplateKind kind) {
    PropertiesList list;
    for (const TemplateKey& key : templateKeys()) {
        if (!key.isUsedBy(kind)) continue;
        PropertyValue value;
        switch (key.type) {
        case PropertyType::Boolean:
            value = false;
            break;
        case PropertyType::Choice:
            value = 1;
            break;
        case PropertyType::Text:
            value = QString();
            break;
        case PropertyType::Font:
            value = QFont(QStringList{u"Inter"_s}, 9);
            break;
        case PropertyType::Picture:
            value = QByteArray();
            break;
        default:
            value = 1.0;
        }
        list.insert(u"", {key.key.toString(), key.caption.toString(), key.description.toString(), key.type,
                          std::move(value), formatOf(key.type), choicesOf(key)});
    }
    return list;
}

} // namespace

TEST(TemplateKinds, AreToldByTheNameOfTheFile) {
    EXPECT_EQ(kindOfFile(u"/daten/Kassenabschluss.pld"_s), TemplateKind::Closing);
    EXPECT_EQ(kindOfFile(u"RECHNUNG.PLD"_s), TemplateKind::Form);
    EXPECT_EQ(kindOfFile(u"Kassenbon-58mm.pld"_s), TemplateKind::Bon);
    EXPECT_EQ(kindOfFile(u"Kassenbons.pld"_s), std::nullopt);
    EXPECT_EQ(kindOfFile(u"Quittung.pdl"_s), std::nullopt);
    EXPECT_EQ(kindOfFile(u""_s), std::nullopt);
    EXPECT_EQ(templateFileOf(u"Angebot-lang.pld"_s)->document, u"Angebot");
}

TEST(TemplateKinds, AreToldByTheKeysOfAFileWithAnyName) {
    for (const TemplateFile& file : templateFiles())
        EXPECT_EQ(kindOfKeys(complete(file.kind)), file.kind) << file.name.toString().toStdString();
    EXPECT_EQ(kindOfKeys({}), std::nullopt);
}

TEST(TemplateKeys, AFormGetsTheOrderNumberColumnBehindTheQuantity) {
    const PropertiesList whole = complete(TemplateKind::Form);
    PropertiesList lean;
    for (const Property& p : whole.properties())
        if (p.key != u"tabelle_bestellnummer_width") lean.insert(u"", p);
    EXPECT_EQ(kindOfKeys(lean), TemplateKind::Form) << "the only key that a form can do without";
    ASSERT_TRUE(addOrderNumberWidth(lean));
    ASSERT_EQ(lean.properties().size(), whole.properties().size());
    const Property& added = *lean.find(u"tabelle_bestellnummer_width");
    EXPECT_EQ(&added - 1, lean.find(u"tabelle_anzahl_width"));
    EXPECT_EQ(added, (Property{u"tabelle_bestellnummer_width"_s,
                               u"Breite Bestell-Nr"_s,
                               u"Breite des Feldes Bestellnummer"_s,
                               PropertyType::Cm,
                               0.0,
                               u"0.0 cm"_s,
                               {}}));
    EXPECT_FALSE(addOrderNumberWidth(lean));
}

TEST(TemplateKeys, DependentPropertiesFollowTheirMasters) {
    PropertiesList list = complete(TemplateKind::Bon);
    for (const int size : {0, 1, 2, 3, 4}) {
        list.setValue(u"page_size", size);
        EXPECT_EQ(isInForce(list, u"page_width"), size == 3) << size;
        EXPECT_EQ(isInForce(list, u"page_height"), size == 3) << size;
    }
    for (const bool printerFont : {true, false}) {
        list.setValue(u"page_useprinterfont", printerFont);
        EXPECT_EQ(isInForce(list, u"page_font"), !printerFont);
        EXPECT_EQ(isInForce(list, u"page_fontname"), printerFont);
        EXPECT_EQ(isInForce(list, u"page_fontsize"), printerFont);
        EXPECT_TRUE(isInForce(list, u"page_margintop"));
    }
}
