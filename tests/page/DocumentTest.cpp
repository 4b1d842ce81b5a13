#include "Page.h"

#include <session/CSystem.h>
#include <session/Globals.h>

#include <QDir>
#include <QPainter>
#include <QTemporaryDir>

namespace {

QImage paper(QSizeF mm, int dpi) {
    const double dots = dpi / 25.4;
    QImage image((mm * dots).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

} // namespace

TEST_F(Page, PaperSizes) {
    struct Case {
        int code;
        double width, height;
        QSizeF page, job;
    };
    const QSizeF a4(210, 297), none;
    for (const Case& c : std::initializer_list<Case>{{9, 0, 0, a4, a4},
                                                     {11, 0, 0, {148, 210}, {148, 210}},
                                                     {256, 100, 62, {100, 62}, {100, 62}},
                                                     {256, 80, 250, {80, 250}, {80, 250}},
                                                     {256, -80, 250, a4, none},
                                                     {256, 80, 0, a4, none},
                                                     {256, 80, 30000, a4, none},
                                                     {0, 80, 250, a4, none},
                                                     {4711, 80, 250, a4, none}}) {
        printer.Device(u"Bondrucker"_s);
        printer.PaperSize(c.code);
        printer.PaperWidth(twips(c.width));
        printer.PaperHeight(twips(c.height));
        printer.StartDoc();
        printer.Paragraph(u"Text"_s);
        printer.EndDoc();
        printer.PrintDoc();
        const Job& job = jobs.back();
        const QSizeF found = ReadPdf(job.pdf).sizes.at(0);
        EXPECT_NEAR(found.width(), c.page.width(), 0.3) << c.code << ' ' << c.width;
        EXPECT_NEAR(found.height(), c.page.height(), 0.3) << c.code << ' ' << c.height;
        EXPECT_NEAR(job.paper.width(), c.job.width(), 0.1);
        EXPECT_NEAR(job.paper.height(), c.job.height(), 0.1);
    }
}

TEST_F(Page, ARollIsAsLongAsItsContentOnThePdfPrinter) {
    const auto print = [&](const QString& device, int count) {
        printer.Device(device);
        freePaper(80, 200);
        margins(5);
        printer.StartDoc();
        for (int i = 0; i < count; ++i)
            printer.Paragraph(u"Zeile"_s);
        printer.EndDoc();
        printer.PrintDoc();
        return ReadPdf(jobs.back().pdf).sizes;
    };
    const double line = 10 * 1.21 * 25.4 / 72;
    for (const int count : {3, 30, 100}) {
        const auto pages = print(u"PDF-Drucker"_s, count);
        ASSERT_EQ(pages.size(), 1u);
        EXPECT_NEAR(pages[0].height(), 5 + count * line + 5, 0.4);
        EXPECT_NEAR(pages[0].width(), 80, 0.3);
    }
    EXPECT_EQ(print(u"Bondrucker"_s, 100).size(), 3u); // a queue cuts where it was told to
    EXPECT_NEAR(jobs.back().paper.height(), 200, 0.1);

    printer.Device(u"PDF-Drucker"_s);
    freePaper(58, 40);
    printer.StartDoc();
    printer.CurrentY(twips(90));
    printer.Paragraph(u"unten"_s);
    printer.CurrentY(twips(10));
    QImage logo(96, 96, QImage::Format_RGB32);
    printer.DrawPicture(logo, twips(5), twips(100));
    printer.EndDoc();
    EXPECT_NEAR(document().pageSize(0).height(), 100 + 25.4 + 5, 0.4);
}

TEST_F(Page, NonsenseHasAnAnswer) {
    constexpr int absurd = 2'000'000'000;
    for (const int margin : {-absurd, -1, 8000, 20000, absurd}) {
        printer.MarginLeft(margin);
        printer.MarginRight(margin);
        printer.MarginTop(margin);
        printer.MarginBottom(margin);
        printer.StartDoc();
        for (const int place : {-absurd, -1, 0, 16000, 16838, 20000, absurd}) {
            printer.CurrentX(place);
            printer.CurrentY(place);
            printer.Paragraph(
                u"Ein Satz mit einigen Wörtern, der umbricht, wo er muss, und nirgends sonst"_s);
            printer.CurrentX(place);
            printer.CurrentY(place);
            printer.AddTable(u"<30mm|>20mm"_s, u"Kopf|Preis"_s, u"Zeile|1,00"_s);
            printer.DrawPicture(QImage(10, 10, QImage::Format_RGB32), place, place);
        }
        printer.EndDoc();
        EXPECT_LE(document().pageCount(), 16) << margin;
        EXPECT_TRUE(document().toPdf().startsWith("%PDF"));
    }
    margins(0);
    freePaper(10, 10);
    printer.FontSize(400);
    printer.StartDoc();
    printer.Paragraph(u"Groß"_s);
    printer.AddTable(u"<3mm|>0,1mm"_s, u"K|K"_s, u"ab|cd"_s);
    printer.DrawPicture(QImage(), 0, 0);
    printer.EndDoc();
    EXPECT_LE(document().pageCount(), 20);
    QString all;
    for (int page = 0; page < document().pageCount(); ++page)
        all += document().plainText(page);
    EXPECT_TRUE(all.contains(u'G') && all.contains(u'd'));

    EXPECT_TRUE(document().pageSize(-1).isEmpty());
    EXPECT_EQ(document().plainText(99), QString());
    EXPECT_TRUE(PageDocument().toPdf().isEmpty());
}

TEST_F(Page, PicturesInTheirNaturalSize) {
    QImage logo(300, 150, QImage::Format_RGB32);
    logo.fill(Qt::red);
    printer.StartDoc();
    printer.DrawPicture(logo, twips(20), twips(30)); // tells no resolution
    logo.setDotsPerMeterX(11811);                    // 300 dpi
    logo.setDotsPerMeterY(11811);
    logo.fill(Qt::blue);
    printer.DrawPicture(logo, twips(20), twips(100));
    logo = logo.scaled(4000, 2000);
    logo.fill(QColor(Qt::darkCyan));
    printer.DrawPicture(logo, twips(100), twips(150)); // wider than the paper
    EXPECT_EQ(printer.CurrentY(), twips(20));
    printer.EndDoc();
    const QImage image = PdfImage(document().toPdf(), 0, 254);
    // A picture that is scaled may round its colours.
    const auto colour = [&](double x, double y) {
        const QColor c = image.pixelColor(int(x * 10), int(y * 10));
        const auto full = [](int v) { return v > 250 ? 255 : v > 125 && v < 130 ? 128 : v; };
        return QColor(full(c.red()), full(c.green()), full(c.blue()));
    };
    const double natural = 300 / 96.0 * 25.4;
    EXPECT_EQ(colour(20.3, 30.3), QColor(Qt::red));
    EXPECT_EQ(colour(20 + natural - 0.3, 30 + natural / 2 - 0.3), QColor(Qt::red));
    EXPECT_EQ(colour(20 + natural + 0.3, 32), QColor(Qt::white));
    EXPECT_EQ(colour(20 + 25.1, 100 + 12.4), QColor(Qt::blue));
    EXPECT_EQ(colour(20 + 25.7, 101), QColor(Qt::white));
    EXPECT_EQ(colour(189.7, 150.5), QColor(Qt::darkCyan));
    EXPECT_EQ(colour(190.4, 150.5), QColor(Qt::white));
    EXPECT_EQ(colour(105, 194.6), QColor(Qt::darkCyan));
    EXPECT_EQ(colour(105, 195.4), QColor(Qt::white));
}

TEST_F(Page, AHugePictureKeepsNoMoreDotsThanPrint) {
    QImage photo(6000, 4000, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x)
            photo.setPixel(x, y, qRgb(x * 7, y * 5, x * y));
    printer.StartDoc();
    printer.DrawPicture(photo, twips(130), twips(20)); // 6 cm are left
    printer.EndDoc();
    EXPECT_LT(document().toPdf().size(), 6'000'000);
    const auto& picture = std::get<PageDocument::Picture>(document().pages[0].items[0]);
    EXPECT_NEAR(picture.area.width(), twips(60), 1);
    EXPECT_NEAR(picture.image.width(), 60 / 25.4 * 600, 1);
}

TEST_F(Page, EveryPainterGivesTheSamePage) {
    printer.StartDoc();
    printer.FontSize(18);
    printer.Paragraph(u"Rechnung Äpfel"_s);
    printer.FontSize(9);
    for (int i = 0; i < 20; ++i)
        printer.AddTable(u"<20mm|<80mm|>40mm"_s, {},
                         u"%1|Wasserkefir naturtrüb|%2,90 €"_s.arg(i).arg(i * 37));
    QImage logo(200, 100, QImage::Format_ARGB32);
    logo.fill(QColor(0, 128, 0, 128));
    printer.DrawPicture(logo, twips(140), twips(20));
    printer.EndDoc();
    constexpr int dpi = 300;
    QImage screen = paper(document().pageSize(0), dpi);
    QPainter painter(&screen);
    painter.scale(dpi / PageDocument::twipsPerInch, dpi / PageDocument::twipsPerInch);
    document().paint(painter, 0);
    painter.end();
    const QImage print = PdfImage(document().toPdf(), 0, dpi);
    EXPECT_NEAR(print.width(), screen.width(), 2);
    const auto [mean, most] = CompareImages(screen, print.copy(screen.rect()));
    EXPECT_LT(mean, 0.5);
    EXPECT_LT(most, 120); // the edge of the picture, which either may round by a dot
}

TEST_F(Page, OnlyADocumentThatIsOpenTakesText) {
    const auto refused = [&](auto&& act) { EXPECT_EQ(raised(act), 5); };
    const auto refusesAll = [&] {
        refused([&] { printer.Paragraph(u"Text"_s); });
        refused([&] { printer.AddTable(u"<20mm"_s, {}, u"Text"_s); });
        refused([&] { printer.StartTable(); });
        refused([&] { printer.DrawPicture(QImage(9, 9, QImage::Format_RGB32), 0, 0); });
        refused([&] { printer.EndDoc(); });
    };
    refusesAll();
    refused([&] { printer.PrintDoc(); });
    printer.StartDoc();
    refused([&] { printer.PrintDoc(); });
    printer.Paragraph(u"weg"_s);
    printer.StartDoc(); // begins anew
    printer.Paragraph(u"da"_s);
    printer.EndDoc();
    refusesAll();
    EXPECT_EQ(lines(), QStringList{u"da"_s});

    EXPECT_EQ(raised([&] { printer.PrintDoc(); }), 482); // on which printer?
    printer.Device(u"Büro"_s);
    printer.PrintDoc();
    EXPECT_EQ(lines(), QStringList{u"da"_s});
    printer.KillDoc();
    refused([&] { printer.PrintDoc(); });
    EXPECT_EQ(document().pageCount(), 0);
    ASSERT_EQ(jobs.size(), 1u);
    EXPECT_EQ(jobs[0].printer, u"Büro"_s);
    EXPECT_EQ(PdfText(jobs[0].pdf), u"da"_s);
}

TEST_F(Page, PrintersThatAreGoneOrRefuse) {
    for (const QString& name : {u"Weg"_s, u""_s, u"Büro "_s})
        EXPECT_EQ(raised([&] { printer.Device(name); }), 482) << name.toStdString();
    try {
        printer.Device(u"Weg"_s);
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Description, u"Druckerfehler: Der Drucker „Weg“ ist nicht vorhanden."_s);
    }
    SetPrintSpooler([](auto&&...) { throw RuntimeError(482, u"Druckerfehler: Kein Papier"_s); });
    printer.Device(u"Büro"_s);
    printer.StartDoc();
    printer.Paragraph(u"Text"_s);
    printer.EndDoc();
    EXPECT_EQ(raised([&] { printer.PrintDoc(); }), 482);
    EXPECT_EQ(lines(), QStringList{u"Text"_s}); // it can be tried again
}

TEST_F(Page, ThePdfPrinterWritesAFileNamedAfterTheDocument) {
    const QTemporaryDir folder;
    ResetSession();
    gAppPath = folder.path() + u'/';
    gSystem = std::make_unique<CSystem>();
    SetPrinterList(nullptr);
    SetPrintSpooler({});
    EXPECT_EQ(raised([&] { printer.Device(u"PDF-Drucker"_s); }), 482); // no folder
    const QString belege = folder.path() + u"/belege/"_s;
    gSystem->WriteProfileString(u"DRUCKER"_s, u"PdfOrdner"_s, belege, KonfigIni());
    printer.Device(u"PDF-Drucker"_s);
    printer.DocName(u"../Rechnung 7/2026: \"Äpfel\"\n"_s);
    printer.StartDoc();
    printer.Paragraph(u"Text"_s);
    printer.EndDoc();
    printer.PrintDoc();
    printer.StartDoc();
    printer.Paragraph(u"verworfen"_s);
    printer.KillDoc();
    const QStringList files = QDir(belege).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(files[0].startsWith(u"_._Rechnung 7_2026_ _Äpfel_ 20"_s)) << files[0].toStdString();
    ResetSession();
}
