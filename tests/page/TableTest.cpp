#include "Page.h"

#include <QRegularExpression>

TEST_F(Page, ColumnsAlign) {
    printer.StartDoc();
    printer.AddTable(u"<20mm|<60,5mm|^30.0 mm|*>1701"_s, u"Anz|Artikelname|USt|Preis"_s,
                     u"1|Apfel|7,0|1,11"_s);
    printer.AddTable(u"<20mm|<60,5mm|^30mm|>1701"_s, {}, u"28|Birne|19,0|24.888,00"_s);
    printer.EndDoc();
    const PdfPages pages = pdf();
    const auto area = [&](const QString& text) { return pages.word(text).area; };
    EXPECT_NEAR(area(u"Anz"_s).left(), 20, 0.3);
    EXPECT_NEAR(area(u"Artikelname"_s).left(), 40, 0.3);
    EXPECT_NEAR(area(u"Apfel"_s).left(), 40, 0.3);
    EXPECT_NEAR(area(u"USt"_s).center().x(), 20 + 20 + 60.5 + 14.5, 0.3);
    const double edge = 20 + 20 + 60.5 + 30 + 30;
    for (const QString& text : {u"Preis"_s, u"1,11"_s, u"24.888,00"_s})
        EXPECT_NEAR(area(text).right(), edge, 0.3) << text.toStdString();
    EXPECT_TRUE(PdfFonts(document().toPdf()).filter(u"Inter-Bold"_s).size() == 1); // of "*"
}

TEST_F(Page, FiguresStandBelowEachOther) {
    printer.StartDoc();
    printer.AddTable(u"*>50mm"_s, {}, u"8.888,44"_s);
    printer.AddTable(u"*>50mm"_s, {}, u"1.111,11"_s);
    printer.AddTable(u"*>50mm"_s, {}, u"311,31 €"_s);
    printer.Paragraph(u"1111"_s);
    printer.AddTable(u"<50mm"_s, {}, u"11111"_s);
    printer.EndDoc();
    const PdfPages pages = pdf(); // as one word each
    const double wide = pages.word(u"8.888,44"_s).area.width();
    EXPECT_NEAR(pages.word(u"1.111,11"_s).area.width(), wide, 1.8); // as drawn it would be 4 mm
    EXPECT_TRUE(pages.word(u"311,31"_s).area.isValid());
    EXPECT_GT(pages.word(u"11111"_s).area.width() / 5, pages.word(u"1111"_s).area.width() / 4 + 0.1);
}

TEST_F(Page, CellsWrapAndMayBeMissing) {
    printer.StartDoc();
    printer.AddTable(u"<20mm|<40mm|<0|>20mm"_s, {},
                     u"1|Ein Name, der in seine Spalte nicht passt\nSN: 4711|weg|9,99|zuviel"_s);
    const int tall = printer.CurrentY();
    printer.AddTable(u"<20mm|<40mm|<0|>20mm"_s, {}, u"2"_s);
    const int flat = printer.CurrentY() - tall;
    printer.AddTable(u"<60mm|>20mm"_s, {}, VSPrinter::CellText(u"A|B"_s) + u"|3"_s);
    printer.AddTable(u"<20mm"_s, {}, {});
    printer.EndDoc();
    EXPECT_EQ(lines(), (QStringList{u"1\tEin Name, der in seine\t9,99"_s, u"Spalte nicht passt"_s,
                                    u"SN: 4711"_s, u"2"_s, u"A|B\t3"_s}));
    EXPECT_NEAR(tall - twips(20), 3 * flat, 2);
    EXPECT_NEAR(pdf().word(u"9,99"_s).area.right(), 100, 0.3);
}

