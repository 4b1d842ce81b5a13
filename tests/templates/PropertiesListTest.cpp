#include <templates/PropertiesList.h>
#include <text/RuntimeError.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

QByteArray png(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    image.setDotsPerMeterX(11811);
    image.setDotsPerMeterY(11811);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QFont font(const QString& family, double size, bool bold) {
    QFont f(QStringList{family});
    f.setPointSizeF(size);
    f.setBold(bold);
    return f;
}

Property property(const QString& key, PropertyType type, PropertyValue value) {
    return {key, u"Caption "_s + key, u"Was "_s + key + u" tut"_s, type, std::move(value), {}, {}};
}

PropertiesList oneOfEach() {
    PropertiesList list;
    list.insert(u"", property(u"sichtbar"_s, PropertyType::Boolean, true));
    list.insert(u"", property(u"oben"_s, PropertyType::Cm, 4.7));
    list.insert(u"", property(u"tausendstel"_s, PropertyType::Cm, -0.001));
    list.insert(u"", property(u"groesse"_s, PropertyType::Point, 9.5));
    list.insert(
        u"", {u"papier"_s, u"Papier"_s, u""_s, PropertyType::Choice, 3, u""_s, {u"A4"_s, u""_s, u"frei"_s}});
    list.insert(u"", property(u"text"_s, PropertyType::Text, u"  <Größe> & \"Maß\"\r\n\tin € ]]> 😀\n\n"_s));
    list.insert(u"", property(u"schrift"_s, PropertyType::Font, font(u"Hand, \"Sütterlin\""_s, 10.5, true)));
    list.insert(u"", property(u"logo"_s, PropertyType::Picture, png({40, 20})));
    list.insert(u"", property(u"kein_logo"_s, PropertyType::Picture, QByteArray()));
    return list;
}

class TemplateFiles : public testing::Test {
  protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"Rechnung.pld"_s);

    void write(const QByteArray& bytes) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    [[nodiscard]] QByteArray read() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Loads into a list that holds something, which a failed load must take away.
    [[nodiscard]] bool loads(const QByteArray& bytes) const {
        write(bytes);
        PropertiesList list = oneOfEach();
        const bool loaded = list.Load(path);
        EXPECT_TRUE(loaded || list.properties().empty());
        return loaded;
    }
};

QByteArray file(const QByteArray& inside) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<druckvorlage version=\"1\">" + inside +
           "</druckvorlage>";
}

QByteArray entry(const QByteArray& type, const QByteArray& value, const QByteArray& name = "k") {
    return "<eigenschaft name=\"" + name + "\" typ=\"" + type + "\">" + value + "</eigenschaft>";
}

} // namespace

TEST_F(TemplateFiles, EveryTypeComesBackAndTheBytesStayTheSame) {
    const PropertiesList list = oneOfEach();
    ASSERT_TRUE(list.Save(path));
    const QByteArray bytes = read();
    PropertiesList again;
    ASSERT_TRUE(again.Load(path));
    EXPECT_TRUE(again == list);
    ASSERT_TRUE(again.Save(path));
    EXPECT_EQ(read(), bytes);

    EXPECT_EQ(again.Font(u"schrift").pointSizeF(), 10.5);
    EXPECT_TRUE(again.Font(u"schrift").bold());
    EXPECT_EQ(again.Picture(u"logo").size(), QSize(40, 20));
    EXPECT_EQ(again.Picture(u"logo").dotsPerMeterX(), 11811) << "its natural size on paper";
}

TEST_F(TemplateFiles, APersonCanReadAndComparePropertiesLineByLine) {
    PropertiesList list;
    list.insert(
        u"", {u"tabelle_top"_s, u"Höhe <oben>"_s, u"Oberkante"_s, PropertyType::Cm, 11.2, u"0.0 cm"_s, {}});
    list.insert(u"", {u"logo"_s, u"Logo"_s, u""_s, PropertyType::Picture, QByteArray(100, 'M'), u""_s, {}});
    ASSERT_TRUE(list.Save(path));
    EXPECT_EQ(QString::fromUtf8(read()), uR"(<?xml version="1.0" encoding="UTF-8"?>
<druckvorlage version="1">
  <eigenschaft name="tabelle_top" typ="cm">
    <bezeichnung>Höhe &lt;oben&gt;</bezeichnung>
    <beschreibung>Oberkante</beschreibung>
    <format>0.0 cm</format>
    <wert>11.2</wert>
  </eigenschaft>
  <eigenschaft name="logo" typ="bild">
    <bezeichnung>Logo</bezeichnung>
    <wert>
TU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1N
TU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTQ==
    </wert>
  </eigenschaft>
</druckvorlage>
)"_s);
}

