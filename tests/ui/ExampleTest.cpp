#include <session/Globals.h>
#include <session/Keys.h>
#include <session/RowGone.h>
#include <store/Database.h>
#include <store/Fields.h>
#include <store/SqlText.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/Binding.h>
#include <ui/Form.h>
#include <ui/ListView.h>
#include <ui/RecordList.h>
#include <ui/ShowModal.h>
#include <ui/TouchKey.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

// The forms that docs/forms.md shows, as they stand there.

using namespace Qt::StringLiterals;

namespace {

/// What the designer's files give.
namespace Ui {
struct frmFarbe {
    QLineEdit* txtName = new QLineEdit;
    QCheckBox* chkAktiv = new QCheckBox;
    TouchKey *cmdOK = new TouchKey(u"OK"_s), *cmdCancel = new TouchKey(u"Abbrechen"_s);
    void setupUi(QDialog* form) const {
        auto* column = new QVBoxLayout(form);
        const std::pair<QWidget*, QString> controls[] = {{txtName, u"txtName"_s},
                                                         {chkAktiv, u"chkAktiv"_s},
                                                         {cmdOK, u"cmdOK"_s},
                                                         {cmdCancel, u"cmdCancel"_s}};
        for (const auto& [control, name] : controls) {
            control->setObjectName(name);
            column->addWidget(control);
        }
    }
};
struct frmFarben {
    ListView* lvwFarben = new ListView;
    void setupUi(QMainWindow* form) const { form->setCentralWidget(lvwFarben); }
};
} // namespace Ui

struct Farbe {
    int ID = 0;
    QString Name;
    bool Aktiv = false;
};

const Fields<Farbe>& FarbeFields() {
    static const Fields<Farbe> fields{
        {u"ID", &Farbe::ID, loadOnly}, {u"Name", &Farbe::Name, 50}, {u"Aktiv", &Farbe::Aktiv}};
    return fields;
}

class frmFarbe : public FormDialog {
    Q_OBJECT

  public:
    frmFarbe(Farbe& farbe, QWidget* parent)
        : FormDialog(parent) {
        m_ui.setupUi(this);
        setUpForm(m_ui.txtName);
        m_binding.text(m_ui.txtName, farbe.Name, 50);
        m_binding.flag(m_ui.chkAktiv, farbe.Aktiv);
        m_binding.fill();
    }

  protected:
    void ok() override {
        if (FirstFailure({{IsEmpty(m_ui.txtName), m_ui.txtName, u"Sie müssen einen Namen eingeben."_s}}) ||
            !m_binding.take())
            return;
        accept();
    }

  private:
    Ui::frmFarbe m_ui;
    Binding m_binding;
};

class frmFarben : public AreaForm {
    Q_OBJECT

  public:
    frmFarben() {
        m_ui.setupUi(this);
        m_list->open(u"SELECT ID, Name, Aktiv FROM Colors"_s, u"Name ASC"_s);
        m_ui.lvwFarben->setModel(m_list);
        m_ui.lvwFarben->remember(u"frmFarben/lvwFarben"_s);
        const auto any = [this] { return m_ui.lvwFarben->currentRow() >= 0; };
        commands().add({u"FileNew"_s, u"Neu"_s, u"Legt Farben an"_s, u"F4"_s, [this] { edit(0); }});
        commands().add({u"FileOpen"_s,
                        u"Öffnen"_s,
                        u"Ändert die Farben"_s,
                        {},
                        [this] { edit(GetKeyID(m_ui.lvwFarben->currentKey(), 2)); },
                        any,
                        nullptr,
                        u"Enter"_s});
        connect(m_ui.lvwFarben, &ListView::chosen, this, [this] { commands().trigger(u"FileOpen"_s); });
        setUpArea({{u"&Datei"_s, {u"FileNew"_s, u"FileOpen"_s}}}, {u"FileNew"_s, u"FileOpen"_s});
    }
    ~frmFarben() override { m_ui.lvwFarben->setModel(nullptr); }

  private:
    void edit(int id) {
        Farbe farbe;
        m_rows.FindFirst(u"ID="_s + sql::number(id));
        const bool isNew = id == 0;
        if (!isNew && m_rows.NoMatch()) {
            TellRowGone(RowGone::Bereich);
            return m_list->reload();
        }
        if (!isNew) load(m_rows, FarbeFields(), farbe);
        frmFarbe dialog(farbe, this);
        if (ShowModal(dialog) != QDialog::Accepted) return;
        isNew ? m_rows.AddNew() : m_rows.Edit();
        save(m_rows, FarbeFields(), farbe);
        const QString key = u"ID"_s + QString::number(m_rows.Long(u"ID"));
        m_rows.Update();
        m_list->reload();
        m_ui.lvwFarben->selectKey(key);
    }

    Ui::frmFarben m_ui;
    RecordList* m_list = new RecordList({u"ID"_s, u"ID"_s}, {{u"Name"_s, u"Name"_s, u"Grüne Wiese"_s}}, this);
    Recordset& m_rows = guard().open(u"Colors"_s);
};

TEST(ExampleTest, AListAndARecordFormWorkAsTheDocumentTells) {
    TempShop shop;
    ScriptedForms dialogs;
    shop.insert(u"Colors"_s, {{u"Name"_s, u"Grün"_s}});
    frmFarben form;
    form.setAttribute(Qt::WA_DeleteOnClose, false);
    showForm(form);
    dialogs.expectModal(u"frmFarbe"_s, [&](QDialog& d) {
        dialogs.expectMsgBox(u"Sie müssen einen Namen eingeben."_s);
        pressKey(d, Qt::Key_Return);
        typeText(d, u"Blau"_s);
        pressKey(d, Qt::Key_Return);
    });
    QTest::keyClick(&form, Qt::Key_F4);
    auto& list = control<ListView>(form, {});
    EXPECT_EQ(u"Blau"_s, list.currentIndex().data().toString());
    dialogs.expectModal(u"frmFarbe"_s, [](QDialog& d) {
        control<QCheckBox>(d, u"chkAktiv"_s).click();
        pressKey(d, Qt::Key_Return);
    });
    list.setFocus();
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ((QStringList{u"Blau|Wahr"_s, u"Grün|Falsch"_s}),
              shop.rows(u"SELECT Name, Aktiv FROM Colors ORDER BY Name"_s));
    list.selectRow(1);
    gDB->Execute(u"DELETE FROM Colors WHERE Name='Grün'"_s); // at another till
    dialogs.expectMsgBox(u"Die von Ihnen angeforderten Daten...*"_s);
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ(1, list.model()->rowCount());
}

} // namespace

#include "ExampleTest.moc"
