#include "PageFlow.h"
#include "TableRow.h"

#include <devices/PrintJob.h>
#include <devices/Printers.h>
#include <page/VSPrinter.h>
#include <text/RuntimeError.h>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double mm = PageDocument::twipsPerMm;
constexpr QSizeF a4(210 * mm, 297 * mm), a5(148 * mm, 210 * mm);
constexpr double smallestPaper = 10 * mm, largestPaper = 5000 * mm; // a PDF takes no more
constexpr double widestRoll = 85 * mm;
constexpr double narrowestText = 10 * mm;
constexpr int startMargin = 1134; // 2 cm

enum PaperCode { PrinterOwn = 0, A4 = 9, A5 = 11, FreeSize = 256 };

enum class State { Empty, Open, Finished };

/// The table that AddTable adds to.
struct Table {
    Align align = Align::Left;
    double x = 0; ///< left edge, unless the alignment says otherwise
    std::optional<TableRow> header;
    PageFlow::Mark beforeHeader, behindHeader;
};

/// The size of a picture on paper, as it says itself; pixels are 1/96 inch when it says nothing.
QSizeF naturalSize(const QImage& picture) {
    static const QImage silent(1, 1, QImage::Format_Mono);
    constexpr int least = 100; // dots per metre; below that nobody measured anything
    const auto length = [](int pixels, int dotsPerMetre, int unsaid) {
        const double dotsPerMm =
            dotsPerMetre < least || dotsPerMetre == unsaid ? 96 / 25.4 : dotsPerMetre / 1000.0;
        return pixels / dotsPerMm * mm;
    };
    return {length(picture.width(), picture.dotsPerMeterX(), silent.dotsPerMeterX()),
            length(picture.height(), picture.dotsPerMeterY(), silent.dotsPerMeterY())};
}

