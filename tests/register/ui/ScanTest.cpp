#include "Kasse.h"
#include "KasseBetragDialog.h"
#include "KasseNumberDialogs.h"
#include "frmKasseArtikelLieferanten.h"
#include "frmKasseArtikelSuche.h"
#include "frmKasseFreierArtikel.h"
#include "frmKasseKundenSuche.h"
#include "frmKasseLangText.h"
#include "frmKassePfand.h"
#include "frmKasseSNAngabe.h"
#include "frmKasseTotal.h"

#include <access/ui/frmDesktopLogin.h>
#include <access/ui/frmKasseWechselGeld.h>
#include <printing/ui/frmKassePrintDlg.h>
#include <printing/ui/frmRechnungsVorlage.h>
#include <support/Keyboard.h>
#include <ui/Notice.h>
#include <ui/TouchDialogs.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QFileDialog>
#include <QPlainTextEdit>

#include <random>

// Scans that arrive where nobody waits for one, and where the till does.

namespace {

class Scans : public Kasse {
  protected:
    Scans() {
        shop.person(u"Lena"_s, u"Brandt"_s, u"0012"_s);
        shop.insert(u"Kunden"_s, {{u"KundenNummer"_s, u"100"_s}, {u"Name_1"_s, u"Albers"_s}});
        for (const QString& article : {bread, milk})
            shop.insert(u"ArtikelLieferanten"_s,
                        {{u"ArtikelNummer"_s, article}, {u"BestellNummer"_s, u"B-7"_s}});
    }
    [[nodiscard]] int sold() { return shop.count(u"Bestellung"_s); }

