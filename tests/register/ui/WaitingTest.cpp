#include "Kasse.h"

namespace {

TEST_F(Kasse, ParksAndFetchesByOneKeyAndShowsWhatIsParked) {
    gKFBestellungParken = gKFAuftrag = true;
    form.reset();
    open();
    const int place = control<QLabel>(*form, u"lblGesamt"_s).mapTo(form.get(), QPoint()).x();
    scan(bread);
    scan(milk);
    press(Qt::Key_F6);
    EXPECT_TRUE(lines().isEmpty());
    EXPECT_TRUE(label(u"lblGeparkt"_s).contains(u"2 Zeilen, 6,29 €"_s)) << qPrintable(label(u"lblGeparkt"_s));
    EXPECT_TRUE(label(u"lblGeparkt"_s).endsWith(u"F7"_s));
    EXPECT_EQ(place, control<QLabel>(*form, u"lblGesamt"_s).mapTo(form.get(), QPoint()).x())
        << "nothing moves";
    QApplication::processEvents();
    keep(*form, u"frmKasse-geparkt"_s);
    press(Qt::Key_F7, Qt::ControlModifier);
    EXPECT_EQ(2, lines().size());
    EXPECT_EQ(u""_s, label(u"lblGeparkt"_s));
    click(u"cmdAuftrag"_s);
    EXPECT_TRUE(control<QMenu>(*form, u"popAuftrag"_s).isVisible());
    press(Qt::Key_F9);
    EXPECT_FALSE(control<QMenu>(*form, u"popAuftrag"_s).isVisible());
}

} // namespace
