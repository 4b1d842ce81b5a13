#include "Page.h"

TEST_F(Page, TextIsRealText) {
    const QString text = u"Käse (AB) 12:30 Größe 4x5 € 1,99 - fi ffl -> „Öl“ – ½ Übung"_s;
    for (const QString& family : {u"Inter"_s, u"DejaVu Sans"_s, u"Nimbus Sans"_s}) {
        printer.DocName(u"Rechnung Nr. 7 für Ä"_s);
        printer.StartDoc();
        printer.FontName(family);
        printer.Paragraph(text);
        printer.FontBold(true);
        printer.Paragraph(u"Fett"_s);
        printer.FontBold(false);
        printer.AddTable(u"<170mm"_s, u""_s, text);
        printer.EndDoc();
        const QByteArray pdf = document().toPdf();
        EXPECT_EQ(PdfText(pdf), text + u"\nFett\n"_s + text);
        EXPECT_EQ(document().plainText(0), text + u"\nFett\n"_s + text);
        const QStringList fonts = PdfFonts(pdf);
        EXPECT_EQ(fonts.size(), 2);
        for (const QString& font : fonts)
            EXPECT_TRUE(font.contains(u"CID TrueType"_s) && font.contains(u"yes"_s)) << font.toStdString();
        EXPECT_TRUE(PdfInfo(pdf).contains(u"Title:           Rechnung Nr. 7 für Ä"_s));
    }
}

TEST_F(Page, OtherScriptsAndMissingSigns) {
    printer.StartDoc();
    printer.FontName(u"Nimbus Sans"_s);
    printer.Paragraph(u"Жалоба שלום (AB) e\u0301 漢字 \U0001F600 Ende"_s);
    printer.AddTable(u"<30mm|>30mm"_s, {}, u"Жалоба жалоба жалоба жалоба жалоба|שלום"_s);
    printer.EndDoc();
    const QString text = PdfText(document().toPdf());
    EXPECT_TRUE(text.contains(u"Жалоба"_s) && text.contains(u"Ende"_s)) << text.toStdString();
    const PdfPages pages = pdf();
    const int wrapped = static_cast<int>(std::count_if(pages.words.begin(), pages.words.end(),
                                                       [](const PdfWord& w) { return w.text == u"жалоба"; }));
    EXPECT_EQ(wrapped, 4);
    for (const PdfWord& word : pages.words)
        if (word.text == u"жалоба") {
            EXPECT_LT(word.area.right(), 50.1);
        }
}

TEST_F(Page, ParagraphsStandWhereTheyAreTold) {
    printer.StartDoc();
    printer.Paragraph(u"Links"_s);
    printer.TextAlign(1);
    printer.Paragraph(u"Rechts"_s);
    printer.TextAlign(2);
    printer.Paragraph(u"Mitte"_s);
    printer.TextAlign(3); // leaves it
    printer.CurrentX(twips(100));
    printer.CurrentY(twips(100));
    printer.Paragraph(u"Versetzt"_s);
    printer.TextAlign(0);
    printer.Paragraph(u"Zurück"_s);
    const int below = printer.CurrentY();
    printer.EndDoc();
    const PdfPages pages = pdf();
    EXPECT_NEAR(pages.word(u"Links"_s).area.left(), 20, 0.3);
    EXPECT_NEAR(pages.word(u"Links"_s).area.top(), 20, 0.5);
    EXPECT_NEAR(pages.word(u"Rechts"_s).area.right(), 190, 0.3);
    EXPECT_NEAR(pages.word(u"Mitte"_s).area.center().x(), 105, 0.3);
    EXPECT_NEAR(pages.word(u"Versetzt"_s).area.center().x(), 145, 0.3); // between there and the margin
    EXPECT_NEAR(pages.word(u"Versetzt"_s).area.top(), 100, 0.5);
    EXPECT_NEAR(pages.word(u"Zurück"_s).area.left(), 20, 0.3);
    EXPECT_NEAR(below / PageDocument::twipsPerMm, 100 + 2 * 10 * 1.21 * 25.4 / 72, 0.1);
}

