#include "Kasse.h"

namespace {

bool fits(const QLabel& label) {
    return label.fontMetrics().horizontalAdvance(label.text()) <= label.contentsRect().width();
}

class Look : public Kasse, public testing::WithParamInterface<QSize> {};

TEST_P(Look, EveryThingHasItsRoom) {
    const QSize size = GetParam();
    for (int i = 2; i < 20; ++i)
        key(0, i, u"Sonnenblumenbrot %1 g"_s.arg(i * 50), bread);
    form.reset();
    open();
    form->resize(size);
    for (int i = 0; i < 7; ++i)
        scan(i % 2 ? milk : bread);
    typeText(*form, u"6*20020100"_s);
    QApplication::processEvents();
    EXPECT_EQ(size, form->size()) << "the form must not be larger than the screen";
    EXPECT_LE(form->minimumSizeHint().height(), size.height() - 40) << "a title bar has to fit above it";

    const int least = Theme::Current().keyHeight;
    const QList<TouchKey*> keys = form->findChildren<TouchKey*>();
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
    // Numbers and codes are never cut, the selected row is whole, the total can be read from afar.
    for (int column : {0, 2, 3, 4, 5}) {
        const QModelIndex cell = list().model()->index(6, column);
        EXPECT_GE(list().visualRect(cell).width(),
                  list().fontMetrics().horizontalAdvance(cell.data().toString()) + 22)
            << column;
    }
    EXPECT_TRUE(list().viewport()->rect().contains(list().visualRect(list().currentIndex())));
    EXPECT_GE(control<QLabel>(*form, u"lblGesamt"_s).fontMetrics().height(), 46);
    for (const auto* name :
         {u"lblGesamt", u"lblBestand", u"lblVersion", u"lblUser", u"lblUhr", u"Title_Artikel"})
        EXPECT_TRUE(fits(control<QLabel>(*form, QString::fromUtf16(name))))
            << QString::fromUtf16(name).toStdString();
    keep(*form, u"frmKasse-%1x%2"_s.arg(size.width()).arg(size.height()));
}

INSTANTIATE_TEST_SUITE_P(Screens, Look,
                         testing::Values(QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080)),
                         [](const auto& screen) { return "w" + std::to_string(screen.param.width()); });

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
}

} // namespace
