#include <session/Globals.h>
#include <session/gAngaben.h>
#include <support/ScriptedForms.h>
#include <text/RuntimeError.h>
#include <ui/DigitPad.h>
#include <ui/Theme.h>

#include <QDir>
#include <QLabel>

#include <closing/ui/frmKasseBestand.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(KassenZaehlung, SumsUpInMoneyFromTheSmallestKindToTheLargest) {
    KassenZaehlung count;
    // 3 x 0,01 + 7 x 0,02 + 9 x 0,1 + 4 x 2 + 2 x 5 + 11 x 50 + 1 x 500
    const std::pair<int, QString> counted[] = {{0, u"3"_s}, {1, u"7"_s},   {3, u"9"_s}, {7, u"4"_s},
                                               {8, u"2"_s}, {11, u"11"_s}, {14, u"1"_s}};
    for (const auto& [kind, pieces] : counted)
        count.Set(kind, pieces);
    EXPECT_EQ(Currency::fromDouble(1069.07), count.Summe());
    EXPECT_EQ(Currency::fromDouble(9.07), count.Muenzen());
    EXPECT_EQ(Currency::fromDouble(1060), count.Scheine());
    count.Set(14, u""_s);
    EXPECT_EQ(Currency::fromDouble(569.07), count.Summe());
    for (int kind = 0; kind < KassenZaehlung::Sorten; ++kind)
        count.Set(kind, u"99999"_s);
    EXPECT_EQ(Currency::fromDouble(99999 * 888.88), count.Summe()) << "888,88 is one of each";
    for (const QString& nonsense : {u"100000"_s, u"-1"_s, u"1,5"_s, u"zwei"_s, QString(20, u'9')})
        EXPECT_THROW(count.Set(0, nonsense), RuntimeError) << qPrintable(nonsense);
    EXPECT_EQ(Currency::fromDouble(999.99), count.Betrag(0));
}

TEST(frmKasseBestand, IsCountedByDigitsAndEnter) {
    gDecimalStellen = 2;
    gWaehrungsSymbol = u"€"_s;
    Theme::Apply();
    frmKasseBestand form;
    showForm(form);
    EXPECT_TRUE(control<NumberEdit>(form, u"txt1Cent"_s).hasFocus());
    typeText(form, u"1x2"_s);
    pressKey(form, Qt::Key_Return);
    EXPECT_TRUE(control<NumberEdit>(form, u"txt2Cent"_s).hasFocus());
    clickOn(form, u"cmdNumber5"_s);
    EXPECT_EQ(u"5"_s, control<QLineEdit>(form, u"txt2Cent"_s).text());
    EXPECT_EQ(u"0,22 €"_s, control<QLineEdit>(form, u"txtSumme"_s).text());
    for (int i = 0; i < 7; ++i)
        pressKey(form, Qt::Key_Return);
    typeText(form, u"123456"_s); // no more than 99,999 pieces
    EXPECT_EQ(u"12345"_s, control<QLineEdit>(form, u"txt5Euro"_s).text());
    EXPECT_EQ(u"61.725,00 €"_s, control<QLabel>(form, u"sum5Euro"_s).text());
    EXPECT_EQ(u"Münzen  0,22 €"_s, control<QLabel>(form, u"lblMuenzen"_s).text());
    EXPECT_LE(form.sizeHint().height(), 720) << "fits a screen of 768 lines";
    EXPECT_LE(form.sizeHint().width(), 1000);
    if (const QString folder = qEnvironmentVariable("MERIVANE_SCREENSHOTS"); !folder.isEmpty())
        form.grab().save(folder + u"/frmKasseBestand.png"_s);
    pressKey(form, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(1, gKasseBestandErgebnis.Ergebnis);
    EXPECT_EQ(Currency::fromDouble(61725.22), gKasseBestandErgebnis.Betrag);

    frmKasseBestand again;
    showForm(again);
    typeText(again, u"7"_s);
    pressKey(again, Qt::Key_Escape);
    EXPECT_EQ(0, gKasseBestandErgebnis.Ergebnis);
    EXPECT_EQ(Currency(), gKasseBestandErgebnis.Betrag);
}

} // namespace