/// Dots that no printer can show only cost time.
QImage printable(const QImage& picture, QSizeF size) {
    constexpr double finest = 600 / PageDocument::twipsPerInch;
    const QSize dots = (size * finest).toSize().expandedTo({1, 1});
    if (picture.width() <= dots.width() || picture.height() <= dots.height()) return picture;
    return picture.scaled(dots, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

struct VSPrinter::Impl {
    QString device, docName = u"Dokument"_s;
    int paperCode = PrinterOwn;
    QSizeF freeSize;
    QMargins margins{startMargin, startMargin, startMargin, startMargin};
    QFont font{u"Inter"_s, 10};
    Align align = Align::Left;
    TableLines tableLines = TableLines::None;

    State state = State::Empty;
    bool ownPaper = false; ///< the document is made for the printer's own paper
    PageFlow flow;
    std::optional<Table> table; ///< between StartTable and EndTable

    void require(State wanted) const {
        if (state != wanted) RaiseInvalidCall();
    }

    [[nodiscard]] std::optional<QSizeF> toldPaper() const {
        if (paperCode == A4) return a4;
        if (paperCode == A5) return a5;
        const auto isLength = [](double twips) { return twips >= smallestPaper && twips <= largestPaper; };
        if (paperCode == FreeSize && isLength(freeSize.width()) && isLength(freeSize.height()))
            return freeSize;
        return std::nullopt;
    }

    [[nodiscard]] Sheet sheet() const {
        const std::optional<QSizeF> told = toldPaper();
        Sheet sheet{told ? *told : device.isEmpty() ? a4 : PrinterPaper(device) * mm, margins, false};
        const bool isRoll = told && paperCode == FreeSize && told->width() <= widestRoll;
        if (isRoll && (device.isEmpty() || IsPdfPrinter(device))) {
            sheet.endless = true;
            sheet.size.setHeight(largestPaper);
        }
        return sheet;
    }

    [[nodiscard]] double tableX(const Table& in, double width) const {
        return in.align == Align::Left ? in.x : alignedX(in.align, flow.left(), flow.right(), width);
    }
    [[nodiscard]] Table newTable() const { return {align, flow.x(), {}, {}, {}}; }

    /// A header is repeated when it leaves at least half of the page to the rows.
    [[nodiscard]] bool isRepeated(const std::optional<TableRow>& header) const {
        return header && header->height() <= (flow.bottom() - flow.top()) / 2;
    }
    void nextPage(Table& in) {
        const bool repeats = isRepeated(in.header);
        const PageFlow::Mark here = flow.mark();
        const bool isLonely = repeats && here.page == in.behindHeader.page &&
                              here.items == in.behindHeader.items && here.y == in.behindHeader.y;
        if (isLonely && in.beforeHeader.y <= flow.top()) return; // a fresh page already
        if (isLonely) flow.takeBack(in.beforeHeader);            // it goes with its rows
        flow.newPage();
        if (repeats) in.header->put(flow, tableX(in, in.header->width()), 0, in.header->lineCount());
    }
    void putRow(Table& in, const TableRow& row) {
        const double x = tableX(in, row.width());
        const double header = isRepeated(in.header) ? in.header->height() : 0;
        const bool fitsOnOnePage = row.height() <= flow.bottom() - flow.top() - header;
        if (fitsOnOnePage && !flow.fits(row.height())) nextPage(in);
        for (size_t from = 0; from < row.lineCount();) {
            size_t fitting = row.linesFitting(flow.room());
            if (fitting == 0 && !flow.fits(row.height(1))) {
                nextPage(in);
                fitting = row.linesFitting(flow.room());
            }
            const size_t count = std::min(std::max<size_t>(fitting, 1), row.lineCount() - from);
            row.put(flow, x, from, count);
            from += count;
            if (from < row.lineCount()) nextPage(in);
        }
    }
    void addTo(Table& in, const QString& format, const QString& header, const QString& row) {
        const std::vector<TableColumn> columns = ParseTableFormat(format);
        if (!header.isEmpty()) {
            in.header.reset();
            const TableRow head(columns, header, font, tableLines, true);
            if (!flow.fits(head.height())) flow.newPage();
            in.beforeHeader = flow.mark();
            putRow(in, head);
            in.behindHeader = flow.mark();
            in.header = head;
        }
        if (!row.isEmpty()) putRow(in, TableRow(columns, row, font, tableLines, false));
        flow.setX(flow.left());
    }
};

VSPrinter::VSPrinter()
    : m_impl(std::make_unique<Impl>()) {}
VSPrinter::~VSPrinter() = default;

void VSPrinter::Device(const QString& name) {
    if (!HasPrinter(name))
        throw RuntimeError(482, u"Druckerfehler: Der Drucker „%1“ ist nicht vorhanden."_s.arg(name));
    m_impl->device = name;
    m_impl->paperCode = PrinterOwn;
}

void VSPrinter::PaperSize(int code) {
    if (code == A4 || code == A5 || code == FreeSize) m_impl->paperCode = code;
}
void VSPrinter::PaperWidth(int twips) { m_impl->freeSize.setWidth(twips); }
void VSPrinter::PaperHeight(int twips) { m_impl->freeSize.setHeight(twips); }
void VSPrinter::MarginTop(int twips) { m_impl->margins.setTop(twips); }
void VSPrinter::MarginBottom(int twips) { m_impl->margins.setBottom(twips); }
void VSPrinter::MarginLeft(int twips) { m_impl->margins.setLeft(twips); }
void VSPrinter::MarginRight(int twips) { m_impl->margins.setRight(twips); }
void VSPrinter::DocName(const QString& name) {
    m_impl->docName = name;
    if (m_impl->state != State::Empty) m_impl->flow.setTitle(name);
}

void VSPrinter::StartDoc() {
    KillDoc();
    const Sheet sheet = m_impl->sheet();
    m_impl->ownPaper = !m_impl->toldPaper();
    m_impl->flow.begin(sheet);
    m_impl->flow.setTitle(m_impl->docName);
    m_impl->state = State::Open;
}

void VSPrinter::EndDoc() {
    m_impl->require(State::Open);
    m_impl->table.reset();
    m_impl->state = State::Finished;
}

void VSPrinter::PrintDoc() {
    m_impl->require(State::Finished);
    if (m_impl->device.isEmpty()) throw RuntimeError(482, u"Druckerfehler: Es ist kein Drucker gewählt."_s);
    const PageDocument& document = Document();
    PrintPdf(m_impl->device, m_impl->docName, document.toPdf(),
             m_impl->ownPaper ? QSizeF() : document.pageSize(0));
}

void VSPrinter::KillDoc() {
    m_impl->flow.clear();
    m_impl->table.reset();
    m_impl->state = State::Empty;
}

void VSPrinter::Font(const QFont& font) { m_impl->font = font; }
void VSPrinter::FontName(const QString& family) {
    if (family.trimmed().isEmpty()) return;
    m_impl->font.setFamilies({family.trimmed()});
    m_impl->font.setStyleName({}); // of the font before
}
void VSPrinter::FontSize(double points) {
    constexpr double smallest = 1, largest = 400;
    if (points >= smallest && points <= largest) m_impl->font.setPointSizeF(points);
}
void VSPrinter::FontBold(bool on) { m_impl->font = WithBold(m_impl->font, on); }
void VSPrinter::FontUnderline(bool on) { m_impl->font.setUnderline(on); }
void VSPrinter::TextAlign(int align) {
    if (align == 0) m_impl->align = Align::Left;
    if (align == 1) m_impl->align = Align::Right;
    if (align == 2) m_impl->align = Align::Centre;
}

void VSPrinter::CurrentX(int twips) { m_impl->flow.setX(twips); }
void VSPrinter::CurrentY(int twips) { m_impl->flow.setY(twips); }
int VSPrinter::CurrentY() const { return qRound(m_impl->flow.y()); }

void VSPrinter::Paragraph(const QString& text) {
    m_impl->require(State::Open);
    PageFlow& flow = m_impl->flow;
    const auto face = Typeface::of(m_impl->font);
    const double left = flow.x(), right = flow.right();
    const double width = right - left >= narrowestText ? right - left : unlimited;
    for (const TextLine& line : breakLines(text, *face, width, Digits::AsDrawn)) {
        if (!flow.fits(face->lineHeight())) flow.newPage();
        flow.put(line, *face, {alignedX(m_impl->align, left, right, line.width), flow.y()}, face->ascent());
        flow.advance(face->lineHeight());
    }
    flow.setX(flow.left());
}

void VSPrinter::DrawPicture(const QImage& picture, int x, int y) {
    m_impl->require(State::Open);
    PageFlow& flow = m_impl->flow;
    const QSizeF sheet = flow.sheetSize();
    if (picture.isNull() || x >= sheet.width() || y >= sheet.height()) return;
    QSizeF size = naturalSize(picture);
    const double beyond = x < flow.right() ? flow.right() : sheet.width();
    const double below = y < flow.bottom() ? flow.bottom() : sheet.height();
    const QSizeF room(beyond - x, below - y);
    if (size.width() > room.width() || size.height() > room.height()) size.scale(room, Qt::KeepAspectRatio);
    flow.put(PageDocument::Picture{QRectF(QPointF(x, y), size), printable(picture, size)});
    flow.reach(y + size.height());
}

bool VSPrinter::Bars(const std::vector<Bar>& bars, double width, double height) {
    m_impl->require(State::Open);
    PageFlow& flow = m_impl->flow;
    if (width > flow.right() - flow.x()) return false;
    if (!flow.fits(height)) flow.newPage();
    const double left = alignedX(m_impl->align, flow.x(), flow.right(), width);
    for (const Bar& bar : bars) {
        const double middle = left + bar.begin + bar.width / 2;
        flow.put(PageDocument::Line{QLineF(middle, flow.y(), middle, flow.y() + height), bar.width});
    }
    flow.advance(height);
    flow.setX(flow.left());
    return true;
}

void VSPrinter::StartTable() {
    m_impl->require(State::Open);
    m_impl->table = m_impl->newTable();
}
void VSPrinter::EndTable() { m_impl->table.reset(); }
void VSPrinter::TableBorder(int style) {
    if (style == 0) m_impl->tableLines = TableLines::None;
    if (style == 1) m_impl->tableLines = TableLines::Around;
    if (style == 2) m_impl->tableLines = TableLines::BelowHeader;
}

void VSPrinter::AddTable(const QString& format, const QString& header, const QString& row) {
    m_impl->require(State::Open);
    if (m_impl->table) return m_impl->addTo(*m_impl->table, format, header, row);
    Table table = m_impl->newTable();
    m_impl->addTo(table, format, header, row);
}

void VSPrinter::KeepTogether(const std::function<void()>& put) {
    m_impl->require(State::Open);
    Impl before = *m_impl;
    const int pages = before.flow.document().pageCount();
    put();
    const bool isParted = m_impl->flow.document().pageCount() > pages;
    if (!isParted || before.flow.y() <= before.flow.top()) return;
    Impl parted = std::exchange(*m_impl, std::move(before));
    m_impl->flow.newPage();
    put();
    if (m_impl->flow.document().pageCount() > pages + 1) *m_impl = std::move(parted); // no page holds it
}

QString VSPrinter::CellText(const QString& text) {
    QString cell = text;
    return cell.replace(u'|', printedBar);
}

const PageDocument& VSPrinter::Document() const { return m_impl->flow.document(); }
