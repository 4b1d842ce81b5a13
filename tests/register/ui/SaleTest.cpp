#include "Kasse.h"

#include <session/gZVT.h>
#include <ui/AmountLabel.h>

#include <QPointer>
#include <QTimer>

namespace {

TEST_F(Kasse, SellsWhatIsScannedAndTakesCash) {
    EXPECT_EQ(u"0,00"_s, label(u"lblGesamt"_s));
    EXPECT_FALSE(control<QLabel>(*form, u"lblBestand"_s).isVisible());
    scan(bread);
    typeText(*form, u"3*"_s);
    EXPECT_EQ(u"3"_s, mal());
    EXPECT_EQ(u""_s, input());
    scan(milk);
    EXPECT_EQ((QStringList{u"Dinkelbrot 750 g|1|1 Stück|4,50|4,50"_s, u"Hafermilch 1 l|3|1 l|1,79|5,37"_s}),
              lines());
    EXPECT_EQ(u"9,87"_s, label(u"lblGesamt"_s));
    EXPECT_EQ(1, selected());
    EXPECT_EQ(u""_s, mal());

    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) {
        EXPECT_EQ(u"9,87"_s, control<QLineEdit>(d, u"txtSumme"_s).text());
        auto& given = control<QLineEdit>(d, u"txtGegeben"_s);
        EXPECT_EQ(u"9,87"_s, given.selectedText());
        for (const auto* name : {u"cmdNumber1", u"cmdNumber0", u"cmdDecimal", u"cmdDecimal", u"cmdNumber5"})
            clickOn(d, QString::fromUtf16(name));
        typeText(d, u"a-"_s);
        EXPECT_EQ(u"10,5"_s, given.text());
        EXPECT_EQ(u"0,63"_s, control<QLineEdit>(d, u"txtBack"_s).text());
        clickOn(d, u"cmdClear"_s);
        EXPECT_EQ(u"9,87"_s, given.selectedText());
        typeText(d, u"20"_s);
        pressKey(d, Qt::Key_Return);
    });
    press(Qt::Key_F10);
    EXPECT_EQ(QStringList{u"BAR|9,87|20|10,13"_s},
              shop.rows(u"SELECT ZahlArt, Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck FROM Rechnung"_s));
    EXPECT_EQ(2, shop.count(u"RechnungsDetail"_s));
    EXPECT_TRUE(lines().isEmpty());
    EXPECT_EQ(u"0,00"_s, label(u"lblGesamt"_s));
    EXPECT_TRUE(inputHasFocus());
}

TEST_F(Kasse, RefusesTooLittleCashAndEscWithoutTheRight) {
    scan(bread);
    gKassenUser.R_KassenAbschluss = false;
    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) {
        pressKey(d, Qt::Key_Escape);
        EXPECT_TRUE(d.isVisible());
        typeText(d, u"4"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(u"4,50"_s, control<QLineEdit>(d, u"txtGegeben"_s).selectedText());
        gKassenUser.R_KassenAbschluss = true;
        pressKey(d, Qt::Key_Escape);
    });
    dialogs.expectMsgBox(u"Sie sind nicht berechtigt, diese Aktion abzubrechen."_s);
    dialogs.expectMsgBox(u"FEHLER: Der gegebene Betrag kann nicht kleiner sein als die Rechnungssumme."_s,
                         MsgIcon::Critical);
    click(u"cmdTotal"_s);
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    EXPECT_EQ(1, shop.count(u"Bestellung"_s));
}

TEST_F(Kasse, TakesNotesTellsWhatIsOpenAndCanBeLeft) {
    scan(bread);
    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) {
        auto& given = control<QLineEdit>(d, u"txtGegeben"_s);
        auto& caption = control<QLabel>(d, u"lblBack"_s);
        const QColor calm = caption.palette().color(QPalette::WindowText);
        EXPECT_EQ(u"Zurück"_s, caption.text());
        typeText(d, u"2"_s);
        EXPECT_EQ(u"Noch offen"_s, caption.text());
        EXPECT_EQ(Theme::Current().warning, caption.palette().color(QPalette::WindowText));
        clickOn(d, u"cmdNote5"_s);
        clickOn(d, u"cmdNote20"_s);
        EXPECT_EQ(u"25,00"_s, given.selectedText()) << "what is typed next replaces it";
        EXPECT_EQ(u"20,50"_s, control<QLineEdit>(d, u"txtBack"_s).text());
        EXPECT_EQ(calm, caption.palette().color(QPalette::WindowText));
        clickOn(d, u"cmdPassend"_s);
        EXPECT_EQ(u"4,50"_s, given.selectedText());
        clickOn(d, u"cmdCancel"_s);
        EXPECT_FALSE(d.isVisible());
    });
    press(Qt::Key_F10);
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));

    gKassenUser.R_KassenAbschluss = false;
    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) {
        EXPECT_FALSE(control<TouchKey>(d, u"cmdCancel"_s).isVisible());
        pressKey(d, Qt::Key_Escape);
        EXPECT_FALSE(d.close());
        EXPECT_TRUE(d.isVisible());
        clickOn(d, u"cmdNote10"_s);
        clickOn(d, u"cmdBar"_s);
    });
    for (int i = 0; i < 2; ++i)
        dialogs.expectMsgBox(u"Sie sind nicht berechtigt, diese Aktion abzubrechen."_s);
    press(Qt::Key_F10);
    EXPECT_EQ(QStringList{u"10|5,5"_s}, shop.rows(u"SELECT Betrag_Gegeben, Betrag_Zurueck FROM Rechnung"_s));
}

