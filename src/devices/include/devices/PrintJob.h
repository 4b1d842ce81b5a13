#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// Hands a finished document to a printer.
using PrintSpooler = std::function<void(const QString& printer, const QString& title, const QByteArray& pdf)>;

/// Replaces the way to the printers and gives the one before; an empty function stands for the system's
/// queues and the PDF printer's folder. For tests.
PrintSpooler SetPrintSpooler(PrintSpooler spooler);

/// Prints `text` as the only line of a job on a strip of receipt paper. `pointSize` is in points. Raises 482
/// when the printer does not take the job within a few seconds, 70 or 61 when the PDF printer's file cannot
/// be written. Needs a QGuiApplication.
void PrintLine(const QString& printer, const QString& title, const QString& fontName, double pointSize,
               const QString& text);
