#include "TextLines.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double tolerance = 0.01; // twips; sums of advances are not exact

/// What stands between two line breaks of the text.
QStringList paragraphsOf(const QString& text) {
    QStringList all(QString{});
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') continue;
        if (c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f' || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            all << QString();
        else if (c == u'\t')
            all.last() += u"    "_s;
        else if (c.category() != QChar::Other_Control)
            all.last() += c;
    }
    return all;
}

qsizetype trailingBlanks(QStringView text) {
    qsizetype count = 0;
    const auto isBlank = [](QChar c) { return c == u' ' || c == wordJoint; };
    while (count < text.size() && isBlank(text[text.size() - 1 - count]))
        ++count;
    return count;
}

QString withBlanks(QString text) { return text.replace(wordJoint, u' '); }

/// Text whose every character is one glyph.
class PlainParagraph {
  public:
    PlainParagraph(const QString& text, const Typeface& face, Digits digits)
        : m_text(text)
        , m_face(face) {
        const auto count = static_cast<size_t>(text.size());
        m_glyphs.reserve(text.size());
        m_pen.reserve(count + 1);
        m_glyphAt.reserve(count);
        double x = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            const QChar c = text[i];
            const Typeface::Glyph glyph = face.glyph(c == wordJoint ? QChar(u' ') : c);
            const bool inColumn = digits == Digits::OneWidth && c >= u'0' && c <= u'9';
            const double room = inColumn ? face.digitRoom(c) : glyph.advance;
            if (i > 0) x += face.kerning(text[i - 1], c);
            m_glyphs << glyph.index;
            m_pen.push_back(x);
            m_glyphAt.push_back(x + (room - glyph.advance) / 2);
            x += room;
        }
        m_pen.push_back(x);
    }

    void breakInto(std::vector<TextLine>& lines, double width) const {
        const qsizetype end = m_text.size();
        qsizetype from = 0;
        if (fits(from, end, width)) {
            lines.push_back(line(from, end));
            return;
        }
        QTextBoundaryFinder finder(QTextBoundaryFinder::Line, m_text);
        while (from < end) {
            const qsizetype to = lineEnd(finder, from, width);
            lines.push_back(line(from, to));
            from = to;
        }
    }

  private:
    [[nodiscard]] double pen(qsizetype i) const { return m_pen[static_cast<size_t>(i)]; }
    /// Where a line ends without the blanks that vanish at its edge.
    [[nodiscard]] qsizetype trimmedEnd(qsizetype from, qsizetype to) const {
        return to - trailingBlanks(QStringView(m_text).mid(from, to - from));
    }
    [[nodiscard]] bool fits(qsizetype from, qsizetype to, double width) const {
        return pen(trimmedEnd(from, to)) - pen(from) <= width + tolerance;
    }
    [[nodiscard]] qsizetype lineEnd(QTextBoundaryFinder& finder, qsizetype from, double width) const {
        finder.setPosition(from);
        qsizetype best = from;
        for (qsizetype next = finder.toNextBoundary(); next > from && fits(from, next, width);
             next = finder.toNextBoundary())
            best = next;
        if (best > from) return best;
        const auto begin = m_pen.begin() + from;
        const auto over = std::upper_bound(begin, m_pen.end(), pen(from) + width + tolerance);
        return std::clamp(qsizetype(over - m_pen.begin()) - 1, from + 1, m_text.size());
    }
    [[nodiscard]] TextLine line(qsizetype from, qsizetype to) const {
        to = trimmedEnd(from, to);
        TextLine made{withBlanks(m_text.mid(from, to - from)), pen(to) - pen(from), {}};
        if (to == from) return made;
        QList<QPointF> positions;
        positions.reserve(to - from);
        for (qsizetype i = from; i < to; ++i)
            positions << QPointF(m_glyphAt[static_cast<size_t>(i)] - pen(from), 0);
        QGlyphRun run;
        run.setRawFont(m_face.raw());
        run.setGlyphIndexes(m_glyphs.mid(from, to - from));
        run.setPositions(positions);
        made.glyphs << run;
        return made;
    }

    const QString& m_text;
    const Typeface& m_face;
    QList<quint32> m_glyphs;
    std::vector<double> m_pen;     ///< before each character, and behind the last
    std::vector<double> m_glyphAt; ///< where each glyph is drawn
};

/// Other scripts, signs that only another font has, fonts with spaced letters.
void breakShaped(const QString& text, const Typeface& face, double width, std::vector<TextLine>& lines) {
    constexpr double widest = 1e6;
    QTextLayout layout(text, face.font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(std::clamp(width, 1.0, widest));
    layout.endLayout();
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const QPointF origin(line.naturalTextRect().left(), line.y() + line.ascent());
        QString part = text.mid(line.textStart(), line.textLength());
        part.truncate(part.size() - trailingBlanks(part));
        TextLine made{withBlanks(part), line.naturalTextWidth(), {}};
        for (QGlyphRun run : line.glyphRuns()) {
            QList<QPointF> positions = run.positions();
            for (QPointF& at : positions)
                at -= origin;
            run.setPositions(positions);
            run.setUnderline(false); // lines are drawn along the whole text, not by run
            run.setStrikeOut(false);
            run.setOverline(false);
            made.glyphs << run;
        }
        lines.push_back(std::move(made));
    }
}

} // namespace

double joinedWidth(const QString& text, const Typeface& face, Digits digits) {
    double widest = 0;
    for (const QString& paragraph : paragraphsOf(text))
        for (const QString& word : paragraph.split(u' '))
            if (word.contains(wordJoint))
                for (const TextLine& line : breakLines(word, face, unlimited, digits))
                    widest = std::max(widest, line.width);
    return widest;
}

std::vector<TextLine> breakLines(const QString& text, const Typeface& face, double width, Digits digits) {
    std::vector<TextLine> lines;
    for (const QString& paragraph : paragraphsOf(text)) {
        if (paragraph.isEmpty())
            lines.emplace_back();
        else if (face.isPlain(paragraph))
            PlainParagraph(paragraph, face, digits).breakInto(lines, width);
        else
            breakShaped(paragraph, face, width, lines);
    }
    return lines;
}
