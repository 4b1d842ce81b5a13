#pragma once

#include <support/Pdf.h>
#include <support/TempShop.h>
#include <support/TestPrinters.h>
#include <templates/PropertiesList.h>
#include <templates/TemplateKind.h>

#include <functional>

/// The templates that these tests lay out with: every key of the kind, with plain values that they rely on.
[[nodiscard]] PropertiesList testVorlage(TemplateKind kind);

/// What other programs make of a PDF document.
[[nodiscard]] QString pdfText(const QByteArray& pdf); ///< lines as they stand, pages parted by \f
[[nodiscard]] QImage pdfPage(const QByteArray& pdf, int page = 1); ///< grey, 50 dots per inch
/// The lines of a page from top to bottom, blanks and empty lines taken out of the way.
[[nodiscard]] QStringList pdfLines(const QByteArray& pdf);

/// A shop with templates and printers, and documents booked in it.
class PaperShop {
  public:
    PaperShop();

    /// The template as a file of the shop, changed by `change`.
    void vorlage(const QString& fileName, TemplateKind kind,
                 const std::function<void(PropertiesList&)>& change = {}) const;
    /// A receipt without lines; `more` overrides.
    int receipt(double total, const TempShop::Fields& more = {});
    /// A line of document `id` in `table`, one piece at 7 % tax; `more` overrides.
    void line(int id, const QString& name, double gross, const TempShop::Fields& more = {},
              const QString& table = QStringLiteral("RechnungsDetail"),
              const QString& key = QStringLiteral("RechnungID"));
    /// Gasthof Linde in Köln.
    int customer(const TempShop::Fields& more = {});

    TempShop shop;
    TestPrinters printers{{QStringLiteral("Bondrucker"), QStringLiteral("Laser")}};
};
