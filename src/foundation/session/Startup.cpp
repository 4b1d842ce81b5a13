#include "InstanceLock.h"

#include <session/CSystem.h>
#include <session/Error.h>
#include <session/Globals.h>
#include <session/Log.h>
#include <session/MessageDetails.h>
#include <session/MsgBox.h>
#include <session/ServerStore.h>
#include <session/ServerWait.h>
#include <session/Settings.h>
#include <session/ShopFiles.h>
#include <session/Startup.h>
#include <session/gZVT.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/Schema.h>
#include <store/StoreName.h>
#include <text/DetailedError.h>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QSaveFile>
#include <QThread>
#include <QTimer>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int fileMissing = 3024;
constexpr int wrongPassword = 3031;
constexpr int cannotLock = 3050;
constexpr int typeMismatch = 13;
constexpr int pathMissing = 76;
constexpr int terminalMs = 1400;
constexpr int pollMs = 10;

constexpr auto module = u"mdlGlobal";
constexpr auto vendorUrl = u"https://www.merivane.example/";
constexpr auto vendorAddress = u"www.merivane.example";

QString text(const char16_t* constant) { return QString::fromUtf16(constant); }

/// A folder with a separator at its end.
QString normalised(const QString& folder) {
    const bool ends = folder.endsWith(u'/') || folder.endsWith(QDir::separator());
    return ends ? folder : folder + QDir::separator();
}

QString programFolder() {
    const QString home = qEnvironmentVariable("MERIVANE_HOME");
    return normalised(home.isEmpty() ? QCoreApplication::applicationDirPath() : QDir(home).absolutePath());
}

QString storeFile() { return gDBPath + u"Merivane.mdb"_s; }

QString connectText(const QString& password) { return u";PWD="_s + password; }

/// Moves a store with the old password, or none, to the new one. A store that has it already, or is open at
/// another till at this moment, stays as it is, and nobody is told.
void SetDatenbankKennwort() {
    QString old = text(store::oldPassword);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        try {
            const auto db = Database::OpenDatabase(storeFile(), true, false, connectText(old));
            db->NewPassword(old, text(store::newPassword));
            db->Close();
            return;
        } catch (const RuntimeError& error) {
            if (error.Number != wrongPassword) return;
            old.clear();
        }
    }
}

/// True when the rights do not let one see what is in the folder, or that it is there at all.
bool folderIsClosed(const QString& folder) {
    std::error_code code;
    // Asking for something inside needs the right to search; listing it the one to read.
    const std::filesystem::path path(folder.toStdU16String());
    std::ignore = std::filesystem::status(path / "Merivane.mdb", code);
    if (code != std::errc::permission_denied) std::ignore = std::filesystem::directory_iterator(path, code);
    return code == std::errc::permission_denied;
}

/// The cards offered at payment, until the shop writes its own list.
void createKartenList() {
    const QString path = gDBPath + u"karten.txt"_s;
    if (QFileInfo(path).isFile()) return;
    QSaveFile file(path);
    errno = 0;
    if (file.open(QIODevice::WriteOnly) && file.write("VISA\r\nAmerican Express\r\n") > 0 && file.commit())
        return;
    const bool full = errno == ENOSPC;
    throw RuntimeError(full ? 61 : 70, (full ? u"Datenträger voll: "_s : u"Zugriff verweigert: "_s) +
                                           QDir::toNativeSeparators(path));
}

/// Runs one statement of start-up: a malformed value (13) leaves things as they are, and the next statement
/// follows.
template <typename Statement>
void statement(Statement&& run) {
    try {
        run();
    } catch (const RuntimeError& error) {
        if (error.Number != typeMismatch) throw;
    }
}

CardTerminalFactory& factory() {
    static CardTerminalFactory made;
    return made;
}

} // namespace

void PaintWaiter::Yield() {
    if (QCoreApplication::instance()) QCoreApplication::processEvents();
}

