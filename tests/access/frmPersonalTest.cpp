#include <access/ui/frmPersonal.h>
#include <session/Bilder.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/ListView.h>
#include <ui/PictureField.h>
#include <ui/TouchKey.h>

#include <QAction>
#include <QCheckBox>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class frmPersonalTest : public testing::Test {
  protected:
    frmPersonalTest() {
        m_karin = shop.person(u"Karin"_s, u"Haseloff"_s, u"1111"_s,
                              {{u"Ort"_s, u"Erlental"_s}, {u"EMail"_s, u"karin@laden.example"_s}});
        m_otto = shop.person(u"Otto"_s, u"Frey"_s, u"5"_s, {{u"Gesperrt"_s, true}, {u"R_Setup"_s, false}});
        QImage(20, 20, QImage::Format_RGB32).save(m_image);
    }
    void open() {
        m_form = std::make_unique<frmPersonal>();
        m_form->setAttribute(Qt::WA_DeleteOnClose, false);
        showForm(*m_form);
    }
    [[nodiscard]] ListView& list() const { return control<ListView>(*m_form, u"lvwResult"_s); }
    [[nodiscard]] QStringList names() const {
        QStringList all;
        for (int row = 0; row < list().model()->rowCount(); ++row)
            all << list().model()->index(row, 0).data().toString();
        return all;
    }
    [[nodiscard]] bool on(const QString& command) const {
        return control<QAction>(*m_form, command).isEnabled();
    }
    [[nodiscard]] QStringList facts() const {
        const QAbstractItemModel& model = *control<ListView>(*m_form, u"lvwDetail"_s).model();
        QStringList all;
        for (int row = 0; row < model.rowCount(); ++row)
            all << model.index(row, 0).data().toString() + u'=' + model.index(row, 1).data().toString();
        return all;
    }
    [[nodiscard]] QString picture(int id) const { return BildDatei(Bild::Person, QString::number(id)); }
    [[nodiscard]] QString label(const QString& name) const { return control<QLabel>(*m_form, name).text(); }

    TempShop shop;
    ScriptedForms dialogs;
    QTemporaryDir folder;
    QString m_image = folder.filePath(u"bild.png"_s);
    int m_karin = 0, m_otto = 0;
    std::unique_ptr<frmPersonal> m_form;
};

TEST_F(frmPersonalTest, ShowsWhoIsSelectedAndWhatCanBeDone) {
    open();
    EXPECT_EQ((QStringList{u"Frey, Otto"_s, u"Haseloff, Karin"_s}), names());
    EXPECT_EQ(u"Otto Frey"_s, label(u"lblName"_s));
    EXPECT_TRUE(control<QLabel>(*m_form, u"lblState"_s).isVisible());
    EXPECT_FALSE(on(u"FileEMail"_s));
    EXPECT_TRUE(on(u"FileOpen"_s));
    EXPECT_FALSE(on(u"EditDeleteGrafik"_s));
    EXPECT_EQ(u"Kein Mitarbeiterbild verfügbar"_s, label(u"sspBild"_s));
    pressKey(*m_form, Qt::Key_Down);
    EXPECT_EQ(u"Karin Haseloff"_s, label(u"lblName"_s));
    EXPECT_FALSE(control<QLabel>(*m_form, u"lblState"_s).isVisible());
    EXPECT_TRUE(on(u"FileEMail"_s));
    EXPECT_EQ(
        (QStringList{u"Ort=Erlental"_s, u"E-Mail=karin@laden.example"_s, u"Rechte=Artikel verwalten"_s}),
        facts().first(3));

    gDB->Execute(u"DELETE FROM Personal"_s);
    QTest::keyClick(m_form.get(), Qt::Key_F5);
    EXPECT_TRUE(names().isEmpty());
    EXPECT_EQ(QString(), label(u"lblName"_s));
    for (const auto& command :
         {u"FileOpen"_s, u"FileEMail"_s, u"EditDelete"_s, u"EditAddGrafik"_s, u"EditDeleteGrafik"_s})
        EXPECT_FALSE(on(command)) << command.toStdString();
    EXPECT_TRUE(on(u"FileNew"_s));
}

