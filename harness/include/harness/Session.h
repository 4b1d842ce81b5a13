#pragma once

#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/gUser.h>

/// What konfig.ini fills in a shop with two decimals and the usual switches, and Jana Koch, who may do
/// everything at the register.
inline void tillSession() {
    gFormatPreis = QStringLiteral("###0.00");
    gWaehrungsSymbol = QStringLiteral("€");
    gDecimalStellen = 2;
    gVollerSteuerSatz = 19;
    gHalberSteuerSatz = 7;
    gShowWechselgeldDialog = gShowLagerBestand = gEnabledOrderSearch = gDisabledAskForNewArtikel = true;
    gKFMinusBuchung = gKFRabatt = gKFFreierArtikelPreis = gKFKunden = gKFBenutzerWechsel = true;
    gGrenzePreis = 100000;
    gGrenzeMenge = 9999;
    gGrenzeRabatt = 100;
    gGrenzeGegeben = 1000000;
    gKassenUser.ID = 3;
    gKassenUser.Vorname = QStringLiteral("Jana");
    gKassenUser.Name = QStringLiteral("Koch");
    gKassenUser.R_Rabatt = gKassenUser.R_KassenAbschluss = gKassenUser.R_Kunden = true;
}

/// The session of a till that nobody looks at, before its store is opened; `folder` ends in a separator.
/// Sales are paid without a dialog.
inline void startSession(const QString& folder) {
    ResetSession();
    gSystem = std::make_unique<CSystem>();
    gAppPath = gDBPath = folder;
    tillSession();
    gShowWechselgeldDialog = false;
}
