#pragma once

#include <QFont>
#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

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
/// Device, paper and margins hold from the next StartDoc on; fonts, alignment and position may change at any
/// time. Text, tables, pictures and EndDoc outside of StartDoc and EndDoc raise 5. Numbers out of bounds
/// never do any harm: each has an answer that is told below. Needs a QGuiApplication.
class VSPrinter {
  public:
    VSPrinter();
    ~VSPrinter();
    VSPrinter(const VSPrinter&) = delete;
    VSPrinter& operator=(const VSPrinter&) = delete;

    /// The printer that PrintDoc hands to, with the paper that it has. Raises 482 when there is no printer of
    /// this name.
    void Device(const QString& name);
    /// 9 A4, 11 A5, 256 free size by PaperWidth and PaperHeight; any other leaves the paper as it is. A free
    /// size below 1 cm or beyond 5 m is none, and the printer's paper is taken. Free paper up to 85 mm wide
    /// is a roll: on the PDF printer, and without a printer, it is one page as long as its content.
    void PaperSize(int code);
    void PaperWidth(int twips);
    void PaperHeight(int twips);
    /// 2 cm at the start. Less than nothing counts as nothing, and so do two opposite margins that leave less
    /// than 1 cm.
    void MarginTop(int twips);
    void MarginBottom(int twips);
    void MarginLeft(int twips);
    void MarginRight(int twips);
    /// The name of the job, and the title of the document.
    void DocName(const QString& name);

    /// Begins a document on an empty first page. What an unfinished one held is gone.
    void StartDoc();
    void EndDoc();
    /// Hands the finished document to the printer, as often as it is called. Raises 5 without a finished
    /// document, 482, 70 or 61 as <devices/PrintJob.h> tells.
    void PrintDoc();
    /// Gives the document up; nothing is printed.
    void KillDoc();

    void Font(const QFont& font);
    void FontName(const QString& family); ///< "" leaves it as it is
    void FontSize(double points);         ///< 1 to 400; any other leaves it as it is
    void FontBold(bool on);
    void FontUnderline(bool on);
    /// 0 left, 1 right, 2 centred, between the margins; any other value leaves it as it is. Holds for
    /// paragraphs and for where a table stands; the cells of a table follow its format.
    void TextAlign(int align);

    /// Where the next text or table begins; brought to the edge of the sheet when it lies beyond. What does
    /// not fit below CurrentY goes to the next page.
    void CurrentX(int twips);
    void CurrentY(int twips);
    [[nodiscard]] int CurrentY() const;

    /// Joins the words beside it, so that no line ends between them; printed as a blank. What is joined is
    /// never broken in a cell: where its column is too narrow it is written smaller, down to half its size.
    static constexpr QChar joint{0x00A0};

    /// Prints a text, wrapped between CurrentX and the right margin, and goes to the line below it and back
    /// to the left margin. Line breaks in the text are kept; an empty text is an empty line. A word that is
    /// longer than a line is broken. Where less than 1 cm is left, lines run on beyond the margin instead.
    void Paragraph(const QString& text);
    /// The picture in its natural size (its resolution, 96 dpi when it tells none), top left at the point;
    /// made smaller when it would cross the right or lower margin, or the edge when it begins beyond. The
    /// cursor stays.
    void DrawPicture(const QImage& picture, int x, int y);

    /// A dark bar of a barcode, in twips from the left end of the whole.
    struct Bar {
        double begin = 0, width = 0;
    };
    /// The bars of a barcode side by side, `width` wide in all and `height` high, at the cursor and aligned
    /// as a line of text is; goes to below them and back to the left margin. Their proportions are never
    /// changed: where the room between the margins is too narrow, nothing is put and the answer is false.
    bool Bars(const std::vector<Bar>& bars, double width, double height);

    /// What AddTable adds between these two is one table: its last header is repeated on every page that it
    /// reaches, unless it takes more than half of one. Outside, each AddTable is a table.
    void StartTable();
    void EndTable();
    /// 0 no lines (the start value), 1 lines around header and rows, 2 a line below the header; any other
    /// value leaves it as it is.
    void TableBorder(int style);
    /// A header and a row, each left out when empty. `format` has a column for each "|": an alignment sign
    /// ("<" left, ">" right, "^" centred, "*" bold, more than one of them), a width and its unit "mm" (twips
    /// without one; "." or "," for decimals). Cells of the texts are separated by "|", too, and wrap within
    /// their column; missing ones are empty, and those beyond the last column do not print. A column of
    /// width 0 is left out with its cell. All but the last column keep 1 mm at their right side free. A row
    /// that does not fit on the page goes to the next one as a whole, or in parts when no page holds it.
    /// A table that is wider than the page is drawn as it is. Raises 5 for a format that is none.
    void AddTable(const QString& format, const QString& header, const QString& row);
    /// What `put` puts stands on one page: where it would cross the end of this one and a page can hold it,
    /// it begins on a new one. `put` may be called twice and must do the same each time. Not within a table.
    void KeepTogether(const std::function<void()>& put);
    /// A text from outside as the content of one cell: a "|" in it is printed and parts no cells.
    [[nodiscard]] static QString CellText(const QString& text);

    /// What has been put on the pages so far; after PrintDoc too.
    [[nodiscard]] const PageDocument& Document() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
