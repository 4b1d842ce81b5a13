#pragma once

#include <printing/BelegDaten.h>

#include <QStringView>

#include <initializer_list>

class PropertiesList;
class Value;
class VSPrinter;

/// What the documents share: paper, fonts, header, info block, tables and the texts of amounts.
namespace layout {

/// A position or margin of the template in twips.
[[nodiscard]] int Position(const PropertiesList& vorlage, QStringView key);
/// A column width of the template in millimetres, not below 0.
[[nodiscard]] double Width(const PropertiesList& vorlage, QStringView key);

/// Paper and margins of the template, then an empty document.
void StartDocument(VSPrinter& printer, const PropertiesList& vorlage, const QString& docName);
/// The page font of receipts, vouchers and reports.
void PageFont(VSPrinter& printer, const PropertiesList& vorlage);
/// Bold on those documents; a printer's own font is never made bold.
void Bold(VSPrinter& printer, const PropertiesList& vorlage, bool on);
/// By a choice of the template: 1 left, 2 right, 3 centred, others leave it as it is.
void Align(VSPrinter& printer, int choice);
void Logo(VSPrinter& printer, const PropertiesList& vorlage);
/// A "&" is written twice in the settings.
[[nodiscard]] QString FirstHeaderLine(const FirmaDaten& firma);
/// Logo and header lines of receipts and vouchers, and the place where their info block begins.
void BonHeader(VSPrinter& printer, const PropertiesList& vorlage, const FirmaDaten& firma);

/// The rows of the info block. The rows that the template hides are left out.
class InfoBlock {
  public:
    InfoBlock(VSPrinter& printer, const PropertiesList& vorlage, const BelegKopf& kopf);
    void number();
    void clerk();
    void date();
    void taxNumber();
    /// A row that no key of its own hides.
    void row(const QString& label, const QString& value);

  private:
    VSPrinter& m_printer;
    const PropertiesList& m_vorlage;
    const BelegKopf& m_kopf;
    QString m_format;
};

struct Column {
    char16_t align;     ///< '<' left, '>' right
    double millimetres; ///< at 0 or below the column is left out
};
[[nodiscard]] QString Columns(std::initializer_list<Column> columns);
/// A row of a table; the texts may hold anything.
[[nodiscard]] QString Cells(std::initializer_list<QString> cells);
/// One row that is a table of its own.
void Row(VSPrinter& printer, const QString& format, std::initializer_list<QString> cells);

/// The format of totals.
[[nodiscard]] QString TotalFormat();
/// With the currency symbol, which no line parts from it.
[[nodiscard]] QString Amount(const Value& value, const QString& format);
[[nodiscard]] QString Rate(double percent);    ///< "19,0"
[[nodiscard]] QString Percent(double percent); ///< "19,0 %"
/// A closing text with its macros replaced.
[[nodiscard]] QString ClosingText(const QString& text, QDate day, Currency amount);

} // namespace layout
