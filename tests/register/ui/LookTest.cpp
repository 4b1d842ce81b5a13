#include "BasketList.h"
#include "Kasse.h"

#include <ui/AmountLabel.h>

#include <QDialog>
#include <QHeaderView>
#include <QScrollBar>

namespace {

bool fits(const QLabel& label) {
    return label.fontMetrics().horizontalAdvance(label.text()) <= label.contentsRect().width();
}

QRect onScreen(const QWidget& widget) { return {widget.mapToGlobal(QPoint()), widget.size()}; }

class Look : public Kasse, public testing::WithParamInterface<QSize> {
  protected:
    Look() { Theme::Apply(GetParam()); }
    ~Look() override { Theme::Apply(); }
    [[nodiscard]] bool tall() const { return GetParam().height() >= 1000; }
    [[nodiscard]] int visibleRows() const {
        int rows = 0;
        for (int row = 0; row < list().model()->rowCount(); ++row)
            rows += list().viewport()->rect().contains(
                        list().visualRect(list().model()->index(row, 0)).adjusted(1, 0, -1, 0))
                        ? 1
                        : 0;
        return rows;
    }
};

TEST_P(Look, EveryThingHasItsRoom) {
    const QSize size = GetParam();
    for (int i = 2; i < 20; ++i)
        key(0, i, u"Sonnenblumenbrot %1 g"_s.arg(i * 50), bread);
    form.reset();
    open();
    form->resize(size);
    gEnabledAutoClose = false;
    for (int i = 0; i < 20; ++i)
        scan(i % 2 ? milk : bread);
    typeText(*form, u"6*20020100"_s);
    QApplication::processEvents();
    EXPECT_EQ(size, form->size()) << "the form must not be larger than the screen";
    EXPECT_LE(form->minimumSizeHint().height(), size.height() - 40) << "a title bar has to fit above it";

    const int least = Theme::Current().keyHeight;
    QList<TouchKey*> keys = form->findChildren<TouchKey*>();
    keys.removeIf([](const TouchKey* k) { return !k->isVisible(); });
    for (const TouchKey* k : keys) {
        EXPECT_GE(k->height(), least) << k->objectName().toStdString();
        EXPECT_GE(k->width(), 48) << k->objectName().toStdString();
        for (const QString& line : k->shownLines())
            EXPECT_FALSE(line.contains(u'…')) << k->objectName().toStdString() << " cuts its caption";
        const QRect place(k->mapTo(form.get(), QPoint(0, 0)), k->size());
        EXPECT_TRUE(form->rect().contains(place)) << k->objectName().toStdString();
        for (const TouchKey* other : keys)
            EXPECT_TRUE(other == k ||
                        !place.intersects({other->mapTo(form.get(), QPoint(0, 0)), other->size()}));
    }
    // A usual line needs no smaller letters, the selected row is whole, the total can be read from afar.
    const QFontMetrics small(Theme::Current().font(Theme::Size::Small)), normal(Theme::Current().font()),
        last(BasketPainter::lastFont());
    const bool narrow = size.width() < 1200;
    for (const auto& [column, letters] : {std::pair(0, narrow ? small : normal),
                                          {2, last},
                                          {3, narrow ? small : normal},
                                          {4, last},
                                          {5, last}}) {
        const QModelIndex cell = list().model()->index(19, column);
        EXPECT_GE(list().visualRect(cell).width(), letters.horizontalAdvance(cell.data().toString()) + 12)
            << column;
    }
    EXPECT_GE(list().columnWidth(1), normal.horizontalAdvance(u"Haferflocken zart 500 g"_s))
        << "a usual name";
    EXPECT_TRUE(list().viewport()->rect().contains(list().visualRect(list().currentIndex())));
    EXPECT_GE(control<AmountLabel>(*form, u"lblGesamt"_s).shownFont().pixelSize(), 46);
    EXPECT_EQ(u"20 Zeilen · 20 Artikel"_s, label(u"lblZaehler"_s));
    for (const auto* name :
         {u"lblZaehler", u"lblBestand", u"lblVersion", u"lblUser", u"lblUhr", u"Title_Artikel"})
        EXPECT_TRUE(fits(control<QLabel>(*form, QString::fromUtf16(name))))
            << QString::fromUtf16(name).toStdString();
    keep(*form, u"frmKasse-%1x%2"_s.arg(size.width()).arg(size.height()));
}

TEST_P(Look, ManyLinesAndAWholeCodeAlsoBelowATitleBar) {
    for (int i = 0; i < 20; ++i)
        scan(i % 2 ? milk : bread);
    auto& box = control<QLineEdit>(*form, u"txtInput"_s);
    typeText(*form, u"2008888888888"_s);
    const int letters = Theme::Current().large;
    for (const int titleBar : {0, 24, 38}) {
        form->resize(GetParam() - QSize(0, titleBar));
        QApplication::processEvents();
        EXPECT_GE(visibleRows(), tall() ? 14 : 8) << titleBar;
        EXPECT_EQ(19, list().currentIndex().row());
        EXPECT_GE(list().verticalHeader()->defaultSectionSize(), Theme::Current().normal * 3 / 2);
        EXPECT_EQ(letters, box.font().pixelSize()) << "a scanned code needs no smaller letters";
        EXPECT_LE(box.fontMetrics().horizontalAdvance(box.text()), box.width() - 24);
        // The total stands beside the list, the keys below both.
        const QRect lines = onScreen(list()), total = onScreen(control<QLabel>(*form, u"lblGesamt"_s));
        EXPECT_GT(total.left(), lines.right());
        EXPECT_GE(total.top(), lines.top());
        EXPECT_LE(onScreen(control<QWidget>(*form, u"pnlLetzter"_s)).bottom(),
                  onScreen(control<QWidget>(*form, u"sspArtikel_BG"_s)).top());
    }
}

TEST_P(Look, DialogsLeaveTheTotalAndTheLastLinesFree) {
    form->resize(GetParam());
    for (int i = 0; i < 20; ++i)
        scan(i % 2 ? milk : bread);
    const auto check = [this](QDialog& d) {
        QApplication::processEvents();
        const QRect at = d.geometry();
        EXPECT_TRUE(form->geometry().contains(at)) << at.width() << " x " << at.height();
        EXPECT_FALSE(at.intersects(onScreen(control<QWidget>(*form, u"pnlSumme"_s))))
            << d.objectName().toStdString() << ' ' << at.height();
        EXPECT_FALSE(at.intersects(onScreen(list()))) << d.objectName().toStdString() << ' ' << at.height();
        EXPECT_TRUE(d.windowFlags().testFlag(Qt::FramelessWindowHint));
        keep(d, u"%1-%2"_s.arg(d.objectName()).arg(form->width()));
    };
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::No);
    dialogs.expectModal(u"frmKasseRabatt"_s, [&](QDialog& d) {
        check(d);
        pressKey(d, Qt::Key_Escape);
    });
    press(Qt::Key_F2);
    gDruckerDefault = gPrintMode = 3;
    dialogs.expectModal(u"frmKasseTotal"_s, [&](QDialog& d) {
        check(d);
        for (const TouchKey* k : d.findChildren<TouchKey*>()) {
            if (!k->isVisible()) continue;
            EXPECT_GE(k->height(), Theme::Current().keyHeight) << k->objectName().toStdString();
            for (const QString& line : k->shownLines())
                EXPECT_FALSE(line.contains(u'…')) << k->objectName().toStdString();
        }
        clickOn(d, u"cmdNote100"_s);
        pressKey(d, Qt::Key_Return);
    });
    dialogs.expectModal(u"frmKassePrintDlg"_s, [&](QDialog& d) {
        check(d);
        EXPECT_EQ(u"37,10 €"_s, control<QLabel>(d, u"lblRueckgeld"_s).text());
        EXPECT_EQ(label(u"lblRueckgeld"_s), u"37,10 €"_s) << "and in the panel behind it";
        EXPECT_EQ(Theme::Current().total, control<AmountLabel>(d, u"lblRueckgeld"_s).shownFont().pixelSize());
        QTest::keyClick(&d, Qt::Key_F5);
    });
    press(Qt::Key_F10);
    gPrintMode = 0;
}