TEST_F(Kasse, AmountsOfAnySizeShowEveryDigit) {
    gFormatPreis = u"##,##0.00"_s;
    shop.article(u"88"_s, u"Haus"_s, 999'999.99);
    scan(u"88"_s);
    QApplication::processEvents();
    const auto& total = control<AmountLabel>(*form, u"lblGesamt"_s);
    EXPECT_LE(QFontMetrics(total.shownFont()).horizontalAdvance(total.text()), total.contentsRect().width());
    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) {
        typeText(d, u"1"_s);
        QApplication::processEvents();
        for (const auto* name : {u"txtSumme", u"txtBack"}) {
            const auto& box = control<QLineEdit>(d, QString::fromUtf16(name));
            EXPECT_GE(box.text().size(), 9);
            EXPECT_LE(box.fontMetrics().horizontalAdvance(box.text()), box.width() - 24);
        }
        keep(d, u"frmKasseTotal-offen"_s);
        pressKey(d, Qt::Key_Escape);
    });
    press(Qt::Key_F10);
}

TEST_F(Kasse, ATillThatClosesByItselfPaysAsShown) {
    gEnabledAutoClose = gAHVerkaufAktiv = true;
    scan(bread);
    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) {
        EXPECT_TRUE(control<TouchKey>(d, u"cmdAHVerkauf"_s).isVisible());
        keep(d, d.objectName());
        auto* timer = d.findChild<QTimer*>(u"mainTimer"_s);
        ASSERT_NE(nullptr, timer);
        EXPECT_EQ(5000, timer->interval());
        timer->setInterval(1);
        EXPECT_TRUE(waitFor([&] { return !d.isVisible(); }));
    });
    press(Qt::Key_F10);
    EXPECT_EQ(QStringList{u"4,5|4,5"_s}, shop.rows(u"SELECT Betrag_Gesamt, Betrag_Gegeben FROM Rechnung"_s));
    EXPECT_TRUE(lines().isEmpty());
    EXPECT_EQ(u"4,50"_s, label(u"lblGesamt"_s)) << "the last total stays in sight";
}

TEST_F(Kasse, SellsOutsideTheHouseAtTheReducedRate) {
    gAHVerkaufAktiv = true;
    shop.article(u"90"_s, u"Kaffee"_s, 2.38, {{u"SteuerSatz"_s, 19}});
    scan(u"90"_s);
    dialogs.expectModal(u"frmKasseTotal"_s, [](QDialog& d) { clickOn(d, u"cmdAHVerkauf"_s); });
    press(Qt::Key_F10);
    EXPECT_EQ(QStringList{u"7|2,38"_s},
              shop.rows(u"SELECT SteuerSatz, VKPreis_Brutto FROM RechnungsDetail"_s));
}

TEST_F(Kasse, TakesACardFromTheMenuByHand) {
    scan(bread);
    press(Qt::Key_F11);
    auto& menu = control<QMenu>(*form, u"popKarte"_s);
    ASSERT_TRUE(menu.isVisible());
    const QList<QAction*> entries = menu.actions();
    ASSERT_EQ(4, entries.size());
    keep(menu, u"popKarte"_s);
    EXPECT_EQ(u"FileOtherKarte"_s, entries[0]->objectName());
    EXPECT_EQ(u"sonstige Kreditkarte"_s, entries[0]->text());
    EXPECT_TRUE(entries[1]->isSeparator());
    EXPECT_GE(menu.actionGeometry(entries[2]).height(), 56);
    QTest::keyClick(&menu, Qt::Key_F11);
    EXPECT_FALSE(menu.isVisible()) << "the key that opened it closes it";
    press(Qt::Key_F11);

    dialogs.expectMsgBox(u"OK, Zahlung erfolgt mit Kreditkarte!...*"_s, MsgIcon::Information,
                         MsgAnswer::Cancel);
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    dialogs.verify();

    click(u"cmdKarte"_s);
    dialogs.expectMsgBox(u"OK, Zahlung erfolgt mit Kreditkarte!...*"_s, MsgIcon::Information, MsgAnswer::OK,
                         u"Kreditkartenbuchung..."_s);
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_EQ(QStringList{u"KARTE|Girocard"_s}, shop.rows(u"SELECT ZahlArt, KartenTyp FROM Rechnung"_s));
}

