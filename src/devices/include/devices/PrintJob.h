#pragma once

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <functional>

/// Hands a finished document to a printer. `paper` is what it is made for, in millimetres; an empty size
/// leaves the printer its own.
using PrintSpooler =
    std::function<void(const QString& printer, const QString& title, const QByteArray& pdf, QSizeF paper)>;

/// Replaces the way to the printers and gives the one before; an empty function stands for the system's
/// queues and the PDF printer's folder. For tests.
PrintSpooler SetPrintSpooler(PrintSpooler spooler);

/// Prints a PDF document; `title` names the job, and the file of the PDF printer. Raises 482 when the printer
/// does not take the job within a few seconds, 70 or 61 when the PDF printer's file cannot be written.
void PrintPdf(const QString& printer, const QString& title, const QByteArray& pdf, QSizeF paper = {});

/// Prints `text` as the only line of a job on a strip of receipt paper. `pointSize` is in points. Raises as
/// PrintPdf. Needs a QGuiApplication.
void PrintLine(const QString& printer, const QString& title, const QString& fontName, double pointSize,
               const QString& text);
