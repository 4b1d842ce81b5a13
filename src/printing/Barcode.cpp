#include "Barcode.h"

#include <page/PageDocument.h>
#include <text/RuntimeError.h>

#include <memory>
#include <zint.h>

using namespace Qt::StringLiterals;

namespace layout {

namespace {

constexpr int quiet = 10; ///< modules of light at both ends
/// Modules are whole dots of a receipt printer (8 a millimetre), so that all of them come out alike.
constexpr double dot = PageDocument::twipsPerMm / 8;
constexpr int dotsOfModule[]{3, 2};
constexpr double height = 12 * PageDocument::twipsPerMm;

} // namespace

Barcode Code128(const QString& text) {
    const std::unique_ptr<zint_symbol, decltype(&ZBarcode_Delete)> symbol(ZBarcode_Create(),
                                                                          &ZBarcode_Delete);
    symbol->symbology = BARCODE_CODE128;
    symbol->show_hrt = 0;
    const QByteArray bytes = text.toLatin1();
    if (ZBarcode_Encode_and_Buffer_Vector(symbol.get(),
                                          reinterpret_cast<const unsigned char*>(bytes.constData()),
                                          int(bytes.size()), 0) >= ZINT_ERROR)
        throw RuntimeError(5, u"Kein Barcode für \"%1\": "_s.arg(text) + QString::fromUtf8(symbol->errtxt));
    const double module = double(symbol->vector->width) / symbol->width;
    Barcode code;
    code.modules = symbol->width + 2 * quiet;
    for (const auto* bar = symbol->vector->rectangles; bar != nullptr; bar = bar->next)
        code.bars.push_back({quiet + double(bar->x) / module, double(bar->width) / module});
    return code;
}

bool PutBarcode(VSPrinter& printer, const QString& text) {
    const Barcode code = Code128(text);
    for (const int dots : dotsOfModule) {
        const double module = dots * dot;
        std::vector<VSPrinter::Bar> bars = code.bars;
        for (VSPrinter::Bar& bar : bars)
            bar = {bar.begin * module, bar.width * module};
        bool fits = false;
        printer.KeepTogether([&] {
            printer.TextAlign(2);
            fits = printer.Bars(bars, code.modules * module, height);
            if (fits) printer.Paragraph(text);
            printer.TextAlign(0);
        });
        if (fits) return true;
    }
    return false;
}

} // namespace layout
