#include "ui_frmMain.h"

#include <access/ui/KasseOpener.h>
#include <access/ui/frmMain.h>
#include <access/ui/frmPersonal.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/gUser.h>
#include <ui/Panels.h>
#include <ui/Pointer.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

frmMain::frmMain(KasseOpener& kasse, QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::frmMain>())
    , m_kasse(kasse)
    , m_bar(*this, [](const std::function<void()>& act) { Handle("frmMain", act); }) {
    m_ui->setupUi(this);
    // The whole screen, also where no window manager would maximise it.
    if (const QScreen* display = QGuiApplication::primaryScreen()) setGeometry(display->availableGeometry());
    setWindowState(Qt::WindowMaximized);
    m_ui->mainButtonBar->setFixedWidth(Theme::Current().keyHeight * 5);
    m_ui->lblGroup->setProperty("role", u"small muted"_s);
    m_ui->lblFirma->setProperty("role", u"large"_s);
    m_ui->lblFirma->setText(gKopf1.trimmed().isEmpty() ? u"Merivane"_s : gKopf1);
    m_ui->lblAnschrift->setProperty("role", u"muted"_s);
    QStringList address;
    for (const QString& line : {gKopf2, gKopf3, gKopf4, gKopf5}) {
        if (!line.trimmed().isEmpty()) address << line;
    }
    m_ui->lblAnschrift->setText(address.join(u'\n'));
    m_ui->mainStatusBar->setSizeGripEnabled(false);
    m_ui->mainStatusBar->addWidget(new QLabel(u"Angemeldet:"_s));
    m_ui->mainStatusBar->addWidget(new QLabel(gUser.Name + u' ' + gUser.Vorname));
    m_till = new QLabel;
    m_till->setIndent(16);
    m_till->setObjectName(u"lblKassenUser"_s);
    m_ui->mainStatusBar->addWidget(m_till);
    // Another person can take over the register without the shell having a part in it.
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &frmMain::showTillUser);
    connect(&m_kasse, &KasseOpener::Unloaded, this, &frmMain::showTillUser, Qt::QueuedConnection);
    showTillUser();
    m_ui->mainStatusBar->addPermanentWidget(new QLabel(u"Kasse: "_s + gSystem->ComputerName()));
    // In line with the panels above.
    m_ui->mainStatusBar->setContentsMargins(8, 0, 8, 0);
    fillBar();
}

frmMain::~frmMain() = default;

void frmMain::fillBar() {
    m_areas.add(u"frmPersonal"_s, [] { return new frmPersonal; });

    // A till that is nothing else has its register behind the login; the shell is only the back office there.
    if (!gOnlyKassenModus) {
        m_bar.add({u"Kasse"_s, u"Kassenbetrieb"_s, u"Starten Sie den Kassenbetrieb"_s, u"F2"_s, [this] {
                       m_kasse.OpenKasse();
                       showTillUser();
                   }});
    }
    m_bar.add({u"Personal"_s,
               u"Mitarbeiter"_s,
               u"Verwalten Sie Ihre Mitarbeiter und vergeben Sie Systemrechte"_s,
               u"F4"_s,
               [this] { m_areas.show(u"frmPersonal"_s); },
               {},
               &Rechte::R_Personal});
    m_bar.add({u"Logout"_s, u"Abmelden"_s, u"Meldet den aktuellen Benutzer vom System ab."_s, u"F12"_s,
               [this] { Logout(); }});

    std::vector<QString> keys;
    for (const Command& entry : m_bar.all())
        keys.push_back(entry.key);
    m_bar.fillBar(*m_ui->layEntries, keys);
    for (TouchKey* key : m_ui->mainButtonBar->findChildren<TouchKey*>())
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_ui->layEntries->itemAt(0)->widget()->setFocus();
}

void frmMain::showTillUser() {
    m_till->setText(m_kasse.isOpen() ? u"An der Kasse: "_s + gKassenUser.Name + u' ' + gKassenUser.Vorname
                                     : QString());
}

void frmMain::Logout() {
    hide();
    QCoreApplication::processEvents();
    close();
}

void frmMain::closeEvent(QCloseEvent* event) {
    m_areas.closeAll();
    // A register that keeps its open sale stays open beside the login.
    m_kasse.close();
    event->accept();
    emit Unloaded();
}
