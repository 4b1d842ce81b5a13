#pragma once

#include <support/Print.h>

#include <QByteArray>
#include <QImage>
#include <QRectF>

#include <vector>

// What another program reads in a PDF. A tool that fails is a failed test.

/// The text of all pages without white space at its ends; options are those of pdftotext.
[[nodiscard]] QString PdfText(const QByteArray& pdf, const QStringList& options = {});

struct PdfWord {
    QString text;
    int page = 0; ///< counts from 0
    QRectF area;  ///< millimetres from the upper left corner
};
struct PdfPages {
    std::vector<QSizeF> sizes; ///< millimetres
    std::vector<PdfWord> words;
    /// The only word of this text; a word of nothing and a failed test when there is none, or another.
    [[nodiscard]] PdfWord word(const QString& text) const;
};
[[nodiscard]] PdfPages ReadPdf(const QByteArray& pdf);

/// A page as a printer with so many dots per inch would print it.
[[nodiscard]] QImage PdfImage(const QByteArray& pdf, int page, int dpi);
/// The lines of the tools `pdffonts` and `pdfinfo`.
[[nodiscard]] QStringList PdfFonts(const QByteArray& pdf);
[[nodiscard]] QStringList PdfInfo(const QByteArray& pdf);

/// How far two pages are apart in grey levels (0 to 255), seen from where 4 x 4 dots are one.
struct ImageDifference {
    double mean = 0;
    int most = 0;
};
[[nodiscard]] ImageDifference CompareImages(const QImage& a, const QImage& b);