TEST_F(TemplateFiles, WhatAPersonWroteByHandIsRead) {
    EXPECT_TRUE(loads(file("")));
    EXPECT_TRUE(loads("\xEF\xBB\xBF" + file("<!-- don't <touch> -->\r\n" +
                                            entry("cm", "\n<wert> 4.70 </wert><!-- war 4.2 -->"))));
    EXPECT_TRUE(loads(file(entry("text", "<wert>a &#228; &amp;</wert><format>x</format>"))));
    EXPECT_TRUE(loads(file(entry("bild", "<wert>\t TU1N\r\n TQ== </wert>"))));
}

TEST_F(TemplateFiles, DamageIsRefused) {
    ASSERT_TRUE(oneOfEach().Save(path));
    const QByteArray whole = read();
    for (qsizetype size = 0; size < whole.size() - 1; size += 7)
        EXPECT_FALSE(loads(whole.first(size))) << size;

    const std::pair<const char*, QByteArray> cases[] = {
        {"nothing", ""},
        {"binary", QByteArray::fromHex("d0cf11e0a1b11ae1000000003e0003feff0900")},
        {"other encodings", QByteArray(reinterpret_cast<const char*>(u"<druckvorlage version=\"1\"/>"), 54)},
        {"windows bytes", file(entry("text", "<wert>Gr\xF6\xDF"
                                             "e</wert>"))},
        {"a zero", file(entry("text", QByteArray("<wert>a\0b</wert>", 16)))},
        {"foreign", "<html><body/></html>"},
        {"another version", "<druckvorlage version=\"2\"/>"},
        {"two roots", file("") + "<druckvorlage version=\"1\"/>"},
        {"text between", file("viel Text")},
        {"foreign element", file("<druckvorlage/>")},
        {"no key", file(entry("cm", "<wert>1</wert>", ""))},
        {"no value", file(entry("cm", "<format>0.0 cm</format>"))},
        {"two values", file(entry("cm", "<wert>1</wert><wert>2</wert>"))},
        {"duplicate key", file(entry("cm", "<wert>1</wert>") + entry("cm", "<wert>1</wert>"))},
        {"unknown type", file(entry("farbe", "<wert>rot</wert>"))},
        {"unknown child", file(entry("cm", "<wert>1</wert><einheit>cm</einheit>"))},
        {"element in a value", file(entry("text", "<wert>a<b/>c</wert>"))},
        {"a comma", file(entry("cm", "<wert>4,7</wert>"))},
        {"no number", file(entry("cm", "<wert>nan</wert>"))},
        {"huge number", file(entry("punkt", "<wert>1e300</wert>"))},
        {"half a choice", file(entry("auswahl", "<wert>1.5</wert>"))},
        {"huge choice", file(entry("auswahl", "<wert>99999999999</wert>"))},
        {"english truth", file(entry("wahrheitswert", "<wert>true</wert>"))},
        {"broken base64", file(entry("bild", "<wert>TU1%</wert>"))},
        {"font without attributes", file(entry("schrift", "<wert>Inter</wert>"))},
        {"font of no size",
         file(entry("schrift", "<wert familie=\"Inter\" punkt=\"0\" fett=\"ja\" kursiv=\"ja\" "
                               "unterstrichen=\"ja\"/>"))},
        {"undeclared entity", file(entry("text", "<wert>&lol;</wert>"))},
        {"control character", file(entry("text", "<wert>&#11;</wert>"))},
        {"document type", "<!DOCTYPE druckvorlage [<!ENTITY lol \"lol\">]>" + file("")},
    };
    for (const auto& [name, bytes] : cases)
        EXPECT_FALSE(loads(bytes)) << name;
    PropertiesList list;
    EXPECT_FALSE(list.Load(folder.filePath(u"fehlt.pld"_s)));
    EXPECT_FALSE(list.Load(folder.path()));
}

