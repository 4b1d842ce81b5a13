#include "Console.h"

#include "Output.h"
#include "Statements.h"

#include <store/Database.h>
#include <store/StoreName.h>
#include <text/DetailedError.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <new>

using namespace Qt::StringLiterals;

namespace console {

namespace {

void put(std::FILE* stream, const QByteArray& text) {
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stream);
}

struct Options {
    bool json = false;
    bool translate = false;
};

// Tabulators between the values of a row, a header above.
void runTabbed(Database& db, const QString& statement) {
    if (!db.IsQuery(statement)) {
        db.Execute(statement);
        return;
    }
    db.ForEachRow(
        statement,
        [](const std::vector<TableField>& columns) {
            QByteArrayList names;
            for (const TableField& column : columns)
                names.append(tabbed(Value(column.Name)));
            put(stdout, names.join('\t') + '\n');
        },
        [](const std::vector<Value>& row) {
            QByteArrayList values;
            for (const Value& value : row)
                values.append(tabbed(value));
            put(stdout, values.join('\t') + '\n');
        });
}

/// With the engine's own words: who works here can use them.
QString told(const RuntimeError& error) {
    const QString details = DetailsOf(error);
    return details.isEmpty() ? error.Description : error.Description + u' ' + details;
}

QByteArray answerOf(const RuntimeError& error) {
    return "{\"error\":" + QByteArray::number(error.Number) +
           ",\"place\":" + QByteArray::number(error.Place) + ",\"text\":" + jsonText(told(error)) + '}';
}

QByteArray answer(Database& db, const QString& statement) {
    if (!db.IsQuery(statement)) return "{\"affected\":" + QByteArray::number(db.Execute(statement)) + '}';
    QByteArrayList names;
    QByteArrayList types;
    QByteArrayList rows;
    db.ForEachRow(
        statement,
        [&](const std::vector<TableField>& columns) {
            for (const TableField& column : columns) {
                names.append(jsonText(column.Name));
                types.append(jsonText(typeText(column.Type)));
            }
        },
        [&](const std::vector<Value>& row) {
            QByteArrayList values;
            for (const Value& value : row)
                values.append(json(value));
            rows.append('[' + values.join(',') + ']');
        });
    return "{\"columns\":[" + names.join(',') + "],\"types\":[" + types.join(',') + "],\"rows\":[" +
           rows.join(',') + "]}";
}

int complain(const RuntimeError& error) {
    QByteArray line = QByteArray::number(error.Number);
    if (error.Place >= 0) line += " an Stelle " + QByteArray::number(error.Place + 1);
    std::fflush(stdout);
    put(stderr, line + ": " + told(error).toUtf8() + '\n');
    return 1;
}

int runOne(Database& db, const QString& statement, const Options& options) {
    try {
        if (options.translate)
            put(stdout, db.Translated(statement).toUtf8() + '\n');
        else if (options.json)
            put(stdout, answer(db, statement) + '\n');
        else
            runTabbed(db, statement);
        std::fflush(stdout);
        return 0;
    } catch (const RuntimeError& error) {
        if (!options.json || options.translate) return complain(error);
        put(stdout, answerOf(error) + '\n');
    } catch (const std::bad_alloc&) {
        const RuntimeError error(7, u"Nicht genügend Arbeitsspeicher"_s);
        if (!options.json || options.translate) return complain(error);
        put(stdout, answerOf(error) + '\n');
    }
    std::fflush(stdout);
    return 1;
}

// One JSON string a line in, one answer a line out.
int runJsonLines(Database& db, QFile& input, const Options& options) {
    int failed = 0;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        line = line.trimmed();
        if (line.isEmpty()) continue;
        const QJsonDocument document = QJsonDocument::fromJson('[' + line + ']');
        if (document.array().size() != 1 || !document.array().at(0).isString()) {
            put(stdout, answerOf(RuntimeError(5, u"Die Zeile ist keine JSON-Zeichenfolge."_s)) + '\n');
            std::fflush(stdout);
            failed = 1;
            continue;
        }
        failed |= runOne(db, document.array().at(0).toString(), options);
    }
    return failed;
}

int runLines(Database& db, QFile& input, const Options& options) {
    Splitter splitter;
    const auto drain = [&] {
        while (const auto statement = splitter.next())
            if (const int failed = runOne(db, *statement, options); failed != 0) return failed;
        return 0;
    };
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        splitter.feed(QString::fromUtf8(line));
        if (const int failed = drain(); failed != 0) return failed;
    }
    splitter.finish();
    return drain();
}

