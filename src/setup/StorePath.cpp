#include <session/CSystem.h>
#include <session/Globals.h>
#include <setup/StorePath.h>

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

bool HasStore(const QString& folder) {
    return !folder.isEmpty() && !folder.contains(QChar(0)) &&
           QFileInfo(QDir(folder), QString::fromUtf16(StoreFileName)).isFile();
}

void SaveStorePath(const QString& folder) {
    gSetupDone = 0;
    gSystem->WriteProfileString(u"GLOBAL"_s, u"DBPath"_s, folder, KonfigIni());
    gSetupDone = 1;
}
