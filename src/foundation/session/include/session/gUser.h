#pragma once

#include <QString>

/// Rights as the columns of `Personal` hold them.
struct Rechte {
    bool R_Artikel = false, R_Kunden = false, R_Personal = false, R_Berichte = false, R_Setup = false,
         R_Rabatt = false, R_KassenAbschluss = false, R_RechnungEdit = false, R_SystemExit = false;
};

/// The person logged in at frmLogin.
struct UserRecord : Rechte {
    int Ergebnis = 0; ///< cleared on cancel
    int ID = 0;
    QString Name, Vorname, Strasse, PLZ, Ort, Telefon, Mobil, EMail, PIN;
    bool Gesperrt = false;
};
inline UserRecord gUser;

/// The person who works at the register.
struct KassenUserRecord : Rechte {
    int Result = 0; ///< 1 after a successful frmDesktopLogin
    int ID = 0;
    QString Name, Vorname, PIN;
    bool Gesperrt = false;
};
inline KassenUserRecord gKassenUser;

/// True while a login at the register cannot be cancelled.
inline bool gLoginPflicht = false;
