#include <access/ui/frmDesktopLogin.h>
#include <access/ui/frmLogin.h>
#include <access/ui/frmSplash.h>
#include <app/ui/Program.h>
#include <devices/Printers.h>
#include <devices/ReceiptLine.h>
#include <printing/ui/frmFormularEdit.h>
#include <register/ui/frmKasse.h>
#include <session/CSystem.h>
#include <session/Error.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/Log.h>
#include <session/WaitScreen.h>
#include <session/gZVT.h>
#include <setup/ui/frmSetup.h>
#include <store/Database.h>
#include <templates/TemplateKind.h>
#include <text/CodePage.h>
#include <ui/ShowModal.h>
#include <ui/Theme.h>
#include <ui/WaitWindow.h>
#include <zvt/CZVT.h>

#include <QFileInfo>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

void showDesktopLogin() {
    frmDesktopLogin dialog(QApplication::activeWindow());
    ShowModal(dialog);
}

QWidget* openKasse(const std::function<void()>& unloaded) {
    auto* kasse = new frmKasse(&showDesktopLogin);
    QObject::connect(kasse, &frmKasse::Unloaded, kasse, unloaded);
    kasse->Open();
    return kasse;
}

QString printerFor(TemplateKind kind) {
    switch (kind) {
    case TemplateKind::Bon:
    case TemplateKind::Voucher:
        return gBonDrucker;
    case TemplateKind::Closing:
        return gKassenabschlussDrucker;
    case TemplateKind::Form:
    case TemplateKind::Purchase:
        return gFormularDrucker;
    }
    return {};
}

/// Receipts of the card terminal go where those of the till go.
void printTerminalReceipt(const QStringList& lines) {
    QByteArray bytes;
    for (const QString& line : lines)
        bytes += ToWindows1252(line) + "\r\n";
    if (!SendToReceiptPrinter(bytes + QByteArray(6, '\n')))
        throw RuntimeError(57, u"Der Druck wurde abgebrochen."_s);
}

} // namespace

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv) {
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    setApplicationName(u"merivane"_s);
    setApplicationDisplayName(u"Merivane"_s);
    setApplicationVersion(QStringLiteral(MERIVANE_VERSION));
    // Windows come and go while the login is hidden; closing the login is what ends the program.
    setQuitOnLastWindowClosed(false);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeError& error) {
        ShowProgrammFehler(error, u"Merivane"_s);
    } catch (const std::exception& error) {
        ShowProgrammFehler(51, u"Merivane"_s, QString::fromUtf8(error.what()));
    }
    return false;
}

Program::Program(Waiter& waiter)
    : m_dialogsBefore(SetDialogHost(&m_dialogs)) {
    OpenLog();
    m_terminalWindow = std::make_unique<WaitWindow>();
    m_waitWindow = std::make_unique<WaitWindow>();
    m_waitScreenBefore = SetWaitScreen(m_waitWindow.get());
    store::SetServerPatience(&m_serverPatience);
    SetCardTerminalFactory([this]() -> std::unique_ptr<CardTerminal> {
        const auto config = zvt::TerminalConfig::Read(*gSystem, KonfigIni());
        if (!config.isConfigured()) return nullptr;
        return std::make_unique<CZVT>(config, *m_terminalWindow, &printTerminalReceipt);
    });
    m_printers = std::make_unique<SystemPrinters>();
    m_startUp = std::make_unique<StartUp>(static_cast<StartUpScreens&>(*this), *m_printers, waiter,
                                          QCoreApplication::arguments().mid(1).join(u' '));
    Theme::Apply();
}

Program::~Program() {
    m_login.reset();
    m_splash.reset();
    gZVT.reset();
    SetCardTerminalFactory({});
    gDB.reset();
    m_startUp.reset();
    store::SetServerPatience(nullptr);
    SetWaitScreen(m_waitScreenBefore);
    CloseLog();
    SetDialogHost(m_dialogsBefore);
}

StartResult Program::Start() { return m_startUp->Main(); }

bool Program::EditTemplate(const QString& file) {
    bool opened = false;
    Handle("Merivane", [&] {
        StartUp::LoadSettings();
        frmFormularEdit designer;
        QString printer = printerFor(kindOfFile(file).value_or(TemplateKind::Form));
        if (printer.isEmpty()) printer = m_printers->defaultName();
        opened = designer.Open(QFileInfo(file).absoluteFilePath(), printer);
        if (opened) ShowModal(designer);
    });
    return opened;
}

void Program::ShowSplash() {
    m_splash = std::make_unique<frmSplash>();
    m_splash->show();
}

void Program::SetSplashText(const QString& text) {
    if (m_splash) m_splash->SetInfo(text);
}

void Program::UnloadSplash() { m_splash.reset(); }

void Program::ShowSetup() {
    frmSetup dialog;
    ShowModal(dialog);
}

void Program::ShowLogin() {
    Theme::Apply(); // the colours of the store are known by now
    m_login = std::make_unique<frmLogin>(&openKasse);
    QObject::connect(m_login.get(), &frmLogin::Unloaded, qApp, &QCoreApplication::quit);
    m_login->show();
    m_login->activateWindow();
}