    Keyboard keys;
};

/// All that a person could see or have entered, and what the dialog would hand over.
QStringList stateOf(QWidget& form) {
    QStringList state{form.isVisible() ? u"open"_s : u"closed"_s};
    for (QWidget* part : form.findChildren<QWidget*>()) {
        if (part->objectName() == u"lblNotice"_s) continue;
        QString text = part->property("text").toString() + part->property("checked").toString();
        if (const auto* view = qobject_cast<QAbstractItemView*>(part))
            text = u"%1 %2"_s.arg(view->model() != nullptr ? view->model()->rowCount() : 0)
                       .arg(view->currentIndex().row());
        if (const auto* combo = qobject_cast<QComboBox*>(part)) text = combo->currentText();
        if (const auto* page = qobject_cast<QPlainTextEdit*>(part)) text = page->toPlainText();
        if (part->hasFocus()) text += u" focus"_s;
        if (!text.isEmpty()) state << part->objectName() + u'=' + text;
    }
    state << u"%1 %2 %3 %4"_s.arg(gZahlung.Ergebnis)
                 .arg(gArtikel.Ergebnis)
                 .arg(gPreisAngabe.Ergebnis)
                 .arg(gRabattAngabe.Ergebnis)
          << u"%1 %2 %3 %4 %5"_s.arg(gFreierArtikel.Ergebnis)
                 .arg(gKunde.Ergebnis)
                 .arg(gPrintMode)
                 .arg(gKassenUser.Result)
                 .arg(gVorlagenAuswahl.Ergebnis);
    return state;
}

TEST_F(Scans, NoBurstGetsThroughAnyDialog) {
    gZahlung.Betrag_Gesamt = Currency::fromDouble(98.3);
    gArtikel.Name = u"Blumenstrauß"_s;
    gFreierArtikel = {0, u"Diverser Artikel"_s, u"Diverses"_s, 19};
    gBestellNummerWahl = {u"B-7"_s, {}};
    gAHVerkaufAktiv = gShowKundenKFZInfo = true;

    std::vector<std::unique_ptr<QDialog>> all;
    const auto add = [&](QDialog* dialog) { all.emplace_back(dialog); };
    const QString text = u"OK, Zahlung erfolgt mit Kreditkarte!"_s;
    for (const MsgButtons buttons :
         {MsgButtons::OK, MsgButtons::OKCancel, MsgButtons::YesNo, MsgButtons::RetryCancel})
        add(new MessageDialog(text, buttons, MsgIcon::Question, u"Frage"_s,
                              buttons == MsgButtons::YesNo         ? MsgAnswer::Yes
                              : buttons == MsgButtons::RetryCancel ? MsgAnswer::Retry
                                                                   : MsgAnswer::OK));
    add(new InputDialog(u"Bitte geben Sie die Nummer ein."_s, u"Eingabe"_s, u"7"_s));
    add(new frmKasseRabatt);
    add(new frmKassePreisAngabe);
    add(new frmKasseFreierPreis);
    add(new frmKasseWechselGeld);
    add(new frmKasseFreierArtikel);
    add(new frmKasseArtikelLieferanten);
    add(new frmKasseGutschein);
    add(new frmKasseEinlage);
    add(new frmKasseGutschrift);
    add(new frmKasseVolumenAngabe);
    add(new frmKasseSNAngabe);
    add(new frmKassePfand);
    add(new frmKasseLangText);
    add(new frmKasseArtikelSuche);
    add(new frmKasseKundenSuche);
    add(new frmKasseTotal);
    add(new frmKassePrintDlg); // without a till behind it, it has nobody to hand a scan to
    add(new frmRechnungsVorlage);
    add(new frmDesktopLogin);
    add(new QFileDialog);
    static_cast<QFileDialog&>(*all.back()).setOption(QFileDialog::DontUseNativeDialog);
    for (const auto& dialog : all)
        dialog->setModal(true);

    std::mt19937 chance(20261123);
    const QString signs = u"0123456789JNjn ,.-+*/<>'$%äßABCxyz"_s;
    for (int round = 0; round < 1000; ++round) {
        QDialog& dialog = *all[size_t(round) % all.size()];
        showForm(dialog);
        QList<QWidget*> parts;
        for (QWidget* part : dialog.findChildren<QWidget*>())
            if (part->isVisible() && part->isEnabled() && part->focusPolicy() != Qt::NoFocus &&
                part->focusProxy() == nullptr && !part->property("takesScan").toBool())
                parts << part;
        if (!parts.isEmpty()) parts[qsizetype(chance() % size_t(parts.size()))]->setFocus();
        if (dialog.focusWidget() != nullptr && dialog.focusWidget()->property("takesScan").toBool()) {
            dialog.hide();
            continue; // nothing else in it can have the focus
        }
        const QStringList before = stateOf(dialog);
        const int soundsBefore = sounds;
        keys.stamped = chance() % 2 == 0;
        keys.now += 40 + chance() % 1000;
        const unsigned slowest = 1 + chance() % 35;
        QString code;
        for (unsigned left = 6 + chance() % 25; left > 0; --left) {
            code += signs[qsizetype(chance() % size_t(signs.size()))];
            keys.type(dialog, code.last(1), code.size() == 1 ? 40 : 1 + chance() % slowest);
        }
        keys.type(dialog, chance() % 3 == 0 ? u"\t"_s : u"\r"_s, 1 + chance() % 35);
        QApplication::processEvents();
        keys.rest();
        ASSERT_EQ(before, stateOf(dialog))
            << "round " << round << ": " << dialog.metaObject()->className() << " <- " << code.toStdString();
        EXPECT_EQ(u"Bitte erst die Frage beantworten"_s, NoticeText(dialog));
        EXPECT_EQ(soundsBefore + 1, sounds);
        dialog.hide();
    }
    EXPECT_GT(sounds, 900);
    EXPECT_EQ(0, sold());
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
}

// What was seen at a counter: each of these ended with a wrong amount, or with a sale that was gone.
TEST_F(Scans, WhereAScanDidHarm) {
    keys.scan(*form, bread);
    EXPECT_EQ(1, sold());
    const auto scanned = [this](QDialog& d) {
        keys.scan(d, u"2005000000171"_s);
        EXPECT_TRUE(d.isVisible());
        keys.rest();
    };
    const auto refuse = [&](QDialog& d) {
        scanned(d);
        keys.key(d, Qt::Key_Escape, {}, 300);
    };
    dialogs.expectModal(u"frmKassePreisAngabe"_s, refuse);
    keys.type(*form, u"77\r"_s, 90);
    EXPECT_EQ(1, sold());
    dialogs.expectModal(u"frmKasseFreierPreis"_s, refuse);
    keys.key(*form, Qt::Key_F1, {}, 300);
    dialogs.expectMsgBox(u"Möchten Sie alle...*"_s, MsgIcon::Question, MsgAnswer::Yes);
    dialogs.expectModal(u"frmKasseRabatt"_s, refuse);
    keys.key(*form, Qt::Key_F2, {}, 300);
    dialogs.expectModal(u"frmKasseFreierArtikel"_s, [&](QDialog& d) {
        scanned(d);
        EXPECT_EQ(u"Diverser Artikel"_s, control<QLineEdit>(d, u"txtName"_s).text());
        keys.key(d, Qt::Key_Escape, {}, 300);
    });
    keys.type(*form, u"5,50\r"_s, 90);
    dialogs.expectModal(u"frmKasseTotal"_s, [&](QDialog& d) {
        scanned(d);
        EXPECT_EQ(u"4,50"_s, control<QLineEdit>(d, u"txtGegeben"_s).text());
        keys.type(d, u"20"_s, 80);
        scanned(d);
        EXPECT_EQ(u"20"_s, control<QLineEdit>(d, u"txtGegeben"_s).text());
        keys.key(d, Qt::Key_Return, u"\r"_s, 300);
    });
    keys.key(*form, Qt::Key_F10, {}, 300);
    EXPECT_EQ(6, sounds);
    EXPECT_EQ(QStringList{u"4,5|20"_s}, shop.rows(u"SELECT Betrag_Gesamt, Betrag_Gegeben FROM Rechnung"_s));
    EXPECT_EQ(0, sold());
}

TEST_F(Scans, TheNextSaleBeginsWhileTheReceiptIsAskedFor) {
    gPrintMode = 3;
    keys.scan(*form, bread);
    for (const bool user : {false, true}) {
        gAbfrageLoginProOrder = user;
        dialogs.expectModal(u"frmKasseTotal"_s,
                            [&](QDialog& d) { keys.key(d, Qt::Key_Return, u"\r"_s, 300); });
        dialogs.expectModal(u"frmKassePrintDlg"_s, [&](QDialog& d) {
            keys.scan(d, milk);
            EXPECT_FALSE(d.isVisible());
            EXPECT_EQ(1, sold()) << "the sale that was paid is finished first";
        });
        keys.key(*form, Qt::Key_F10, {}, 300);
        EXPECT_EQ(QStringList{u"Hafermilch 1 l|1|1 l|1,79|1,79"_s}, lines());
        EXPECT_EQ(3, gPrintMode);
    }
    EXPECT_EQ(1, logins) << "whoever sells next has logged in before";
    EXPECT_EQ(2, shop.count(u"Rechnung"_s));
    EXPECT_EQ((QStringList{u"4,5"_s, u"1,79"_s}),
              shop.rows(u"SELECT Betrag_Gesamt FROM Rechnung ORDER BY RechnungID"_s));
    EXPECT_EQ(0, sounds);
}

TEST_F(Scans, InTheEntryAScanIsAScan) {
    keys.scan(*form, bread);
    keys.scan(*form, milk, u"\t"_s); // a scanner that ends with Tab
    EXPECT_EQ(2, lines().size());
    press(Qt::Key_F11);
    auto& menu = control<QMenu>(*form, u"popKarte"_s);
    ASSERT_TRUE(menu.isVisible());
    keys.now += 500;
    keys.type(menu, bread.left(1), 5);
    EXPECT_FALSE(menu.isVisible());
    keys.type(*form, bread.mid(1) + u'\r', 5);
    EXPECT_EQ(3, lines().size());
    EXPECT_EQ(0, shop.count(u"Rechnung"_s));
    EXPECT_EQ(u""_s, input());
}

// A code on which a handler failed stays, to be corrected; the next one takes its place.
TEST_F(Scans, WhatAnErrorLeavesIsReplaced) {
    const QString strange = u"O'Neill"_s;
    auto& box = control<QLineEdit>(*form, u"txtInput"_s);
    dialogs.expectError(3075);
    keys.scan(*form, strange);
    EXPECT_EQ(strange, box.selectedText());
    keys.scan(*form, bread);
    EXPECT_EQ(1, lines().size());

    dialogs.expectError(3075);
    keys.scan(*form, strange);
    for (const auto* name : {u"cmdNumber7", u"cmdNumber7"})
        click(QString::fromUtf16(name));
    EXPECT_EQ(u"77"_s, input());
    click(u"cmdClear"_s);
    dialogs.expectError(13);
    keys.type(*form, u"a+"_s, 100);
    EXPECT_EQ(u"a+"_s, box.selectedText());
    keys.scan(*form, milk);
    EXPECT_EQ(2, lines().size());
    EXPECT_EQ(0, sounds);
}

} // namespace
