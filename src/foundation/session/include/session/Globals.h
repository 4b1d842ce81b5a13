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

inline QString gAppPath; ///< program folder, ends in a separator
inline QString gDBPath;  ///< folder of the store, templates and pictures, ends in a separator
inline QString gDefaultUrl;
inline int gSetupDone = 0; ///< 1 when the settings dialog saved

// Printers and receipts
inline QString gBonDrucker, gFormularDrucker, gKassenabschlussDrucker;
inline int gDruckerKopies = 0, gDruckerDefault = 0;
inline bool gAskSchlussText = false, gPrintSpecialBon = false, gPrintSteuerNull = false,
            gPrintZusatzInfo = false, gPrintBruttoToFormular = false;
inline bool gGutscheinBarcode = false; ///< vouchers are printed with their number as a barcode
inline double gBonWartezeit = 0;       ///< seconds for which a receipt printer that pauses is waited for
inline int gPrintMode = 0;             ///< 0 none, 1 receipt, 2 form, 3 ask

// Till
inline bool gAHVerkaufAktiv = false, gAbfrageLoginProOrder = false, gShowKundenKFZInfo = false,
            gPrintDirectIO = false;
inline int gPrintDirectIOPort = 0;
inline QString gSteuerText;
inline bool gRoundDecimal = false, gShowLagerBestand = false, gEnabledIMDisplayModus = false,
            gDisabledAskForNewArtikel = false, gIsSoundCardAktiv = false, gShowWechselgeldDialog = false,
            gProtocolAbrechnung = false, gAbfrageProgrammEnde = false, gAbfrageKassenBestand = false,
            gAutoPresseUpdate = false, gOnlyKassenModus = false, gEnabledSWShortCut = false,
            gEKPreisNettoAngabe = false, gVKPreisNettoAngabe = false;
inline QString gWaehrungsSymbol;
inline int gDecimalStellen = 0, gDecimalStellenEKPreis = 0;
inline QString gFormatPreis, gFormatEKPreis;                ///< "###0.00" with that many decimals
inline double gHalberSteuerSatz = 0, gVollerSteuerSatz = 0; ///< percent
inline bool gEnabledCancelAbschluss = false, gZVTEnabled = false;

// Company
inline QString gUSt, gKopf1, gKopf2, gKopf3, gKopf4, gKopf5;

// Service
inline bool gHeron = false, gEnabledAutoClose = false, gEnabledOrderSearch = false;

// Devices
inline int gKassenLadePort = 0;
inline QString gKassenLadeOpenCode;
inline int gKundenLCDPort = 0, gKundenLCDClearCode = 0;

// Scanner; what ScanFigures makes of it
inline int gScannerZeichen = 0, gScannerAbstand = 0; ///< fewest characters (0: none is recognised), ms
inline QString gScannerPraefix, gScannerSuffix;      ///< a character, or "#" and its number

// Beyond these the till asks before it books; 0 for no limit
inline double gGrenzePreis = 0, gGrenzeGegeben = 0; ///< money
inline double gGrenzeMenge = 0, gGrenzeRabatt = 0;  ///< pieces, percent

// Switches of the register's functions
inline bool gKFBenutzerWechsel = false, gKFZwischenBericht = false, gKFKassenBestand = false,
            gKFGutschrift = false, gKFKasseneinlage = false, gKFKassenentnahme = false, gKFKassenlade = false,
            gKFLangText = false, gKFGutscheinErstellen = false, gKFGutscheinEinloesen = false,
            gKFGutscheinAuszahlung = false, gKFBestellungParken = false, gKFWarenrueckgabe = false,
            gKFWarenAnkauf = false, gKFRechnungsHistorie = false, gKFAngebotsHistorie = false,
            gKFLieferscheinHistorie = false, gKFArtikelInfo = false, gKFFreierArtikelPreis = false,
            gKFKunden = false, gKFRabatt = false, gKFAuftrag = false, gKFMinusBuchung = false;

/// Screen colours as 0xBBGGRR: background, foreground, panel, second panel.
inline int gColorBack1 = 0, gColorBack2 = 0, gColorBack3 = 0, gColorBack4 = 0;

inline Currency gKassenBestand; ///< till balance in memory

/// Brings every global and record back to its start value; for tests and a second start in one process.
void ResetSession();

/// konfig.ini of this till.
[[nodiscard]] QString KonfigIni();
