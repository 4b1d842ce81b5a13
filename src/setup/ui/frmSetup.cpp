#include "ui_frmSetup.h"

#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <setup/StorePath.h>
#include <setup/ui/frmSetup.h>
#include <ui/Panels.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QDir>
#include <QFileInfo>
#include <QShortcut>

using namespace Qt::StringLiterals;

frmSetup::frmSetup(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmSetup>()) {
    m_ui->setupUi(this);
    const int edge = Theme::Current().keyHeight;
    for (TouchKey* key : {m_ui->cmdDBPath, m_ui->cmdOK, m_ui->cmdCancel})
        key->setFixedSize(edge * 11 / 4, edge);
    m_ui->txtDBPath->setMinimumSize(edge * 9, edge);
    connect(m_ui->cmdDBPath, &TouchKey::clicked, this,
            [this] { Handle("frmSetup", [this] { chooseFile(); }); });
    connect(m_ui->cmdOK, &TouchKey::clicked, this, [this] { Handle("frmSetup", [this] { save(); }); });
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &frmSetup::reject);
    connect(m_ui->txtDBPath, &QLineEdit::returnPressed, m_ui->cmdOK, &TouchKey::click);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, m_ui->cmdDBPath, &TouchKey::click);
    gSetupDone = 0;
    Handle("frmSetup", [this] {
        m_ui->txtDBPath->setText(gSystem->ReadProfileString(u"GLOBAL"_s, u"DBPath"_s, KonfigIni()));
    });
    m_ui->txtDBPath->setFocus();
    m_ui->txtDBPath->selectAll();
}

frmSetup::~frmSetup() = default;

void frmSetup::chooseFile() {
    FileRequest request;
    request.title = u"Datenbank auswählen"_s;
    request.filter = u"Microsoft Access Datenbank   (*.mdb)|*.mdb"_s;
    request.name = QString::fromUtf16(StoreFileName);
    const std::optional<QString> file = ChooseFile(request);
    if (!file) return;
    m_ui->txtDBPath->setText(QDir::toNativeSeparators(QFileInfo(*file).absolutePath()));
    m_ui->cmdOK->setFocus();
}

void frmSetup::save() {
    const QString folder = m_ui->txtDBPath->text().trimmed();
    if (!HasStore(folder)) {
        MsgBox(
            u"In diesem Ordner wurde keine Datenbank (Merivane.mdb) gefunden. Bitte prüfen Sie Ihre Eingabe."_s);
        m_ui->txtDBPath->setFocus();
        m_ui->txtDBPath->selectAll();
        return;
    }
    SaveStorePath(folder);
    accept();
}

void frmSetup::reject() {
    gSetupDone = 0;
    QDialog::reject();
}