TEST_F(Kasse, DiscountsOneLineAndAllAndRemovesLines) {
    scan(bread);
    scan(milk);
    press(Qt::Key_Up);
    EXPECT_EQ(0, selected());
    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::No,
                         u"Rabatt auf alles..."_s);
    dialogs.expectModal(u"frmKasseRabatt"_s, [](QDialog& d) {
        typeText(d, u"1.0"_s);
        EXPECT_EQ(u"10"_s, control<QLineEdit>(d, u"txtInput"_s).text()) << "a discount takes no point";
        pressKey(d, Qt::Key_Return);
    });
    press(Qt::Key_F2);
    EXPECT_EQ(u"Dinkelbrot 750 g|1|1 Stück|4,05|4,05"_s, lines().value(0));
    EXPECT_EQ(u"5,84"_s, label(u"lblGesamt"_s));

    dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectModal(u"frmKasseRabatt"_s, [](QDialog& d) {
        clickOn(d, u"cmdNumber5"_s);
        clickOn(d, u"cmdCancel"_s);
    });
    click(u"cmdRabatt"_s);
    EXPECT_EQ(u"5,84"_s, label(u"lblGesamt"_s)) << "leaving it changes nothing";

    press(Qt::Key_Up);
    dialogs.expectModal(u"frmKasseFreierPreis"_s, [](QDialog& d) {
        EXPECT_EQ(u"4,5"_s, control<QLineEdit>(d, u"txtInput"_s).selectedText());
        typeText(d, u"3.2"_s);
        clickOn(d, u"cmdEnter"_s);
    });
    press(Qt::Key_F1);
    EXPECT_EQ(u"Dinkelbrot 750 g|1|1 Stück|3,20|3,20"_s, lines().value(0));

    click(u"cmdStorno"_s);
    EXPECT_EQ(QStringList{u"Hafermilch 1 l|1|1 l|1,79|1,79"_s}, lines());
    EXPECT_EQ(1, shop.count(u"Stornos"_s));
    press(Qt::Key_F5);
    press(Qt::Key_F5);
    EXPECT_EQ(2, shop.count(u"Stornos"_s));
}

TEST_F(Kasse, SellsByArticleKeysThatStayWhereTheNewGroupHasNone) {
    auto& first = control<TouchKey>(*form, u"cmdArtikel0"_s);
    EXPECT_EQ(QStringList{u"Brot & Co"_s}, first.shownLines());
    EXPECT_TRUE(control<TouchKey>(*form, u"cmdGruppe0"_s).isChecked());
    click(u"cmdNumber2"_s);
    click(u"cmdMal"_s);
    click(u"cmdArtikel1"_s);
    EXPECT_EQ(u"3,58"_s, label(u"lblGesamt"_s));

    click(u"cmdGruppe1"_s);
    EXPECT_EQ(u"Schnellwahltasten - Gruppe 1..."_s, label(u"Title_Artikel"_s));
    EXPECT_FALSE(control<TouchKey>(*form, u"cmdGruppe0"_s).isChecked());
    click(u"cmdGruppe1"_s);
    EXPECT_TRUE(control<TouchKey>(*form, u"cmdGruppe1"_s).isChecked()) << "a pressed group stays pressed";
    click(u"cmdArtikel1"_s);
    EXPECT_EQ(2, lines().size());
    dialogs.expectModal(u"frmKassePreisAngabe"_s, [](QDialog& d) {
        typeText(d, u"12,5"_s);
        clickOn(d, u"cmdEnter"_s);
    });
    click(u"cmdArtikel0"_s);
    EXPECT_EQ(u"Blumenstrauß|1|1 Stück|12,50|12,50"_s, lines().value(2));
    EXPECT_FALSE(control<TouchKey>(*form, u"cmdArtikel7"_s).isEnabled()) << "there is nothing behind it";
    click(u"cmdPlus"_s);
    EXPECT_EQ(u"25,00"_s, list().model()->index(2, 5).data().toString());
}

