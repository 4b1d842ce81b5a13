#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Settings.h>
#include <session/StoreRescue.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZVT.h>
#include <session/gZahlung.h>
#include <store/Database.h>

#include <type_traits>
#include <variant>

using namespace Qt::StringLiterals;

std::unique_ptr<Database> gDB;
std::unique_ptr<CSystem> gSystem;

namespace {

template <typename... T>
void clear(T&... values) {
    ((values = T{}), ...);
}

} // namespace

KundeRecord KundeRecord::Standard() {
    KundeRecord record;
    record.KundenNummer = u"0"_s;
    record.Name_1 = u"Standardkunde"_s;
    return record;
}

void ResetSession() {
    gZVT.reset();
    gDB.reset();
    gSystem.reset();
    for (const Setting& setting : Settings())
        std::visit(
            [](auto target) {
                if constexpr (std::is_pointer_v<decltype(target)>) clear(*target);
            },
            setting.target);
    // What no key fills
    clear(gAppPath, gDefaultUrl, gFormatPreis, gFormatEKPreis);
    clear(gSetupDone, gPrintMode, gColorBack1, gColorBack2, gColorBack3, gColorBack4);
    clear(gKassenBestand, gRabattAngabe, gPreisAngabe, gFreierArtikel, gBestellNummerWahl, gVorlagenAuswahl);
    clear(gArtikel, gUser, gKassenUser, gLoginPflicht, gZahlung);
    gStoreSaved = false;
    gKunde = KundeRecord::Standard();
}

QString KonfigIni() { return gAppPath + u"konfig.ini"_s; }
