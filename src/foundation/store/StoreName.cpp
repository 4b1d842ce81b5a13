#include <store/StoreName.h>

#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace store {

bool isServer(QStringView name) {
    return name.startsWith(u"postgresql://"_s) || name.startsWith(u"postgres://"_s);
}

QString withoutPassword(const QString& name) {
    if (!isServer(name)) return name;
    // The server's library takes everything up to the @ for the password, slashes excepted.
    static const QRegularExpression secret(u"^([a-z]+://[^/:@]*):[^/@]*@"_s);
    const QString bare = QString(name).replace(secret, u"\\1@"_s);
    const qsizetype question = bare.indexOf(u'?');
    if (question < 0) return bare;
    const QString address = bare.left(question);
    QStringList options = bare.mid(question + 1).split(u'&');
    options.removeIf([](const QString& option) {
        const QString key = QUrl::fromPercentEncoding(option.section(u'=', 0, 0).toUtf8());
        return key == u"password" || key == u"sslpassword";
    });
    return options.isEmpty() ? address : address + u'?' + options.join(u'&');
}

} // namespace store
