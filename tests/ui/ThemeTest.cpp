#include <ui/Sound.h>
#include <ui/Theme.h>

#include <gtest/gtest.h>

namespace {

struct ColourSet {
    const char* name;
    int back, fore, panel, title;
};
// The delivered set and sets an owner may mix: dark, harsh, all alike.
const ColourSet sets[] = {{"delivered", 13813442, 16777215, 16118256, 9533303},
                          {"black on white", 0xFFFFFF, 0x000000, 0xFFFFFF, 0xFFFFFF},
                          {"night", 0x202020, 0xC0C0C0, 0x303030, 0x101010},
                          {"all grey", 0x808080, 0x808080, 0x808080, 0x808080},
                          {"dark page, light panels", 0x000000, 0x00FFFF, 0xF0F0F0, 0x0000FF},
                          {"light page, dark panels", 0xFFFFFF, 0x202020, 0x101010, 0x00FF00},
                          {"all black", 0, 0, 0, 0}};

TEST(ThemeTest, KeepsTextReadableInEveryColourSet) {
    for (const ColourSet& set : sets) {
        SCOPED_TRACE(set.name);
        const Theme t = Theme::FromColors(set.back, set.fore, set.panel, set.title);
        for (const QColor& surface : {t.page, t.panel, t.field, t.header, t.selection}) {
            EXPECT_GE(Theme::Contrast(t.text, surface), 4.5) << surface.name().toStdString();
            EXPECT_GE(Theme::Contrast(t.muted, surface), 4.5) << surface.name().toStdString();
        }
        EXPECT_GE(Theme::Contrast(t.titleText, t.title), 4.5);
        EXPECT_GE(Theme::Contrast(t.accentText, t.accent), 4.5);
        EXPECT_GE(Theme::Contrast(t.warningText, t.warning), 4.5);
        EXPECT_GE(Theme::Contrast(t.warning, t.panel), 4.5);
        EXPECT_GE(Theme::Contrast(t.warning, t.field), 4.5);
    }
}

TEST(ThemeTest, TakesColoursAsBlueGreenRedAndKeepsTheirHue) {
    const Theme t = Theme::FromColors(13813442, 16777215, 16118256, 9533303);
    EXPECT_EQ(QColor(0xC2, 0xC6, 0xD2), t.page);
    EXPECT_EQ(QColor(0xF0, 0xF1, 0xF5), t.panel);
    EXPECT_EQ(QColor(Qt::white), t.titleText);
    EXPECT_NEAR(QColor(0x77, 0x77, 0x91).hslHue(), t.title.hslHue(), 6);
    EXPECT_DOUBLE_EQ(21.0, Theme::Contrast(Qt::black, Qt::white));
}

TEST(ThemeTest, LeavesNoPlaceholderInTheStyleSheet) {
    const QString css = Theme::FromColors(13813442, 16777215, 16118256, 9533303).styleSheet();
    EXPECT_FALSE(css.contains(u'%')) << css.mid(css.indexOf(u'%'), 40).toStdString();
}

TEST(SoundTest, TonesHaveTheirLengthAndPitch) {
    const QByteArray samples = ToneSamples({{200, 300}, {500, 500}, {0, -5}});
    ASSERT_EQ((300 + 500) * toneSampleRate / 1000 * 2, samples.size());
    const auto at = [&](qsizetype i) {
        return static_cast<qint16>(static_cast<quint8>(samples[2 * i]) |
                                   static_cast<quint8>(samples[2 * i + 1]) << 8);
    };
    int crossings = 0; // of 0 upwards in the 500 Hz part
    for (qsizetype i = 300 * toneSampleRate / 1000 + 1; i < samples.size() / 2; ++i)
        crossings += at(i - 1) < 0 && at(i) >= 0 ? 1 : 0;
    EXPECT_NEAR(250, crossings, 2);
    EXPECT_EQ(0, at(0));
}

} // namespace
