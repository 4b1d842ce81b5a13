#pragma once

#include <text/Currency.h>

#include <QString>

#include <memory>

class Database;
class CSystem;

/// What a session keeps for its whole life. Settings are filled from konfig.ini at start-up by the table in
/// <session/Settings.h>; screens read these and never the file.

extern std::unique_ptr<Database> gDB;    ///< the one connection
extern std::unique_ptr<CSystem> gSystem; ///< ini files, computer name

extern QString gAppPath; ///< program folder, ends in a separator
extern QString gDBPath;  ///< folder of the store, templates and pictures, ends in a separator
extern QString gDefaultUrl;
extern int gSetupDone; ///< 1 when the settings dialog saved

// Printers and receipts
extern QString gBonDrucker, gFormularDrucker, gKassenabschlussDrucker;
extern int gDruckerKopies, gDruckerDefault;
extern bool gAskSchlussText, gPrintSpecialBon, gPrintSteuerNull, gPrintZusatzInfo, gPrintBruttoToFormular;
extern int gPrintMode; ///< 0 none, 1 receipt, 2 form, 3 ask

// Till
extern bool gAHVerkaufAktiv, gAbfrageLoginProOrder, gShowKundenKFZInfo, gPrintDirectIO;
extern int gPrintDirectIOPort;
extern QString gSteuerText;
extern bool gRoundDecimal, gShowLagerBestand, gEnabledIMDisplayModus, gDisabledAskForNewArtikel,
    gIsSoundCardAktiv, gShowWechselgeldDialog, gProtocolAbrechnung, gAbfrageProgrammEnde,
    gAbfrageKassenBestand, gAutoPresseUpdate, gOnlyKassenModus, gEnabledSWShortCut, gEKPreisNettoAngabe,
    gVKPreisNettoAngabe;
extern QString gWaehrungsSymbol;
extern int gDecimalStellen, gDecimalStellenEKPreis;
extern QString gFormatPreis, gFormatEKPreis;        ///< "###0.00" with that many decimals
extern double gHalberSteuerSatz, gVollerSteuerSatz; ///< percent
extern bool gEnabledCancelAbschluss, gZVTEnabled;

// Company
extern QString gUSt, gKopf1, gKopf2, gKopf3, gKopf4, gKopf5;

// Service
extern bool gHeron, gEnabledAutoClose, gEnabledOrderSearch;

// Devices
extern int gKassenLadePort;
extern QString gKassenLadeOpenCode;
extern int gKundenLCDPort, gKundenLCDClearCode;

// Switches of the register's functions
extern bool gKFBenutzerWechsel, gKFZwischenBericht, gKFKassenBestand, gKFGutschrift, gKFKasseneinlage,
    gKFKassenentnahme, gKFKassenlade, gKFLangText, gKFGutscheinErstellen, gKFGutscheinEinloesen,
    gKFGutscheinAuszahlung, gKFBestellungParken, gKFWarenrueckgabe, gKFWarenAnkauf, gKFRechnungsHistorie,
    gKFAngebotsHistorie, gKFLieferscheinHistorie, gKFArtikelInfo, gKFFreierArtikelPreis, gKFKunden, gKFRabatt,
    gKFAuftrag, gKFMinusBuchung;

/// Screen colours as 0xBBGGRR: background, foreground, panel, second panel.
extern int gColorBack1, gColorBack2, gColorBack3, gColorBack4;

extern Currency gKassenBestand; ///< till balance in memory

/// Brings every global and record back to its start value; for tests and a second start in one process.
void ResetSession();

/// konfig.ini of this till.
[[nodiscard]] QString KonfigIni();
