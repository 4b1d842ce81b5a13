#include "ui_frmSetup.h"

#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/MessageDetails.h>
#include <session/MsgBox.h>
#include <session/ServerStore.h>
#include <session/Startup.h>
#include <setup/StorePath.h>
#include <setup/ui/frmSetup.h>
#include <store/Database.h>
#include <text/DetailedError.h>
#include <ui/Binding.h>
#include <ui/DigitPad.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QShortcut>

using namespace Qt::StringLiterals;

frmSetup::frmSetup(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmSetup>()) {
    m_ui->setupUi(this);
    const int edge = Theme::Current().keyHeight;
    for (TouchKey* key : {m_ui->cmdOK, m_ui->cmdCancel})
        key->setFixedSize(edge * 11 / 4, edge);
    for (TouchKey* key : {m_ui->cmdDBPath, m_ui->cmdDBServer})
        key->setFixedSize(edge * 15 / 4, edge);
    for (QLineEdit* box : {m_ui->txtDBPath, m_ui->txtDBServer})
        box->setMinimumSize(edge * 9, edge);
    connect(m_ui->cmdDBPath, &TouchKey::clicked, this, [this] { guard()([this] { chooseFile(); }); });
    connect(m_ui->cmdDBServer, &TouchKey::clicked, this, [this] { guard()([this] { checkServer(); }); });
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, m_ui->cmdDBPath, &TouchKey::click);
    connect(new QShortcut(Qt::Key_F4, this), &QShortcut::activated, m_ui->cmdDBServer, &TouchKey::click);
    gSetupDone = 0;
    guard()([this] {
        m_ui->txtDBPath->setText(gSystem->ReadProfileString(u"GLOBAL"_s, u"DBPath"_s, KonfigIni()));
        m_ui->txtDBServer->setText(ShownServerAddress(ReadServerAddress()));
    });
    setUpForm(m_ui->txtDBServer->text().isEmpty() ? m_ui->txtDBPath : m_ui->txtDBServer);
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

QString frmSetup::server() const {
    return EnteredServerAddress(m_ui->txtDBServer->text(), ReadServerAddress());
}

bool frmSetup::serverIsReadable() {
    const QString fault = ServerAddressFault(server());
    return !FirstFailure({{!fault.isEmpty(), m_ui->txtDBServer, fault}});
}

void frmSetup::checkServer() {
    if (!serverIsReadable()) return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto done = qScopeGuard([this] {
        QApplication::restoreOverrideCursor();
        m_ui->txtDBServer->setFocus();
        SelectAllText(m_ui->txtDBServer);
    });
    PaintWaiter waiter;
    try {
        const auto db = OpenServerStore(server(), waiter);
        MsgBox(u"Die Verbindung steht. Die Datenbank Ihres Geschäfts liegt auf dem Server (%1)."_s.arg(
            db->Version()));
    } catch (const RuntimeError& error) {
        if (IsEmptyServer(error))
            MsgBox(u"Die Verbindung steht. Die Datenbank auf dem Server ist noch leer; beim Start fragt das "
                   "Programm, ob es die Tabellen anlegen soll."_s);
        else if (IsServerTrouble(error)) {
            const MessageDetails details(DetailsOf(error));
            MsgBox(error.Description, MsgIcon::Exclamation);
        } else
            throw;
    }
}

void frmSetup::ok() {
    const QString folder = m_ui->txtDBPath->text().trimmed();
    const QString address = server();
    if (!address.isEmpty() && !serverIsReadable()) return;
    if (FirstFailure(
            {{address.isEmpty() && !HasStore(folder), m_ui->txtDBPath,
              u"In diesem Ordner wurde keine Datenbank (Merivane.mdb) gefunden. Bitte prüfen Sie Ihre Eingabe."_s},
             {!HasFolder(folder), m_ui->txtDBPath,
              u"Dieser Ordner wurde nicht gefunden. Auch mit einer Datenbank auf dem Server braucht die Kasse einen "
              "Ordner für Vorlagen und Bilder. Bitte prüfen Sie Ihre Eingabe."_s}}))
        return;
    SaveStorePlace(folder, address);
    accept();
}

bool frmSetup::cancelled() {
    gSetupDone = 0;
    return true;
}
