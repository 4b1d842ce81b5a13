#include "PrintQueues.h"

#include <devices/PrintJob.h>
#include <devices/Printers.h>
#include <session/Clock.h>
#include <text/DetailedError.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF strip(72,
                       20); // millimetres: the printable width of a receipt, and no more paper than needed

PrintSpooler& replacement() {
    static PrintSpooler spooler;
    return spooler;
}

/// A title as the name of a file on any system, and of one that is shown.
QString fileName(const QString& title) {
    constexpr qsizetype longest = 100;
    QString name = title.simplified().left(longest);
    for (QChar& c : name)
        if (u"/\\:*?\"<>|"_s.contains(c) || c.category() == QChar::Other_Control) c = u'_';
    if (name.startsWith(u'.')) name[0] = u'_';
    return name.isEmpty() ? u"Dokument"_s : name;
}

/// The next free name of this second, so that no document overwrites another.
void writeIntoFolder(const QString& title, const QByteArray& pdf) {
    const QString folder = PdfFolder();
    QDir().mkpath(folder);
    const QString stem = folder + fileName(title) + Now().toString(u" yyyyMMdd-hhmmss"_s);
    for (int number = 1;; ++number) {
        QFile file(number == 1 ? stem + u".pdf"_s : stem + u"-%1.pdf"_s.arg(number));
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (file.exists()) continue;
            throw RuntimeError(70, u"Zugriff verweigert: "_s + file.fileName());
        }
        if (file.write(pdf) == pdf.size() && file.flush()) return;
        file.remove();
        throw RuntimeError(61, u"Datenträger voll: "_s + file.fileName());
    }
}

} // namespace

PrintSpooler SetPrintSpooler(PrintSpooler spooler) {
    return std::exchange(replacement(), std::move(spooler));
}

void PrintPdf(const QString& printer, const QString& title, const QByteArray& pdf, QSizeF paper) {
    if (replacement()) return replacement()(printer, title, pdf, paper);
    if (IsPdfPrinter(printer)) return writeIntoFolder(title, pdf);
    const QString reason = devices::submitDocument(printer, title, pdf, paper);
    if (!reason.isEmpty()) throw DetailedError(482, u"Druckerfehler: "_s + printer, reason);
}

void PrintLine(const QString& printer, const QString& title, const QString& fontName, double pointSize,
               const QString& text) {
    QByteArray pdf;
    QBuffer buffer(&pdf);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(title);
        writer.setPageSize(QPageSize(strip, QPageSize::Millimeter, {}, QPageSize::ExactMatch));
        writer.setPageMargins({});
        QPainter painter;
        if (!buffer.isOpen() && !buffer.open(QIODevice::WriteOnly))
            throw RuntimeError(482, u"Druckerfehler: "_s + printer);
        if (!painter.begin(&writer)) throw RuntimeError(482, u"Druckerfehler: "_s + printer);
        QFont font(fontName);
        font.setPointSizeF(pointSize);
        painter.setFont(font);
        painter.drawText(QPointF(0, painter.fontMetrics().ascent()), text);
    }
    buffer.close();
    PrintPdf(printer, title, pdf);
}
