#include <session/Log.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cstdio>
#include <memory>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 sizeLimit = 1024 * 1024;

struct Log {
    std::mutex mutex; // Qt may report from threads of its own (sound, printing)
    std::unique_ptr<QFile> file;
    QtMessageHandler before = nullptr;
};

Log& theLog() {
    static Log& log = *new Log; // never destroyed: libraries report until the very end
    return log;
}

/// merivane.log becomes merivane.1.log, that one merivane.2.log, and the oldest goes.
void rotate(QFile& file) {
    const QString path = file.fileName();
    const QString stem = path.chopped(4);
    file.close();
    QFile::remove(stem + u".2.log"_s);
    QFile::rename(stem + u".1.log"_s, stem + u".2.log"_s);
    QFile::rename(path, stem + u".1.log"_s);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) theLog().file.reset();
}

void message(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type != QtDebugMsg) {
        const auto category = QString::fromLatin1(context.category ? context.category : "");
        WriteLog((category.isEmpty() || category == u"default" ? QString() : category + u": "_s) + text);
    }
    // What a developer sees on the terminal stays as it was.
    if (const auto before = theLog().before)
        before(type, context, text);
    else
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

QString StateFolder() {
    const QString told = qEnvironmentVariable("MERIVANE_STATE");
    if (!told.isEmpty()) return told;
    const QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (!base.isEmpty()) return base + u"/merivane"_s;
#ifdef Q_OS_UNIX
    return QDir::homePath() + u"/.local/state/merivane"_s;
#else
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/merivane"_s;
#endif
}

void OpenLog(const QString& folder) {
    CloseLog();
    const QString place = folder.isEmpty() ? StateFolder() : folder;
    if (!QDir().mkpath(place)) return;
    auto file = std::make_unique<QFile>(QDir(place).filePath(u"merivane.log"_s));
    if (!file->open(QIODevice::WriteOnly | QIODevice::Append)) return;
    {
        const std::lock_guard lock(theLog().mutex);
        theLog().file = std::move(file);
    }
    theLog().before = qInstallMessageHandler(message);
}

void CloseLog() {
    if (!theLog().file) return;
    qInstallMessageHandler(std::exchange(theLog().before, nullptr));
    const std::lock_guard lock(theLog().mutex);
    theLog().file.reset();
}

void WriteLog(const QString& text) {
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    if (!log.file) return;
    QString line = text;
    line.replace(u"\r\n"_s, u"\n"_s).replace(u'\n', u" | "_s);
    // The system's clock on purpose: a replaced clock belongs to the sale, not to the log.
    const QString stamp = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss.zzz  "_s);
    log.file->write((stamp + line + u'\n').toUtf8());
    log.file->flush();
    if (log.file->size() > sizeLimit) rotate(*log.file);
}

QString LogFile() { return theLog().file ? theLog().file->fileName() : QString(); }
