#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/Binding.h>
#include <ui/DigitPad.h>
#include <ui/Form.h>
#include <ui/TouchKey.h>
#include <ui/UserSettings.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Ware {
    QString Name, Gruppe;
    bool Aktiv = false;
    Currency Preis;
    double Menge = 0;
    int Anzahl = 0;
};

/// A record form as they all are.
class frmWare : public FormDialog {
    Q_OBJECT

  public:
    explicit frmWare(Ware& ware, QWidget* parent = nullptr)
        : FormDialog(parent) {
        auto* column = new QVBoxLayout(this);
        const auto add = [&](QWidget* control, const char16_t* name) {
            control->setObjectName(QString::fromUtf16(name));
            column->addWidget(control);
        };
        add(txtName, u"txtName");
        add(cboGruppe, u"cboGruppe");
        add(chkAktiv, u"chkAktiv");
        add(txtPreis, u"txtPreis");
        add(txtMenge, u"txtMenge");
        add(txtAnzahl, u"txtAnzahl");
        add(cmdOK, u"cmdOK");
        add(cmdCancel, u"cmdCancel");
        cboGruppe->setEditable(true);
        setUpForm(txtName);
        m_binding.text(txtName, ware.Name, 10);
        m_binding.choice(cboGruppe, ware.Gruppe, [] { return QStringList{u"Brot"_s, u"Käse"_s}; });
        m_binding.flag(chkAktiv, ware.Aktiv);
        m_binding.money(txtPreis, ware.Preis, u"###0.00"_s, u"Kein Preis."_s);
        m_binding.number(txtMenge, ware.Menge, u"Keine Menge."_s);
        m_binding.number(txtAnzahl, ware.Anzahl, u"Keine Anzahl."_s);
        m_binding.fill();
        records = &guard().open(u"Personal"_s);
    }
    Recordset* records = nullptr;
    std::function<void()> onOk;
    int asked = 0;
    bool leave = true;

  protected:
    void ok() override {
        if (onOk) onOk();
        if (FirstFailure({{IsEmpty(txtName), txtName, u"Kein Name."_s},
                          {[this] { return ++asked > 0 && txtName->text() == u"doppelt"_s; }, txtName,
                           u"Der Name ist vergeben."_s, MsgIcon::Exclamation}}) ||
            !m_binding.take())
            return;
        accept();
    }
    bool cancelled() override { return leave; }

  private:
    QLineEdit* txtName = new QLineEdit(this);
    QComboBox* cboGruppe = new QComboBox(this);
    QCheckBox* chkAktiv = new QCheckBox(this);
    NumberEdit *txtPreis = new NumberEdit(this), *txtMenge = new NumberEdit(this),
               *txtAnzahl = new NumberEdit(this);
    TouchKey *cmdOK = new TouchKey(u"OK"_s, this), *cmdCancel = new TouchKey(u"Abbrechen"_s, this);
    Binding m_binding;
};

class FormTest : public testing::Test {
  protected:
    TempShop m_shop;
    ScriptedForms m_dialogs;
};

