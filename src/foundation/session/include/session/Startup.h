#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class InstanceLock;
class RuntimeError;

/// The screens that start-up asks for. Implemented above, scripted in tests.
class StartUpScreens {
  public:
    virtual ~StartUpScreens() = default;
    virtual void ShowSplash() = 0;
    virtual void SetSplashText(const QString& text) = 0; ///< `lblInfo`
    virtual void UnloadSplash() = 0;                     ///< also when it is not shown
    virtual void ShowSetup() = 0; ///< modal; a saved path leaves gSetupDone 1. gDB is not open.
    virtual void ShowLogin() = 0; ///< not modal
};

/// The printers of this machine.
class PrinterList {
  public:
    virtual ~PrinterList() = default;
    [[nodiscard]] virtual QStringList names() const = 0;
    [[nodiscard]] virtual QString defaultName() const = 0; ///< "" when there is none
};

/// Time for the splash to paint.
class Waiter {
  public:
    virtual ~Waiter() = default;
    virtual void Yield() = 0; ///< lets pending events run
    virtual void Wait(int milliseconds) = 0;
    /// Waits for something that another thread does.
    virtual void Until(const std::function<bool()>& done);
};

/// The real one: runs the event loop of the application.
class PaintWaiter : public Waiter {
  public:
    void Yield() override;
    void Wait(int milliseconds) override;
    void Until(const std::function<bool()>& done) override;
};

/// How `Main` ended. Everything but Running ends the process; whatever there was to say has been said.
enum class StartResult {
    Running,            ///< the login is shown
    AlreadyRunning,     ///< another instance on this machine
    SettingsUnreadable, ///< there is a konfig.ini, and it cannot be read
    NoPrinter,
    SetupCancelled, ///< no store, and nobody told where it is or wanted one to be made
    WrongPassword,
    StoreLocked,
    Failed, ///< reported by ShowProgrammFehler
};

/// Takes the process from nothing to the login. The object holds the lock that refuses a second instance and
/// so must live as long as the program.
///
///     StartUp start(screens, printers, waiter);
///     if (start.Main() != StartResult::Running) return 1;
class StartUp {
  public:
    /// The first three are kept by reference. `commandLine` is what stands behind the program's name;
    /// "/dbupdate" alone brings a store of an older program up to date.
    StartUp(StartUpScreens& screens, const PrinterList& printers, Waiter& waiter,
            const QString& commandLine = {});
    ~StartUp();

    /// Fills gSystem, gAppPath, gDefaultUrl, gDBPath, gDB, the settings and the colours in a fixed order.
    /// Never raises.
    StartResult Main();
    /// For what works without a store: the session knows the program folder and, when that has a konfig.ini,
    /// its settings. Raises what ReadSettings raises.
    static void LoadSettings();

  private:
    // Each gives the end of `Main`, or nothing when it goes on.
    std::optional<StartResult> prepare();
    std::optional<StartResult> failed(const RuntimeError& error);
    std::optional<StartResult> serverFailed(const RuntimeError& error);
    std::optional<StartResult> setup();
    void openStore();
    void openFile();
    void openServer();
    void updateStore();
    void loadSession();
    void findTerminal();
    void splash(const QString& line, int milliseconds);

    StartUpScreens& m_screens;
    const PrinterList& m_printers;
    Waiter& m_waiter;
    std::unique_ptr<InstanceLock> m_lock;
    bool m_passwordTried = false; ///< the one retry of a wrong password, for the whole process
    QString m_server;             ///< its address, "" when the store is a file
    const bool m_updatesStore;
    bool m_createStore = false; ///< somebody wanted the empty database on the server to be filled
};

/// Screen colours: built-in values, replaced by the set that is active in `Colors`.
void LoadColors();
/// Tells how many articles still carry the tax rate of 16 percent, if any do.
void CheckSteuerUmstellung();
/// Creates the card terminal component gZVT; False when there is none.
[[nodiscard]] bool CreateZVTObject();
