#include "Player.h"
#include "ReceiptPrinter.h"

#include <app/DemoShop.h>
#include <app/ui/Program.h>
#include <session/CSystem.h>

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// A script knows no hurry and no pause.
class NoWaiter : public PaintWaiter {
  public:
    void Wait(int) override { Yield(); }
};

int complain(const QString& text) {
    std::fputs(qPrintable(text + u'\n'), stderr);
    return 1;
}

/// A till of its own with the player's printer on its serial line, apart from any till that runs on this
/// machine.
void prepareTill(const QString& folder, const QString& printer) {
    demo::createShop(folder);
    CSystem().WriteProfileString(u"PORTS"_s, u"COM1"_s, printer, folder + u"/konfig.ini"_s);
    for (const auto& [name, value] :
         {std::pair{"MERIVANE_HOME", folder}, std::pair{"MERIVANE_RUNTIME", folder},
          std::pair{"MERIVANE_STATE", folder}, std::pair{"XDG_CONFIG_HOME", folder},
          std::pair{"MERIVANE_MASCHINE", u"KASSE-1"_s}}) {
        qputenv(name, value.toLocal8Bit());
    }
}

/// The scripts one behind the other, on one day at one till.
int playScripts(const QStringList& scripts, const QString& out) {
    QList<play::Step> steps;
    for (const QString& script : scripts) {
        QFile file(script);
        if (!file.open(QIODevice::ReadOnly)) return complain(script + u": "_s + file.errorString());
        steps +=
            play::parseScript(file.readAll(), scripts.size() > 1 ? QFileInfo(script).fileName() : QString());
    }
    const QString folder = QDir(out).absolutePath();
    if (!QDir().mkpath(folder) || !QDir(folder).isEmpty())
        return complain(folder + u" muss ein leerer Ordner sein."_s);
    play::ReceiptPrinter printer;
    prepareTill(folder + u"/laden"_s, printer.device());

    QElapsedTimer sinceStart;
    sinceStart.start();
    NoWaiter waiter;
    Program program(waiter);
    play::Player player(steps, printer, program.Scans(), folder);
    if (program.Start() != StartResult::Running) return complain(u"Die Kasse ist nicht gestartet."_s);
    player.note(u"Start bis zur Anmeldung: %1 ms"_s.arg(sinceStart.elapsed()));
    QObject::connect(&player, &play::Player::finished, qApp,
                     [](bool failed) { QCoreApplication::exit(failed ? 1 : 0); });
    player.start();
    const int result = QCoreApplication::exec();
    std::fputs(qPrintable(player.report()), result == 0 ? stdout : stderr);
    std::fputs(qPrintable(u"Belege, Bilder und das Protokoll morning.log liegen in %1\n"_s.arg(folder)),
               stdout);
    return result;
}

/// The screen in memory complains about every window; that would bury what matters.
void quiet(QtMsgType, const QMessageLogContext&, const QString& message) {
    if (!message.startsWith(u"This plugin does not support"_s))
        std::fputs(qPrintable(message + u'\n'), stderr);
}

/// Without a display the screen is one in memory, as large as that of a till.
void chooseScreen(QFile& settings) {
    const bool display =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.isEmpty() ? display : platform != "offscreen") return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!settings.open(QIODevice::ReadWrite)) return;
    settings.write(
        R"({"windowFrameMargins":false,"screens":[{"name":"Kasse","x":0,"y":0,"width":1366,"height":768,"dpr":1,"logicalDpi":96,)"
        R"("logicalBaseDpi":96}]})");
    settings.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(settings.fileName()));
}

} // namespace

#ifdef __SANITIZE_ADDRESS__
// The toolkit keeps what recognises the gestures of a preview.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:QScroller::grabGesture\n"; }
#endif

int main(int argc, char** argv) {
    qInstallMessageHandler(&quiet);
    QTemporaryFile screenSettings;
    chooseScreen(screenSettings);
    try {
        Application app(argc, argv);
        QCommandLineParser parser;
        parser.addHelpOption();
        parser.addPositionalArgument(u"Skript"_s, u"Die Schritte, siehe assets/demo/day"_s, u"Skript..."_s);
        parser.addOption({u"out"_s, u"Leerer Ordner für Laden, Belege, Bilder und Protokoll"_s, u"Ordner"_s});
        parser.process(app);
        if (parser.positionalArguments().isEmpty() || !parser.isSet(u"out"_s)) parser.showHelp(2);
        return playScripts(parser.positionalArguments(), parser.value(u"out"_s));
    } catch (const std::exception& error) {
        return complain(QString::fromUtf8(error.what()));
    }
}