TEST_F(FormTest, FillsItsControlsAndGivesTheRecordBack) {
    Ware ware{u"Gouda"_s, u"Käse"_s, true, Currency::fromDouble(1.99), 0.25, 3};
    frmWare form(ware);
    showForm(form);
    EXPECT_EQ(u"1,99"_s, control<QLineEdit>(form, u"txtPreis"_s).text());
    EXPECT_EQ(u"0,25"_s, control<QLineEdit>(form, u"txtMenge"_s).text());
    EXPECT_EQ(1, control<QComboBox>(form, u"cboGruppe"_s).currentIndex());
    typeText(form, u"Edamer jung und alt"_s); // replaces what is selected, and is cut
    control<QComboBox>(form, u"cboGruppe"_s).setEditText(u" Neu "_s);
    control<QCheckBox>(form, u"chkAktiv"_s).setChecked(false);
    control<QLineEdit>(form, u"txtPreis"_s).setFocus();
    typeText(form, u"2.5"_s);
    pressKey(form, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(QDialog::Accepted, form.result());
    EXPECT_EQ(u"Edamer jun"_s, ware.Name);
    EXPECT_EQ(u"Neu"_s, ware.Gruppe);
    EXPECT_FALSE(ware.Aktiv);
    EXPECT_EQ(Currency::fromDouble(2.5), ware.Preis);
    EXPECT_EQ(3, ware.Anzahl);
}

TEST_F(FormTest, TellsTheFirstFailureAndStaysThere) {
    Ware ware;
    frmWare form(ware);
    showForm(form);
    auto& name = control<QLineEdit>(form, u"txtName"_s);
    m_dialogs.expectMsgBox(u"Kein Name."_s, MsgIcon::Information);
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ(0, form.asked) << "what comes behind is not asked";
    EXPECT_EQ(&name, form.focusWidget());
    typeText(form, u"doppelt"_s);
    m_dialogs.expectMsgBox(u"Der Name ist vergeben."_s, MsgIcon::Exclamation);
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ(u"doppelt"_s, name.selectedText());
    typeText(form, u"einfach"_s);
    control<QLineEdit>(form, u"txtAnzahl"_s).setText(u"99999999999"_s);
    m_dialogs.expectMsgBox(u"Keine Anzahl."_s);
    clickOn(form, u"cmdOK"_s);
    EXPECT_EQ(u"txtAnzahl"_s, form.focusWidget()->objectName());
    typeText(form, u"7"_s);
    clickOn(form, u"cmdOK"_s);
    EXPECT_EQ(QDialog::Accepted, form.result());
    EXPECT_EQ(7, ware.Anzahl);
}

TEST_F(FormTest, AnErrorCancelsPendingEditsAndIsReportedUnderTheForm) {
    Ware ware{u"Gouda"_s, {}, false, {}, 0, 0};
    frmWare form(ware);
    showForm(form);
    form.onOk = [&] {
        form.records->AddNew();
        form.records->Set(u"Gibtsnicht", 1);
    };
    m_dialogs.expectError(3265);
    pressKey(form, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_FALSE(form.records->Editing());
    form.onOk = [] { throw RuntimeError(5, u"Ungültiger Prozeduraufruf"_s); };
    m_dialogs.expectError(5);
    pressKey(form, Qt::Key_Return);
    EXPECT_TRUE(m_dialogs.lastMessage.contains(u"frmWare"_s)) << m_dialogs.lastMessage.toStdString();
}

TEST_F(FormTest, IsGivenUpByEscapeTheKeyAndTheWindow) {
    for (const auto& way : std::vector<std::function<void(frmWare&)>>{
             [](frmWare& f) { pressKey(f, Qt::Key_Escape); }, [](frmWare& f) { clickOn(f, u"cmdCancel"_s); },
             [](frmWare& f) { f.close(); }}) {
        Ware ware{u"Gouda"_s, {}, false, {}, 0, 0};
        frmWare form(ware);
        showForm(form);
        typeText(form, u"anders"_s);
        form.leave = false;
        way(form);
        EXPECT_TRUE(form.isVisible());
        form.leave = true;
        way(form);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(QDialog::Rejected, form.result());
        EXPECT_EQ(u"Gouda"_s, ware.Name);
    }
}

TEST_F(FormTest, CommandsGoThroughConditionRightAndGuard) {
    QWidget form;
    Rechte rights;
    QStringList done;
    bool any = false;
    Commands commands(
        form,
        [&](const std::function<void()>& act) {
            done << u"guard"_s;
            act();
        },
        rights);
    Command open{u"FileOpen"_s,      u"Öffnen"_s, u"Öffnet"_s, u"Ctrl+O"_s, [&] { done << u"open"_s; },
                 [&] { return any; }};
    Command settle{u"Abrechnung"_s, u"Abrechnen"_s};
    settle.act = [&] { done << u"settle"_s; };
    settle.right = &Rechte::R_KassenAbschluss;
    settle.refusalIcon = MsgIcon::Information;
    settle.refusal = u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s;
    commands.add(open);
    commands.add(settle);
    EXPECT_THROW(commands.add(settle), RuntimeError);
    auto* bar = new QHBoxLayout(&form);
    commands.fillBar(*bar, {u"FileOpen"_s, {}, u"Gibtsnicht"_s, u"Abrechnung"_s});
    QMenu menu;
    commands.fillMenu(menu, {u"FileOpen"_s, {}, u"Gibtsnicht"_s, u"Abrechnung"_s});
    EXPECT_EQ(3, menu.actions().size());
    commands.update();
    showForm(form);

    EXPECT_FALSE(control<TouchKey>(form, u"barFileOpen"_s).isEnabled());
    EXPECT_EQ(u"Strg+O"_s, control<TouchKey>(form, u"barFileOpen"_s).hint());
    QTest::keyClick(&form, Qt::Key_O, Qt::ControlModifier);
    EXPECT_FALSE(commands.trigger(u"FileOpen"_s));
    EXPECT_TRUE(done.isEmpty());
    any = true;
    commands.update();
    QTest::keyClick(&form, Qt::Key_O, Qt::ControlModifier);
    clickOn(form, u"barFileOpen"_s);
    menu.actions().constFirst()->trigger();
    EXPECT_EQ((QStringList{u"guard"_s, u"open"_s, u"guard"_s, u"open"_s, u"guard"_s, u"open"_s}), done);

    m_dialogs.expectMsgBox(settle.refusal, MsgIcon::Information);
    clickOn(form, u"barAbrechnung"_s);
    EXPECT_EQ(6, done.size());
    rights.R_KassenAbschluss = true;
    EXPECT_TRUE(commands.trigger(u"Abrechnung"_s));
    commands.remove(u"Abrechnung"_s);
    commands.remove(u"Abrechnung"_s);
    EXPECT_FALSE(commands.trigger(u"Abrechnung"_s));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(nullptr, form.findChild<TouchKey*>(u"barAbrechnung"_s));
    EXPECT_EQ(u"Umsch+Entf"_s, ShortcutText(u"Shift+Del"_s));
}

class frmBereich : public AreaForm {
    Q_OBJECT

  public:
    frmBereich() {
        auto* page = new QSplitter;
        page->setObjectName(u"splMain"_s);
        page->addWidget(txtSuche);
        page->addWidget(new QLabel);
        setCentralWidget(page);
        commands().add({u"FileNew"_s, u"Neu"_s, {}, u"F4"_s, [this] { tell(u"neu"_s); }});
        commands().add({u"FileExit"_s, u"Schließen"_s, {}, {}, [this] { close(); }});
        setUpArea({{u"&Datei"_s, {u"FileNew"_s, u"FileExit"_s}}}, {u"FileNew"_s});
    }
    QLineEdit* txtSuche = new QLineEdit(u"alt"_s);
};

TEST_F(FormTest, AnAreaHasMenusABarAStatusLineAndAMemory) {
    const QTemporaryDir settings;
    SetUserSettingsFile(settings.filePath(u"fenster.ini"_s));
    gUser.Name = u"Haseloff"_s;
    gUser.Vorname = u"Karin"_s;
    auto* area = new frmBereich;
    int unloaded = 0;
    QObject::connect(area, &AreaForm::Unloaded, area, [&] { ++unloaded; });
    showForm(*area);
    EXPECT_EQ(u"Database: Jet "_s + gDB->Version(), control<QLabel>(*area, u"VER"_s).text());
    EXPECT_EQ(u"Haseloff Karin"_s, control<QLabel>(*area, u"User"_s).text());
    QTest::keyClick(area, Qt::Key_F4);
    EXPECT_EQ(u"neu"_s, control<QLabel>(*area, u"Message"_s).text());
    EXPECT_EQ(2, area->menuBar()->actions().size()) << "its own, and help";
    area->txtSuche->setFocus();
    EXPECT_EQ(u"alt"_s, area->txtSuche->selectedText());
    area->setWindowState(Qt::WindowNoState);
    area->setGeometry(50, 60, 640, 400);
    control<QSplitter>(*area, u"splMain"_s).setSizes({200, 400});
    const QList<int> sizes = control<QSplitter>(*area, u"splMain"_s).sizes();
    pressKey(*area, Qt::Key_Escape);
    EXPECT_EQ(1, unloaded);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    frmBereich again;
    again.setAttribute(Qt::WA_DeleteOnClose, false);
    showForm(again);
    EXPECT_EQ(QSize(640, 400), again.size());
    EXPECT_EQ(sizes, control<QSplitter>(again, u"splMain"_s).sizes());
    again.close();
    SetUserSettingsFile({});
}

} // namespace

#include "FormTest.moc"
