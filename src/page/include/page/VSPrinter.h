#pragma once

#include <QFont>
#include <QImage>
#include <QString>

#include <memory>

class PageDocument;

/// The page control: paragraphs, pictures and small tables are put on pages one behind the other, then the
/// finished document goes to a printer. Positions, widths and margins are twips (1/1440 inch) on the sheet.
///
///     VSPrinter printer;
///     printer.Device(gBonDrucker);
///     printer.PaperSize(256); printer.PaperWidth(4512); printer.PaperHeight(14400);
///     printer.DocName(u"Kassenbon"_s);
///     printer.StartDoc();
///     printer.Paragraph(u"Vielen Dank"_s);
///     printer.AddTable(u"<40mm|>20mm"_s, {}, u"Summe|12,30"_s);
///     printer.EndDoc();
///     printer.PrintDoc();
///
/// What is set before StartDoc holds for the whole document; fonts, alignment and position may change at any
/// time.
class VSPrinter {
  public:
    VSPrinter();
    ~VSPrinter();
    VSPrinter(const VSPrinter&) = delete;
    VSPrinter& operator=(const VSPrinter&) = delete;

    /// The printer that PrintDoc hands to. Raises 482 when there is no printer of this name.
    void Device(const QString& name);
    /// 9 A4, 11 A5, 256 free size by PaperWidth and PaperHeight; any other leaves the paper as it is.
    void PaperSize(int code);
    void PaperWidth(int twips);
    void PaperHeight(int twips);
    void MarginTop(int twips);
    void MarginBottom(int twips);
    void MarginLeft(int twips);
    void MarginRight(int twips);
    void DocName(const QString& name);

    /// Begins a document on an empty first page. What an unfinished one held is gone.
    void StartDoc();
    void EndDoc();
    /// Hands the finished document to the printer. Raises 482, 70 or 61 as <devices/PrintJob.h> tells.
    void PrintDoc();
    /// Gives the document up; nothing is printed.
    void KillDoc();

    void Font(const QFont& font);
    void FontName(const QString& family);
    void FontSize(double points);
    void FontBold(bool on);
    void FontUnderline(bool on);
    /// 0 left, 1 right, 2 centred, between the margins; any other value leaves it as it is. Holds for
    /// paragraphs and for where a table stands; the cells of a table follow its format.
    void TextAlign(int align);

    void CurrentX(int twips);
    void CurrentY(int twips);
    [[nodiscard]] int CurrentY() const;

    /// Prints a text, wrapped between CurrentX and the right margin, and goes to the line below it and back
    /// to the left margin. Line breaks in the text are kept; an empty text is an empty line.
    void Paragraph(const QString& text);
    /// The picture in its natural size (its resolution, 96 dpi when it tells none), top left at the point.
    void DrawPicture(const QImage& picture, int x, int y);

    /// What AddTable adds between these two is one table: its header is repeated on every page it reaches.
    void StartTable();
    void EndTable();
    /// 0 no lines (the start value), 1 a line below the header and around the rows.
    void TableBorder(int style);
    /// A header and a row, each left out when empty. `format` has a column for each "|": an alignment sign
    /// ("<" left, ">" right, "^" centred, "*" bold, more than one of them), a width and its unit "mm" (twips
    /// without one). Cells of the texts are separated by "|", too, and wrap within their column. A column of
    /// width 0 is left out with its cell. Raises 5 for a format that is none.
    void AddTable(const QString& format, const QString& header, const QString& row);
    /// A text from outside as the content of one cell: a "|" in it is printed and parts no cells.
    [[nodiscard]] static QString CellText(const QString& text);

    /// What has been put on the pages so far; after PrintDoc too.
    [[nodiscard]] const PageDocument& Document() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
