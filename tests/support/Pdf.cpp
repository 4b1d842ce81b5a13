#include <support/Pdf.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray run(const QString& program, const QStringList& arguments, const QByteArray& input = {}) {
    QProcess tool;
    tool.start(program, arguments);
    tool.write(input);
    tool.closeWriteChannel();
    EXPECT_TRUE(tool.waitForFinished()) << program.toStdString();
    EXPECT_EQ(tool.exitCode(), 0) << program.toStdString() << ": " << tool.readAllStandardError().constData();
    return tool.readAllStandardOutput();
}

/// Some of the tools do not read from a pipe.
QStringList linesAbout(const QString& program, const QByteArray& pdf) {
    QTemporaryFile file;
    EXPECT_TRUE(file.open());
    file.write(pdf);
    file.flush();
    return QString::fromUtf8(run(program, {file.fileName()})).trimmed().split(u'\n');
}

QString unescaped(QString text) {
    return text.replace(u"&lt;"_s, u"<"_s)
        .replace(u"&gt;"_s, u">"_s)
        .replace(u"&quot;"_s, u"\""_s)
        .replace(u"&amp;"_s, u"&"_s);
}

} // namespace

QString PdfText(const QByteArray& pdf, const QStringList& options) {
    return QString::fromUtf8(run(u"pdftotext"_s, options + QStringList{u"-"_s, u"-"_s}, pdf)).trimmed();
}

PdfPages ReadPdf(const QByteArray& pdf) {
    constexpr double mmPerPoint = 25.4 / 72;
    static const QRegularExpression part(
        u"<page width=\"([\\d.]+)\" height=\"([\\d.]+)\"|"
        u"<word xMin=\"([-\\d.]+)\" yMin=\"([-\\d.]+)\" xMax=\"([-\\d.]+)\" yMax=\"([-\\d.]+)\">(.*)</word>"_s);
    PdfPages pages;
    const QString all = PdfText(pdf, {u"-bbox"_s});
    for (const QRegularExpressionMatch& match : part.globalMatch(all)) {
        const auto mm = [&](int group) { return match.captured(group).toDouble() * mmPerPoint; };
        if (!match.captured(1).isEmpty())
            pages.sizes.emplace_back(mm(1), mm(2));
        else
            pages.words.push_back({unescaped(match.captured(7)), static_cast<int>(pages.sizes.size()) - 1,
                                   QRectF(QPointF(mm(3), mm(4)), QPointF(mm(5), mm(6)))});
    }
    return pages;
}

PdfWord PdfPages::word(const QString& text) const {
    const PdfWord* found = nullptr;
    for (const PdfWord& one : words) {
        if (one.text != text) continue;
        EXPECT_FALSE(found) << "more than once: " << text.toStdString();
        found = &one;
    }
    EXPECT_TRUE(found) << "not in the document: " << text.toStdString();
    return found ? *found : PdfWord{};
}

QImage PdfImage(const QByteArray& pdf, int page, int dpi) {
    const QString number = QString::number(page + 1);
    QImage image;
    EXPECT_TRUE(image.loadFromData(
        run(u"pdftoppm"_s,
            {u"-f"_s, number, u"-l"_s, number, u"-r"_s, QString::number(dpi), u"-png"_s, u"-"_s}, pdf)));
    return image;
}

QStringList PdfFonts(const QByteArray& pdf) { return linesAbout(u"pdffonts"_s, pdf).mid(2); }
QStringList PdfInfo(const QByteArray& pdf) { return linesAbout(u"pdfinfo"_s, pdf); }

ImageDifference CompareImages(const QImage& a, const QImage& b) {
    const QSize size = a.size() / 4;
    const auto seen = [&](const QImage& image) {
        return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_Grayscale8);
    };
    const QImage first = seen(a), second = seen(b);
    qint64 sum = 0;
    ImageDifference difference;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const int apart = std::abs(qGray(first.pixel(x, y)) - qGray(second.pixel(x, y)));
            sum += apart;
            difference.most = std::max(difference.most, apart);
        }
    difference.mean = double(sum) / std::max(1, size.width() * size.height());
    return difference;
}
