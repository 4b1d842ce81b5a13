#include <session/Clock.h>
#include <session/Globals.h>
#include <session/Log.h>
#include <session/MsgBox.h>
#include <session/StoreRescue.h>
#include <store/Database.h>

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

bool save(const QString& file) {
    try {
        gDB->SaveCopy(file);
        return true;
    } catch (const RuntimeError& error) {
        MsgBox(u"Die Kopie ist nicht entstanden: "_s + error.Description, MsgIcon::Exclamation);
        return false;
    }
}

void offer() {
    const QString now = Now().toString(u"yyyy-MM-dd-HHmm"_s);
    FileRequest request;
    request.title = u"Kopie der Datenbank sichern"_s;
    request.filter = u"Datenbank   (*.mdb)|*.mdb"_s;
    request.name = gDBPath + u"Merivane-Kopie-"_s + now + u".mdb"_s;
    request.save = true;
    while (AskYesNo(
        u"Die Datei der Datenbank wurde gelöscht oder ersetzt. Was bis dahin gebucht war, kann dieses "
        "Programm noch lesen, solange es läuft.\n\nSoll es jetzt als Kopie gesichert werden?"_s)) {
        const std::optional<QString> file = ChooseFile(request);
        if (!file || !save(*file)) continue;
        gStoreSaved = true;
        WriteLog(u"copy of a lost store: "_s + *file);
        MsgBox(
            u"Die Kopie ist vollständig: %1\n\nBeenden Sie jetzt das Programm an allen Kassen. Soll mit diesem "
            "Stand weitergearbeitet werden, legen Sie die Kopie unter dem Namen Merivane.mdb in den "
            "Datenordner, bevor Sie es wieder starten. Steht dort schon eine Datei dieses Namens, heben Sie "
            "sie unter einem anderen auf."_s.arg(QDir::toNativeSeparators(*file)));
        return;
    }
}

} // namespace

void OfferStoreCopy() noexcept {
    try {
        if (gDB && !gStoreSaved) offer();
    } catch (const std::exception& error) {
        WriteLog(u"copy of a lost store: "_s + QString::fromUtf8(error.what()));
    }
}
