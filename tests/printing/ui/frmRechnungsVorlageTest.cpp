#include <printing/RechnungsVorlagen.h>
#include <printing/ui/frmRechnungsVorlage.h>
#include <session/gAngaben.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>

#include <QFile>
#include <QListView>
#include <QPlainTextEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class frmRechnungsVorlageTest : public testing::Test {
  protected:
    /// What the person left in gVorlagenAuswahl.
    VorlagenAuswahl after(const std::function<void(QDialog&)>& person) {
        gVorlagenAuswahl = {9, u"von vorher"_s};
        dialogs.expectModal(u"frmRechnungsVorlage"_s, person);
        frmRechnungsVorlage dialog;
        ShowModal(dialog);
        return gVorlagenAuswahl;
    }
    void expectAfter(int result, const QString& text, const std::function<void(QDialog&)>& person) {
        const VorlagenAuswahl choice = after(person);
        EXPECT_EQ(choice.Ergebnis, result);
        EXPECT_EQ(choice.Text, text);
    }
    static QString shown(QDialog& d) { return control<QPlainTextEdit>(d, u"txtVorschau"_s).toPlainText(); }
    static bool enabled(QDialog& d, const QString& name) { return control<QWidget>(d, name).isEnabled(); }

    TempShop shop;
    ScriptedForms dialogs;
};

TEST_F(frmRechnungsVorlageTest, KeysAndButtonsChooseAText) {
    ASSERT_TRUE(vorlagen::Save(u"Bar.rvl"_s, u"Betrag erhalten"_s));
    ASSERT_TRUE(vorlagen::Save(u"Überweisung.rvl"_s, u"Bitte überweisen\nbis bald"_s));
    const auto key = [](Qt::Key k) { return [k](QDialog& d) { pressKey(d, k); }; };
    const auto click = [](const QString& name) { return [name](QDialog& d) { clickOn(d, name); }; };
    expectAfter(2, u"Betrag erhalten"_s, key(Qt::Key_F10));
    expectAfter(2, u"Betrag erhalten"_s, key(Qt::Key_Return)); // the list has the focus
    expectAfter(2, u"Betrag erhalten"_s, click(u"cmdOK"_s));
    expectAfter(1, u""_s, key(Qt::Key_F5));
    expectAfter(1, u""_s, click(u"cmdDefault"_s));
    expectAfter(0, u""_s, key(Qt::Key_Escape));
    expectAfter(0, u""_s, click(u"cmdCancel"_s));
    expectAfter(0, u""_s, [](QDialog& d) { d.close(); });
    expectAfter(2, u"Bitte überweisen\nbis bald"_s, [](QDialog& d) {
        EXPECT_EQ(shown(d), u"Betrag erhalten"_s);
        pressKey(d, Qt::Key_Down);
        pressKey(d, Qt::Key_F10);
    });
}

TEST_F(frmRechnungsVorlageTest, ATextIsChangedForOnceOrSaved) {
    ASSERT_TRUE(vorlagen::Save(u"Bar.rvl"_s, u"erhalten"_s));
    const auto type = [](QDialog& d, const QString& text) {
        pressKey(d, Qt::Key_Tab); // into the text, whose end is reached with Ctrl+End
        pressKey(d, Qt::Key_End, Qt::ControlModifier);
        typeText(d, text);
    };
    expectAfter(2, u"erhalten am\nMontag"_s, [&](QDialog& d) {
        type(d, u" am"_s);
        pressKey(d, Qt::Key_Return); // is a line break here
        typeText(d, u"Montag"_s);
        pressKey(d, Qt::Key_F10);
    });
    EXPECT_EQ(vorlagen::Read(u"Bar.rvl"_s), u"erhalten"_s);
    expectAfter(0, u""_s, [&](QDialog& d) {
        type(d, u" heute"_s);
        pressKey(d, Qt::Key_F3);
        pressKey(d, Qt::Key_Escape);
    });
    EXPECT_EQ(vorlagen::Read(u"Bar.rvl"_s), u"erhalten heute"_s);

    // The file goes away while the dialog is open.
    (void)after([&](QDialog& d) {
        QFile::remove(shop.folder() + u"Bar.rvl"_s);
        dialogs.expectError(53);
        auto& list = control<QListView>(d, u"mainFile"_s);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.currentIndex()).center());
        EXPECT_EQ(shown(d), u""_s);
        pressKey(d, Qt::Key_Escape);
    });
}

TEST_F(frmRechnungsVorlageTest, WithoutAFileOneIsMadeFirst) {
    (void)after([&](QDialog& d) {
        for (const QString& name : {u"cmdOK"_s, u"txtVorschau"_s, u"cmdSave"_s})
            EXPECT_FALSE(enabled(d, name)) << qPrintable(name);
        pressKey(d, Qt::Key_F10);
        pressKey(d, Qt::Key_Return);
        pressKey(d, Qt::Key_F3);
        EXPECT_TRUE(d.isVisible()) << "there is no text to print or save";

        dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, u"Zahlung"_s,
                            u"Vorlage erstellen..."_s);
        pressKey(d, Qt::Key_F2);
        EXPECT_TRUE(enabled(d, u"cmdOK"_s) && enabled(d, u"txtVorschau"_s));
        EXPECT_TRUE(shown(d).startsWith(u"Bitte überweisen Sie den Betrag in Höhe von [SUMME]"_s));
        dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, u"Bar"_s,
                            u"Vorlage erstellen..."_s);
        clickOn(d, u"cmdNew"_s);
        EXPECT_EQ(control<QListView>(d, u"mainFile"_s).currentIndex().data().toString(), u"Bar.rvl"_s);
        pressKey(d, Qt::Key_Escape);
    });
    EXPECT_EQ(vorlagen::Names(), QStringList({u"Bar.rvl"_s, u"Zahlung.rvl"_s}));
}

} // namespace
