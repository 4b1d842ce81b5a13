#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/ServerStore.h>
#include <setup/StorePath.h>

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

bool HasFolder(const QString& folder) {
    return !folder.isEmpty() && !folder.contains(QChar(0)) && QFileInfo(folder).isDir();
}

bool HasStore(const QString& folder) {
    return HasFolder(folder) && QFileInfo(QDir(folder), QString::fromUtf16(StoreFileName)).isFile();
}

void SaveStorePlace(const QString& folder, const QString& server) {
    gSetupDone = 0;
    std::vector<CSystem::Entry> entries{{u"GLOBAL"_s, u"DBPath"_s, folder}};
    // A till that never had a server gets no empty key.
    if (server != ReadServerAddress()) entries.push_back({u"GLOBAL"_s, u"DBServer"_s, server});
    gSystem->WriteProfileStrings(entries, KonfigIni());
    gSetupDone = 1;
}
