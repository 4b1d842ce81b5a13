#include "StartUpTest.h"

#include "sqlite/SqliteFile.h"

#include <session/gZVT.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <csignal>
#include <cstdlib>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QStringList opening{u"splash"_s, u"Öffne Datenbank..."_s, u"yield"_s, u"wait 300"_s};
const QStringList loading{u"Globale Einstellungen werden geladen..."_s,
                          u"yield"_s,
                          u"wait 400"_s,
                          u"Alle Werte wurden ordnungsgemäß geladen..."_s,
                          u"yield"_s,
                          u"wait 300"_s,
                          u"unload"_s,
                          u"yield"_s,
                          u"login"_s};

/// A person who may use everything below `folder` and change nothing in `home`.
class WithoutRights {
  public:
    WithoutRights(const QString& folder, const QString& home)
        : m_home(QFile::encodeName(home)) {
        const QByteArray all = "chmod -R a+rwX '" + QFile::encodeName(folder) + '\'';
        EXPECT_EQ(std::system(all.constData()), 0);
        EXPECT_EQ(chmod(m_home.constData(), 0555), 0);
        EXPECT_EQ(geteuid() == 0 ? seteuid(nobody) : 0, 0); // rights do not bind root
    }
    ~WithoutRights() {
        EXPECT_EQ(seteuid(getuid()), 0);
        EXPECT_EQ(chmod(m_home.constData(), 0755), 0);
    }
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;

  private:
    static constexpr uid_t nobody = 65534;
    QByteArray m_home;
};

} // namespace

TEST_F(StartUpTest, FromNothingToTheLogin) {
    makeStore(u"kestrel"_s);
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(m_calls, opening + loading);
    EXPECT_EQ(gAppPath, home() + QDir::separator());
    EXPECT_EQ(gDBPath, shop() + QDir::separator());
    EXPECT_EQ(gDefaultUrl, u"https://www.merivane.example/"_s);
    EXPECT_EQ(content(shop() + u"/karten.txt"_s), "VISA\r\nAmerican Express\r\n");
    EXPECT_EQ(gBonDrucker, u"Theke"_s);
    EXPECT_EQ(ini(u"DRUCKER"_s, u"KassenabschlussDrucker"_s), u"Theke"_s);
    EXPECT_EQ(ini(u"GLOBAL"_s, u"ZVTEnabled"_s), u"0"_s);
    EXPECT_FALSE(gZVTEnabled);
    EXPECT_FALSE(gKFRabatt);
    EXPECT_EQ(gColorBack1, 13813442);
    ASSERT_NE(gDB, nullptr);
    gDB.reset();
    EXPECT_EQ(passwordFits(u"brsk-604917"_s), 0);
    EXPECT_EQ(passwordFits(u"kestrel"_s), 3031);

    // The second start: the password is the new one, the functions are on, what the shop set is left alone.
    put(shop() + u"/karten.txt"_s, "girocard\n");
    put(home() + u"/order.ini"_s, "[url]\ndefault_url = https://laden.example \n");
    {
        const auto db = Database::OpenDatabase(storePath(), false, false, u";PWD=brsk-604917"_s);
        db->Execute(u"INSERT INTO Colors (Name, BC, FC, PBC, TBC, Aktiv) VALUES ('a', 1, 2, 3, 4, 0);"_s);
        db->Execute(u"INSERT INTO Colors (Name, BC, FC, PBC, TBC, Aktiv) VALUES ('b', 5, 6, 7, 8, -1);"_s);
        db->Execute(u"INSERT INTO Artikel (Nummer, Name, SteuerSatz) VALUES ('1', 'Alt', 16);"_s);
        db->Execute(u"INSERT INTO Artikel (Nummer, Name, SteuerSatz) VALUES ('2', 'Neu', 19);"_s);
        db->Close();
    }
    m_dialogs.expectMsgBox(u"ACHTUNG: Steuerumstellung 2007\n\n\n"
                           "Es befinden sich noch 1 Artikel mit 16,0% Steuersatz in Ihrer Datenbank.\n\n"
                           "Um Fehlbuchungen und eventl. Steuerprüfungen durch das Finanzamt zu vermeiden,\n"
                           "stellen Sie Ihren Steuersatz auf die neuen Vorgaben zum 31.12.2006 um.\n\n"
                           "Ein entsprechendes Tool zur Steuerumstellung finden Sie auf unserer\n...*"_s,
                           MsgIcon::Exclamation, MsgAnswer::OK, u"Steuerumstellung..."_s);
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(m_calls, opening + loading);
    EXPECT_EQ(gDefaultUrl, u"https://laden.example"_s);
    EXPECT_EQ(content(shop() + u"/karten.txt"_s), "girocard\n");
    EXPECT_TRUE(gKFRabatt);
    EXPECT_EQ((QList<int>{gColorBack1, gColorBack2, gColorBack3, gColorBack4}), (QList<int>{5, 6, 7, 8}));
}

