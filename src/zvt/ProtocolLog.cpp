#include "ProtocolLog.h"

#include <session/Globals.h>
#include <session/Log.h>
#include <zvt/protocol/Describe.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

constexpr qint64 sizeLimit = 1024 * 1024;

QString stem() {
    const QString own = LogFile();
    return own.isEmpty() ? gAppPath + u"zvt"_s : QFileInfo(own).path() + u"/zvt"_s;
}

} // namespace

void ProtocolLog::write(const QString& mark, const Apdu& apdu) {
    if (m_on) note(mark + describe(apdu));
}

void ProtocolLog::note(const QString& text) {
    if (!m_on) return;
    const QString name = stem();
    if (QFileInfo(name + u".log"_s).size() > sizeLimit) {
        QFile::remove(name + u".2.log"_s);
        QFile::rename(name + u".1.log"_s, name + u".2.log"_s);
        QFile::rename(name + u".log"_s, name + u".1.log"_s);
    }
    QFile file(name + u".log"_s);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) return;
    const QString stamp = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss.zzz  "_s);
    file.write((stamp + text + u'\n').toUtf8());
}

} // namespace zvt
