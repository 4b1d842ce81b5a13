#include <printing/RechnungsVorlagen.h>
#include <session/Globals.h>
#include <session/MessageDetails.h>
#include <session/MsgBox.h>
#include <text/CodePage.h>
#include <text/RuntimeError.h>
#include <text/Sort.h>

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vorlagen {

namespace {

const QString ending = u".rvl"_s;
constexpr qsizetype longestName = 100;

// With CR and LF, which every editor takes for the end of a line.
const QString usualText = u"Bitte überweisen Sie den Betrag in Höhe von [SUMME] bis zum DateAdd[10] auf das "
                          "nachfolgende Konto:\r\n"_s;

void refuse(const QString& text) {
    MsgBox(text, MsgIcon::Critical, MsgButtons::OK, u"Aktion nicht möglich..."_s);
}

/// A name that every system takes for a file and none for a path.
bool isFileName(const QString& name) {
    static const QString forbidden = u"\\/:*?\"<>|"_s;
    return name.size() <= longestName && !name.endsWith(u'.') &&
           std::ranges::none_of(name, [](QChar c) { return c < u' ' || forbidden.contains(c); });
}

/// Windows-1252 as all written texts, unless the text needs more.
QByteArray fileBytes(const QString& text) {
    const QByteArray bytes = FitsWindows1252(text) ? ToWindows1252(text) : QByteArray();
    if (FromFileBytes(bytes) == text) return bytes;
    return "\xEF\xBB\xBF" + text.toUtf8();
}

} // namespace

QStringList Names() {
    QStringList names = QDir(gDBPath).entryList({u'*' + ending}, QDir::Files);
    std::ranges::sort(names, [](const QString& a, const QString& b) { return CompareText(a, b) < 0; });
    return names;
}

QString Read(const QString& name) {
    QFile file(gDBPath + name);
    if (!file.exists()) throw RuntimeError(53, u"Datei nicht gefunden: "_s + file.fileName());
    if (!file.open(QIODevice::ReadOnly)) throw RuntimeError(70, u"Zugriff verweigert: "_s + file.fileName());
    return FromFileBytes(file.readAll());
}

bool Save(const QString& name, const QString& text) {
    const QByteArray bytes = fileBytes(text);
    QSaveFile file(gDBPath + name);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) return true;
    const MessageDetails details(file.errorString());
    refuse(
        u"Die Datei \"%1\" kann nicht geschrieben werden."_s.arg(QDir::toNativeSeparators(file.fileName())));
    return false;
}

QString Create() {
    const auto answer =
        InputBox(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, u"Vorlage erstellen..."_s);
    QString name = answer.value_or(QString()).trimmed();
    if (name.endsWith(ending, Qt::CaseInsensitive)) name = name.chopped(ending.size()).trimmed();
    if (name.isEmpty()) return {};
    if (!isFileName(name)) {
        refuse(
            u"Aus \"%1\" lässt sich kein Dateiname bilden. Er darf höchstens %2 Zeichen haben, keines der Zeichen "
            "\\ / : * ? \" < > | enthalten und nicht mit einem Punkt enden."_s.arg(name)
                .arg(longestName));
        return {};
    }
    // Another till may look for the same file in other letters, so case makes no difference.
    const QString fileName = name + ending;
    if (Names().contains(fileName, Qt::CaseInsensitive) || QFile::exists(gDBPath + fileName)) {
        refuse(
            u"Es konnte keine Datei mit dem Namen %1'.rvl' erstellt werden, da diese bereits vorhanden ist. "
            "Benennen Sie diese um und wiederholen Sie den Vorgang."_s.arg(name));
        return {};
    }
    return Save(fileName, usualText) ? fileName : QString();
}

} // namespace vorlagen