TEST_F(TemplateFiles, HostileFilesAreRefusedQuickly) {
    QElapsedTimer clock;
    clock.start();
    QByteArray attributes;
    for (int i = 0; i < 600'000; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    EXPECT_FALSE(loads(file("<eigenschaft" + attributes + "/>")));
    EXPECT_FALSE(loads(file(QByteArray(3'000'000, '<'))));
    QByteArray nested;
    for (int i = 0; i < 500'000; ++i)
        nested += "<wert>";
    EXPECT_FALSE(loads(file(entry("text", nested))));
    EXPECT_FALSE(loads(file(QByteArray(17 * 1024 * 1024, ' '))));
    QByteArray many;
    for (int i = 0; i < 50'000; ++i)
        many += entry("cm", "<wert>1</wert>", QByteArray::number(i));
    EXPECT_TRUE(loads(file(many)));
    EXPECT_LT(clock.elapsed(), 30'000);
}

TEST_F(TemplateFiles, AFailedSaveLeavesTheOldFile) {
    ASSERT_TRUE(oneOfEach().Save(path));
    const QByteArray before = read();
    PropertiesList large;
    for (int i = 0; i < 4; ++i)
        large.insert(u"",
                     property(QString::number(i), PropertyType::Picture, QByteArray(4 * 1024 * 1024, 'x')));
    EXPECT_FALSE(large.Save(path)) << "it could not be loaded again";
    EXPECT_EQ(read(), before);
    EXPECT_FALSE(oneOfEach().Save(folder.filePath(u"kein/Ordner.pld"_s)));
    EXPECT_FALSE(oneOfEach().Save(folder.path()));
}

TEST(PropertiesListTest, ValuesAreReadByTypeAndMissingOnesAreEmpty) {
    const PropertiesList list = oneOfEach();
    EXPECT_TRUE(list.Flag(u"sichtbar"));
    EXPECT_EQ(list.Number(u"oben"), 4.7);
    EXPECT_EQ(list.Number(u"papier"), 3.0);
    EXPECT_EQ(list.Choice(u"papier"), 3);
    for (const char16_t* key : {u"fehlt", u"kein_logo"}) {
        EXPECT_FALSE(list.Flag(key));
        EXPECT_EQ(list.Number(key), 0.0);
        EXPECT_EQ(list.Choice(key), 0);
        EXPECT_EQ(list.Text(key), QString());
        EXPECT_EQ(list.Font(key), QFont());
        EXPECT_TRUE(list.Picture(key).isNull());
    }
}

TEST(PropertiesListTest, WhatNoFileCouldHoldIsRaised) {
    PropertiesList list = oneOfEach();
    const auto errorOf = [&](const QString& key, const PropertyValue& value) {
        try {
            list.setValue(key, value);
        } catch (const RuntimeError& error) {
            return error.Number;
        }
        return 0;
    };
    EXPECT_EQ(errorOf(u"fehlt"_s, true), 5);
    EXPECT_EQ(errorOf(u"oben"_s, true), 5);
    EXPECT_EQ(errorOf(u"oben"_s, 3), 5);
    EXPECT_EQ(errorOf(u"oben"_s, std::nan("")), 5);
    EXPECT_EQ(errorOf(u"oben"_s, std::numeric_limits<double>::infinity()), 5);
    EXPECT_EQ(errorOf(u"text"_s, u"Seite\fzwei"_s), 5);
    EXPECT_EQ(errorOf(u"text"_s, QString(QChar(0xD800))), 5);
    QFont pixels(u"Inter"_s);
    pixels.setPixelSize(12);
    EXPECT_EQ(errorOf(u"schrift"_s, pixels), 5);
    EXPECT_EQ(errorOf(u"logo"_s, QByteArray(5'000'000, 'x')), 5);
    EXPECT_TRUE(list == oneOfEach());

    EXPECT_THROW(list.insert(u"", property(u"oben"_s, PropertyType::Cm, 1.0)), RuntimeError);
    list.insert(u"oben", property(u"neu"_s, PropertyType::Cm, 1.0));
    EXPECT_EQ(list.properties().at(2).key, u"neu"_s);
}

TEST(PropertiesListTest, APictureThatIsNoneOrTooLargeIsNull) {
    PropertiesList list = oneOfEach();
    const QByteArray svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)";
    for (const QByteArray& bytes : {QByteArray("kein Bild"), png({40, 20}).first(40), svg}) {
        list.setValue(u"logo", bytes);
        EXPECT_TRUE(list.Picture(u"logo").isNull()) << bytes.toStdString();
    }
    // A few bytes that claim to be a picture of gigabytes.
    QByteArray bomb = QByteArray::fromHex("424d3a0000000000000036000000280000000000000100000001000018");
    bomb[21] = 0x01;
    bomb.append(QByteArray(58 - bomb.size(), '\0'));
    list.setValue(u"logo", bomb);
    EXPECT_TRUE(list.Picture(u"logo").isNull());
}