TEST_F(StartUpTest, StartsWithoutTheRightToWriteItsSettings) {
    makeStore(u"kestrel"_s);
    ASSERT_EQ(start(), StartResult::Running); // brings the store and its folder into being
    gDB.reset();
    put(home() + u"/konfig.ini"_s, "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\n");
    m_dialogs.expectMsgBox(
        u"Einstellungen dieser Kasse können nicht gespeichert werden.\n\nZugriff verweigert: ...*"_s,
        MsgIcon::Exclamation);
    {
        const WithoutRights guest(m_folder.path(), home());
        ASSERT_EQ(start(), StartResult::Running);
    }
    EXPECT_EQ(m_calls, opening + loading) << "the message came behind the splash";
    EXPECT_EQ(content(home() + u"/konfig.ini"_s), "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\n");
    EXPECT_EQ(gBonDrucker, u"Theke"_s) << "what was not written holds all the same";
}

TEST_F(StartUpTest, PasswordsOfAStore) {
    makeStore({});
    ASSERT_EQ(start(), StartResult::Running) << "a store without a password gets one";
    gDB.reset();
    EXPECT_EQ(passwordFits(u"brsk-604917"_s), 0);

    QFile::remove(storePath());
    makeStore(u"fremd"_s);
    m_dialogs.expectMsgBox(
        u"Diese Datenbank verwendet ein Kennwort, welches nicht mit dem im Programm übereinstimmt. "
        "Setzen Sie das Kennwort auf den Standard zurück."_s);
    EXPECT_EQ(start(), StartResult::WrongPassword);
    EXPECT_EQ(m_calls, opening + QStringList{u"unload"_s});
    EXPECT_EQ(passwordFits(u"fremd"_s), 0);

    // Open at another till: the old password stays for now, and nobody is told.
    QFile::remove(storePath());
    makeStore(u"kestrel"_s);
    const auto other = Database::OpenDatabase(storePath(), false, false, u";PWD=kestrel"_s);
    EXPECT_EQ(start(), StartResult::Running);
    gDB.reset();
    EXPECT_EQ(passwordFits(u"kestrel"_s), 0);
}

TEST_F(StartUpTest, AStoreOnANetworkFolderIsToldBeforeTheLogin) {
    makeStore(u"kestrel"_s);
    store::setNetworkProbe([](const QString&) { return true; });
    m_dialogs.expectMsgBox(u"Die Datenbank liegt auf einem Netzlaufwerk...*"_s, MsgIcon::Exclamation);
    EXPECT_EQ(start(), StartResult::Running);
    store::setNetworkProbe(nullptr);
}

