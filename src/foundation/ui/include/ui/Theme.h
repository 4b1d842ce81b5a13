#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QSize>
#include <QString>

class QWidget;

/// The look of the whole program: one palette and one style sheet, made from the four colours of the colour
/// set in force (gColorBack1 to gColorBack4). Forms ask the theme and name no colour, typeface or size of
/// their own.
///
///     Theme::Apply();                                   // once after the colours were loaded
///     painter.setPen(Theme::Current().muted);
///
/// A label takes one of the sizes and tones by its dynamic property "role": "small", "large", "total",
/// "muted", "title", "warning", "alarm" (a bar in the colour of warnings); they can be combined with blanks
/// ("large muted").
struct Theme {
    // Surfaces
    QColor page;   ///< behind the panels
    QColor panel;  ///< a panel
    QColor title;  ///< title bars, keys that are held down
    QColor field;  ///< lists, entry boxes, keys
    QColor header; ///< head of a list
    QColor selection;
    QColor accent; ///< the keys that move the sale on, the focus
    // What is written on them; each keeps a contrast of at least 4.5 : 1
    QColor text;        ///< on page, panel, field and selection
    QColor muted;       ///< secondary text there
    QColor titleText;   ///< on title
    QColor accentText;  ///< on accent
    QColor warning;     ///< text of a warning on panel and field; the face of an alarm
    QColor warningText; ///< on warning
    // Lines
    QColor border, shadow;

    // Sizes in pixels; three for text, one more for the total that is read from two metres
    int small = 13, normal = 16, large = 26, total = 56;
    int keyHeight = 56; ///< no key is lower
    int gap = 8;        ///< between panels
    int radius = 7;     ///< of keys and panels

    /// Colours as 0xBBGGRR; `scale` enlarges all sizes (1 for a screen of 768 lines). Values outside 24 bits
    /// are cut.
    [[nodiscard]] static Theme FromColors(int back, int fore, int panel, int title, double scale = 1);
    [[nodiscard]] static const Theme& Current();
    /// Makes the theme of the colours in force (the delivered ones as long as none are loaded) and of a
    /// screen of this size, or the primary one, the current one and gives it to the application: font,
    /// palette, style sheet.
    static void Apply(QSize screen = {});

    enum class Size { Small, Normal, Large, Total };
    [[nodiscard]] QFont font(Size size = Size::Normal, int weight = QFont::Medium) const;
    [[nodiscard]] QPalette palette() const;
    [[nodiscard]] QString styleSheet() const;

    /// Contrast of two colours, 1 to 21.
    [[nodiscard]] static double Contrast(const QColor& a, const QColor& b);
    /// `wanted`, moved towards black or white as far as needed for the contrast `ratio` on `surface`.
    [[nodiscard]] static QColor Readable(const QColor& wanted, const QColor& surface, double ratio = 4.5);
    /// `a` with the share `part` (0 to 1) of `b`.
    [[nodiscard]] static QColor Mix(const QColor& a, const QColor& b, double part);
};

/// Gives a widget another role while it is on the screen.
void SetRole(QWidget& widget, const QString& role);
