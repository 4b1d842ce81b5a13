#include <app/DemoShop.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/Schema.h>
#include <templates/Shipped.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace demo {

namespace {

constexpr int pictureSize = 240;
[[noreturn]] void refuseToWrite(const QString& path, const QString& reason) {
    throw RuntimeError(
        70, u"\"%1\" kann nicht geschrieben werden: %2"_s.arg(QDir::toNativeSeparators(path), reason),
        u"DemoShop"_s);
}

void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush()) {
        refuseToWrite(path, file.errorString());
    }
}

void makeFolder(const QString& path) {
    if (!QDir().mkpath(path)) refuseToWrite(path, u"der Ordner lässt sich nicht anlegen."_s);
}

Value cellValue(Type type, const QString& text) {
    if (type == Type::Boolean) {
        if (text == u"ja"_s) return true;
        if (text == u"nein"_s || text.isEmpty()) return false;
        RaiseTypeMismatch();
    }
    return text;
}

/// The register shows bitmaps; drawings are kept, since a person can read and change them.
void writePictures(const QString& folder) {
    for (const QString& name : drawings()) {
        QSvgRenderer drawing(readFile(u"bilder/"_s + name));
        QImage picture(pictureSize, pictureSize, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        drawing.render(&painter);
        painter.end();
        const QString path = folder + QFileInfo(name).completeBaseName() + u".bmp"_s;
        if (!picture.save(path, "BMP")) {
            refuseToWrite(path, u"das Bild lässt sich nicht ablegen."_s);
        }
    }
}

void writeStore(const QString& path) {
    auto db = Database::CreateDatabase(path);
    schema::createTables(*db);
    db->BeginTrans();
    for (const QString& name : tableNames())
        loadTable(*db, readTable(name));
    db->CommitTrans();
    db->Close();
}

} // namespace

void loadTable(Database& db, const Table& table) {
    const auto rows = db.OpenRecordset(table.name);
    for (const QStringList& cells : table.rows) {
        try {
            rows->AddNew();
            for (qsizetype i = 0; i < cells.size(); ++i) {
                rows->Set(table.columns[i], cellValue(rows->FieldType(table.columns[i]), cells[i]));
            }
            rows->Update();
        } catch (const RuntimeError& error) {
            throw RuntimeError(error.Number,
                               u"%1 \"%2\": %3"_s.arg(table.name, cells.first(), error.Description),
                               u"DemoShop"_s);
        }
    }
}

void createShop(const QString& folder) {
    const QString target = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    if (QFileInfo::exists(target) && !(QFileInfo(target).isDir() && QDir(target).isEmpty())) {
        throw RuntimeError(58, u"Der Ordner \"%1\" ist schon belegt."_s.arg(QDir::toNativeSeparators(target)),
                           u"DemoShop"_s);
    }
    makeFolder(QFileInfo(target).path());
    QTemporaryDir work(target + u"-neu-XXXXXX"_s);
    if (!work.isValid()) refuseToWrite(target, work.errorString());

    const QString data = work.filePath(u"daten/"_s);
    makeFolder(data);
    makeFolder(work.filePath(u"belege"_s));
    writeStore(data + u"Merivane.mdb"_s);
    for (const QString& name : {u"karten.txt"_s, u"artikel.ini"_s})
        writeFile(data + name, readFile(name));
    for (const QString& name : closingTexts())
        writeFile(data + name, readFile(name));
    for (const QString& name : shippedTemplates())
        writeFile(data + name, shippedTemplate(name));
    writePictures(data);

    QString settings = QString::fromUtf8(readFile(u"konfig.ini"_s));
    const auto place = [&](const QString& mark, const QString& path) {
        settings.replace(mark, QDir::toNativeSeparators(target + path));
    };
    place(u"@DATEN@"_s, u"/daten"_s);
    place(u"@BELEGE@"_s, u"/belege"_s);
    place(u"@BON@"_s, u"/bondrucker.bin"_s);
    writeFile(work.filePath(u"konfig.ini"_s), settings.toUtf8());

    if (QFileInfo::exists(target)) QDir().rmdir(target);
    if (!QDir().rename(work.path(), target))
        refuseToWrite(target, u"der Ordner lässt sich nicht umbenennen."_s);
    work.setAutoRemove(false);
}

} // namespace demo