TEST_F(Kasse, ChangesTheUserAndKeepsTheSale) {
    scan(bread);
    EXPECT_EQ(u"Jana Koch"_s, label(u"lblUser"_s));
    press(Qt::Key_Less, Qt::ShiftModifier);
    auto& menu = control<QMenu>(*form, u"popFunction"_s);
    ASSERT_TRUE(menu.isVisible());
    EXPECT_EQ(u"Benutzerwechsel"_s, control<QAction>(*form, u"FileChangeUser"_s).text());
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_EQ(1, logins);
    EXPECT_EQ(u"Ali Koch"_s, label(u"lblUser"_s));
    scan(milk);
    EXPECT_EQ((QStringList{u"3"_s, u"4"_s}),
              shop.rows(u"SELECT PersonalNummer FROM Bestellung ORDER BY ID"_s));
}

TEST_F(Kasse, ClosesOnlyWhenTheOpenSaleIsGivenUp) {
    scan(bread);
    const QString question =
        u"Es sind noch nicht abgerechnete Buchungen vorhanden. Möchten Sie diese jetzt stornieren?"_s;
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::No);
    press(Qt::Key_F12);
    EXPECT_TRUE(form->isVisible());
    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::No);
    EXPECT_FALSE(form->close());
    EXPECT_EQ(1, lines().size());
    EXPECT_EQ(0, unloaded);

    dialogs.expectMsgBox(question, MsgIcon::Question, MsgAnswer::Yes);
    click(u"cmdExit"_s);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(1, unloaded);
    EXPECT_EQ(0, shop.count(u"Bestellung"_s));
    EXPECT_EQ(1, shop.count(u"Stornos"_s));
    EXPECT_TRUE(form->close()) << "a closed register stays closed without another question";
    EXPECT_EQ(1, unloaded);
}

TEST_F(Kasse, ClosingDuringABookingWaitsForItsEnd) {
    gShowWechselgeldDialog = false;
    scan(bread);
    const QPointer<frmKasse> kasse = form.release();
    kasse->setAttribute(Qt::WA_DeleteOnClose);
    QTimer::singleShot(0, kasse, [&] {
        EXPECT_FALSE(kasse->close());
        typeText(*kasse, milk);
    });
    pressKey(*kasse, Qt::Key_F10);
    EXPECT_EQ(1, shop.count(u"Rechnung"_s));
    EXPECT_EQ(1, unloaded);
    EXPECT_TRUE(waitFor([&] { return kasse.isNull(); }));
}

TEST_F(Kasse, ComesBackWithTheInterruptedSale) {
    scan(bread);
    scan(milk);
    const QStringList before = lines();
    form.reset();
    open();
    EXPECT_EQ(before, lines());
    EXPECT_EQ(1, selected());
    EXPECT_EQ(u"6,29"_s, label(u"lblGesamt"_s));
    EXPECT_TRUE(inputHasFocus());
}

} // namespace

namespace {

/// Notes the functions that are called.
class MenuTerminal : public CardTerminal {
  public:
    explicit MenuTerminal(QStringList& calls)
        : m_calls(calls) {}
    void SetProtokoll(bool) override {}
    bool FindTerminal() override { return true; }
    QString Hersteller() const override { return {}; }
    QString Version() const override { return {}; }
    bool Bezahlen(Currency) override { return false; }
    QString KartenName() const override { return {}; }
    void Storno() override { m_calls << u"Storno"_s; }
    void Gutschrift() override { m_calls << u"Gutschrift"_s; }
    void Kassenschnitt() override { m_calls << u"Kassenschnitt"_s; }

  private:
    QStringList& m_calls;
};

} // namespace

TEST_F(Kasse, MenuOfTheCardTerminal) {
    EXPECT_EQ(form->findChild<QAction*>(u"FileECFunction"_s), nullptr) << "without a terminal";
    QStringList calls;
    gZVT = std::make_unique<MenuTerminal>(calls);
    gZVTEnabled = true;
    form.reset();
    open();
    auto& menu = control<QMenu>(*form, u"popECTerminal"_s);
    form->findChild<QAction*>(u"FileECFunction"_s)->trigger();
    EXPECT_TRUE(menu.isVisible());
    menu.close();
    for (QAction* action : menu.actions())
        action->trigger();
    EXPECT_EQ(calls, (QStringList{u"Storno"_s, u"Kassenschnitt"_s, u"Gutschrift"_s}));
    gZVTEnabled = false;
    gZVT.reset();
}