TEST_F(Page, LinesBreakBetweenWordsAndWithinLongOnes) {
    freePaper(90, 200);
    printer.StartDoc();
    const QString words = u"Vollkornroggenbrot mit Sonnenblumenkernen aus der Region und Käse"_s;
    printer.Paragraph(words);
    QStringList found = lines();
    EXPECT_GT(found.size(), 2);
    for (const PdfWord& word : ReadPdf(document().toPdf()).words)
        EXPECT_LT(word.area.right(), 70.1) << word.text.toStdString();
    for (const QString& line : found)
        EXPECT_EQ(line, line.trimmed());
    EXPECT_EQ(found.join(u' '), words);

    printer.StartDoc();
    const QString chain = QString(100, u'W') + u'.';
    printer.Paragraph(u"kurz "_s + chain);
    found = lines();
    EXPECT_EQ(found[0], u"kurz"_s);
    EXPECT_EQ(found.mid(1).join(QString()), chain);
    EXPECT_GT(found[1].size(), 8);

    printer.StartDoc();
    printer.Paragraph(u"eins\r\nzwei\n\ndrei\tvier\x01"_s);
    printer.Paragraph(QString());
    printer.Paragraph(u" "_s);
    printer.EndDoc();
    EXPECT_EQ(lines(), (QStringList{u"eins"_s, u"zwei"_s, u"drei    vier"_s}));
    const double line = 10 * 1.21 * 20; // four of the first paragraph, one empty, one blank
    EXPECT_NEAR(printer.CurrentY() - twips(20), 6 * line, 3);
}

TEST_F(Page, ParagraphsGoOnOnTheNextPage) {
    printer.PaperSize(11);
    printer.StartDoc();
    printer.CurrentX(twips(40));
    QStringList all;
    for (int i = 1; i <= 100; ++i)
        all << u"Zeile %1"_s.arg(i);
    printer.Paragraph(all.join(u'\n'));
    printer.EndDoc();
    ASSERT_EQ(document().pageCount(), 3);
    EXPECT_EQ(lines(0) + lines(1) + lines(2), all);
    for (const PdfWord& word : pdf().words) {
        EXPECT_TRUE(word.area.top() > 19.5 && word.area.bottom() < 190.5) << word.text.toStdString();
        if (word.text == u"Zeile") {
            EXPECT_NEAR(word.area.left(), 40, 0.3);
        }
    }
}

TEST_F(Page, BoldIsStrongerThanTheStyleOfAFontDialog) {
    QFont chosen(u"Inter"_s, 10);
    chosen.setStyleName(u"Regular"_s);
    printer.Font(chosen);
    printer.StartDoc();
    printer.FontBold(true);
    printer.Paragraph(u"Kopf"_s);
    printer.FontBold(false);
    printer.AddTable(u"<50mm|*<50mm"_s, {}, u"a|b"_s);
    printer.EndDoc();
    const QString fonts = PdfFonts(document().toPdf()).join(u' ');
    EXPECT_TRUE(fonts.contains(u"Inter-Bold"_s) && fonts.contains(u"Inter-Regular"_s)) << fonts.toStdString();
}

TEST_F(Page, FontsKerningAndLinesThroughText) {
    printer.CurrentX(-5); // before there is a page
    printer.CurrentY(5);
    printer.StartDoc();
    printer.FontSize(40);
    printer.FontSize(-3); // no size
    printer.FontName(u" "_s);
    printer.Paragraph(u"AVAVAVAV"_s);
    printer.Paragraph(u"A.V.A.V"_s);
    printer.FontUnderline(true);
    printer.CurrentY(twips(100));
    printer.Paragraph(u"Absender"_s);
    printer.FontUnderline(false);
    printer.EndDoc();
    const PdfPages pages = pdf();
    // 8 letters of 0.676 em without kerning
    EXPECT_LT(pages.word(u"AVAVAVAV"_s).area.width(), 8 * 0.676 * 40 * 25.4 / 72 - 3);
    const QImage image = PdfImage(document().toPdf(), 0, 100);
    const QRectF word = pages.word(u"Absender"_s).area;
    const auto at = [&](double x, double y) {
        return QColor(image.pixel(int(x / 25.4 * 100), int(y / 25.4 * 100))).value();
    };
    int dark = 255;
    for (double y = word.top() + 13; y < word.bottom() + 1; y += 0.1)
        dark = std::min(
            dark, std::max({at(word.left() + 1, y), at(word.center().x(), y), at(word.right() - 1, y)}));
    EXPECT_LT(dark, 128);
}
