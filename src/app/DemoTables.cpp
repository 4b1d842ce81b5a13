#include <app/DemoTables.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QSet>

using namespace Qt::StringLiterals;

namespace demo {

namespace {

const QString root = u":/demo/"_s;

} // namespace

QStringList tableNames() {
    return {u"Artikel"_s,
            u"ArtikelLieferanten"_s,
            u"VerbundArtikel"_s,
            u"AktionsPreise"_s,
            u"Lieferanten"_s,
            u"ShortCutGroup"_s,
            u"ShortCut"_s,
            u"Kunden"_s,
            u"Personal"_s,
            u"Colors"_s,
            u"ArtikelSerienNummern"_s,
            u"Gutscheine"_s};
}

Table parseTable(const QString& name, const QByteArray& text) {
    QStringList lines = QString::fromUtf8(text).split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    const auto fail = [&](qsizetype line, const QString& what) {
        throw RuntimeError(5, u"%1, Zeile %2: %3"_s.arg(name).arg(line + 1).arg(what), u"DemoTables"_s);
    };
    if (lines.isEmpty()) fail(0, u"Die Spaltennamen fehlen."_s);
    Table table{name, lines.first().split(u'\t'), {}};
    if (QSet<QString>(table.columns.begin(), table.columns.end()).size() != table.columns.size()) {
        fail(0, u"Ein Spaltenname kommt doppelt vor."_s);
    }
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QStringList cells = lines[i].split(u'\t');
        if (cells.size() != table.columns.size()) {
            fail(i, u"%1 Felder statt %2."_s.arg(cells.size()).arg(table.columns.size()));
        }
        table.rows.append(cells);
    }
    return table;
}

Table readTable(const QString& name) { return parseTable(name, readFile(name + u".tsv"_s)); }

QByteArray readFile(const QString& path) {
    QFile file(root + path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw RuntimeError(53, u"Die Datei \"%1\" gehört nicht zu den Daten des Vorführladens."_s.arg(path),
                           u"DemoTables"_s);
    }
    return file.readAll();
}

QStringList drawings() { return QDir(root + u"bilder"_s).entryList({u"*.svg"_s}, QDir::Files, QDir::Name); }

QStringList closingTexts() { return QDir(root).entryList({u"*.rvl"_s}, QDir::Files, QDir::Name); }

} // namespace demo
