#pragma once

#include <text/Currency.h>

#include <QString>

/// The article at hand: every path of the register fills it and then adds a line; dialogs read and change it.
struct ArtikelRecord {
    bool IsNeu = false;
    int Ergebnis = 0; ///< 1 confirmed, 0 cancelled
    int Buchungs_Menge = 0;
    bool Aktiv = false;
    QString Nummer;
    QString Name;
    QString FreiFeld;
    QString LangText;
    QString WarenGruppe;
    QString Bild; ///< path of the picture, "" when there is none
    double Menge = 0;
    double GrundMenge = 0;
    Currency GrundPreis;
    QString Einheit;
    Currency SteuerSatz; ///< percent
    Currency EKPreis;
    Currency VKPreis, VKPreis2, VKPreis3; ///< gross, of price groups 0, 1 and 2
    bool LagerAktiv = false;
    double SollBestand = 0, IstBestand = 0;
    bool PreisAngabe = false;
    bool Rabatt = false;
    bool VolumenAngabe = false;
    bool SNAngabe = false;
    QString SNNummer;
    QString Zusatz1, Zusatz2;
};

inline ArtikelRecord gArtikel;
