#pragma once

#include <page/VSPrinter.h>

#include <QString>

#include <vector>

namespace layout {

/// A text as the bars of Code 128, with ten modules of light at both ends.
struct Barcode {
    std::vector<VSPrinter::Bar> bars; ///< in modules
    int modules = 0;                  ///< of the whole, light included
};
/// Raises 5 for a text that Code 128 cannot hold.
[[nodiscard]] Barcode Code128(const QString& text);

/// Puts the bars with the text beneath, in the middle between the margins, in the width that scanners like
/// best or, where that does not fit, in the least that they read. False, and nothing is put, where not even
/// that does.
bool PutBarcode(VSPrinter& printer, const QString& text);

} // namespace layout