TEST_F(StartUpTest, AStoreOfAnOlderProgramIsBroughtUpToDateWhenToldSo) {
    makeStore({});
    const auto has = [this](QStringView table) {
        return Database::OpenDatabase(storePath(), false, false, u";PWD=brsk-604917"_s)
            ->FindTableDef(table)
            .has_value();
    };
    const auto lose = [] {
        gDB->DeleteTableDef(u"BuchungsMarke"_s);
        gDB->DeleteTableDef(u"Stornos"_s);
    };
    ASSERT_EQ(start(), StartResult::Running);
    lose();
    gDB->Execute(u"INSERT INTO KassenBestand (Maschine, Bestand) VALUES ('K', 7)"_s);
    // Only as the whole command line.
    for (const QString& other : {u""_s, u"/dbupdate /x"_s, u"dbupdate"_s}) {
        ASSERT_EQ(start(other), StartResult::Running);
        EXPECT_FALSE(has(u"BuchungsMarke"));
    }
    const QString told = u"Datenbankstruktur wird überprüft und angepasst..."_s;
    EXPECT_FALSE(m_calls.join(u'\n').contains(told));
    ASSERT_EQ(start(u"/DBUpdate"_s), StartResult::Running);
    EXPECT_TRUE(m_calls.join(u'\n').contains(told));
    EXPECT_TRUE(has(u"BuchungsMarke"));
    EXPECT_TRUE(has(u"Stornos"));
    EXPECT_EQ(sql::count(*gDB, u"KassenBestand"_s), 1) << "what is there stays";
    ASSERT_EQ(start(u"/dbupdate"_s), StartResult::Running) << "any number of times";
}

TEST_F(StartUpTest, AMissingStoreLeadsToTheSettingsAndBack) {
    gSetupDone = 1; // of an earlier dialog; must not count
    EXPECT_EQ(start(), StartResult::SetupCancelled);
    EXPECT_EQ(m_calls, opening + (QStringList{u"unload"_s, u"setup"_s}));

    int asked = 0;
    m_screens.setup = [&] {
        EXPECT_EQ(gDB, nullptr);
        // First a path that leads nowhere, then the right one.
        const QString path = ++asked == 1 ? m_folder.path() + u"/nowhere"_s : m_folder.path() + u"/server"_s;
        gSystem->WriteProfileString(u"GLOBAL"_s, u"DBPath"_s, path, KonfigIni());
        gSetupDone = 1;
    };
    QDir().mkpath(m_folder.path() + u"/server"_s);
    makeStore(u"kestrel"_s);
    QFile::rename(storePath(), m_folder.path() + u"/server/Merivane.mdb"_s);
    EXPECT_EQ(start(), StartResult::Running);
    const QStringList round = opening + QStringList{u"unload"_s, u"setup"_s};
    EXPECT_EQ(m_calls, round + round + opening + loading);
    EXPECT_EQ(gDBPath, m_folder.path() + u"/server"_s + QDir::separator());
    EXPECT_FALSE(QFile::exists(storePath()));
}

TEST_F(StartUpTest, ThePasswordIsRetriedOnceInAProcess) {
    makeStore(u"brsk-604917"_s);
    EXPECT_EQ(start(), StartResult::Running);
    gDB.reset();
    m_dialogs.expectMsgBox(u"Diese Datenbank verwendet ein Kennwort...*"_s);
    EXPECT_EQ(m_start->Main(), StartResult::WrongPassword);
}

TEST_F(StartUpTest, RefusesToStartTwiceOrWithoutAPrinter) {
    makeStore(u"kestrel"_s);
    m_printers.list.clear();
    m_dialogs.expectMsgBox(
        u"Das Programm konnte nicht gestartet werden, da mindestens 1 installierter Drucker erforderlich ist."_s,
        MsgIcon::Exclamation, MsgAnswer::OK, u"Systemmeldung..."_s);
    EXPECT_EQ(start(), StartResult::NoPrinter);
    EXPECT_EQ(m_calls, QStringList());
    m_printers.list = {u"PDF-Drucker"_s};
    ASSERT_EQ(start(), StartResult::Running);

    m_calls.clear();
    StartUp second(m_screens, m_printers, m_waiter);
    m_dialogs.expectMsgBox(u"Dieses Programm wurde bereits gestartet."_s);
    EXPECT_EQ(second.Main(), StartResult::AlreadyRunning);
    EXPECT_EQ(m_calls, QStringList());
    m_start.reset();
    EXPECT_EQ(second.Main(), StartResult::Running);
}

TEST_F(StartUpTest, AKilledTillDoesNotKeepTheNextFromStarting) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t other = fork();
    if (other == 0) {
        StartUp start(m_screens, m_printers, m_waiter); // ends in the settings, since there is no store
        start.Main();
        (void)!write(ready[1], "x", 1);
        for (;;)
            pause();
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    m_dialogs.expectMsgBox(u"Dieses Programm wurde bereits gestartet."_s);
    EXPECT_EQ(start(), StartResult::AlreadyRunning);
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_EQ(start(), StartResult::SetupCancelled);
    close(ready[0]);
    close(ready[1]);
}