TEST_F(frmPersonalTest, FindsAndComesBackToTheWholeList) {
    shop.person(u"Anna"_s, u"Zorn"_s, u"6"_s, {{u"Ort"_s, u"Erlental"_s}});
    open();
    QTest::keyClick(m_form.get(), Qt::Key_F3);
    typeText(*m_form, u"erlen"_s);
    pressKey(*m_form, Qt::Key_Return);
    EXPECT_EQ((QStringList{u"Haseloff, Karin"_s, u"Zorn, Anna"_s}), names());
    EXPECT_EQ(u"2 Treffer"_s, label(u"lblHits"_s));
    pressKey(*m_form, Qt::Key_Down);
    EXPECT_EQ(u"Anna Zorn"_s, label(u"lblName"_s));
    QTest::keyClick(m_form.get(), Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(3, names().size());
    EXPECT_EQ(u"Anna Zorn"_s, label(u"lblName"_s));
    EXPECT_FALSE(on(u"EditGoTo"_s));

    QTest::keyClick(m_form.get(), Qt::Key_F3);
    typeText(*m_form, u"gibtsnicht"_s);
    clickOn(*m_form, u"cmdSearch"_s);
    EXPECT_TRUE(names().isEmpty());
    EXPECT_FALSE(on(u"FileOpen"_s));
    pressKey(*m_form, Qt::Key_Escape);
    EXPECT_EQ(3, names().size());
    QTest::keyClick(m_form.get(), Qt::Key_F3);
    typeText(*m_form, u"O'Hara"_s);
    dialogs.expectError(3075);
    pressKey(*m_form, Qt::Key_Return);
    EXPECT_EQ(3, names().size());
    EXPECT_TRUE(m_form->isVisible());
    pressKey(*m_form, Qt::Key_Escape);
    pressKey(*m_form, Qt::Key_Escape);
    EXPECT_FALSE(m_form->isVisible());
}

TEST_F(frmPersonalTest, APersonIsAddedWithPictureAndRights) {
    open();
    dialogs.expectModal(u"frmPersonalDetail"_s, [&](QDialog& d) {
        EXPECT_EQ(u"Neuer Mitarbeiter..."_s, d.windowTitle());
        dialogs.expectMsgBox(u"Sie müssen ein Namen für diesen Mitarbeiter eingeben."_s);
        pressKey(d, Qt::Key_Return);
        typeText(d, u"Sommer"_s);
        dialogs.expectMsgBox(u"Sie müssen ein Vorname für diesen Mitarbeiter eingeben."_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(u"txtVorName"_s, d.focusWidget()->objectName());
        typeText(d, u"Paul"_s);
        control<QLineEdit>(d, u"txtPLZ"_s).setFocus();
        typeText(d, u"a0,1-235"_s);
        control<QLineEdit>(d, u"txtPIN"_s).setFocus();
        typeText(d, u" 01"_s);
        control<QCheckBox>(d, u"chkRabatt"_s).click();
        dialogs.expectFile(u"Grafik aus Datei einfügen"_s, m_image);
        clickOn(d, u"cmdBildOpen"_s);
        pressKey(d, Qt::Key_Return);
    });
    QTest::keyClick(m_form.get(), Qt::Key_F4);
    EXPECT_EQ((QStringList{u"Sommer|Paul|01235| 01|Falsch|Wahr"_s}),
              shop.rows(u"SELECT Name, Vorname, PLZ, PIN, R_Artikel, R_Rabatt FROM Personal WHERE ID=3"_s));
    EXPECT_TRUE(QFile::exists(picture(3)));
    EXPECT_EQ(u"Paul Sommer"_s, label(u"lblName"_s));
    EXPECT_TRUE(control<PictureField>(*m_form, u"sspBild"_s).hasPicture());
}

TEST_F(frmPersonalTest, APersonIsChangedOrLeftAsItWas) {
    open();
    ASSERT_TRUE(list().selectKey(u"ID%1"_s.arg(m_karin)));
    dialogs.expectModal(u"frmPersonalDetail"_s, [&](QDialog& d) {
        EXPECT_EQ(u"1111"_s, control<QLineEdit>(d, u"txtPIN"_s).text());
        typeText(d, u"Anders"_s);
        pressKey(d, Qt::Key_Escape);
    });
    list().setFocus();
    pressKey(*m_form, Qt::Key_Return);
    EXPECT_EQ(1, shop.count(u"SELECT ID FROM Personal WHERE Name='Haseloff'"_s));
    dialogs.expectModal(u"frmPersonalDetail"_s, [&](QDialog& d) {
        typeText(d, u"Zander"_s);
        pressKey(d, Qt::Key_Return);
    });
    clickOn(*m_form, u"barFileOpen"_s);
    EXPECT_EQ((QStringList{u"Frey, Otto"_s, u"Zander, Karin"_s}), names());
    EXPECT_EQ(u"Karin Zander"_s, label(u"lblName"_s));

    dialogs.expectModal(u"frmPersonalDetail"_s, [&](QDialog& d) {
        gDB->Execute(u"DELETE FROM Personal WHERE ID=%1"_s.arg(m_karin)); // at another till
        dialogs.expectMsgBox(
            u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich wurden "
            "diese durch einen anderen Benutzer gelöscht.\nDas System aktualisiert jetzt Ihre Ansicht..."_s);
        pressKey(d, Qt::Key_Return);
    });
    clickOn(*m_form, u"barFileOpen"_s);
    EXPECT_EQ(QStringList{u"Frey, Otto"_s}, names());
}

TEST_F(frmPersonalTest, PicturesAreSetDroppedAndTakenAway) {
    open();
    dialogs.expectFile(u"Grafik aus Datei einfügen"_s, m_image);
    QTest::keyClick(m_form.get(), Qt::Key_B, Qt::ControlModifier);
    EXPECT_TRUE(QFile::exists(picture(m_otto)));
    EXPECT_TRUE(on(u"EditDeleteGrafik"_s));
    dialogs.expectMsgBox(u"Möchten Sie das Mitarbeiterbild wirklich löschen?"_s, MsgIcon::Question,
                         MsgAnswer::Yes, u"Löschen..."_s);
    control<QAction>(*m_form, u"EditDeleteGrafik"_s).trigger();
    EXPECT_FALSE(QFile::exists(picture(m_otto)));
    EXPECT_FALSE(on(u"EditDeleteGrafik"_s));
}

class Mailer : public QObject {
    Q_OBJECT

  public:
    QUrl last;
  public slots:
    void open(const QUrl& url) { last = url; }
};

TEST_F(frmPersonalTest, WritesToAPersonAndExportsAll) {
    open();
    ASSERT_TRUE(list().selectKey(u"ID%1"_s.arg(m_karin)));
    Mailer mailer;
    QDesktopServices::setUrlHandler(u"mailto"_s, &mailer, "open");
    QTest::keyClick(m_form.get(), Qt::Key_M, Qt::ControlModifier);
    QDesktopServices::unsetUrlHandler(u"mailto"_s);
    EXPECT_EQ(u"mailto:karin@laden.example"_s, mailer.last.toString());

    const QString file = folder.filePath(u"team.csv"_s);
    dialogs.expectModal(u"frmPersonalExport"_s, [&](QDialog& d) {
        pressKey(d, Qt::Key_Return);
        dialogs.expectMsgBox(u"Sie müssen ein Dateinamen auswählen."_s);
        pressKey(d, Qt::Key_Return);
        dialogs.expectFile(u"Exportiern"_s, file);
        clickOn(d, u"cmdFileOpen"_s);
        EXPECT_TRUE(dialogs.lastFile.name.endsWith(u"unbenannt.csv"_s));
        pressKey(d, Qt::Key_Return);
        clickOn(d, u"cmdBack"_s);
        pressKey(d, Qt::Key_Return);
        EXPECT_FALSE(QFile::exists(file));
        pressKey(d, Qt::Key_Return);
        EXPECT_EQ(u"Vorgang abgeschlossen..."_s,
                  control<QLabel>(control<QWidget>(d, u"wizPane2"_s), u"lblHeaderTitle"_s).text());
        EXPECT_FALSE(control<TouchKey>(d, u"cmdBack"_s).isEnabled());
        pressKey(d, Qt::Key_Return);
    });
    QTest::keyClick(m_form.get(), Qt::Key_E, Qt::ControlModifier);
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(3, written.readAll().count('\n'));
}

} // namespace

#include "frmPersonalTest.moc"
