#include <access/Personal.h>
#include <session/Bilder.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/RowGone.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/CodePage.h>

#include <QDir>
#include <QFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

QByteArray csvLine(const QStringList& values) {
    QStringList quoted;
    for (QString value : values)
        quoted << u'"' + value.replace(u'"', u"\"\""_s) + u'"';
    return ToWindows1252(quoted.join(u';')) + "\r\n";
}

} // namespace

sql::Query AllPersonal() {
    return {u"SELECT ID, Name, Vorname, Strasse, PLZ, Ort, Telefon, Mobil, EMail, Gesperrt FROM Personal"_s,
            u"Name ASC"_s};
}

sql::Query SearchPersonal(const QString& text) {
    const QString pattern = sql::containing(text);
    QStringList tests;
    for (const auto* column :
         {u"Name", u"Vorname", u"Strasse", u"PLZ", u"Ort", u"Telefon", u"Mobil", u"EMail"})
        tests << QString::fromUtf16(column) + u" LIKE "_s + pattern;
    return {u"SELECT ID, Name, Vorname, Strasse, PLZ, Ort FROM Personal WHERE "_s + tests.join(u" OR "_s),
            u"Name, Vorname ASC"_s};
}

bool FindPersonal(Recordset& personal, int id, PersonalRecord& record) {
    personal.FindFirst(u"ID="_s + sql::number(id));
    if (personal.NoMatch()) {
        TellRowGone(RowGone::Bereich);
        return false;
    }
    load(personal, PersonalFields(), record);
    return true;
}

int WritePersonal(Recordset& personal, const PersonalRecord& record) {
    if (record.ID == 0) {
        personal.AddNew();
    } else {
        personal.FindFirst(u"ID="_s + sql::number(record.ID));
        if (personal.NoMatch()) {
            TellRowGone(RowGone::Bereich);
            return 0;
        }
        personal.Edit();
    }
    save(personal, PersonalFields(), record);
    const int id = personal.Long(u"ID");
    personal.Update();
    return id;
}

bool DeletePersonal(int id) {
    if (sql::count(*gDB, u"Personal WHERE R_Personal=-1"_s) == 1) {
        MsgBox(
            u"ACHTUNG: Dies ist der letzte Mitarbeiter der Zugriff auf die Mitarbeiterverwaltung hat. Der Zugriff wird verweigert."_s);
        return false;
    }
    if (!AskYesNo(
            u"Möchten Sie diesen Mitarbeiter wirklich löschen?\n\nACHTUNG: Diese Aktion kann unerwünschte "
            "Auswirkungen bei den Berichten haben.\n\nWenn Sie sich nicht sicher sind, deaktivieren Sie diesen Mitarbeiter."_s))
        return false;
    if (sql::count(*gDB, u"Rechnung WHERE PersonalNummer="_s + sql::number(id)) > 0) {
        MsgBox(
            u"Sie können diesen Mitarbeiter nicht löschen, da dessen Konto bereits bebucht ist. Setzen Sie diesen "
            "Mitarbeiter auf gesperrt."_s);
        return false;
    }
    gDB->Execute(u"DELETE FROM Personal WHERE ID="_s + sql::number(id) + u';');
    const QString picture = VorhandenesBild(Bild::Person, QString::number(id));
    if (!picture.isEmpty() && !QFile::remove(picture))
        throw RuntimeError(
            70, u"Das Bild \"%1\" kann nicht gelöscht werden."_s.arg(QDir::toNativeSeparators(picture)));
    return true;
}

int CountPersonal() { return sql::count(*gDB, u"Personal"_s); }

bool ExportPersonal(const QString& file, const std::function<bool()>& advance) {
    const auto check = [&](bool ok) {
        if (!ok)
            throw RuntimeError(
                70, u"\"%1\" kann nicht geschrieben werden."_s.arg(QDir::toNativeSeparators(file)));
    };
    QSaveFile target(file);
    check(target.open(QIODevice::WriteOnly));
    const auto write = [&](const QStringList& values) {
        const QByteArray line = csvLine(values);
        check(target.write(line) == line.size());
    };
    write(PersonalFields().columns());
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM Personal ORDER BY Name ASC;"_s);
    for (; !rs->Eof(); rs->MoveNext()) {
        PersonalRecord person;
        load(*rs, PersonalFields(), person);
        QStringList values;
        for (const auto& field : PersonalFields()) {
            const Value value = give(person, field);
            values << (value.type() == Type::Boolean ? sql::flag(value.toBool()) : value.toText());
        }
        write(values);
        if (!advance()) return false;
    }
    check(target.commit());
    return true;
}
