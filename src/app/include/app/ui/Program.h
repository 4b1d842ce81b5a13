#pragma once

#include <session/ServerWait.h>
#include <session/Startup.h>
#include <ui/ScanGuard.h>
#include <ui/ScreenKeyboard.h>
#include <ui/TouchDialogs.h>

#include <QApplication>

#include <memory>

class frmLogin;
class frmSplash;
class WaitScreen;
class WaitWindow;

/// The Qt application of the till: speaks German whatever the system does, and tells and logs an exception
/// that no handler caught instead of going down with it; the sale on the screen is in the store already.
class Application : public QApplication {
    Q_OBJECT

  public:
    Application(int& argc, char** argv);
    bool notify(QObject* receiver, QEvent* event) override;
};

/// Owns every service of the process, builds them in order and takes them down in reverse, and is the screens
/// that start-up asks for. Needs an Application.
///
///     Program program(waiter);
///     if (program.Start() != StartResult::Running) return 1;
///     return app.exec();
class Program : private StartUpScreens {
  public:
    explicit Program(Waiter& waiter);
    ~Program() override;
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// From nothing to the login; what there was to say otherwise has been said. Never raises. The
    /// application quits when the login is closed.
    StartResult Start();
    /// Shows the designer of print templates on a file until it is closed, without a store. The settings of
    /// the program folder are used when there are any. False when the file cannot be opened. Never raises.
    bool EditTemplate(const QString& file);
    /// Whoever plays the keyboard decides whether it acts.
    [[nodiscard]] ScanGuard& Scans() { return m_scans; }

  private:
    void ShowSplash() override;
    void SetSplashText(const QString& text) override;
    void UnloadSplash() override;
    void ShowSetup() override;
    void ShowLogin() override;

    ScanGuard m_scans;
    TouchDialogHost m_dialogs;
    DialogHost* m_dialogsBefore;
    std::unique_ptr<PrinterList> m_printers;
    std::unique_ptr<WaitWindow> m_terminalWindow, m_waitWindow;
    ScreenKeyboard m_keyboard;
    WaitScreen* m_waitScreenBefore = nullptr;
    ScreenPatience m_serverPatience;
    std::unique_ptr<StartUp> m_startUp;
    std::unique_ptr<frmSplash> m_splash;
    std::unique_ptr<frmLogin> m_login;
};
