#pragma once

#include <QFont>
#include <QHash>
#include <QRawFont>

#include <array>
#include <memory>
#include <optional>

/// A font dialog names the style as well as the weight, and the name wins unless it goes.
[[nodiscard]] QFont WithBold(QFont font, bool bold);

/// One font at one size, measured in twips and unhinted, so that what is laid out with it fits every device.
///
/// The characters of Latin, Greek and Cyrillic text are looked up one by one: each is one glyph, and the PDF
/// can tell its text from them. Shaping would put other glyphs in place of some ("12:30", "(A)" and "fi" in
/// many fonts), whose text is lost in the PDF. Kerning is measured once for each pair. All else is left to
/// Qt's text layout.
class Typeface {
  public:
    struct Glyph {
        quint32 index = 0; ///< 0 when the font has none
        double advance = 0;
    };

    /// Kept for the life of the application. Needs a QGuiApplication.
    static std::shared_ptr<const Typeface> of(const QFont& font);
    explicit Typeface(const QFont& font);

    /// Whether all of `text` can be looked up.
    [[nodiscard]] bool isPlain(QStringView text) const;
    /// A character of plain text.
    [[nodiscard]] Glyph glyph(QChar c) const;
    /// What the second of two letters moves by, mostly to the left.
    [[nodiscard]] double kerning(QChar left, QChar right) const;
    /// The room of a digit in a column of figures: the same for all, so that figures stand below each other,
    /// but for a narrow digit no more than leaves its number one word to those who read the PDF.
    [[nodiscard]] double digitRoom(QChar digit) const;

    [[nodiscard]] const QRawFont& raw() const { return m_raw; }
    /// The font with its size in twips.
    [[nodiscard]] const QFont& font() const { return m_font; }
    [[nodiscard]] double ascent() const { return m_raw.ascent(); }
    [[nodiscard]] double lineHeight() const;

  private:
    [[nodiscard]] double measureKerning(QChar left, QChar right) const;

    QFont m_font;
    QRawFont m_raw;
    bool m_shaped; ///< the font wants what only the text layout can do
    double m_digitRoom = 0;
    static constexpr size_t lettersEnd = 0x530, punctuation = 0x2000, plainEnd = 0x2200;
    mutable std::array<std::optional<Glyph>, lettersEnd + plainEnd - punctuation> m_glyphs;
    mutable QHash<quint32, double> m_kerning;
    static std::optional<size_t> plainIndex(QChar c);
};
