#pragma once

#include <devices/PrintJob.h>
#include <devices/Printers.h>
#include <page/PageDocument.h>
#include <page/VSPrinter.h>
#include <support/Pdf.h>
#include <text/RuntimeError.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// A page control on paper that a test chooses, with a till roll printer and an office printer that keep what
/// they get.
class Page : public testing::Test, public PrinterList {
  protected:
    struct Job {
        QString printer, title;
        QByteArray pdf;
        QSizeF paper;
    };

    Page() {
        SetPrinterList(this);
        SetPrintSpooler(
            [this](const QString& device, const QString& title, const QByteArray& pdf, QSizeF paper) {
                jobs.push_back({device, title, pdf, paper});
            });
        printer.Font(QFont(u"Inter"_s, 10));
        margins(20);
    }
    ~Page() override {
        SetPrinterList(nullptr);
        SetPrintSpooler({});
    }
    [[nodiscard]] QStringList names() const override {
        return {u"Bondrucker"_s, u"Büro"_s, u"PDF-Drucker"_s};
    }
    [[nodiscard]] QString defaultName() const override { return u"Büro"_s; }

    static int twips(double mm) { return qRound(mm * PageDocument::twipsPerMm); }
    void margins(double mm) {
        printer.MarginTop(twips(mm));
        printer.MarginBottom(twips(mm));
        printer.MarginLeft(twips(mm));
        printer.MarginRight(twips(mm));
    }
    void freePaper(double width, double height) {
        printer.PaperSize(256);
        printer.PaperWidth(twips(width));
        printer.PaperHeight(twips(height));
    }
    [[nodiscard]] const PageDocument& document() const { return printer.Document(); }
    [[nodiscard]] PdfPages pdf() const { return ReadPdf(document().toPdf()); }
    /// The texts of a page, one a line and cell.
    [[nodiscard]] QStringList lines(int page = 0) const { return document().plainText(page).split(u'\n'); }

    template <class F>
    static int raised(F&& f) {
        try {
            f();
        } catch (const RuntimeError& error) {
            return error.Number;
        }
        return 0;
    }

    VSPrinter printer;
    std::vector<Job> jobs;
};
