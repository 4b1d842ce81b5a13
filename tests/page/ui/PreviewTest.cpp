#include <page/VSPrinter.h>
#include <page/ui/PagePreview.h>
#include <support/Pdf.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Preview : public testing::Test {
  protected:
    Preview() {
        Theme::Apply();
        preview.resize(900, 700);
        preview.show();
        preview.setFocus();
        view = preview.findChild<QAbstractScrollArea*>();
    }

    /// Pages of A5 with a large number each, so that they are told apart.
    static PageDocument pages(int count, int code = 11) {
        VSPrinter printer;
        printer.PaperSize(code);
        printer.StartDoc();
        for (int i = 1; i <= count; ++i) {
            printer.FontSize(40);
            printer.Paragraph(u"Seite %1 Größe"_s.arg(i));
            printer.FontSize(10);
            for (int row = 0; row < 12; ++row)
                printer.AddTable(u"<40mm|>40mm"_s, {}, u"Käse %1|%2,98 €"_s.arg(row).arg(row * 7));
            if (i < count) printer.CurrentY(1'000'000);
        }
        printer.EndDoc();
        return printer.Document();
    }
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(view, key, modifiers); }
    [[nodiscard]] QString label(const QString& name) const {
        return preview.findChild<QLabel*>(name)->text();
    }
    [[nodiscard]] TouchKey* key(const QString& name) const { return preview.findChild<TouchKey*>(name); }
    [[nodiscard]] QImage shown() const {
        return view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    /// The sheets are the only white; where the first of them is seen.
    [[nodiscard]] QRect sheet() const {
        const QImage image = shown();
        QRect found;
        const QRgb white = QColor(Qt::white).rgb();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) == white)
                    found |= QRect(x, y, 1, 1);
                else if (!found.isNull() && y > found.bottom() + 60)
                    return found;
            }
        return found;
    }

    PagePreview preview;
    QAbstractScrollArea* view = nullptr;
};

} // namespace

TEST_F(Preview, LeafsThroughThePages) {
    EXPECT_EQ(label(u"lblSeite"_s), u"Keine Seite"_s);
    for (const Qt::Key k : {Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_End})
        type(k);
    EXPECT_EQ(preview.currentPage(), -1);
    preview.setDocument(pages(3));
    QSignalSpy told(&preview, &PagePreview::pageChanged);
    EXPECT_EQ(label(u"lblSeite"_s), u"Seite 1 von 3"_s);
    EXPECT_FALSE(key(u"cmdPrevious"_s)->isEnabled());
    type(Qt::Key_PageDown);
    EXPECT_EQ(label(u"lblSeite"_s), u"Seite 2 von 3"_s);
    type(Qt::Key_End);
    EXPECT_EQ(label(u"lblSeite"_s), u"Seite 3 von 3"_s);
    EXPECT_FALSE(key(u"cmdNext"_s)->isEnabled());
    type(Qt::Key_PageDown);
    QTest::mouseClick(key(u"cmdPrevious"_s), Qt::LeftButton);
    EXPECT_EQ(preview.currentPage(), 1);
    type(Qt::Key_PageUp);
    EXPECT_EQ(preview.currentPage(), 0);
    EXPECT_EQ(told.size(), 4);
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    EXPECT_EQ(preview.currentPage(), 2);
    preview.showPage(99);
    EXPECT_EQ(preview.currentPage(), 2);
    type(Qt::Key_Home);
    EXPECT_EQ(view->verticalScrollBar()->value(), 0);

    // Where all pages are in view, leafing still counts through them.
    preview.setZoom(PagePreview::leastZoom);
    for (int page = 1; page < 3; ++page) {
        type(Qt::Key_PageDown);
        EXPECT_EQ(preview.currentPage(), page);
    }
    preview.setDocument(pages(2));
    EXPECT_EQ(label(u"lblSeite"_s), u"Seite 2 von 2"_s);
    preview.setDocument({});
    EXPECT_EQ(label(u"lblSeite"_s), u"Keine Seite"_s);
}

