#pragma once

#include <printing/BelegDaten.h>

/// The name cell of a document's line with the additions that settings and template ask for. Words that
/// belong together are joined as VSPrinter::joint does.
namespace layout {

[[nodiscard]] QString BonText(const BelegZeile& zeile, bool printLangText);
[[nodiscard]] QString FormularText(const BelegZeile& zeile, bool printLangText);

} // namespace layout
