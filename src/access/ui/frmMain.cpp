#include "ui_frmMain.h"

#include <access/ui/KasseOpener.h>
#include <access/ui/frmMain.h>
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
#include <QScreen>
#include <QShortcut>

using namespace Qt::StringLiterals;

frmMain::frmMain(KasseOpener& kasse, QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::frmMain>())
    , m_kasse(kasse) {
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
    m_ui->mainStatusBar->addWidget(new QLabel(gUser.Name + u' ' + gUser.Vorname));
    m_ui->mainStatusBar->addPermanentWidget(new QLabel(u"Kasse: "_s + gSystem->ComputerName()));
    // In line with the panels above.
    m_ui->mainStatusBar->setContentsMargins(8, 0, 8, 0);
    fillBar();
    showBar();
}

frmMain::~frmMain() = default;

void frmMain::fillBar() {
    m_bar.Add({u"Kasse"_s, u"Kassenbetrieb"_s, u"Starten Sie den Kassenbetrieb"_s, nullptr,
               [this] { m_kasse.OpenKasse(); }, u"F2"_s});
    m_bar.Add({u"Logout"_s, u"Abmelden"_s, u"Meldet den aktuellen Benutzer vom System ab."_s, nullptr,
               [this] { Logout(); }, u"F12"_s});
    // A till that is nothing else has its register behind the login; the shell is only the back office there.
    if (gOnlyKassenModus) m_bar.Remove(u"Kasse"_s);
}

void frmMain::showBar() {
    for (const ShellEntry& entry : m_bar.Entries()) {
        auto* key = new TouchKey(entry.Caption, m_ui->mainButtonBar);
        key->setObjectName(u"entry"_s + entry.Key);
        key->setToolTip(entry.ToolTip);
        key->setHint(entry.Shortcut);
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        m_ui->layEntries->addWidget(key);
        if (m_ui->layEntries->count() == 1) key->setFocus();
        const auto act = [this, name = entry.Key] { Handle("frmMain", [&] { m_bar.Click(name); }); };
        connect(key, &TouchKey::clicked, this, act);
        if (!entry.Shortcut.isEmpty())
            connect(new QShortcut(QKeySequence(entry.Shortcut), this), &QShortcut::activated, this, act);
    }
}

void frmMain::Logout() {
    hide();
    QCoreApplication::processEvents();
    close();
}

void frmMain::closeEvent(QCloseEvent* event) {
    // A register that keeps its open sale stays open beside the login.
    m_kasse.close();
    event->accept();
    emit Unloaded();
}
