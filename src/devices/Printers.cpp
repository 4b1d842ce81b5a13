#include "PrintQueues.h"

#include <devices/Printers.h>
#include <session/CSystem.h>
#include <session/Globals.h>

#include <QDeadlineTimer>
#include <QDir>

#include <utility>

using namespace Qt::StringLiterals;

QString PdfFolder() {
    if (!gSystem) return {};
    const QString told = gSystem->ReadProfileString(u"DRUCKER"_s, u"PdfOrdner"_s, KonfigIni()).trimmed();
    if (told.isEmpty() || told.endsWith(u'/') || told.endsWith(QDir::separator())) return told;
    return told + QDir::separator();
}

struct SystemPrinters::Cache {
    const devices::PrintQueues& queues() {
        if (fresh.hasExpired()) {
            last = devices::printQueues();
            fresh.setRemainingTime(5000);
        }
        return last;
    }
    QDeadlineTimer fresh{0};
    devices::PrintQueues last;
};

SystemPrinters::SystemPrinters()
    : m_cache(std::make_unique<Cache>()) {}
SystemPrinters::~SystemPrinters() = default;

QStringList SystemPrinters::names() const {
    QStringList names = m_cache->queues().names;
    if (!PdfFolder().isEmpty()) names << QString::fromUtf16(pdfPrinterName);
    return names;
}

QString SystemPrinters::defaultName() const {
    const QString name = m_cache->queues().defaultName;
    return name.isEmpty() ? names().value(0) : name;
}

namespace {

const PrinterList*& replacement() {
    static const PrinterList* list = nullptr;
    return list;
}

QStringList knownPrinters() {
    if (replacement()) return replacement()->names();
    static const SystemPrinters system;
    return system.names();
}

} // namespace

const PrinterList* SetPrinterList(const PrinterList* printers) {
    return std::exchange(replacement(), printers);
}

bool HasPrinter(const QString& name) {
    // The PDF printer is ours; asking the print system about it would only cost time.
    if (!replacement() && IsPdfPrinter(name)) return !PdfFolder().isEmpty();
    return knownPrinters().contains(name);
}

QSizeF PrinterPaper(const QString& name) {
    constexpr QSizeF a4(210, 297);
    if (replacement() || IsPdfPrinter(name)) return a4;
    const QSizeF paper = devices::queuePaper(name);
    return paper.isEmpty() ? a4 : paper;
}

bool IsPdfPrinter(const QString& name) { return name == QString::fromUtf16(pdfPrinterName); }
