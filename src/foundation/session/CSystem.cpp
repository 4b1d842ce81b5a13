#include "IniFile.h"

#include <session/CSystem.h>
#include <session/Log.h>
#include <text/RuntimeError.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSysInfo>

#include <cerrno>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A file written this shortly before it was read may be written again without a visible change of its time.
constexpr qint64 settledAfterMs = 2000;
/// Above this no ini file is one; it is not read, so that a wrong path does not eat the memory.
constexpr qint64 sizeLimit = 16 * 1024 * 1024;
constexpr qsizetype valueLimit = 255;
constexpr qsizetype nameLimit = 50; // as the column `Maschine` of all tables

QByteArray contentOf(const QString& path) {
    QFile file(path);
    if (file.size() > sizeLimit || !file.open(QIODevice::ReadOnly)) return {};
    return file.readAll();
}

} // namespace

/// The parsed ini files by path, each with the time and size that it had.
class CSystem::Files {
  public:
    const IniFile& get(const QString& path) {
        const QFileInfo info(path);
        const qint64 time =
            info.exists() ? info.fileTime(QFile::FileModificationTime).toMSecsSinceEpoch() : qint64(-1);
        const qint64 size = info.exists() ? info.size() : 0;
        Entry& entry = m_entries[path];
        if (entry.settled && entry.time == time && entry.size == size) return entry.file;
        // Missing files count as settled: one that appears has a time.
        entry.settled = time < 0 || QDateTime::currentMSecsSinceEpoch() - time > settledAfterMs;
        entry.time = time;
        entry.size = size;
        try {
            entry.file = time < 0 ? IniFile() : IniFile(contentOf(path));
        } catch (const RuntimeError& error) {
            entry.file = IniFile();
            WriteLog(path + u": "_s + error.Description);
        }
        return entry.file;
    }
    void forget(const QString& path) { m_entries.erase(path); }

  private:
    struct Entry {
        IniFile file;
        qint64 time = -2;
        qint64 size = -1;
        bool settled = false;
    };
    std::map<QString, Entry> m_entries;
};

/// Values that wait for a file which can be written.
class CSystem::Unwritten {
  public:
    [[nodiscard]] const QString* find(const QString& section, const QString& key, const QString& path) const {
        if (m_entries.empty()) return nullptr; // the usual case, asked at each read
        const auto found = m_entries.find(nameOf(section, key, path));
        return found == m_entries.end() ? nullptr : &found->second.Value;
    }
    /// What waits for this file, with `more` behind it.
    [[nodiscard]] std::vector<Entry> with(const std::vector<Entry>& more, const QString& path) const {
        std::vector<Entry> all;
        for (const auto& [name, entry] : m_entries)
            if (name.first == path) all.push_back(entry);
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
    void keep(const std::vector<Entry>& entries, const QString& path) {
        for (const Entry& entry : entries)
            m_entries[nameOf(entry.Section, entry.Key, path)] = entry;
    }
    void forget(const std::vector<Entry>& entries, const QString& path) {
        for (const Entry& entry : entries)
            m_entries.erase(nameOf(entry.Section, entry.Key, path));
    }

    QString fault;
    bool isTold = false;

  private:
    using Name = std::pair<QString, QString>; // of the file; of section and key
    static Name nameOf(const QString& section, const QString& key, const QString& path) {
        return {path, (section.trimmed() + u'\n' + key.trimmed()).toCaseFolded()};
    }
    std::map<Name, Entry> m_entries;
};

CSystem::CSystem()
    : m_files(std::make_unique<Files>())
    , m_unwritten(std::make_unique<Unwritten>()) {}
CSystem::~CSystem() = default;

QString CSystem::ReadProfileString(const QString& Section, const QString& Key, const QString& File) const {
    const QString* unwritten = m_unwritten->find(Section, Key, File);
    QString value = unwritten ? *unwritten : m_files->get(File).value(Section, Key);
    if (value.size() > valueLimit) {
        value.truncate(valueLimit);
        if (value.back().isHighSurrogate()) value.chop(1);
    }
    return value;
}

QString CSystem::ReadFault(const QString& File) const {
    const QString denied = u"Das Recht, sie zu lesen, fehlt."_s;
    std::error_code code;
    const auto status = std::filesystem::status(std::filesystem::path(File.toStdU16String()), code);
    if (status.type() == std::filesystem::file_type::not_found) return {};
    if (code == std::errc::permission_denied) return denied;
    if (!std::filesystem::is_regular_file(status)) return u"Unter diesem Namen steht keine Datei."_s;
    QFile file(File);
    if (file.size() > sizeLimit) return u"Sie ist zu groß."_s;
    if (!file.open(QIODevice::ReadOnly)) return denied;
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) return u"Der Datenträger meldet einen Fehler."_s;
    try {
        const IniFile read(content);
    } catch (const RuntimeError& error) {
        return error.Description;
    }
    return {};
}

