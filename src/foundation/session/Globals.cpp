#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZVT.h>
#include <session/gZahlung.h>
#include <store/Database.h>

using namespace Qt::StringLiterals;

std::unique_ptr<Database> gDB;
std::unique_ptr<CSystem> gSystem;
std::unique_ptr<CardTerminal> gZVT;

QString gAppPath;
QString gDBPath;
QString gDefaultUrl;
int gSetupDone = 0;
QString gBonDrucker, gFormularDrucker, gKassenabschlussDrucker;
int gDruckerKopies = 0, gDruckerDefault = 0;
bool gAskSchlussText = false, gPrintSpecialBon = false, gPrintSteuerNull = false, gPrintZusatzInfo = false,
     gPrintBruttoToFormular = false;
int gPrintMode = 0;
bool gAHVerkaufAktiv = false, gAbfrageLoginProOrder = false, gShowKundenKFZInfo = false,
     gPrintDirectIO = false;
int gPrintDirectIOPort = 0;
QString gSteuerText;
bool gRoundDecimal = false, gShowLagerBestand = false, gEnabledIMDisplayModus = false,
     gDisabledAskForNewArtikel = false, gIsSoundCardAktiv = false, gShowWechselgeldDialog = false,
     gProtocolAbrechnung = false, gAbfrageProgrammEnde = false, gAbfrageKassenBestand = false,
     gAutoPresseUpdate = false, gOnlyKassenModus = false, gEnabledSWShortCut = false,
     gEKPreisNettoAngabe = false, gVKPreisNettoAngabe = false;
QString gWaehrungsSymbol;
int gDecimalStellen = 0, gDecimalStellenEKPreis = 0;
QString gFormatPreis, gFormatEKPreis;
double gHalberSteuerSatz = 0, gVollerSteuerSatz = 0;
bool gEnabledCancelAbschluss = false, gZVTEnabled = false;
QString gUSt, gKopf1, gKopf2, gKopf3, gKopf4, gKopf5;
bool gHeron = false, gEnabledAutoClose = false, gEnabledOrderSearch = false;
int gKassenLadePort = 0;
QString gKassenLadeOpenCode;
int gKundenLCDPort = 0, gKundenLCDClearCode = 0;
bool gKFBenutzerWechsel = false, gKFZwischenBericht = false, gKFKassenBestand = false, gKFGutschrift = false,
     gKFKasseneinlage = false, gKFKassenentnahme = false, gKFKassenlade = false, gKFLangText = false,
     gKFGutscheinErstellen = false, gKFGutscheinEinloesen = false, gKFGutscheinAuszahlung = false,
     gKFBestellungParken = false, gKFWarenrueckgabe = false, gKFWarenAnkauf = false,
     gKFRechnungsHistorie = false, gKFAngebotsHistorie = false, gKFLieferscheinHistorie = false,
     gKFArtikelInfo = false, gKFFreierArtikelPreis = false, gKFKunden = false, gKFRabatt = false,
     gKFAuftrag = false, gKFMinusBuchung = false;
int gColorBack1 = 0, gColorBack2 = 0, gColorBack3 = 0, gColorBack4 = 0;
Currency gKassenBestand;

RabattAngabe gRabattAngabe;
PreisAngabe gPreisAngabe;
FreierArtikel gFreierArtikel;
BestellNummerWahl gBestellNummerWahl;
VorlagenAuswahl gVorlagenAuswahl;
ArtikelRecord gArtikel;
KundeRecord gKunde = KundeRecord::Standard();
UserRecord gUser;
KassenUserRecord gKassenUser;
bool gLoginPflicht = false;
ZahlungRecord gZahlung;

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
    clear(gAppPath);
    clear(gDBPath);
    clear(gDefaultUrl);
    clear(gSetupDone);
    clear(gBonDrucker, gFormularDrucker, gKassenabschlussDrucker);
    clear(gDruckerKopies, gDruckerDefault);
    clear(gAskSchlussText, gPrintSpecialBon, gPrintSteuerNull, gPrintZusatzInfo, gPrintBruttoToFormular);
    clear(gPrintMode);
    clear(gAHVerkaufAktiv, gAbfrageLoginProOrder, gShowKundenKFZInfo, gPrintDirectIO);
    clear(gPrintDirectIOPort);
    clear(gSteuerText);
    clear(gRoundDecimal, gShowLagerBestand, gEnabledIMDisplayModus, gDisabledAskForNewArtikel,
          gIsSoundCardAktiv, gShowWechselgeldDialog, gProtocolAbrechnung, gAbfrageProgrammEnde,
          gAbfrageKassenBestand, gAutoPresseUpdate, gOnlyKassenModus, gEnabledSWShortCut, gEKPreisNettoAngabe,
          gVKPreisNettoAngabe);
    clear(gWaehrungsSymbol);
    clear(gDecimalStellen, gDecimalStellenEKPreis);
    clear(gFormatPreis, gFormatEKPreis);
    clear(gHalberSteuerSatz, gVollerSteuerSatz);
    clear(gEnabledCancelAbschluss, gZVTEnabled);
    clear(gUSt, gKopf1, gKopf2, gKopf3, gKopf4, gKopf5);
    clear(gHeron, gEnabledAutoClose, gEnabledOrderSearch);
    clear(gKassenLadePort);
    clear(gKassenLadeOpenCode);
    clear(gKundenLCDPort, gKundenLCDClearCode);
    clear(gKFBenutzerWechsel, gKFZwischenBericht, gKFKassenBestand, gKFGutschrift, gKFKasseneinlage,
          gKFKassenentnahme, gKFKassenlade, gKFLangText, gKFGutscheinErstellen, gKFGutscheinEinloesen,
          gKFGutscheinAuszahlung, gKFBestellungParken, gKFWarenrueckgabe, gKFWarenAnkauf,
          gKFRechnungsHistorie, gKFAngebotsHistorie, gKFLieferscheinHistorie, gKFArtikelInfo,
          gKFFreierArtikelPreis, gKFKunden, gKFRabatt, gKFAuftrag, gKFMinusBuchung);
    clear(gColorBack1, gColorBack2, gColorBack3, gColorBack4);
    clear(gKassenBestand);
    clear(gRabattAngabe, gPreisAngabe, gFreierArtikel, gBestellNummerWahl, gVorlagenAuswahl, gArtikel, gUser,
          gKassenUser, gLoginPflicht, gZahlung);
    gKunde = KundeRecord::Standard();
}

QString KonfigIni() { return gAppPath + u"konfig.ini"_s; }
