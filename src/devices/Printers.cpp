#include "PrintQueues.h"

#include <devices/Printers.h>
#include <session/CSystem.h>
#include <session/Globals.h>

#include <QDeadlineTimer>
#include <QDir>

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
