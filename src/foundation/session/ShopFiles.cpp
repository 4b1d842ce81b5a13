#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Log.h>
#include <session/MsgBox.h>
#include <session/ShopFiles.h>
#include <text/CodePage.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Of karten.txt; a longer one is another file under its name, and the till must not wait for it.
constexpr qint64 mostBytes = 64 * 1024;

QString articleFile() { return gDBPath + u"artikel.ini"_s; }
QString cardFile() { return gDBPath + u"karten.txt"_s; }

/// Its place in the till's own notes: which data folder had an artikel.ini.
const QString section = u"artikel.ini"_s, key = u"Ordner"_s;
QString notes() { return QDir(StateFolder()).filePath(u"merivane.ini"_s); }

void note(const QString& folder) {
    try {
        if (gSystem->ReadProfileString(section, key, notes()) == folder) return;
        QDir().mkpath(StateFolder());
        gSystem->WriteProfileString(section, key, folder, notes());
    } catch (const RuntimeError& error) {
        WriteLog(notes() + u": "_s + error.Description); // the next start will not miss the file
    }
}

/// The path as far as a note holds it.
QString noted(const QString& folder) { return folder.right(255); }

void checkArticleFile() {
    const QString folder = noted(gDBPath);
    if (QFileInfo::exists(articleFile())) return note(folder);
    if (gSystem->ReadProfileString(section, key, notes()) != folder) return;
    const MsgAnswer answer =
        MsgBox(u"Die Datei %1 war beim letzten Start da und fehlt jetzt. Ohne sie verkauft die Kasse "
               "Rücknahmeartikel (Leergut) mit positivem Preis, statt sie gutzuschreiben.\n\n"
               "Wurde die Datei mit Absicht entfernt?"_s.arg(QDir::toNativeSeparators(articleFile())),
               MsgIcon::Exclamation, MsgButtons::YesNo, QString::fromUtf16(SystemTitle), MsgAnswer::No);
    if (answer == MsgAnswer::Yes) note({});
}

} // namespace

QStringList ReadKarten() {
    QFile file(cardFile());
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(53, u"Die Datei "_s + file.fileName() + u" wurde nicht gefunden"_s, u"frmKasse"_s);
    QByteArray bytes = file.read(mostBytes);
    // Half a character at the cut would make the file look as if it were written in another code page.
    if (!file.atEnd()) bytes.truncate(std::max<qsizetype>(bytes.lastIndexOf('\n'), 0));
    QStringList cards;
    for (QString line : FromFileBytes(bytes).replace(u'\r', u'\n').split(u'\n')) {
        line = line.trimmed();
        if (line.size() > LongestKarte)
            line.truncate(LongestKarte - (line[LongestKarte - 1].isHighSurrogate() ? 1 : 0));
        if (!line.isEmpty()) cards.append(line);
        if (cards.size() == MostKarten) break;
    }
    return cards;
}

QStringList FindShopFileFaults() {
    QStringList faults;
    const auto find = [&](const QString& path, qint64 most) {
        QString fault = gSystem->ReadFault(path);
        if (fault.isEmpty() && QFileInfo(path).size() > most)
            fault = u"Sie ist zu groß; es gelten höchstens die ersten %1 Zeilen."_s.arg(MostKarten);
        if (!fault.isEmpty()) faults << QDir::toNativeSeparators(path) + u": "_s + fault;
    };
    constexpr qint64 any = 16 * 1024 * 1024;
    find(articleFile(), any);
    find(cardFile(), mostBytes);
    return faults;
}

void CheckShopFiles() {
    if (const QStringList faults = FindShopFileFaults(); !faults.isEmpty())
        MsgBox(u"Diese Dateien des Geschäfts kann die Kasse nicht lesen, wie sie sind:\n\n"_s +
                   faults.join(u'\n') +
                   u"\n\nOhne artikel.ini verkauft sie Rücknahmeartikel (Leergut) mit positivem Preis; in "
                   "karten.txt stehen die Karten zum Bezahlen."_s,
               MsgIcon::Exclamation);
    checkArticleFile();
}
