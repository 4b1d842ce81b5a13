#include <app/DemoShop.h>
#include <app/ui/Program.h>
#include <text/RuntimeError.h>

#include <QCommandLineParser>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int badArguments = 2;

const QString demoOption = u"create-demo"_s, editOption = u"edit-template"_s;

void say(FILE* stream, const QString& text) { std::fputs(qPrintable(text + u'\n'), stream); }

int createDemo(const QString& folder) {
    try {
        demo::createShop(folder);
    } catch (const RuntimeError& error) {
        say(stderr, error.Description);
        return 1;
    }
    say(stdout, u"Der Vorführladen steht in %1"_s.arg(folder));
    return 0;
}

/// What needs no screen, and so works on a machine without one; nothing when the till is to start, or the
/// designer of print templates on `editedTemplate`.
std::optional<int> console(int& argc, char** argv, QString& editedTemplate) {
    const QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"merivane"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(MERIVANE_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Die Kasse. Ohne Angaben startet sie auf der konfig.ini des Programmordners oder "
        "des Ordners, den MERIVANE_HOME nennt."_s);
    const QCommandLineOption help = parser.addHelpOption(), version = parser.addVersionOption();
    parser.addOption({demoOption, u"Legt in <Ordner> einen Laden zum Ausprobieren an."_s, u"Ordner"_s});
    parser.addOption(
        {editOption, u"Öffnet die Druckvorlage <Datei> im Entwurf, z. B. Rechnung.pld."_s, u"Datei"_s});
    if (!parser.parse(QCoreApplication::arguments())) {
        say(stderr, parser.errorText());
        return badArguments;
    }
    if (parser.isSet(help)) {
        say(stdout, parser.helpText());
        return 0;
    }
    if (parser.isSet(version)) {
        say(stdout, u"Merivane "_s + QCoreApplication::applicationVersion());
        return 0;
    }
    if (parser.isSet(demoOption)) return createDemo(parser.value(demoOption));
    editedTemplate = parser.value(editOption);
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    // Arguments in the Qt manner such as "-platform offscreen" belong to the application with a screen.
    QString editedTemplate;
    if (argc > 1 && QByteArrayView(argv[1]).startsWith("--")) {
        if (const std::optional<int> result = console(argc, argv, editedTemplate)) return *result;
    }
    Application app(argc, argv);
    PaintWaiter waiter;
    Program program(waiter);
    if (!editedTemplate.isEmpty()) return program.EditTemplate(editedTemplate) ? 0 : 1;
    if (program.Start() != StartResult::Running) return 1;
    return QCoreApplication::exec();
}
