#pragma once

#include <session/Startup.h>

#include <QSizeF>

/// The printer that writes documents into the folder of konfig.ini [DRUCKER] PdfOrdner.
inline constexpr auto pdfPrinterName = u"PDF-Drucker";

/// The print queues of the system, and the PDF printer when a folder for it is told. The system is asked at
/// most every few seconds, since asking may take a good part of one. A print system that does not answer has
/// no queues.
class SystemPrinters : public PrinterList {
  public:
    SystemPrinters();
    ~SystemPrinters() override;
    [[nodiscard]] QStringList names() const override;
    /// The system's default queue; without one the first of names().
    [[nodiscard]] QString defaultName() const override;

  private:
    struct Cache;
    std::unique_ptr<Cache> m_cache;
};

/// The folder of the PDF printer, ends in a separator; "" when there is none.
[[nodiscard]] QString PdfFolder();

/// Puts a list in the place of the system's printers and gives the one before; nullptr stands for the
/// system's. The list must live as long as it is in force.
const PrinterList* SetPrinterList(const PrinterList* printers);
/// Whether there is a printer of this name.
[[nodiscard]] bool HasPrinter(const QString& name);
/// The paper that a printer takes when a job tells none, in millimetres: what its queue says, else A4.
[[nodiscard]] QSizeF PrinterPaper(const QString& name);
/// Whether this is the printer that writes into PdfFolder().
[[nodiscard]] bool IsPdfPrinter(const QString& name);
