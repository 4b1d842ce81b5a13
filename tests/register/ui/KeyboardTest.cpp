#include "Kasse.h"

#include <QTimer>

namespace {

TEST_F(Kasse, AScanArrivesWhateverHasTheFocus) {
    for (const auto* name : {u"cmdArtikel3", u"cmdGruppe1", u"lvwBestellung", u"cmdTotal"}) {
        auto& other = control<QWidget>(*form, QString::fromUtf16(name));
        other.setFocusPolicy(Qt::StrongFocus);
        other.setFocus();
        scan(milk);
        EXPECT_EQ(u""_s, input());
        EXPECT_TRUE(waitFor([this] { return control<QLineEdit>(*form, u"txtInput"_s).hasFocus(); }));
    }
    // Keys that go to the control itself, with the focus elsewhere all the while.
    for (const QChar digit : bread)
        QTest::keyClick(&control<QWidget>(*form, u"cmdArtikel3"_s), digit.toLatin1());
    QTest::keyClick(&list(), Qt::Key_Enter);
    ASSERT_EQ(5, lines().size());
    EXPECT_EQ(u"Dinkelbrot 750 g|1|1 Stück|4,50|4,50"_s, lines().last());
    EXPECT_EQ(0, sounds);
}

TEST_F(Kasse, WhatIsTypedDuringABookingGoesToTheNextSale) {
    gShowWechselgeldDialog = false;
    scan(bread);
    // The booking yields; the scanner of the next customer's goods is faster, and so is an impatient finger.
    QTimer::singleShot(0, form.get(), [this] {
        EXPECT_EQ(1, shop.count(u"Bestellung"_s)) << "the yield comes before the rows are deleted";
        typeText(*form, u"2*"_s);
        scan(milk);
        press(Qt::Key_F10);
        scan(bread);
        click(u"cmdPlus"_s);
        EXPECT_EQ(1, lines().size()) << "nothing runs inside the booking";
    });
    press(Qt::Key_F10);
    ASSERT_TRUE(waitFor([this] { return shop.count(u"Rechnung"_s) == 2; }));
    EXPECT_EQ((QStringList{u"2001040000128|1"_s, u"2002010000233|2"_s}),
              shop.rows(u"SELECT ArtikelNummer, Buchungs_Menge FROM RechnungsDetail ORDER BY RechnungID"_s));
    EXPECT_EQ(QStringList{u"Dinkelbrot 750 g|2|1 Stück|4,50|9,00"_s}, lines());
}

TEST_F(Kasse, AScanIntoAnOpenMenuClosesItAndPaysNothing) {
    scan(bread);
    press(Qt::Key_F11);
    auto& menu = control<QMenu>(*form, u"popKarte"_s);
    ASSERT_TRUE(menu.isVisible());
    for (const QChar digit : milk)
        QTest::keyClick(menu.isVisible() ? static_cast<QWidget*>(&menu) : form->focusWidget(),
                        digit.toLatin1());
    EXPECT_FALSE(menu.isVisible());
    press(Qt::Key_Return);
    EXPECT_EQ(2, lines().size());
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
}

TEST_F(Kasse, KeysOfTheKeyboardStartTheFunctions) {
    scan(bread);
    typeText(*form, u"5+"_s);
    EXPECT_EQ(u"27,00"_s, label(u"lblGesamt"_s));
    typeText(*form, u"2-"_s);
    EXPECT_EQ(u"18,00"_s, label(u"lblGesamt"_s));
    typeText(*form, u"3*12"_s);
    press(Qt::Key_Backspace);
    EXPECT_EQ(u"1"_s, input());
    press(Qt::Key_Escape);
    EXPECT_EQ(u""_s, input() + mal());

    scan(u"0815"_s);
    EXPECT_EQ(1, sounds);
    EXPECT_EQ(u""_s, input());

    for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F4, Qt::Key_F11, Qt::Key_F12})
        press(key, Qt::ControlModifier); // other functions, which this till has not
    press(Qt::Key_Less, Qt::ControlModifier);
    EXPECT_TRUE(form->isVisible());

    QTest::sendKeyEvent(QTest::Press, form.get(), Qt::Key_F5, QString(), Qt::NoModifier);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier, QString(), true);
    scan(milk);
    QApplication::sendEvent(form.get(), &held);
    EXPECT_EQ(QStringList{u"Hafermilch 1 l|1|1 l|1,79|1,79"_s}, lines())
        << "a key held down removes one line";
    press(Qt::Key_F5);
    press(Qt::Key_Less);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(Kasse, TheDrawerOpensByKeyAndMenuWhereTheTillMay) {
    const QString device = shop.folder() + u"lade.bin"_s;
    shop.setIni(u"PORTS"_s, u"LPT1"_s, device);
    gKassenLadePort = 10;
    gKassenLadeOpenCode = u"112"_s;
    const auto opened = [&] { return QFile(device).size() / 5; };
    press(Qt::Key_F1, Qt::ControlModifier);
    EXPECT_EQ(nullptr, form->findChild<QAction*>(u"FileOpenLade"_s));
    EXPECT_EQ(0, opened());
    gKFKassenlade = true;
    gKassenUser.R_Rabatt = false; // F1 alone would be refused
    form.reset();
    open();
    press(Qt::Key_F1, Qt::ControlModifier);
    EXPECT_EQ(1, opened());
    auto& entry = control<QAction>(*form, u"FileOpenLade"_s);
    EXPECT_EQ(u"Kassenlade öffnen\tStrg+F1"_s, entry.text());
    entry.trigger();
    EXPECT_EQ(2, opened());
}

