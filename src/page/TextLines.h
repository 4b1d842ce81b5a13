#pragma once

#include "Typeface.h"

#include <page/PageDocument.h>

#include <limits>
#include <vector>

/// A line of text that is ready to be put on a page.
struct TextLine {
    QString text;
    double width = 0; ///< without the blanks at its end
    QList<QGlyphRun> glyphs;
};

enum class Digits {
    AsDrawn,
    OneWidth, ///< amounts align in a column
};

inline constexpr double unlimited = std::numeric_limits<double>::infinity();

/// Joins two words in a line; printed as a blank.
inline constexpr QChar wordJoint(0x00A0);

/// Breaks a text into lines of `width` twips: at its own line breaks, else between words, and within a word
/// that is longer than a line. A line holds at least one character. A tabulator is four blanks; other control
/// characters print nothing. At least one line, be it empty.
[[nodiscard]] std::vector<TextLine> breakLines(const QString& text, const Typeface& face, double width,
                                               Digits digits);
/// Width of the widest words of a text that are joined; 0 without any.
[[nodiscard]] double joinedWidth(const QString& text, const Typeface& face, Digits digits);
