#include "Console.h"

#include <store/StoreName.h>
#include <text/DetailedError.h>

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <csignal>
#include <cstdio>
#include <moving/StoreMove.h>
#include <new>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace moving {

namespace {

constexpr int moved = 0, failed = 1, wrongUse = 2, cancelled = 3;
constexpr int inUse = 3045;
constexpr auto fileName = u"Merivane.mdb";

volatile std::sig_atomic_t interrupted = 0;

void put(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

QString counted(qint64 number) { return QLocale(QLocale::German).toString(number); }

bool onTerminal() {
#ifdef Q_OS_UNIX
    return isatty(STDERR_FILENO) != 0;
#else
    return false;
#endif
}

/// A folder stands for the store in it.
QString placeOf(const QString& argument) {
    if (store::isServer(argument) || !QFileInfo(argument).isDir()) return argument;
    return QDir(argument).filePath(QString::fromUtf16(fileName));
}

QString shown(const QString& place) {
    return store::isServer(place) ? store::withoutPassword(place) : QDir::toNativeSeparators(place);
}

/// One line that is written over on a terminal; elsewhere a line for each table.
class ProgressLine {
  public:
    void show(const Progress& progress) {
        const QString step = progress.step == Progress::Step::Copying ? u"Übertrage"_s : u"Vergleiche"_s;
        if (!m_terminal) {
            if (progress.row == 0)
                put(stderr, u"%1 %2: %3 Zeilen\n"_s.arg(step, progress.table, counted(progress.rows)));
            return;
        }
        const QString line = u"%1 %  %2 %3: %4 von %5"_s.arg(progress.percent, 3)
                                 .arg(step, progress.table, counted(progress.row), counted(progress.rows));
        put(stderr, u'\r' + line.leftJustified(m_width));
        m_width = line.size();
    }
    void clear() {
        if (m_width > 0) put(stderr, u'\r' + QString(m_width, u' ') + u'\r');
        m_width = 0;
    }

  private:
    bool m_terminal = onTerminal();
    qsizetype m_width = 0;
};

void printTables(const MoveResult& result, bool sums) {
    qsizetype width = 0;
    qint64 rows = 0;
    for (const ComparedTable& table : result.tables) {
        width = std::max(width, table.name.size());
        rows += table.rows;
    }
    for (const ComparedTable& table : result.tables) {
        put(stdout, u"%1  %2 Zeilen  %3  %4\n"_s.arg(
                        table.name.leftJustified(width), counted(table.rows).rightJustified(11),
                        table.hash.left(16), table.differences.isEmpty() ? u"gleich"_s : u"VERSCHIEDEN"_s));
        if (sums)
            for (const QString& sum : table.sums)
                put(stdout, u"    "_s + sum + u'\n');
        for (const QString& difference : table.differences)
            put(stdout, u"    "_s + difference + u'\n');
    }
    put(stdout, u"%1 Tabellen mit %2 Zeilen\n"_s.arg(result.tables.size()).arg(counted(rows)));
}

void printSettings(const QString& target) {
    put(stdout, u"\nEintrag in der konfig.ini jeder Kasse:\n\n[GLOBAL]\n"_s);
    if (store::isServer(target)) {
        put(stdout,
            u"DBServer=%1\n\nStatt des Benutzers, der umgezogen ist, steht dort der der Kassen, sein Kennwort in "
            "der Datei ~/.pgpass.\nDBPath bleibt der gemeinsame Ordner der Vorlagen und Bilder.\n"_s.arg(
                store::withoutPassword(target)));
        return;
    }
    const QFileInfo file(target);
    put(stdout, u"DBServer=\nDBPath=%1\n"_s.arg(QDir::toNativeSeparators(file.absolutePath())));
    if (file.fileName() != QStringView(fileName))
        put(stdout, u"\nDie Datei muss dort \"%1\" heißen.\n"_s.arg(QString::fromUtf16(fileName)));
}

int move(const QString& source, const QString& target, bool sums) {
    ProgressLine line;
    try {
        put(stdout, u"Quelle: %1\nZiel:   %2\n"_s.arg(shown(source), shown(target)));
        const MoveResult result = StoreMove(source, target).run([&](const Progress& progress) {
            line.show(progress);
            return interrupted == 0;
        });
        line.clear();
        if (result.cancelled) {
            put(stderr,
                u"Der Umzug wurde abgebrochen. Die Quelle ist unverändert; derselbe Aufruf setzt ihn fort.\n"_s);
            return cancelled;
        }
        printTables(result, sums);
        if (!result.equal()) {
            put(stderr, u"Quelle und Ziel sind verschieden. Das Ziel bleibt gesperrt, die Quelle ist "
                        "unverändert; bitte den Umzug wiederholen.\n"_s);
            return failed;
        }
        put(stdout, u"Quelle und Ziel sind gleich.\n"_s);
        printSettings(target);
        return moved;
    } catch (const RuntimeError& error) {
        line.clear();
        put(stderr, u"Fehler %1: %2\n"_s.arg(error.Number).arg(error.Description));
        if (const QString details = DetailsOf(error); !details.isEmpty()) put(stderr, details + u'\n');
        if (error.Number == inUse) put(stderr, u"Während des Umzugs darf keine Kasse geöffnet sein.\n"_s);
    } catch (const std::bad_alloc&) {
        line.clear();
        put(stderr, u"Fehler 7: Nicht genügend Arbeitsspeicher\n"_s);
    }
    return failed;
}

} // namespace

int run(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Zieht einen Laden in eine andere Datenbank um, ganz und mit Vergleich am Ende.\n\n"
        "QUELLE und ZIEL sind die Datei Merivane.mdb, ihr Ordner oder die Adresse eines Datenbankservers\n"
        "(postgresql://benutzer@rechner/datenbank). Das Ziel muss leer sein oder fehlen. Die Quelle bleibt, wie sie ist.\n"
        "Nach einer Unterbrechung setzt derselbe Aufruf den Umzug fort.\n\n"
        "Ergebnis: 0 umgezogen und gleich, 1 Fehler, 2 falscher Aufruf, 3 abgebrochen."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s, u"hilfe"_s}, u"Zeigt diese Hilfe."_s);
    const QCommandLineOption sums({u"s"_s, u"summen"_s}, u"Zeigt die Summe jeder Zahlenspalte."_s);
    parser.addOptions({help, sums});
    parser.addPositionalArgument(u"QUELLE"_s, u"woher der Laden kommt"_s);
    parser.addPositionalArgument(u"ZIEL"_s, u"wohin er zieht"_s);
    const bool understood = parser.parse(arguments);
    if (understood && parser.isSet(help)) {
        put(stdout, parser.helpText());
        return moved;
    }
    const QStringList words = parser.positionalArguments();
    if (!understood || words.size() != 2) {
        put(stderr, understood ? parser.helpText() : parser.errorText() + u'\n');
        return wrongUse;
    }
    for (const QString& word : words)
        if (store::withoutPassword(word) != word) {
            put(stderr, u"Das Kennwort gehört nicht auf die Befehlszeile, wo andere es lesen können, sondern "
                        "in die Datei ~/.pgpass oder eine Servicedatei.\n"_s);
            return wrongUse;
        }
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    return move(placeOf(words.at(0)), placeOf(words.at(1)), parser.isSet(sums));
}

} // namespace moving
