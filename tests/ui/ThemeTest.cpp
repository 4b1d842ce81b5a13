#include <session/Globals.h>
#include <ui/Sound.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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

/// Blocks are all ink: what the eye gets of a text when nothing softens its edges.
const QString ink = u"\u2588\u2588\u2588\u2588\u2588\u2588"_s;

/// The strongest contrast inside of what is painted, edges left out.
double contrastOf(QWidget& widget) {
    QDialog panel; // what texts without a ground of their own stand on
    panel.resize(240, 84);
    widget.setParent(&panel);
    widget.setGeometry(10, 10, 220, 64);
    panel.show();
    const QImage image = panel.grab(widget.geometry().adjusted(8, 8, -8, -8)).toImage();
    widget.setParent(nullptr);
    QHash<QRgb, int> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++colours[image.pixel(x, y)];
    const auto most = std::max_element(colours.cbegin(), colours.cend());
    double best = 1;
    for (auto colour = colours.cbegin(); colour != colours.cend(); ++colour)
        best = std::max(best, Theme::Contrast(QColor(colour.key()), QColor(most.key())));
    return best;
}

TEST(ThemeTest, DisabledAndPlaceholderTextIsAsReadable) {
    const auto back1 = gColorBack1, back2 = gColorBack2, back3 = gColorBack3, back4 = gColorBack4;
    for (const ColourSet& set : sets) {
        SCOPED_TRACE(set.name);
        gColorBack1 = set.back;
        gColorBack2 = set.fore;
        gColorBack3 = set.panel;
        gColorBack4 = set.title;
        Theme::Apply();
        const auto expectReadable = [](QWidget& widget, const char* what) {
            EXPECT_GE(contrastOf(widget), 4.5) << what;
        };
        QLineEdit empty;
        empty.setPlaceholderText(ink);
        expectReadable(empty, "placeholder");
        empty.setEnabled(false);
        expectReadable(empty, "placeholder of a disabled box");
        QPlainTextEdit text;
        text.setPlaceholderText(ink);
        expectReadable(text, "placeholder of a box of lines");
        QLineEdit line(ink);
        QLabel label(ink);
        QCheckBox check(ink);
        QPushButton button(ink);
        QComboBox combo;
        combo.addItem(ink);
        TouchKey key(ink), accent(ink), checked(ink);
        accent.setAccent(true);
        checked.setCheckable(true);
        checked.setChecked(true);
        for (QWidget* widget : std::initializer_list<QWidget*>{&line, &label, &check, &button, &combo, &key,
                                                               &accent, &checked}) {
            widget->setEnabled(false);
            expectReadable(*widget, widget->metaObject()->className());
        }
    }
    gColorBack1 = back1;
    gColorBack2 = back2;
    gColorBack3 = back3;
    gColorBack4 = back4;
    Theme::Apply();
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
