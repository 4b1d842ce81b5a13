#pragma once

#include <register/ui/frmKasse.h>
#include <session/Globals.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZahlung.h>
#include <support/FixedClock.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/Sound.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>
#include <harness/Session.h>

using namespace Qt::StringLiterals;

/// Keeps what a form looks like when the environment variable MERIVANE_SCREENSHOTS names a folder for it.
inline void keep(QWidget& form, const QString& name) {
    const QString folder = qEnvironmentVariable("MERIVANE_SCREENSHOTS");
    if (!folder.isEmpty() && QDir().mkpath(folder)) form.grab().save(folder + u'/' + name + u".png"_s);
}

/// The register's real form in a small shop, used as a cashier uses it: by keys and clicks.
class Kasse : public testing::Test {
  protected:
    Kasse() {
        tillSession();
        gColorBack1 = 13813442;
        gColorBack2 = 16777215;
        gColorBack3 = 16118256;
        gColorBack4 = 9533303;
        Theme::Apply();
        shop.article(bread, u"Dinkelbrot 750 g"_s, 4.50);
        shop.article(milk, u"Hafermilch 1 l"_s, 1.79, {{u"Einheit"_s, u"l"_s}});
        shop.article(u"77"_s, u"Blumenstrauß"_s, 0, {{u"PreisAngabe"_s, true}});
        for (int i = 0; i < 5; ++i)
            shop.insert(u"ShortCutGroup"_s, {{u"GroupNumber"_s, i}, {u"GroupName"_s, u"Gruppe %1"_s.arg(i)}});
        key(0, 0, u"Brot & Co"_s, bread);
        key(0, 1, u"Milch"_s, milk);
        key(1, 0, u"Strauß"_s, u"77"_s);
        QFile karten(shop.folder() + u"karten.txt"_s);
        if (!karten.open(QIODevice::WriteOnly) || karten.write("VISA\r\nGirocard\r\n") < 0)
            ADD_FAILURE() << "no karten.txt";
        SetSoundHook([this] { ++sounds; });
    }
    ~Kasse() override { SetSoundHook({}); }

    void SetUp() override { open(); }
    void open() {
        form = std::make_unique<frmKasse>([this] {
            ++logins;
            EXPECT_TRUE(gLoginPflicht);
            gKassenUser.Vorname = u"Ali"_s;
            gKassenUser.ID = 4;
        });
        QObject::connect(form.get(), &frmKasse::Unloaded, form.get(), [this] { ++unloaded; });
        form->resize(1366, 768);
        showForm(*form);
    }
    void key(int group, int number, const QString& name, const QString& article) {
        shop.insert(u"ShortCut"_s, {{u"GroupNumber"_s, group},
                                    {u"Number"_s, number},
                                    {u"Name"_s, name},
                                    {u"ArtikelNummer"_s, article}});
    }

    /// As a scanner does: the digits and Enter to whatever has the focus.
    void scan(const QString& code) {
        typeText(*form, code);
        pressKey(*form, Qt::Key_Return);
    }
    void press(Qt::Key k, Qt::KeyboardModifiers modifiers = {}) { pressKey(*form, k, modifiers); }
    void click(const QString& name) { clickOn(*form, name); }

    [[nodiscard]] QString input() const { return control<QLineEdit>(*form, u"txtInput"_s).text(); }
    [[nodiscard]] QString mal() const { return control<QLineEdit>(*form, u"txtMal"_s).text(); }
    [[nodiscard]] bool inputHasFocus() const {
        return form->focusWidget() == &control<QLineEdit>(*form, u"txtInput"_s);
    }
    [[nodiscard]] QString label(const QString& name) const { return control<QLabel>(*form, name).text(); }
    [[nodiscard]] QTableView& list() const { return control<QTableView>(*form, u"lvwBestellung"_s); }
    [[nodiscard]] int selected() const { return list().currentIndex().row(); }
    /// The list as the cashier reads it, one text a row.
    [[nodiscard]] QStringList lines() const {
        QStringList all;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 1; column < list().model()->columnCount(); ++column)
                cells << list().model()->index(row, column).data().toString();
            all << cells.join(u'|');
        }
        return all;
    }
    void payCash(const QString& given = {}) {
        dialogs.expectModal(u"frmKasseTotal"_s, [given](QDialog& d) {
            typeText(d, given);
            pressKey(d, Qt::Key_Return);
        });
        press(Qt::Key_F10);
    }

    const QString bread = u"2001040000128"_s, milk = u"2002010000233"_s;
    TempShop shop;
    FixedClock clock;
    ScriptedForms dialogs;
    std::unique_ptr<frmKasse> form;
    int logins = 0, unloaded = 0, sounds = 0;
};
