#pragma once

#include "PageFlow.h"

#include <memory>
#include <vector>

struct TableColumn {
    Align align = Align::Left;
    bool bold = false;
    double width = 0; ///< twips
};

/// The columns of a format such as "<25mm|>*1440". Raises 5 for one that is none.
[[nodiscard]] std::vector<TableColumn> ParseTableFormat(const QString& format);

enum class TableLines {
    None,
    Around, ///< around the table and between its rows
    BelowHeader,
};

/// Stands for a "|" that parts no cells; no text has this code.
inline constexpr QChar printedBar(0xFDD0);

/// A row of a table with its texts broken into the lines of their columns. All lines of a row are equally
/// high and stand side by side, so a row can be parted between any two of them.
class TableRow {
  public:
    TableRow(std::vector<TableColumn> columns, const QString& cells, const QFont& font, TableLines style,
             bool isHeader);

    [[nodiscard]] double width() const { return m_width; }
    [[nodiscard]] size_t lineCount() const { return m_lineCount; }
    /// Of `lines` of its lines.
    [[nodiscard]] double height(size_t lines) const;
    [[nodiscard]] double height() const { return height(m_lineCount); }
    /// How many lines fit into a height.
    [[nodiscard]] size_t linesFitting(double height) const;
    /// Puts lines from `first` on at the cursor's height, with `x` as left edge, and goes down behind them.
    void put(PageFlow& flow, double x, size_t first, size_t count) const;

  private:
    struct Column {
        TableColumn format;
        std::shared_ptr<const Typeface> face;
        std::vector<TextLine> lines;
        double textLeft = 0, textRight = 0; ///< from the left edge of the row
    };
    void putLines(PageFlow& flow, double x, double top, double height) const;

    std::vector<Column> m_columns;
    TableLines m_style;
    bool m_isHeader;
    double m_width = 0, m_lineHeight = 0, m_ascent = 0, m_above = 0, m_below = 0;
    size_t m_lineCount = 1;
};
