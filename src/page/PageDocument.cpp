#include <page/PageDocument.h>

#include <QBuffer>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void paintItem(QPainter& painter, const PageDocument::Text& text) {
    for (const QGlyphRun& run : text.glyphs)
        painter.drawGlyphRun(text.baseline, run);
}

void paintItem(QPainter& painter, const PageDocument::Line& line) {
    painter.setPen(QPen(Qt::black, line.width, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(line.line);
}

void paintItem(QPainter& painter, const PageDocument::Picture& picture) {
    painter.drawImage(picture.area, picture.image);
}

QPageLayout layoutOf(QSizeF millimetres) {
    QPageLayout layout(QPageSize(millimetres, QPageSize::Millimeter, {}, QPageSize::ExactMatch),
                       QPageLayout::Portrait, {});
    layout.setMode(QPageLayout::FullPageMode);
    return layout;
}

} // namespace

QSizeF PageDocument::pageSize(int page) const {
    if (page < 0 || page >= pageCount()) return {};
    return pages[static_cast<size_t>(page)].size / twipsPerMm;
}

void PageDocument::paint(QPainter& painter, int page) const {
    if (page < 0 || page >= pageCount()) return;
    painter.save();
    painter.setPen(Qt::black);
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform | QPainter::LosslessImageRendering);
    for (const Item& item : pages[static_cast<size_t>(page)].items)
        std::visit([&](const auto& one) { paintItem(painter, one); }, item);
    painter.restore();
}

QString PageDocument::plainText(int page) const {
    if (page < 0 || page >= pageCount()) return {};
    std::vector<const Text*> texts;
    for (const Item& item : pages[static_cast<size_t>(page)].items)
        if (const auto* text = std::get_if<Text>(&item)) texts.push_back(text);
    const auto line = [](const Text* text) { return qRound64(text->baseline.y()); };
    std::stable_sort(texts.begin(), texts.end(), [&](const Text* a, const Text* b) {
        if (line(a) != line(b)) return line(a) < line(b);
        return a->baseline.x() < b->baseline.x();
    });
    QString all;
    const Text* before = nullptr;
    for (const Text* text : texts) {
        if (before) all += line(before) == line(text) ? u'\t' : u'\n';
        all += text->text;
        before = text;
    }
    return all;
}

QByteArray PageDocument::toPdf() const {
    if (pages.empty()) return {};
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(title);
        writer.setCreator(u"Merivane"_s);
        writer.setResolution(static_cast<int>(twipsPerInch)); // one unit is one twip
        writer.setPageLayout(layoutOf(pageSize(0)));
        QPainter painter(&writer);
        for (int page = 0; page < pageCount(); ++page) {
            if (page > 0) {
                writer.setPageLayout(layoutOf(pageSize(page)));
                writer.newPage();
            }
            paint(painter, page);
        }
    }
    return pdf;
}
