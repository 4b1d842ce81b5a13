#include <session/Error.h>
#include <session/Log.h>
#include <session/MessageDetails.h>
#include <session/MsgBox.h>
#include <session/StoreRescue.h>
#include <store/Database.h>
#include <text/DetailedError.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int internalError = 51; ///< what a library raised, in its own words

void show(int Number, const QString& Source, QString Description, QString Details) {
    try {
        if (Number == internalError) Details = std::exchange(Description, u"Interner Fehler"_s);
        WriteLog(u"%1: %2 - %3"_s.arg(Source, QString::number(Number), Description));
        const MessageDetails details(Details);
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

} // namespace

void ShowProgrammFehler(int Number, const QString& Source, const QString& Description) {
    show(Number, Source, Description, {});
}

void ShowProgrammFehler(const RuntimeError& error, const QString& source) {
    show(error.Number, error.Source.isEmpty() ? source : error.Source, error.Description, DetailsOf(error));
    if (error.Number == store::StoreGone) OfferStoreCopy();
}