void PaintWaiter::Wait(int milliseconds) {
    if (!QCoreApplication::instance()) {
        QThread::msleep(static_cast<unsigned long>(milliseconds));
        return;
    }
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void Waiter::Until(const std::function<bool()>& done) {
    while (!done())
        QThread::msleep(pollMs);
}

void PaintWaiter::Until(const std::function<bool()>& done) {
    while (!done())
        Wait(pollMs);
}

StartUp::StartUp(StartUpScreens& screens, const PrinterList& printers, Waiter& waiter,
                 const QString& commandLine)
    : m_screens(screens)
    , m_printers(printers)
    , m_waiter(waiter)
    , m_updatesStore(commandLine.toLower() == u"/dbupdate") {}

StartUp::~StartUp() = default;

StartResult StartUp::Main() {
    std::optional<StartResult> result;
    try {
        result = prepare();
    } catch (const RuntimeError& error) {
        result = failed(error);
    } catch (const std::exception& error) {
        result = failed(RuntimeError(51, QString::fromUtf8(error.what())));
    }
    // A store that was not found comes back here once its path is told.
    while (!result) {
        try {
            openStore();
            if (m_updatesStore) updateStore();
            loadSession();
            m_screens.ShowLogin();
            result = StartResult::Running;
        } catch (const RuntimeError& error) {
            result = failed(error);
        } catch (const std::exception& error) {
            result = failed(RuntimeError(51, QString::fromUtf8(error.what())));
        }
    }
    return *result;
}

void StartUp::LoadSettings() {
    gSystem = std::make_unique<CSystem>();
    gAppPath = programFolder();
    if (QFileInfo(KonfigIni()).isFile()) statement([] { ReadSettings(*gSystem, KonfigIni()); });
}

std::optional<StartResult> StartUp::prepare() {
    gSystem = std::make_unique<CSystem>();
    gAppPath = programFolder();
    gDefaultUrl = gSystem->ReadProfileString(u"URL"_s, u"Default_Url"_s, gAppPath + u"order.ini"_s).trimmed();
    if (gDefaultUrl.isEmpty()) gDefaultUrl = text(vendorUrl);

    if (!m_lock) m_lock = InstanceLock::acquire();
    if (!m_lock) {
        MsgBox(u"Dieses Programm wurde bereits gestartet."_s);
        return StartResult::AlreadyRunning;
    }
    if (const QString fault = gSystem->ReadFault(KonfigIni()); !fault.isEmpty()) {
        MsgBox(u"Die Einstellungen dieser Kasse sind nicht zu lesen: "_s +
                   QDir::toNativeSeparators(KonfigIni()) + u"\n\n"_s + fault +
                   u"\n\nDas Programm wird beendet. Bitte geben Sie ihm das Recht, die Datei zu lesen, oder "
                   "speichern Sie sie als Text, und starten Sie es dann neu."_s,
               MsgIcon::Exclamation);
        return StartResult::SettingsUnreadable;
    }
    if (m_printers.names().isEmpty()) {
        MsgBox(
            u"Das Programm konnte nicht gestartet werden, da mindestens 1 installierter Drucker erforderlich ist."_s,
            MsgIcon::Exclamation);
        return StartResult::NoPrinter;
    }
    statement([&] { WriteDefaultPrinters(*gSystem, KonfigIni(), m_printers.defaultName()); });
    return {};
}

void StartUp::openStore() {
    gDBPath = normalised(gSystem->ReadProfileString(u"GLOBAL"_s, u"DBPath"_s, KonfigIni()));
    m_server = ReadServerAddress();
    m_screens.ShowSplash();
    gDB.reset();
    if (m_server.isEmpty())
        openFile();
    else
        openServer();
    statement(createKartenList);
}

void StartUp::openFile() {
    splash(u"Öffne Datenbank..."_s, 300);
    SetDatenbankKennwort();

    QString password = text(store::oldPassword);
    while (!gDB) {
        try {
            gDB = Database::OpenDatabase(storeFile(), false, false, connectText(password));
        } catch (const RuntimeError& error) {
            if (error.Number != wrongPassword || m_passwordTried) throw;
            m_passwordTried = true;
            password = text(store::newPassword);
        }
    }
}

// A server has users and rights of its own, so the passwords of the file have no part in this.
void StartUp::openServer() {
    TakeServerLimit();
    splash(u"Verbinde mit dem Server ..."_s, 300);
    if (const QString fault = ServerAddressFault(m_server); !fault.isEmpty())
        throw RuntimeError(fileMissing, fault, text(module));
    if (!QFileInfo(gDBPath).isDir())
        throw RuntimeError(pathMissing,
                           u"Der Ordner für Vorlagen und Bilder wurde nicht gefunden: "_s +
                               QDir::toNativeSeparators(gDBPath),
                           text(module));
    if (std::exchange(m_createStore, false)) {
        m_screens.SetSplashText(u"Die Tabellen werden angelegt ..."_s);
        gDB = CreateServerStore(m_server, m_waiter);
    } else {
        gDB = OpenServerStore(m_server, m_waiter);
    }
}

// There is no other way to this: a normal start never changes the structure of a store.
void StartUp::updateStore() {
    splash(u"Datenbankstruktur wird überprüft und angepasst..."_s, 500);
    schema::createMissingTables(*gDB);
}

void StartUp::loadSession() {
    splash(u"Globale Einstellungen werden geladen..."_s, 400);
    ReadSettings(*gSystem, KonfigIni());

    statement([this] { findTerminal(); });
    statement(LoadColors);
    splash(u"Alle Werte wurden ordnungsgemäß geladen..."_s, 300);
    m_screens.UnloadSplash();
    m_waiter.Yield();
    TellUnwrittenSettings();
    TellSettingFaults(*gSystem, KonfigIni());
    CheckShopFiles();
    if (const QString warning = gDB->Warning(); !warning.isEmpty()) MsgBox(warning, MsgIcon::Exclamation);
    statement(CheckSteuerUmstellung);
}

void StartUp::findTerminal() {
    const auto read = [](const QString& section, const QString& key) {
        return gSystem->ReadProfileString(section, key, KonfigIni());
    };
    const auto keep = [](const QString& section, const QString& key, const QString& value) {
        gSystem->KeepProfileStrings({{section, key, value}}, KonfigIni()); // told behind the splash
    };
    gZVTEnabled = CreateZVTObject();
    const QString told = read(u"GLOBAL"_s, u"ZVTEnabled"_s);
    if (told.isEmpty())
        keep(u"GLOBAL"_s, u"ZVTEnabled"_s, gZVTEnabled ? u"1"_s : u"0"_s);
    else if (told == u"0"_s)
        gZVTEnabled = false;
    if (!gZVTEnabled) return;

    m_screens.SetSplashText(u"Suche nach kompatiblen EC - Terminal..."_s);
    m_waiter.Yield();
    const QString protocol = read(u"ECTerminal"_s, u"Protokoll"_s);
    gZVT->SetProtokoll(protocol == u"1"_s);
    if (protocol.isEmpty()) keep(u"ECTerminal"_s, u"Protokoll"_s, u"0"_s);
    // A terminal that is still switched off answers to the first payment.
    if (gZVT->FindTerminal()) {
        splash(u"Kompatibles EC - Terminal gefunden - Version wird abgefragt..."_s, terminalMs);
        m_screens.SetSplashText(u"Hersteller: "_s + gZVT->Hersteller() + u" - Version: "_s + gZVT->Version());
    } else {
        m_screens.SetSplashText(u"Es wurde kein kompatibles EC - Terminal gefunden..."_s);
    }
    m_waiter.Yield();
    m_waiter.Wait(terminalMs);
}

void StartUp::splash(const QString& line, int milliseconds) {
    m_screens.SetSplashText(line);
    m_waiter.Yield();
    m_waiter.Wait(milliseconds);
}

std::optional<StartResult> StartUp::failed(const RuntimeError& error) {
    try {
        m_screens.UnloadSplash();
        if (!m_server.isEmpty() && (!gDB || IsServerTrouble(error))) return serverFailed(error);
        switch (error.Number) {
        case wrongPassword:
            MsgBox(
                u"Diese Datenbank verwendet ein Kennwort, welches nicht mit dem im Programm übereinstimmt. "
                "Setzen Sie das Kennwort auf den Standard zurück."_s);
            return StartResult::WrongPassword;
        case cannotLock:
            MsgBox(
                u"Die Datenbank konnte nicht geöffnet werden. Stellen Sie sicher, dass Sie über die erforderlichen "
                "Verzeichnisrechte im System verfügen. Weitere Informationen erhalten Sie von Ihrem "
                "Systemadministrator."_s);
            return StartResult::StoreLocked;
        case fileMissing:
            if (folderIsClosed(gDBPath))
                MsgBox(u"Der Datenordner ist nicht zu lesen, das Recht dazu fehlt: "_s +
                           QDir::toNativeSeparators(gDBPath) +
                           u"\n\nBitte berichtigen Sie seine Rechte, oder wählen Sie in den folgenden "
                           "Einstellungen einen anderen Ordner."_s,
                       MsgIcon::Exclamation);
            return setup();
        default:
            ShowProgrammFehler(error, text(module));
            return StartResult::Failed;
        }
    } catch (const std::exception& second) {
        ShowProgrammFehler(51, text(module), QString::fromUtf8(second.what()));
        return StartResult::Failed;
    }
}

std::optional<StartResult> StartUp::setup() {
    gSetupDone = 0;
    m_screens.ShowSetup();
    if (gSetupDone == 0) return StartResult::SetupCancelled;
    return {};
}

std::optional<StartResult> StartUp::serverFailed(const RuntimeError& error) {
    const QString address = u"\n\n"_s + ShownServerAddress(m_server);
    if (IsEmptyServer(error)) {
        m_createStore = AskYesNo(u"Die Datenbank auf dem Server ist noch leer."_s + address +
                                 u"\n\nSollen die Tabellen Ihres Geschäfts dort jetzt angelegt werden?"_s);
        if (!m_createStore) return StartResult::SetupCancelled;
        return {};
    }
    if (!IsServerTrouble(error)) {
        ShowProgrammFehler(error, text(module));
        return StartResult::Failed;
    }
    const QString advice =
        u"\n\nMit \"Wiederholen\" versucht es die Kasse noch einmal. Mit \"Abbrechen\" kommen Sie zu den "
        "Einstellungen und können dort die Adresse ändern."_s;
    const MessageDetails details(DetailsOf(error));
    if (MsgBox(error.Description + address + advice, MsgIcon::Exclamation, MsgButtons::RetryCancel) ==
        MsgAnswer::Retry)
        return {};
    return setup();
}

void LoadColors() {
    gColorBack1 = 13813442;
    gColorBack2 = 16777215;
    gColorBack3 = 16118256;
    gColorBack4 = 9533303;
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM Colors WHERE Aktiv=-1;"_s);
    if (rs->Eof()) return;
    const auto take = [&](int& color, const QString& column) {
        if (const Value value = rs->Field(column); !value.isNull()) color = value.toLong();
    };
    take(gColorBack1, u"BC"_s);
    take(gColorBack2, u"FC"_s);
    take(gColorBack3, u"PBC"_s);
    take(gColorBack4, u"TBC"_s);
}

void CheckSteuerUmstellung() {
    const auto rs = gDB->OpenRecordset(u"SELECT COUNT(*) AS Anzahl FROM Artikel WHERE SteuerSatz=16;"_s);
    const int count = rs->Eof() ? 0 : rs->Long(u"Anzahl");
    if (count <= 0) return;
    MsgBox(u"ACHTUNG: Steuerumstellung 2007\n\n\n"
           "Es befinden sich noch "_s +
               QString::number(count) +
               u" Artikel mit 16,0% Steuersatz in Ihrer Datenbank.\n\n"
               "Um Fehlbuchungen und eventl. Steuerprüfungen durch das Finanzamt zu vermeiden,\n"
               "stellen Sie Ihren Steuersatz auf die neuen Vorgaben zum 31.12.2006 um.\n\n"
               "Ein entsprechendes Tool zur Steuerumstellung finden Sie auf unserer\n"
               "Internetseite "_s +
               text(vendorAddress),
           MsgIcon::Exclamation, MsgButtons::OK, u"Steuerumstellung..."_s);
}

CardTerminalFactory SetCardTerminalFactory(CardTerminalFactory newFactory) {
    return std::exchange(factory(), std::move(newFactory));
}

bool CreateZVTObject() {
    gZVT.reset();
    try {
        if (factory()) gZVT = factory()();
    } catch (const std::exception& error) {
        WriteLog(u"card terminal: "_s + QString::fromUtf8(error.what()));
    }
    return gZVT != nullptr;
}
