#pragma once

#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Startup.h>
#include <store/Database.h>
#include <store/Schema.h>
#include <support/ScriptedDialogs.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// Notes what start-up shows, in its order.
class Screens : public StartUpScreens {
  public:
    explicit Screens(QStringList& calls)
        : m_calls(calls) {}
    void ShowSplash() override { m_calls << u"splash"_s; }
    void SetSplashText(const QString& text) override { m_calls << text; }
    void UnloadSplash() override { m_calls << u"unload"_s; }
    void ShowSetup() override {
        m_calls << u"setup"_s;
        if (setup) setup();
    }
    void ShowLogin() override {
        m_calls << u"login"_s;
        if (failLogin) throw RuntimeError(3078, u"keine Tabelle"_s);
    }

    std::function<void()> setup;
    bool failLogin = false;

  private:
    QStringList& m_calls;
};

class NoWait : public Waiter {
  public:
    explicit NoWait(QStringList& calls)
        : m_calls(calls) {}
    void Yield() override { m_calls << u"yield"_s; }
    void Wait(int milliseconds) override { m_calls << u"wait %1"_s.arg(milliseconds); }

  private:
    QStringList& m_calls;
};

class Printers : public PrinterList {
  public:
    [[nodiscard]] QStringList names() const override { return list; }
    [[nodiscard]] QString defaultName() const override { return list.value(0); }
    QStringList list{u"Theke"_s, u"Büro"_s};
};

/// A till with a program folder and a data folder of its own.
class StartUpTest : public testing::Test {
  protected:
    StartUpTest() {
        ResetSession();
        qputenv("MERIVANE_HOME", QFile::encodeName(home()));
        qputenv("MERIVANE_RUNTIME", QFile::encodeName(m_folder.path() + u"/run"_s));
        qputenv("MERIVANE_STATE", QFile::encodeName(m_folder.path() + u"/state"_s));
        QDir().mkpath(home());
        QDir().mkpath(shop());
        put(home() + u"/konfig.ini"_s, "[GLOBAL]\nDBPath=" + QFile::encodeName(shop()) + "\n");
    }
    ~StartUpTest() override {
        ResetSession();
        qunsetenv("MERIVANE_HOME");
        qunsetenv("MERIVANE_RUNTIME");
        qunsetenv("MERIVANE_STATE");
    }
    [[nodiscard]] QString home() const { return m_folder.path() + u"/till"_s; }
    [[nodiscard]] QString shop() const { return m_folder.path() + u"/shop"_s; }
    [[nodiscard]] QString storePath() const { return shop() + u"/Merivane.mdb"_s; }
    static void put(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray content(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }
    [[nodiscard]] QString ini(const QString& section, const QString& key) const {
        return CSystem().ReadProfileString(section, key, home() + u"/konfig.ini"_s);
    }
    void makeStore(const QString& password) {
        const auto db =
            Database::CreateDatabase(storePath(), password.isEmpty() ? QString() : u";PWD="_s + password);
        schema::createTables(*db);
        db->Close();
    }
    StartResult start(const QString& commandLine = {}) {
        m_calls.clear();
        gDB.reset();
        m_start.reset(); // the lock of the process before goes with it
        m_start = std::make_unique<StartUp>(m_screens, m_printers, m_waiter, commandLine);
        return m_start->Main();
    }
    int passwordFits(const QString& password) const {
        try {
            Database::OpenDatabase(storePath(), false, false, u";PWD="_s + password)->Close();
            return 0;
        } catch (const RuntimeError& error) {
            return error.Number;
        }
    }

    QTemporaryDir m_folder;
    QStringList m_calls;
    Screens m_screens{m_calls};
    NoWait m_waiter{m_calls};
    Printers m_printers;
    ScriptedDialogs m_dialogs;
    std::unique_ptr<StartUp> m_start;
};