INSTANTIATE_TEST_SUITE_P(Screens, Look,
                         testing::Values(QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080)),
                         [](const auto& screen) { return "w" + std::to_string(screen.param.width()); });

TEST_F(Kasse, TellsUnknownCodesAndTheChangeUntilTheNextEntry) {
    auto& change = control<QLabel>(*form, u"lblRueckgeld"_s);
    auto& unknown = control<QLabel>(*form, u"lblUnbekannt"_s);
    auto& total = control<QWidget>(*form, u"lblGesamt"_s);
    QApplication::processEvents();
    const QRect place = onScreen(total);
    EXPECT_FALSE(change.isVisible());
    scan(bread);
    scan(u"4711"_s);
    EXPECT_TRUE(unknown.isVisible());
    EXPECT_EQ(u"Unbekannt: 4711"_s, unknown.text());
    EXPECT_EQ(1, sounds);
    keep(*form, u"frmKasse-unbekannt"_s);
    typeText(*form, u"2"_s);
    EXPECT_FALSE(unknown.isVisible());
    EXPECT_EQ(u"1 Zeile · 1 Artikel"_s, label(u"lblZaehler"_s));
    press(Qt::Key_Escape);

    payCash(u"20"_s);
    EXPECT_TRUE(change.isVisible());
    EXPECT_EQ(u"15,50 €"_s, change.text());
    EXPECT_EQ(u"Rückgeld"_s, label(u"lblRueckgeldText"_s));
    EXPECT_EQ(u"bar 20,00 von 4,50"_s, label(u"lblGegeben"_s));
    EXPECT_EQ(u"Beleg 1"_s, label(u"lblBeleg"_s));
    keep(*form, u"frmKasse-rueckgeld"_s);
    typeText(*form, u"2"_s);
    EXPECT_FALSE(change.isVisible());
    EXPECT_TRUE(control<QLabel>(*form, u"lblBeleg"_s).isVisible()) << "Ctrl+P would print it";
    QApplication::processEvents();
    EXPECT_EQ(place, onScreen(total)) << "nothing moves";
    dialogs.expectMsgBox(u"Der Bon kann nicht gedruckt werden...*"_s);
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(u"2"_s, input());
}