TEST_F(StartUpTest, FailuresEndTheStartWithAReport) {
    makeStore(u"kestrel"_s);
    m_screens.failLogin = true;
    m_dialogs.expectError(3078);
    EXPECT_EQ(start(), StartResult::Failed);
    EXPECT_EQ(m_calls.last(), u"unload"_s);
    m_screens.failLogin = false;

    put(home() + u"/konfig.ini"_s,
        "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\n[DRUCKER]\nKopies=99999999999\n");
    m_dialogs.expectMsgBox(u"Mit diesen Werten in der Datei %1 kann...*"_s.arg(home() + u"/konfig.ini"_s),
                           MsgIcon::Exclamation);
    EXPECT_EQ(start(), StartResult::Running) << "a value that is none is told, and its default holds";
    EXPECT_EQ(gDruckerKopies, 1);

    put(home() + u"/konfig.ini"_s, "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\n");
    gDB.reset();
    put(storePath(), "no store of ours");
    m_dialogs.expectError(3343);
    EXPECT_EQ(start(), StartResult::Failed);
    EXPECT_EQ(content(storePath()), "no store of ours");
}

namespace {

class SplashTerminal : public CardTerminal {
  public:
    SplashTerminal(QStringList& calls, bool answers)
        : m_calls(calls)
        , m_answers(answers) {}
    void SetProtokoll(bool on) override { m_calls << (on ? u"log"_s : u"no log"_s); }
    bool FindTerminal() override {
        m_calls << u"find"_s;
        return m_answers;
    }
    QString Hersteller() const override { return u"SIM"_s; }
    QString Version() const override { return u"1.0"_s; }
    bool Bezahlen(Currency) override { return false; }
    QString KartenName() const override { return {}; }
    void Storno() override {}
    void Gutschrift() override {}
    void Kassenschnitt() override {}

  private:
    QStringList& m_calls;
    bool m_answers;
};

} // namespace

TEST_F(StartUpTest, LooksForACardTerminal) {
    makeStore(u"kestrel"_s);
    bool answers = true;
    SetCardTerminalFactory([&] { return std::make_unique<SplashTerminal>(m_calls, answers); });
    const QString searching = u"Suche nach kompatiblen EC - Terminal..."_s;
    const auto search = [&] {
        const auto from = m_calls.indexOf(searching);
        return from < 0 ? QStringList() : m_calls.mid(from, m_calls.indexOf(loading[3]) - from);
    };
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(search(),
              (QStringList{searching, u"yield"_s, u"no log"_s, u"find"_s,
                           u"Kompatibles EC - Terminal gefunden - Version wird abgefragt..."_s, u"yield"_s,
                           u"wait 1400"_s, u"Hersteller: SIM - Version: 1.0"_s, u"yield"_s, u"wait 1400"_s}));
    EXPECT_EQ(ini(u"GLOBAL"_s, u"ZVTEnabled"_s) + ini(u"ECTerminal"_s, u"Protokoll"_s), u"10"_s);

    answers = false;
    put(home() + u"/konfig.ini"_s,
        "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\nZVTEnabled=1\n[ECTerminal]\nProtokoll=1\n");
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(search(), (QStringList{searching, u"yield"_s, u"log"_s, u"find"_s,
                                     u"Es wurde kein kompatibles EC - Terminal gefunden..."_s, u"yield"_s,
                                     u"wait 1400"_s}));
    EXPECT_TRUE(gZVTEnabled) << "it may be switched on later";

    put(home() + u"/konfig.ini"_s, "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\nZVTEnabled=0\n");
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(search(), QStringList());
    EXPECT_FALSE(gZVTEnabled);

    SetCardTerminalFactory([]() -> std::unique_ptr<CardTerminal> { throw RuntimeError(429, u"fehlt"_s); });
    put(home() + u"/konfig.ini"_s, "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\n");
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(ini(u"GLOBAL"_s, u"ZVTEnabled"_s), u"0"_s);
    SetCardTerminalFactory({});
}