TEST_F(Page, HeadersAreRepeatedOnEveryPage) {
    printer.PaperSize(11);
    printer.StartDoc();
    printer.CurrentX(twips(30));
    printer.StartTable();
    printer.FontBold(true);
    printer.AddTable(u"<20mm|>30mm"_s, u"Kopf|Preis"_s, {});
    printer.FontBold(false);
    for (int i = 1; i <= 80; ++i)
        printer.AddTable(u"<20mm|>30mm"_s, {}, u"Z%1|1,00"_s.arg(i));
    printer.EndTable();
    printer.AddTable(u"<20mm|>30mm"_s, {}, u"Summe|80,00"_s);
    for (int i = 0; i < 60; ++i)
        printer.Paragraph(u"Text"_s);
    printer.EndDoc();
    ASSERT_EQ(document().pageCount(), 4);
    QStringList rows;
    for (int page = 0; page < 3; ++page) {
        EXPECT_EQ(lines(page).value(0), u"Kopf\tPreis"_s) << page;
        rows += lines(page).filter(QRegularExpression(u"^Z"_s));
    }
    EXPECT_EQ(lines(3).value(0), u"Text"_s);
    EXPECT_EQ(rows.size(), 80);
    EXPECT_EQ(rows.last(), u"Z80\t1,00"_s);
    for (const PdfWord& word : pdf().words) {
        if (word.text == u"Kopf" || word.text.startsWith(u'Z')) {
            EXPECT_NEAR(word.area.left(), 30, 0.3);
        }
        if (word.text != u"Text") {
            EXPECT_LT(word.area.bottom(), 190.5);
        }
    }
}

TEST_F(Page, AHeaderStaysWithItsFirstRow) {
    for (const bool apart : {false, true}) {
        printer.PaperSize(11);
        printer.StartDoc();
        printer.Paragraph(u"Oben"_s);
        printer.CurrentY(twips(180)); // room for the header and one line
        printer.StartTable();
        printer.AddTable(u"<50mm"_s, u"Kopf"_s, apart ? QString() : u"eins\nzwei\ndrei"_s);
        if (apart) printer.AddTable(u"<50mm"_s, {}, u"eins\nzwei\ndrei"_s);
        printer.EndTable();
        printer.EndDoc();
        ASSERT_EQ(document().pageCount(), 2);
        EXPECT_EQ(lines(0), QStringList{u"Oben"_s});
        EXPECT_EQ(lines(1), (QStringList{u"Kopf"_s, u"eins"_s, u"zwei"_s, u"drei"_s}));
    }
}

TEST_F(Page, RowsThatNoPageHoldsAreParted) {
    QStringList text;
    for (int i = 1; i <= 150; ++i)
        text << u"L%1"_s.arg(i);
    printer.PaperSize(11);
    printer.StartDoc();
    printer.CurrentY(twips(150));
    printer.AddTable(u"<20mm|<50mm"_s, u"Kopf|Text"_s, u"1|"_s + text.join(u'\n'));
    printer.EndDoc();
    QStringList found;
    for (int page = 0; page < document().pageCount(); ++page) {
        EXPECT_EQ(lines(page).value(0), u"Kopf\tText"_s);
        found += lines(page).mid(1);
    }
    EXPECT_EQ(document().pageCount(), 5);
    text[0] = u"1\tL1"_s;
    EXPECT_EQ(found, text);

    // A header that fills a page is printed once.
    printer.StartDoc();
    printer.AddTable(u"<50mm"_s, text.join(u'\n'), u"Zeile"_s);
    printer.AddTable(u"<50mm"_s, text.mid(0, 30).join(u'\n'), text.join(u'\n'));
    printer.EndDoc();
    EXPECT_EQ(document().toPdf().isEmpty(), false);
    int headers = 0;
    for (int page = 0; page < document().pageCount(); ++page)
        headers += static_cast<int>(lines(page).count(u"L7"_s));
    EXPECT_EQ(headers, 3);
}

TEST_F(Page, TablesFollowTheAlignmentAndMayBeTooWide) {
    printer.StartDoc();
    printer.TextAlign(1);
    printer.AddTable(u"<25mm|>35mm"_s, {}, u"rechts|1"_s);
    printer.TextAlign(2);
    printer.AddTable(u"<25mm|>35mm"_s, {}, u"mitte|2"_s);
    printer.AddTable(u"<150mm|<100mm"_s, {}, u"breit|hinaus"_s);
    printer.EndDoc();
    const PdfPages pages = pdf();
    EXPECT_NEAR(pages.word(u"rechts"_s).area.left(), 130, 0.3);
    EXPECT_NEAR(pages.word(u"1"_s).area.right(), 190, 0.5);
    EXPECT_NEAR(pages.word(u"mitte"_s).area.left(), 75, 0.3);
    EXPECT_NEAR(pages.word(u"breit"_s).area.left(), 20, 0.3);
    EXPECT_NEAR(pages.word(u"hinaus"_s).area.left(), 170, 0.3);
}