TEST_F(Preview, Zooms) {
    preview.setDocument(pages(3));
    EXPECT_EQ(preview.fit(), PagePreview::Fit::Width);
    const int border = view->viewport()->width() - sheet().width();
    EXPECT_TRUE(border > 8 && border < 60) << border;
    preview.resize(600, 700);
    EXPECT_NEAR(view->viewport()->width() - sheet().width(), border, 2);

    type(Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(key(u"cmdPage"_s)->isChecked() && !key(u"cmdWidth"_s)->isChecked());
    EXPECT_NEAR(view->viewport()->height() - sheet().height(), border, 2);
    type(Qt::Key_PageDown);
    EXPECT_NEAR(view->viewport()->height() - sheet().height(), border, 2);

    type(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(label(u"lblZoom"_s), u"100 %"_s);
    EXPECT_TRUE(key(u"cmdNatural"_s)->isChecked());
    const double natural = 148 / 25.4 * preview.logicalDpiX();
    type(Qt::Key_Home);
    preview.resize(900, 700);
    EXPECT_NEAR(sheet().width(), natural, 1);
    type(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(label(u"lblZoom"_s), u"110 %"_s);
    EXPECT_NEAR(sheet().width(), natural * 1.1, 1);
    EXPECT_FALSE(key(u"cmdNatural"_s)->isChecked());
    type(Qt::Key_Minus, Qt::ControlModifier);
    QTest::mouseClick(key(u"cmdZoomOut"_s), Qt::LeftButton);
    EXPECT_EQ(label(u"lblZoom"_s), u"90 %"_s);
    for (const auto& [wanted, shownAs] : {std::pair{1e9, u"800 %"_s}, {-1.0, u"5 %"_s}}) {
        preview.setZoom(wanted);
        EXPECT_EQ(label(u"lblZoom"_s), shownAs);
        type(wanted > 1 ? Qt::Key_Plus : Qt::Key_Minus, Qt::ControlModifier);
        EXPECT_EQ(label(u"lblZoom"_s), shownAs);
    }
}

TEST_F(Preview, TheWheelZoomsAboutThePointer) {
    preview.setDocument(pages(1, 9));
    preview.setZoom(1);
    const QPoint at(300, 400);
    const QRect before = sheet();
    QWheelEvent wheel(at, view->viewport()->mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &wheel);
    EXPECT_NEAR(preview.zoom(), 1.44, 0.01);
    // The margins of the text are 2 cm; what was under the pointer is still there.
    const double x = (at.x() - before.left()) * 1.44;
    EXPECT_NEAR(at.x() - x, -view->horizontalScrollBar()->value() + 16, 3);
}

TEST_F(Preview, ANewDocumentStaysWhereTheOldOneWas) {
    preview.setDocument(pages(3));
    preview.setZoom(2);
    view->verticalScrollBar()->setValue(1500);
    view->horizontalScrollBar()->setValue(70);
    const int page = preview.currentPage();
    preview.setDocument(pages(4));
    EXPECT_EQ(view->verticalScrollBar()->value(), 1500);
    EXPECT_EQ(view->horizontalScrollBar()->value(), 70);
    EXPECT_EQ(preview.zoom(), 2);
    EXPECT_EQ(preview.currentPage(), page);
    preview.setDocument(pages(1)); // shorter
    EXPECT_EQ(view->verticalScrollBar()->value(), view->verticalScrollBar()->maximum());
    EXPECT_EQ(preview.currentPage(), 0);
}

TEST_F(Preview, ShowsWhatPrints) {
    const PageDocument document = pages(1);
    preview.setDocument(document);
    for (const double zoom : {1.0, 3.0}) {
        preview.setZoom(zoom);
        view->verticalScrollBar()->setValue(0);
        view->horizontalScrollBar()->setValue(0);
        const QRect part = sheet(); // from its upper left corner as far as the view reaches
        const int dpi = static_cast<int>(zoom * preview.logicalDpiX());
        const QImage print = PdfImage(document.toPdf(), 0, dpi).copy(QRect(QPoint(), part.size()));
        const ImageDifference difference = CompareImages(shown().copy(part), print);
        EXPECT_LT(difference.mean, 1.5) << zoom;
        EXPECT_LT(difference.most, 100) << zoom;
    }
}

TEST_F(Preview, CanBeTouchedAndReadAloud) {
    EXPECT_EQ(view->accessibleName(), u"Druckvorschau"_s);
    const auto keys = preview.findChildren<TouchKey*>();
    EXPECT_EQ(keys.size(), 7);
    for (const TouchKey* one : keys) {
        EXPECT_GE(one->height(), 44);
        EXPECT_GE(one->width(), 44);
        EXPECT_FALSE(one->accessibleName().isEmpty());
        EXPECT_TRUE(one->toolTip().contains(one->hint()));
    }
    preview.setDocument(pages(2));
    EXPECT_EQ(view->accessibleDescription(), u"Seite 1 von 2"_s);
}
