#pragma once

#include "TextLines.h"

#include <page/PageDocument.h>

#include <QMarginsF>

enum class Align { Left, Right, Centre };

/// The sheet that a document is laid out on, in twips.
struct Sheet {
    QSizeF size{0, 0};
    QMarginsF margins;
    bool endless = false; ///< a roll: its length follows what stands on it
};

/// The cursor that walks down the pages and begins new ones.
class PageFlow {
  public:
    /// Begins a document on an empty first page. Margins below nothing count as none, and so does a pair that
    /// leaves less than a centimetre between them.
    void begin(const Sheet& sheet);
    void clear();

    [[nodiscard]] const PageDocument& document() const { return m_document; }
    void setTitle(const QString& title) { m_document.title = title; }

    // What the margins leave
    [[nodiscard]] double left() const { return m_sheet.margins.left(); }
    [[nodiscard]] double right() const { return m_sheet.size.width() - m_sheet.margins.right(); }
    [[nodiscard]] double top() const { return m_sheet.margins.top(); }
    [[nodiscard]] double bottom() const { return m_sheet.size.height() - m_sheet.margins.bottom(); }
    [[nodiscard]] QSizeF sheetSize() const { return m_sheet.size; }

    // The cursor never leaves the sheet.
    [[nodiscard]] double x() const { return m_x; }
    [[nodiscard]] double y() const { return m_y; }
    void setX(double x);
    void setY(double y);

    [[nodiscard]] double room() const { return bottom() - m_y; }
    /// Whether something of this height can stand at the cursor. What is higher than a page stands at its
    /// top.
    [[nodiscard]] bool fits(double height) const;
    void newPage();
    /// Goes down behind what has been put at the cursor.
    void advance(double height);

    void put(PageDocument::Item item);
    /// `at` is the upper left corner of a line whose baseline lies `ascent` below it.
    void put(const TextLine& line, const Typeface& face, QPointF at, double ascent);
    /// The sheet is used down to here, which is how long a roll gets.
    void reach(double y);

    /// A place to go back to, as long as no page began behind it.
    struct Mark {
        size_t page = 0, items = 0;
        double y = 0;
    };
    [[nodiscard]] Mark mark() const;
    void takeBack(const Mark& mark);

  private:
    [[nodiscard]] PageDocument::Page& page() { return m_document.pages.back(); }
    PageDocument m_document;
    Sheet m_sheet;
    double m_x = 0, m_y = 0;
    double m_lowest = 0; ///< of the page
};

/// Where something of `width` begins between two edges; never left of the first.
[[nodiscard]] double alignedX(Align align, double left, double right, double width);
