#include "TableRow.h"

#include <text/RuntimeError.h>

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double gap = 1 * PageDocument::twipsPerMm;       // between the texts of two columns
constexpr double padding = 0.5 * PageDocument::twipsPerMm; // between a text and the line above or below it
constexpr double lineWidth = 0.5 * PageDocument::twipsPerPoint;
constexpr double smallest = 0.5; // of its size, to which a text shrinks
constexpr qsizetype mostColumns = 100;
constexpr double widestColumn = 5000 * PageDocument::twipsPerMm;

TableColumn parseColumn(QStringView text) {
    static const QRegularExpression pattern(
        u"^\\s*([<>^*]*)\\s*([0-9]{1,9}(?:[.,][0-9]{0,9})?)\\s*(mm)?\\s*$"_s);
    const QRegularExpressionMatch match = pattern.match(text.toString());
    if (!match.hasMatch()) RaiseInvalidCall();
    TableColumn column;
    for (const QChar sign : match.captured(1)) {
        if (sign == u'*')
            column.bold = true;
        else
            column.align = sign == u'>' ? Align::Right : sign == u'^' ? Align::Centre : Align::Left;
    }
    column.width = match.captured(2).replace(u',', u'.').toDouble();
    if (!match.captured(3).isEmpty()) column.width *= PageDocument::twipsPerMm;
    if (column.width > widestColumn) RaiseInvalidCall();
    return column;
}

/// The typeface of a cell: smaller than `font` where joined words would not fit into its column otherwise.
std::shared_ptr<const Typeface> fittingFace(const QFont& font, const QString& text, double width) {
    auto face = Typeface::of(font);
    const double joined = joinedWidth(text, *face, Digits::OneWidth);
    if (joined <= width || font.pointSizeF() <= 0) return face;
    constexpr double steps = 20; // of sizes, since each is kept
    QFont smaller = font;
    smaller.setPointSizeF(font.pointSizeF() * std::max(smallest, std::floor(width / joined * steps) / steps));
    return Typeface::of(smaller);
}

} // namespace

std::vector<TableColumn> ParseTableFormat(const QString& format) {
    std::vector<TableColumn> columns;
    const QList<QStringView> parts = QStringView(format).split(u'|');
    if (parts.size() > mostColumns) RaiseInvalidCall();
    for (const QStringView part : parts)
        columns.push_back(parseColumn(part));
    return columns;
}

TableRow::TableRow(std::vector<TableColumn> columns, const QString& cells, const QFont& font,
                   TableLines style, bool isHeader)
    : m_style(style)
    , m_isHeader(isHeader) {
    const QStringList texts = cells.split(u'|');
    const QFont boldFont = WithBold(font, true);
    for (size_t i = 0; i < columns.size(); ++i) {
        const TableColumn& format = columns[i];
        if (format.width <= 0) continue;
        Column column{format, {}, {}, 0, 0};
        const double room = std::min(gap, format.width / 4);
        column.textLeft = m_width + (style == TableLines::Around ? room : 0);
        m_width += format.width;
        const bool isLast = std::all_of(columns.begin() + qsizetype(i) + 1, columns.end(),
                                        [](const TableColumn& c) { return c.width <= 0; });
        column.textRight = m_width - (style == TableLines::Around || !isLast ? room : 0);
        QString text = texts.value(qsizetype(i));
        text.replace(printedBar, u'|');
        const double width = column.textRight - column.textLeft;
        column.face = fittingFace(format.bold ? boldFont : font, text, width);
        column.lines = breakLines(text, *column.face, width, Digits::OneWidth);
        m_lineCount = std::max(m_lineCount, column.lines.size());
        m_lineHeight = std::max(m_lineHeight, column.face->lineHeight());
        m_ascent = std::max(m_ascent, column.face->ascent());
        m_columns.push_back(std::move(column));
    }
    if (style == TableLines::Around) m_above = m_below = padding;
    if (style == TableLines::BelowHeader && isHeader) m_below = 2 * padding;
}

double TableRow::height(size_t lines) const { return m_above + double(lines) * m_lineHeight + m_below; }

size_t TableRow::linesFitting(double height) const {
    if (m_lineHeight <= 0) return m_lineCount; // a row without a column
    const double lines = (height - m_above - m_below) / m_lineHeight + 1e-6;
    return lines < 1 ? 0 : std::min(m_lineCount, static_cast<size_t>(lines));
}

void TableRow::put(PageFlow& flow, double x, size_t first, size_t count) const {
    const double top = flow.y();
    for (const Column& column : m_columns) {
        const size_t end = std::min(first + count, column.lines.size());
        for (size_t i = first; i < end; ++i) {
            const TextLine& line = column.lines[i];
            const double y = top + m_above + double(i - first) * m_lineHeight;
            const double at = alignedX(column.format.align, column.textLeft, column.textRight, line.width);
            flow.put(line, *column.face, {x + at, y}, m_ascent);
        }
    }
    putLines(flow, x, top, height(count));
    flow.advance(height(count));
}

void TableRow::putLines(PageFlow& flow, double x, double top, double height) const {
    const auto line = [&](double x1, double y1, double x2, double y2) {
        flow.put(PageDocument::Line{QLineF(x + x1, top + y1, x + x2, top + y2), lineWidth});
    };
    if (m_style == TableLines::Around) {
        line(0, 0, m_width, 0);
        line(0, height, m_width, height);
        line(0, 0, 0, height);
        line(m_width, 0, m_width, height);
    }
    if (m_style == TableLines::BelowHeader && m_isHeader)
        line(0, height - padding, m_width, height - padding);
}
