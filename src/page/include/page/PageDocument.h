#pragma once

#include <QGlyphRun>
#include <QImage>
#include <QLineF>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <variant>
#include <vector>

class QPainter;

/// Finished pages. Each is a display list: glyphs that have been chosen and placed, lines and pictures. No
/// device has a say in it any more, so every painter gives the same page.
///
///     const PageDocument& document = printer.Document();
///     painter.scale(pixelsPerTwip, pixelsPerTwip);
///     document.paint(painter, 0);
///     file.write(document.toPdf());
///
/// Pages count from 0. Positions are twips from the upper left corner of the sheet.
class PageDocument {
  public:
    static constexpr double twipsPerInch = 1440, twipsPerMm = twipsPerInch / 25.4, twipsPerPoint = 20;

    /// One line of text, or the part of it that stands in one cell.
    struct Text {
        QPointF baseline; ///< where it begins
        QString text;
        QList<QGlyphRun> glyphs; ///< placed from the baseline on
    };
    struct Line {
        QLineF line;
        double width = 0;
    };
    struct Picture {
        QRectF area;
        QImage image;
    };
    using Item = std::variant<Text, Line, Picture>;
    struct Page {
        QSizeF size; ///< twips
        std::vector<Item> items;
    };

    QString title; ///< of the PDF
    std::vector<Page> pages;

    [[nodiscard]] int pageCount() const { return static_cast<int>(pages.size()); }
    /// In millimetres; empty for a page that does not exist.
    [[nodiscard]] QSizeF pageSize(int page) const;
    /// Paints in twips: scale and move the painter first. Leaves the sheet itself, its white, to the caller.
    /// Nothing for a page that does not exist.
    void paint(QPainter& painter, int page) const;
    /// The lines of a page from top to bottom; what stands on one line is parted by tabulators.
    [[nodiscard]] QString plainText(int page) const;
    /// All pages with their fonts; empty without a page.
    [[nodiscard]] QByteArray toPdf() const;
};
