#include <page/PageDocument.h>
#include <page/VSPrinter.h>
#include <printing/Layout.h>
#include <session/Globals.h>
#include <templates/PropertiesList.h>
#include <templates/Shipped.h>

#include <QBuffer>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>

// What it takes to lay out a receipt and an invoice and to make them PDF documents, with the templates of the
// demo shop. The twin paints the same lines of text at the same places with bare painter calls on a PDF
// writer.

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 15;

QByteArray made(const std::function<void(VSPrinter&)>& render) {
    VSPrinter printer;
    render(printer);
    return printer.Document().toPdf();
}

/// The lines of text of a document, page by page.
struct Lines {
    struct Line {
        QPointF baseline; ///< twips
        QString text;
    };
    QSizeF page; ///< millimetres
    QFont font;
    std::vector<std::vector<Line>> pages;
};

Lines linesOf(const std::function<void(VSPrinter&)>& render) {
    VSPrinter printer;
    render(printer);
    const PageDocument& document = printer.Document();
    Lines lines{document.pageSize(0), QFont(u"Inter"_s, 9), {}};
    for (const PageDocument::Page& page : document.pages) {
        auto& target = lines.pages.emplace_back();
        for (const PageDocument::Item& item : page.items)
            if (const auto* text = std::get_if<PageDocument::Text>(&item))
                target.push_back({text->baseline, text->text});
    }
    return lines;
}

QByteArray painted(const Lines& lines) {
    QByteArray pdf;
    QBuffer buffer(&pdf);
    if (!buffer.open(QIODevice::WriteOnly)) std::abort();
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(lines.page, QPageSize::Millimeter, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    QPainter painter(&writer);
    painter.setFont(lines.font);
    const double scale = writer.resolution() / PageDocument::twipsPerInch;
    for (std::size_t page = 0; page < lines.pages.size(); ++page) {
        if (page > 0) writer.newPage();
        for (const Lines::Line& line : lines.pages[page])
            painter.drawText(line.baseline * scale, line.text);
    }
    painter.end();
    return pdf;
}

double milliseconds(const std::function<QByteArray()>& work) {
    const auto start = std::chrono::steady_clock::now();
    if (work().isEmpty()) std::abort();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

bool figure(const std::string& name, double measured, double bound) {
    const bool met = measured <= bound;
    std::printf("%s %.2f %.2f %s\n", name.c_str(), measured, bound, met ? "ok" : "MISSED");
    return met;
}

bool measure(const std::string& name, double boundMs, const std::function<void(VSPrinter&)>& render) {
    const Lines lines = linesOf(render);
    std::vector<double> ours, bare;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(milliseconds([&] { return made(render); }));
        bare.push_back(milliseconds([&] { return painted(lines); }));
    }
    std::fprintf(stderr, "# %s: %.2f ms, bare painter %.2f ms, %zu pages\n", name.c_str(), median(ours),
                 median(bare), lines.pages.size());
    const bool fast = figure(name + "_ms", median(ours), boundMs);
    return figure(name + "_ratio", median(ours) / median(bare), 3) && fast;
}

/// A document of this many lines, some with a second line of text.
void fill(BelegDaten& beleg, int count) {
    beleg.Nummer = 1284;
    beleg.Datum = QDate(2026, 11, 23);
    beleg.Firma = {{u"Naturkost Haselbusch"_s, u"Am Holunderweg 4"_s, u"01235 Erlental"_s, {}, {}},
                   u"12/345/67890"_s};
    for (int i = 0; i < count; ++i) {
        BelegZeile& zeile = beleg.Zeilen.emplace_back();
        zeile.ArtikelName = u"Haferflocken Großblatt %1"_s.arg(i);
        zeile.Buchungs_Menge = 1 + i % 4;
        zeile.Menge = 500;
        zeile.Einheit = u"g"_s;
        zeile.VKPreis_Brutto = Currency::fromDouble(1.39);
        zeile.VKPreis_Netto = 1.2991;
        zeile.SteuerSatz = 7;
        if (i % 5 == 0) zeile.PreisInfo = u"Aktionspreis"_s;
    }
    beleg.Betrag_Gesamt = Currency::fromDouble(1.39 * count);
    beleg.Steuern = {{7, 1.2991 * count, 0.0909 * count}};
}

PropertiesList shipped(const QString& name) {
    PropertiesList list;
    if (!list.Load(shippedTemplateFor(name))) {
        std::fprintf(stderr, "no template %s\n", qPrintable(name));
        std::exit(2);
    }
    return list;
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication app(argc, argv);
    gFormatPreis = u"###0.00"_s;
    gWaehrungsSymbol = u"€"_s;
    gSteuerText = u"MwSt"_s;
    const PropertiesList bonVorlage = shipped(u"Kassenbon.pld"_s);
    const PropertiesList rechnungVorlage = shipped(u"Rechnung.pld"_s);
    BonDaten bon;
    fill(bon, 20);
    FormularDaten rechnung;
    fill(rechnung, 500);
    const bool receipt =
        measure("receipt_20_lines", 15, [&](VSPrinter& printer) { RenderBon(printer, bonVorlage, bon); });
    const bool invoice = measure("invoice_500_lines", 300, [&](VSPrinter& printer) {
        RenderFormular(printer, rechnungVorlage, rechnung, u"Rechnung"_s);
    });
    return receipt && invoice ? 0 : 1;
}
