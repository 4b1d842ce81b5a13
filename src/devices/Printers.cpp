#include "PrintQueues.h"

#include <devices/Printers.h>
#include <session/CSystem.h>
#include <session/Globals.h>

#include <QDir>

using namespace Qt::StringLiterals;

QString PdfFolder() {
    if (!gSystem) return {};
    const QString told = gSystem->ReadProfileString(u"DRUCKER"_s, u"PdfOrdner"_s, KonfigIni()).trimmed();
    if (told.isEmpty() || told.endsWith(u'/') || told.endsWith(QDir::separator())) return told;
    return told + QDir::separator();
}

QStringList SystemPrinters::names() const {
    QStringList names = devices::printQueues().names;
    if (!PdfFolder().isEmpty()) names << QString::fromUtf16(pdfPrinterName);
    return names;
}

QString SystemPrinters::defaultName() const {
    const devices::PrintQueues queues = devices::printQueues();
    if (!queues.defaultName.isEmpty()) return queues.defaultName;
    if (!queues.names.isEmpty()) return queues.names.first();
    return PdfFolder().isEmpty() ? QString() : QString::fromUtf16(pdfPrinterName);
}