TEST_F(Kasse, TheLastLineIsLargerAndARepeatedScanFlashesIt) {
    shop.insert(u"VerbundArtikel"_s,
                {{u"SourceArtikelNummer"_s, bread}, {u"DestArtikelNummer"_s, milk}, {u"Anzahl"_s, 1}});
    scan(milk);
    scan(bread);
    const auto row = [this](int r) {
        QApplication::processEvents();
        return list().viewport()->grab(list().visualRect(list().model()->index(r, 1))).toImage();
    };
    // Ink of a line: how far its letters reach from the left and how much of them there is.
    const auto ink = [](const QImage& image) {
        int left = image.width(), dark = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y).lightness() < 100) {
                    left = std::min(left, x);
                    ++dark;
                }
        return std::pair(left, dark);
    };
    const auto [ownLeft, own] = ink(row(0));
    const auto [linkedLeft, last] = ink(row(2)); // the same article
    EXPECT_GE(linkedLeft - ownLeft, 12) << "what came with another line is indented";
    EXPECT_GT(last, own * 5 / 4) << "the last line is larger";

    const QColor calm = row(1).pixelColor(0, 4);
    scan(milk);
    EXPECT_EQ(ink(row(2)).second, own) << "it is not the last one any more";
    scan(milk);
    const QColor lit = row(4).pixelColor(0, 4);
    scan(bread);
    scan(milk);
    EXPECT_NE(lit, calm);
    EXPECT_TRUE(waitFor([&] { return row(7).pixelColor(0, 4) != lit; }, 1000)) << "for a moment only";
}

TEST_F(Kasse, WarnsOfAShortStockAndShowsThePicture) {
    shop.article(
        u"55"_s, u"Apfelsaft"_s, 2.20,
        {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 6}, {u"SollBestand"_s, 5}, {u"Einheit"_s, u"Fl."_s}});
    QImage picture(40, 80, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    ASSERT_TRUE(picture.save(shop.folder() + u"artimg_55.bmp"_s));
    auto& stock = control<QLabel>(*form, u"lblBestand"_s);
    auto& shown = control<QLabel>(*form, u"sspArtBild"_s);
    QApplication::processEvents();
    const int place = control<QLabel>(*form, u"lblGesamt"_s).geometry().right();
    scan(u"55"_s);
    QApplication::processEvents();
    EXPECT_EQ(place, control<QLabel>(*form, u"lblGesamt"_s).geometry().right()) << "the total does not move";
    EXPECT_EQ(u" aktueller Bestand: 5 Fl."_s, stock.text());
    const QColor plain = stock.palette().color(QPalette::WindowText);
    EXPECT_FALSE(shown.pixmap().isNull());
    EXPECT_GT(shown.pixmap().height(), 80) << "as large as there is room";
    typeText(*form, u"+"_s);
    EXPECT_EQ(u" aktueller Bestand: 4 Fl."_s, stock.text());
    EXPECT_NE(plain, stock.palette().color(QPalette::WindowText));
    keep(*form, u"frmKasse-warning"_s);
    scan(bread);
    EXPECT_EQ(u" keine Lagerhaltung..."_s, stock.text());
    EXPECT_EQ(plain, stock.palette().color(QPalette::WindowText));
    EXPECT_EQ(u"Kein Artikelbild verfügbar"_s, shown.text());
    press(Qt::Key_F5);
    EXPECT_FALSE(shown.pixmap().isNull());
    press(Qt::Key_F5);
    EXPECT_TRUE(shown.pixmap().isNull()) << "of an article that is not in the sale";
}

} // namespace
