#include <session/Bilder.h>
#include <session/Globals.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

QString BildDatei(Bild von, const QString& key) {
    static constexpr QStringView prefixes[] = {u"artimg_", u"kundimg_", u"persimg_"};
    return gDBPath + prefixes[static_cast<int>(von)].toString() + key + u".bmp"_s;
}

QString VorhandenesBild(Bild von, const QString& key) {
    QString file = BildDatei(von, key);
    if (!QFileInfo::exists(file)) file.clear();
    return file;
}