TEST_F(Kasse, UpAndDownMoveInTheListAndStopAtItsEnds) {
    for (int i = 0; i < 12; ++i)
        scan(i % 2 ? milk : bread);
    for (int i = 0; i < 20; ++i)
        press(Qt::Key_Up);
    EXPECT_EQ(0, selected());
    EXPECT_TRUE(list().viewport()->rect().contains(list().visualRect(list().currentIndex())));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(2, selected());
    form->resize(1024, 700);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                      list().visualRect(list().model()->index(1, 2)).center());
    EXPECT_EQ(1, selected());
    typeText(*form, u"+"_s);
    EXPECT_EQ(u"2"_s, list().model()->index(1, 2).data().toString());
    // A finger that drags scrolls the list and selects nothing.
    const QPoint down = list().visualRect(list().model()->index(2, 2)).center();
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, down);
    QTest::mouseMove(list().viewport(), down - QPoint(0, 80));
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, down - QPoint(0, 80));
    EXPECT_EQ(1, selected());
    EXPECT_GT(list().rowAt(1), 0);
    scan(bread);
    EXPECT_EQ(12, selected());
    EXPECT_TRUE(list().viewport()->rect().contains(list().visualRect(list().currentIndex())));
}

TEST_F(Kasse, F8IsAPriceKeyWhereTheTillSaysSo) {
    shop.setIni(u"SERVICE"_s, u"F8Preis"_s, u"1"_s);
    form.reset();
    open();
    scan(bread);
    dialogs.expectModal(u"frmKasseFreierPreis"_s, [](QDialog& d) { pressKey(d, Qt::Key_Escape); });
    press(Qt::Key_F8);
    dialogs.verify();
    gKassenUser.R_Rabatt = false;
    dialogs.expectMsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s);
    press(Qt::Key_F8);
}

TEST_F(Kasse, ShiftSLeadsToTheGroupKeysAndBack) {
    gEnabledSWShortCut = true;
    form.reset();
    open();
    auto& box = control<QLineEdit>(*form, u"txtInput"_s);
    press(Qt::Key_S, Qt::ShiftModifier);
    EXPECT_TRUE(control<TouchKey>(*form, u"cmdGruppe0"_s).hasFocus());
    EXPECT_EQ(u""_s, input());
    press(Qt::Key_Tab);
    EXPECT_TRUE(control<TouchKey>(*form, u"cmdGruppe1"_s).hasFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(control<TouchKey>(*form, u"cmdGruppe1"_s).isChecked());
    press(Qt::Key_S, Qt::ShiftModifier);
    EXPECT_TRUE(box.hasFocus());

    press(Qt::Key_S, Qt::ShiftModifier);
    ASSERT_FALSE(box.hasFocus());
    scan(bread); // a scanner does not know about it
    EXPECT_EQ(1, lines().size());
    EXPECT_TRUE(box.hasFocus());
}

TEST_F(Kasse, WhatIsSwitchedOffIsNeitherShownNorDone) {
    gKFKunden = gKFRabatt = gKFFreierArtikelPreis = gKFBenutzerWechsel = false;
    form.reset();
    open();
    for (const auto* name : {u"cmdKunde", u"cmdRabatt", u"cmdArtikelPreis"})
        EXPECT_FALSE(control<TouchKey>(*form, QString::fromUtf16(name)).isVisible());
    EXPECT_EQ(nullptr, form->findChild<QAction*>(u"FileChangeUser"_s));
    scan(bread);
    for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F4})
        press(key);
    EXPECT_EQ(0, logins);
    EXPECT_EQ(QStringList{u"Dinkelbrot 750 g|1|1 Stück|4,50|4,50"_s}, lines());
}

TEST_F(Kasse, AMissingCardListIsToldAndSellsAllTheSame) {
    form.reset();
    QFile::remove(shop.folder() + u"karten.txt"_s);
    dialogs.expectError(53);
    open();
    dialogs.verify();
    scan(bread);
    press(Qt::Key_F11);
    EXPECT_EQ(1, control<QMenu>(*form, u"popKarte"_s).actions().size());
}

} // namespace
