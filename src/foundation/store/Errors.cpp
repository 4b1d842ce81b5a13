#include "Errors.h"

#include <text/DetailedError.h>

using namespace Qt::StringLiterals;

namespace store {

namespace {

QString description(int number, const QString& what) {
    switch (number) {
    case 3000:
        return u"Unerwarteter Fehler der Datenbank."_s;
    case 3011:
        return u"In der Datenbank '%1' ist noch kein Laden angelegt."_s.arg(what);
    case 3010:
        return u"Die Tabelle '%1' existiert bereits."_s.arg(what);
    case 3020:
        return u"Update oder CancelUpdate ohne AddNew oder Edit."_s;
    case 3021:
        return u"Kein aktueller Datensatz."_s;
    case 3022:
        return u"Die Änderungen wurden nicht vorgenommen, da sie doppelte Werte in einem eindeutigen Index "
               "erzeugen würden (%1)."_s.arg(what);
    case 3024:
        return u"Die Datei '%1' konnte nicht gefunden werden."_s.arg(what);
    case 3026:
        return u"Nicht genügend Speicherplatz auf dem Datenträger."_s;
    case 3027:
        return u"Aktualisieren nicht möglich. Die Datenbank oder das Objekt ist schreibgeschützt."_s;
    case 3031:
        return u"Kein zulässiges Kennwort."_s;
    case 3043:
        return u"Datenträger- oder Netzwerkfehler."_s;
    case 3045:
        return u"Die Datei '%1' konnte nicht verwendet werden, da sie bereits geöffnet ist oder exklusiv verwendet wird."_s
            .arg(what);
    case 3049:
        return u"Die Datenbank '%1' ist beschädigt und kann nicht gelesen werden."_s.arg(what);
    case 3050:
        return u"Die Datei '%1' konnte nicht gesperrt werden. Für die Datei und ihren Ordner sind Schreibrechte erforderlich."_s
            .arg(what);
    case 3065:
        return u"Eine Auswahlabfrage kann nicht ausgeführt werden."_s;
    case 3125:
        return u"'%1' ist kein zulässiger Name."_s.arg(what);
    case 3163:
        return u"Das Feld '%1' ist zu klein für den eingegebenen Text."_s.arg(what);
    case 3164:
        return u"Das Feld '%1' kann nicht aktualisiert werden."_s.arg(what);
    case 3167:
        return u"Der Datensatz wurde gelöscht."_s;
    case 3190:
        return u"Die Tabelle '%1' hat zu viele Felder."_s.arg(what);
    case StoreGone:
        return u"Die Datei '%1' wurde gelöscht oder ersetzt, während mit ihr gearbeitet wird. Es wird nichts "
               "mehr in sie geschrieben, und die letzte Eingabe wurde nicht gebucht."_s.arg(what);
    case 3191:
        return u"Das Feld '%1' kann nicht mehr als einmal definiert werden."_s.arg(what);
    case 3204:
        return u"Die Datenbank '%1' existiert bereits."_s.arg(what);
    case 3219:
        return u"Unzulässige Operation."_s;
    case 3251:
        return u"Für diese Datenbank gibt es diesen Vorgang nicht."_s;
    case 3260:
        return u"Aktualisieren nicht möglich. Die Datenbank ist zurzeit durch eine andere Kasse gesperrt."_s;
    case 3264:
        return u"Kein Feld definiert; die Tabelle '%1' kann nicht angefügt werden."_s.arg(what);
    case 3265:
        return u"Das Element '%1' wurde in dieser Auflistung nicht gefunden."_s.arg(what);
    case 3280:
        return u"Das Feld '%1' gehört zu einem eindeutigen Index und kann nicht gelöscht werden."_s.arg(what);
    case 3283:
        return u"Die Tabelle '%1' hat bereits einen Primärschlüssel."_s.arg(what);
    case 3289:
        return u"Die Tabelle '%1' darf höchstens ein AutoWert-Feld haben."_s.arg(what);
    case 3292:
        return u"Unzulässige Definition des Feldes '%1'."_s.arg(what);
    case 3314:
        return u"Das Feld '%1' muss einen Wert enthalten."_s.arg(what);
    case 3315:
        return u"Das Feld '%1' darf keine leere Zeichenfolge sein."_s.arg(what);
    case 3343:
        return u"Unbekanntes Datenbankformat: '%1' ist keine Datenbank dieses Programms."_s.arg(what);
    case 3360:
        return u"Die Abfrage ist zu komplex."_s;
    case 3372:
        return u"Es gibt keinen Index '%1'."_s.arg(what);
    case 3375:
        return u"Die Tabelle hat bereits einen Index mit dem Namen '%1'."_s.arg(what);
    case 3376:
        return u"Die Tabelle '%1' existiert nicht."_s.arg(what);
    case 3380:
        return u"Das Feld '%1' existiert bereits in der Tabelle."_s.arg(what);
    case 3381:
        return u"Die Tabelle hat kein Feld mit dem Namen '%1'."_s.arg(what);
    case 3409:
        return u"Ungültiges Feld '%1' in der Definition eines Index."_s.arg(what);
    case 3420:
        return u"Das Objekt ist ungültig oder nicht mehr festgelegt."_s;
    case 3421:
        return u"Fehler bei der Datentypumwandlung im Feld '%1'."_s.arg(what);
    case 3621:
        return u"Das Datenbankkennwort kann nur geändert werden, wenn die Datenbank exklusiv geöffnet ist."_s;
    case 3734:
        return u"Der Umzug von '%1' in diese Datenbank wurde nicht beendet; sie ist unvollständig. Bitte den "
               "Umzug mit denselben Angaben wiederholen; die Quelle ist unverändert."_s.arg(what);
    default:
        return what;
    }
}

} // namespace

void raise(int number, const QString& what) {
    // These come with the engine's own words.
    if (number == 3000 || number == 3043)
        throw DetailedError(number, description(number, what), what, u"Store"_s);
    throw RuntimeError(number, description(number, what), u"Store"_s);
}

} // namespace store
