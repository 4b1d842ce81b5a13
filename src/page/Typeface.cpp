#include "Typeface.h"

#include <page/PageDocument.h>

#include <QCoreApplication>
#include <QTextLayout>

#include <algorithm>

namespace {

using Typefaces = QHash<QString, std::shared_ptr<const Typeface>>;
constexpr qsizetype mostTypefaces = 64; // a document uses a handful; a designer may try out hundreds

Typefaces& typefaces() {
    static Typefaces faces;
    return faces;
}

QFont inTwips(QFont font) {
    constexpr double pointsPerPixel = 0.75; // of a font that is measured in pixels of a 96 dpi screen
    const double points =
        font.pointSizeF() > 0 ? font.pointSizeF() : std::max(font.pixelSize(), 1) * pointsPerPixel;
    font.setPixelSize(std::max(1, qRound(points * PageDocument::twipsPerPoint)));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

bool hasSpacing(const QFont& font) {
    const double letters = font.letterSpacing();
    const bool isNatural =
        letters == 0 || (font.letterSpacingType() == QFont::PercentageSpacing && letters == 100);
    return !isNatural || font.wordSpacing() != 0;
}

} // namespace

QFont WithBold(QFont font, bool bold) {
    if (font.bold() == bold) return font;
    font.setStyleName({});
    font.setBold(bold);
    return font;
}

std::shared_ptr<const Typeface> Typeface::of(const QFont& font) {
    Typefaces& known = typefaces();
    const QString key = font.key();
    if (const auto found = known.constFind(key); found != known.constEnd()) return *found;
    // Fonts must not outlive the application that gave them.
    if (known.isEmpty()) qAddPostRoutine([] { typefaces().clear(); });
    if (known.size() >= mostTypefaces) known.clear();
    return *known.insert(key, std::make_shared<const Typeface>(font));
}

Typeface::Typeface(const QFont& font)
    : m_font(inTwips(font))
    , m_raw(QRawFont::fromFont(m_font))
    , m_shaped(font.capitalization() != QFont::MixedCase || hasSpacing(font)) {
    constexpr int digits = 10;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        m_digitRoom += glyph(digit).advance / digits;
}

double Typeface::lineHeight() const {
    return m_raw.ascent() + m_raw.descent() + std::max(0.0, m_raw.leading());
}

double Typeface::digitRoom(QChar digit) const {
    constexpr double widestGap = 0.095; // of the type size; readers take a tenth for a blank
    return std::min(m_digitRoom, glyph(digit).advance + widestGap * m_font.pixelSize());
}

std::optional<size_t> Typeface::plainIndex(QChar c) {
    const size_t code = c.unicode();
    const bool isText = c.isPrint() && !c.isMark() && c.category() != QChar::Other_Format;
    if (!isText) return std::nullopt;
    if (code < lettersEnd) return code;
    if (code >= punctuation && code < plainEnd) return lettersEnd + code - punctuation;
    return std::nullopt;
}

Typeface::Glyph Typeface::glyph(QChar c) const {
    const auto index = plainIndex(c);
    if (!index) return {};
    auto& known = m_glyphs.at(*index);
    if (!known) {
        const QList<quint32> glyphs = m_raw.glyphIndexesForString(QString(c));
        const QList<QPointF> advances =
            m_raw.advancesForGlyphIndexes(glyphs, QRawFont::UseDesignMetrics | QRawFont::SeparateAdvances);
        known = glyphs.isEmpty() || advances.isEmpty() ? Glyph{} : Glyph{glyphs[0], advances[0].x()};
    }
    return *known;
}

bool Typeface::isPlain(QStringView text) const {
    return !m_shaped &&
           std::all_of(text.begin(), text.end(), [this](QChar c) { return glyph(c).index != 0; });
}

double Typeface::kerning(QChar left, QChar right) const {
    const auto kerns = [](QChar c) { return c.isLetter() || c == u'.' || c == u','; };
    if (!m_font.kerning() || !kerns(left) || !kerns(right)) return 0;
    const quint32 pair = quint32(left.unicode()) << 16 | right.unicode();
    if (const auto found = m_kerning.constFind(pair); found != m_kerning.constEnd()) return *found;
    return *m_kerning.insert(pair, measureKerning(left, right));
}

double Typeface::measureKerning(QChar left, QChar right) const {
    QTextLayout layout(QString(left) + right, m_font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    const QList<quint32> plain = {glyph(left).index, glyph(right).index};
    // A ligature or another form of the letters tells nothing about the plain ones.
    if (runs.size() != 1 || runs[0].glyphIndexes() != plain) return 0;
    const QList<QPointF> at = runs[0].positions();
    return at[1].x() - at[0].x() - glyph(left).advance;
}