void CSystem::WriteProfileString(const QString& Section, const QString& Key, const QString& Value,
                                 const QString& File) {
    WriteProfileStrings({{Section, Key, Value}}, File);
}

void CSystem::WriteProfileStrings(const std::vector<Entry>& Entries, const QString& File) {
    const QFileInfo info(File);
    const auto fail = [&](int number, const QString& text) {
        throw RuntimeError(number, text + u": "_s + QDir::toNativeSeparators(File), u"CSystem"_s);
    };
    if (!info.dir().exists()) fail(76, u"Pfad nicht gefunden"_s);
    QByteArray before;
    if (info.exists()) {
        QFile file(File);
        if (!info.isFile() || info.size() > sizeLimit || !file.open(QIODevice::ReadOnly))
            fail(70, u"Zugriff verweigert"_s);
        before = file.readAll();
    }
    IniFile ini(before);
    for (const Entry& entry : Entries)
        ini.setValue(entry.Section, entry.Key, entry.Value);
    const QByteArray after = ini.bytes();
    if (info.exists() && after == before) return m_unwritten->forget(Entries, File);
    if (info.exists() && !info.isWritable()) fail(70, u"Zugriff verweigert"_s);

    // The whole new file is written beside the old one and then takes its place, with its permissions.
    QSaveFile file(File);
    m_files->forget(File);
    errno = 0;
    if (file.open(QIODevice::WriteOnly) && file.write(after) == after.size() && file.commit())
        return m_unwritten->forget(Entries, File);
    const bool full = file.error() == QFileDevice::ResourceError || errno == ENOSPC;
    fail(full ? 61 : 70, full ? u"Datenträger voll"_s : u"Zugriff verweigert"_s);
}

void CSystem::KeepProfileStrings(const std::vector<Entry>& Entries, const QString& File) {
    const std::vector<Entry> all = m_unwritten->with(Entries, File);
    try {
        WriteProfileStrings(all, File);
    } catch (const RuntimeError& error) {
        constexpr int diskFull = 61, denied = 70, noFolder = 76;
        if (error.Number != diskFull && error.Number != denied && error.Number != noFolder) throw;
        IniFile named; // an impossible name must not wait here and spoil every later write
        for (const Entry& entry : Entries)
            named.setValue(entry.Section, entry.Key, entry.Value);
        m_unwritten->keep(all, File);
        m_unwritten->fault = error.Description;
        WriteLog(error.Description);
    }
}

QString CSystem::TakeKeepFault() {
    if (m_unwritten->fault.isEmpty() || std::exchange(m_unwritten->isTold, true)) return {};
    return m_unwritten->fault;
}

QString CSystem::ComputerName() const {
    QString name = qEnvironmentVariable("MERIVANE_MASCHINE").trimmed();
    if (name.isEmpty()) name = QSysInfo::machineHostName();
    if (const qsizetype end = name.indexOf(QChar(0)); end >= 0) name.truncate(end);
    return name.left(nameLimit);
}
