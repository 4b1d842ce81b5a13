#include <templates/Shipped.h>
#include <templates/TemplateKind.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString folder = u":/vorlagen/"_s;

} // namespace

QStringList shippedTemplates() { return QDir(folder).entryList({u"*.pld"_s}, QDir::Files, QDir::Name); }

QString shippedTemplateFor(const QString& path) {
    const TemplateFile* file = templateFileOf(path);
    if (file == nullptr) return {};
    const QString name = QFileInfo(path).fileName();
    for (const QString& shipped : shippedTemplates())
        if (shipped.compare(name, Qt::CaseInsensitive) == 0) return folder + shipped;
    return folder + file->name.toString();
}

QByteArray shippedTemplate(const QString& name) {
    QFile file(folder + name);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(53, u"Es gibt keine Druckvorlage \"%1\"."_s.arg(name), u"Shipped"_s);
    return file.readAll();
}
