#include <session/Error.h>
#include <session/Log.h>
#include <session/MsgBox.h>
#include <session/StoreRescue.h>
#include <store/Database.h>

using namespace Qt::StringLiterals;

void ShowProgrammFehler(int Number, const QString& Source, const QString& Description) {
    try {
        WriteLog(u"%1: %2 - %3"_s.arg(Source, QString::number(Number), Description));
        MsgBox(
            u"Bei der Programmausführung ist im Modul "_s + Source +
                u" ein unerwarteter Fehler aufgetreten.\n"_s +
                u"Sollte dieses Problem weiterhin bestehen, wenden Sie sich bitte an Ihren Fachhändler.\n\n"_s +
                QString::number(Number) + u" - "_s + Description,
            MsgIcon::Critical, MsgButtons::OK, u"Unerwarteter Fehler..."_s);
    } catch (...) {
        // A report that fails must not hide what it reports; the log line above stands.
    }
}

void ShowProgrammFehler(const RuntimeError& error, const QString& source) {
    ShowProgrammFehler(error.Number, error.Source.isEmpty() ? source : error.Source, error.Description);
    if (error.Number == store::StoreGone) OfferStoreCopy();
}