// Without a password on the command line, those that the till gives its stores are tried.
std::unique_ptr<Database> open(const QString& store, const QCommandLineParser& parser) {
    const bool readOnly = parser.isSet(u"readonly"_s);
    const QString given = parser.value(u"password"_s);
    const QString connect = u";PWD="_s;
    if (parser.isSet(u"create"_s) && store != u":memory:") {
        try {
            std::ignore = Database::CreateDatabase(store, connect + given);
        } catch (const RuntimeError& error) {
            if (error.Number != 3204) throw; // it is there already
        }
    }
    if (parser.isSet(u"password"_s)) return Database::OpenDatabase(store, false, readOnly, connect + given);
    try {
        return Database::OpenDatabase(store, false, readOnly,
                                      connect + QString::fromUtf16(store::oldPassword));
    } catch (const RuntimeError& error) {
        if (error.Number != 3031) throw;
        return Database::OpenDatabase(store, false, readOnly,
                                      connect + QString::fromUtf16(store::newPassword));
    }
}

/// The store of this run. In an empty database of a server the console makes itself one that goes with it, as
/// ":memory:" does.
class Place {
  public:
    Place(const QString& store, const QCommandLineParser& parser) {
        try {
            m_db = open(store, parser);
        } catch (const RuntimeError& error) {
            if (error.Number != emptyDatabase) throw;
            put(stderr,
                "Die Datenbank ist leer. Was hier angelegt wird, vergeht mit der Konsole; --create legt "
                "einen Laden an.\n");
            const QString schema = u"merivane_scratch_%1"_s.arg(QCoreApplication::applicationPid());
            m_scratch = store + (store.contains(u'?') ? u'&' : u'?') + u"options=-csearch_path%3D"_s + schema;
            m_db = Database::CreateDatabase(m_scratch);
        }
    }
    ~Place() {
        m_db.reset();
        if (m_scratch.isEmpty()) return;
        try {
            Database::DeleteDatabase(m_scratch);
        } catch (const RuntimeError& error) {
            complain(error);
        }
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    [[nodiscard]] Database& db() const { return *m_db; }

  private:
    static constexpr int emptyDatabase = 3011;
    std::unique_ptr<Database> m_db;
    QString m_scratch;
};

} // namespace

int run(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Runs statements of the store's SQL dialect.\n\n"
        "STORE is a store file, :memory: or the URI of a server's database. Statements come from the "
        "argument or from standard input, where each\n"
        "ends with a semicolon or an empty line. Errors go to standard error as number, place and description.\n"
        "In an empty database of a server, without --create, everything goes when the console ends."_s);
    parser.addHelpOption();
    parser.addOption({u"json"_s, u"Read one JSON string a line, answer one JSON object a line."_s});
    parser.addOption(
        {u"translate"_s, u"Print the translation for this engine instead of running."_s, u"engine"_s});
    parser.addOption({u"readonly"_s, u"Open so that nothing can be written."_s});
    parser.addOption({u"create"_s, u"Make an empty store when there is none."_s});
    parser.addOption({u"password"_s, u"The store's password."_s, u"password"_s});
    parser.addPositionalArgument(u"STORE"_s, u"Store file, :memory: or URI"_s);
    parser.addPositionalArgument(u"STATEMENT"_s, u"One statement"_s, u"[STATEMENT]"_s);
    if (!parser.parse(arguments)) {
        put(stderr, parser.errorText().toUtf8() + '\n');
        return 2;
    }
    if (parser.isSet(u"help"_s)) {
        put(stdout, parser.helpText().toUtf8());
        return 0;
    }
    const QStringList words = parser.positionalArguments();
    if (words.isEmpty() || words.size() > 2) {
        put(stderr, parser.helpText().toUtf8());
        return 2;
    }
    const Options options{parser.isSet(u"json"_s), parser.isSet(u"translate"_s)};
    const QString engine = parser.value(u"translate"_s);
    if (options.translate && engine != u"sqlite" && engine != u"postgres") {
        put(stderr, "--translate: sqlite or postgres\n");
        return 2;
    }
    try {
        const Place place(words.at(0), parser);
        Database& db = place.db();
        if (options.translate && !db.Version().startsWith(engine, Qt::CaseInsensitive)) {
            put(stderr, "--translate: STORE lies on another engine\n");
            return 2;
        }
        if (words.size() == 2) return runOne(db, words.at(1), options);
        // Through the descriptor: the stream's own way of reading lines ends at a NUL.
        QFile input;
        if (!input.open(fileno(stdin), QIODevice::ReadOnly)) return 2;
        return options.json ? runJsonLines(db, input, options) : runLines(db, input, options);
    } catch (const RuntimeError& error) {
        complain(error);
        return 3;
    }
}

} // namespace console
