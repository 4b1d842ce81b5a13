#include "PageFlow.h"

#include <algorithm>

namespace {

constexpr double centimetre = 10 * PageDocument::twipsPerMm;

void normalise(double& first, double& second, double length) {
    first = std::max(first, 0.0);
    second = std::max(second, 0.0);
    if (length - first - second < centimetre) first = second = 0;
}

QMarginsF normalised(QMarginsF margins, QSizeF size) {
    double left = margins.left(), right = margins.right(), top = margins.top(), bottom = margins.bottom();
    normalise(left, right, size.width());
    normalise(top, bottom, size.height());
    return {left, top, right, bottom};
}

} // namespace

double alignedX(Align align, double left, double right, double width) {
    const double spare = std::max(0.0, right - left - width);
    return left + (align == Align::Left ? 0 : align == Align::Right ? spare : spare / 2);
}

void PageFlow::begin(const Sheet& sheet) {
    clear();
    m_sheet = sheet;
    m_sheet.margins = normalised(sheet.margins, sheet.size);
    newPage();
    m_x = left();
}

void PageFlow::clear() { m_document.pages.clear(); }

void PageFlow::newPage() {
    m_document.pages.push_back({m_sheet.size, {}});
    m_y = top();
    m_lowest = 0;
    reach(m_y);
}

void PageFlow::setX(double x) { m_x = std::clamp(x, 0.0, m_sheet.size.width()); }
void PageFlow::setY(double y) { m_y = std::clamp(y, 0.0, m_sheet.size.height()); }

bool PageFlow::fits(double height) const {
    constexpr double tolerance = 0.01; // sums of heights are not exact
    return m_y <= top() || height <= room() + tolerance;
}

void PageFlow::advance(double height) {
    m_y += height;
    reach(m_y);
}

void PageFlow::reach(double y) {
    m_lowest = std::max(m_lowest, y);
    if (!m_sheet.endless) return;
    const double length = std::clamp(m_lowest + m_sheet.margins.bottom(), centimetre, m_sheet.size.height());
    page().size.setHeight(length);
}

void PageFlow::put(PageDocument::Item item) { page().items.push_back(std::move(item)); }

void PageFlow::put(const TextLine& line, const Typeface& face, QPointF at, double ascent) {
    if (line.glyphs.isEmpty()) return;
    const QPointF baseline = at + QPointF(0, ascent);
    const QRawFont& raw = face.raw();
    const auto stroke = [&](double offset) {
        const QPointF from = baseline + QPointF(0, offset);
        put(PageDocument::Line{QLineF(from, from + QPointF(line.width, 0)), raw.lineThickness()});
    };
    if (face.font().underline()) stroke(raw.underlinePosition());
    if (face.font().strikeOut()) stroke(-raw.xHeight() / 2);
    put(PageDocument::Text{baseline, line.text, line.glyphs});
}

PageFlow::Mark PageFlow::mark() const {
    return {m_document.pages.size(), m_document.pages.back().items.size(), m_y};
}

void PageFlow::takeBack(const Mark& mark) {
    if (mark.page != m_document.pages.size()) return;
    page().items.resize(mark.items);
    m_y = mark.y;
}
