#include <templates/Shipped.h>
#include <templates/TemplateKeys.h>
#include <text/RuntimeError.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// What a centimetre of a position, of the paper and of a column is on paper, in mm.
constexpr double positionMm = 544 / 1440.0 * 25.4, paperMm = 480 / 1440.0 * 25.4, columnMm = 10;

class ShippedTemplates : public testing::TestWithParam<QString> {
  protected:
    void SetUp() override {
        const QString path = shippedTemplateFor(GetParam());
        ASSERT_TRUE(list.Load(path)) << path.toStdString();
        kind = kindOfFile(GetParam()).value();
    }

    [[nodiscard]] double paperWidth() const {
        switch (list.Choice(u"page_size")) {
        case 1:
            return 210;
        case 2:
            return 148;
        default:
            return list.Number(u"page_width") * paperMm;
        }
    }
    [[nodiscard]] double textWidth() const {
        return paperWidth() -
               (list.Number(u"page_marginleft") + list.Number(u"page_marginright")) * positionMm;
    }
    [[nodiscard]] double columns(std::initializer_list<QStringView> keys) const {
        double width = 0;
        for (const QStringView key : keys)
            width += list.Number(key) * columnMm;
        return width;
    }

    PropertiesList list;
    TemplateKind kind{};
};

std::vector<QString> shippedNames() {
    const QStringList names = shippedTemplates();
    return {names.begin(), names.end()};
}

} // namespace

TEST_P(ShippedTemplates, HoldExactlyTheKeysOfTheirKindInOrder) {
    QStringList expected, found;
    for (const TemplateKey& key : templateKeys()) {
        if (!key.isUsedBy(kind)) continue;
        expected << key.key.toString();
        const Property* p = list.find(key.key);
        if (p == nullptr) continue;
        EXPECT_EQ(p->type, key.type) << p->key.toStdString();
        EXPECT_EQ(p->caption, key.caption) << p->key.toStdString();
        EXPECT_EQ(p->description, key.description) << p->key.toStdString();
        EXPECT_EQ(p->format, formatOf(key.type)) << p->key.toStdString();
        EXPECT_EQ(p->choices, choicesOf(key)) << p->key.toStdString();
    }
    for (const Property& p : list.properties())
        found << p.key;
    EXPECT_EQ(found, expected);
}

TEST_P(ShippedTemplates, AreStoredAsTheProgramStoresThem) {
    QTemporaryDir folder;
    const QString path = folder.filePath(GetParam());
    ASSERT_TRUE(list.Save(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll() == shippedTemplate(GetParam()));
}

TEST_P(ShippedTemplates, FitTheirPaper) {
    const double width = textWidth() + 0.5;
    EXPECT_GT(width, 45);
    EXPECT_LE(columns({u"tabelle_bestellnummer_width", u"tabelle_anzahl_width", u"tabelle_einheit_width",
                       u"tabelle_artikelname_width", u"tabelle_epreis_width", u"tabelle_steuer_width",
                       u"tabelle_gpreis_width"}),
              width);
    if (list.Choice(u"page_size") == 1) {
        EXPECT_EQ(list.Number(u"page_width"), 21.0);
        EXPECT_EQ(list.Number(u"page_height"), 29.7);
    }
    EXPECT_LE(columns({u"infofeld_width"}) + 25, width);
    EXPECT_LE(columns({u"table_warengruppe_name", u"table_warengruppe_summe"}), width);
    EXPECT_LE(columns({u"table_steuer", u"table_netto", u"table_ust", u"table_brutto"}), width);
    if (kind == TemplateKind::Closing) return;

    const QImage logo = list.Picture(u"kopfzeile_logo");
    ASSERT_FALSE(logo.isNull());
    EXPECT_NEAR(logo.dotsPerMeterX() * 0.0254, 300, 1);
    const double logoWidth = 1000.0 * logo.width() / logo.dotsPerMeterX();
    EXPECT_LE(list.Number(u"kopfzeile_logo_left") * positionMm + logoWidth, paperWidth());
}

TEST(ShippedVoucher, ItsTitleAndValueAreTheLargestTextOnIt) {
    PropertiesList list;
    ASSERT_TRUE(list.Load(shippedTemplateFor(u"Gutschein.pld"_s)));
    const double text = list.Font(u"page_font").pointSizeF();
    EXPECT_GT(list.Number(u"gutschein_fontsize"), 2 * text);
    EXPECT_GE(list.Number(u"formulartitel_fontsize"), list.Number(u"gutschein_fontsize"));
}

INSTANTIATE_TEST_SUITE_P(All, ShippedTemplates, testing::ValuesIn(shippedNames()), [](const auto& test) {
    return QString(test.param).remove(QRegularExpression(u"[^A-Za-z0-9]"_s)).toStdString();
});

TEST(ShippedTemplateFor, FindsTheSameNameThenTheSameDocument) {
    for (const TemplateFile& file : templateFiles())
        EXPECT_FALSE(shippedTemplate(file.name.toString()).isEmpty());
    EXPECT_TRUE(shippedTemplateFor(u"/daten/KASSENBON-58MM.pld"_s).endsWith(u"/Kassenbon-58mm.pld"_s));
    EXPECT_TRUE(shippedTemplateFor(u"Rechnung-englisch.pld"_s).endsWith(u"/Rechnung.pld"_s));
    EXPECT_EQ(shippedTemplateFor(u"Preisliste.pld"_s), QString());
    EXPECT_THROW((void)shippedTemplate(u"../Rechnung.pld"_s), RuntimeError);
}