TEST_F(Page, LinesOfATable) {
    const auto lineCount = [&] {
        int count = 0;
        for (const PageDocument::Item& item : document().pages[0].items)
            count += std::holds_alternative<PageDocument::Line>(item);
        return count;
    };
    for (const auto& [style, count] : {std::pair{0, 0}, {1, 12}, {2, 1}}) {
        printer.TableBorder(style);
        printer.TableBorder(99); // leaves it
        printer.StartDoc();
        printer.StartTable();
        printer.AddTable(u"<50mm|>20mm"_s, u"Kopf|Preis"_s, u"eins|1"_s);
        printer.AddTable(u"<50mm|>20mm"_s, {}, u"zwei|2"_s);
        printer.EndDoc();
        EXPECT_EQ(lineCount(), count);
    }
}

TEST_F(Page, FormatsThatAreNone) {
    printer.StartDoc();
    for (const QString& format :
         {u""_s, u"<"_s, u"<20mm|"_s, u"<-5mm"_s, u"abc"_s, u"<20cm"_s, u"<20mm>"_s, u"<1e9mm"_s, u"<nan"_s,
          u"<999999mm"_s, u"<20mm||>5mm"_s, u"<99999999999999999999"_s, QString(400, u'|')})
        EXPECT_EQ(raised([&] { printer.AddTable(format, u"Kopf"_s, u"Zeile"_s); }), 5)
            << format.toStdString();
    printer.AddTable(u"<0|>0mm"_s, u"Kopf"_s, u"Zeile"_s); // no column at all
    EXPECT_EQ(document().plainText(0), QString());
    EXPECT_EQ(printer.CurrentY(), twips(20));
}

TEST_F(Page, JoinedWordsStayOnOneLine) {
    const auto joined = [](const QString& text) { return QString(text).replace(u'_', VSPrinter::joint); };
    printer.StartDoc();
    printer.AddTable(u"<22mm|>20mm"_s, {}, joined(u"Saft aus Birnen (je_1,79)|1,79_€"_s));
    printer.AddTable(u"<22mm|>14mm"_s, {}, joined(u"zu schmal|1234567,50_€"_s));
    printer.AddTable(u"<22mm|>3mm"_s, {}, joined(u"viel zu schmal|1234567,50_€"_s));
    printer.Paragraph(
        joined(u"Zahlbar sind in den nächsten vierzehn Tagen ohne jeden Abzug, bitte, 7654321,50_€"_s));
    printer.EndDoc();
    const QStringList all = lines();
    EXPECT_EQ(all.mid(0, 3), (QStringList{u"Saft aus\t1,79 €"_s, u"Birnen"_s, u"(je 1,79)"_s}));
    EXPECT_EQ(all.value(3), u"zu schmal\t1234567,50 €"_s) << "written smaller";
    EXPECT_GT(all.value(4).size(), 0) << "half the size has an end";
    EXPECT_TRUE(all.last().endsWith(u"7654321,50 €"_s));
    EXPECT_LE(pdf().word(u"1234567,50"_s).area.right(), 20 + 36);
}

TEST_F(Page, WhatIsKeptTogetherMovesToTheNextPage) {
    const auto block = [this](int count) {
        return [this, count] {
            for (int i = 1; i <= count; ++i)
                printer.AddTable(u"<50mm"_s, {}, u"B%1"_s.arg(i));
        };
    };
    const auto pagesOf = [&](int before, int count) {
        printer.PaperSize(11);
        printer.StartDoc();
        for (int i = 0; i < before; ++i)
            printer.Paragraph(u"Z"_s);
        printer.KeepTogether(block(count));
        printer.Paragraph(u"Ende"_s);
        printer.EndDoc();
        QList<qsizetype> counts;
        for (int page = 0; page < document().pageCount(); ++page)
            counts << lines(page).filter(QRegularExpression(u"^B"_s)).size();
        return counts;
    };
    EXPECT_EQ(pagesOf(3, 5), QList<qsizetype>{5});
    EXPECT_EQ(pagesOf(36, 10), (QList<qsizetype>{0, 10}));
    EXPECT_EQ(lines(1).value(0), u"B1"_s);
    EXPECT_EQ(lines(1).last(), u"Ende"_s);
    const auto parted = pagesOf(36, 60);
    ASSERT_EQ(parted.size(), 3) << "no page holds it, so it comes as it comes";
    EXPECT_GT(parted[0], 0);
    EXPECT_EQ(parted[0] + parted[1] + parted[2], 60);
}
