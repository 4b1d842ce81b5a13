#pragma once

#include <text/Currency.h>

#include <QString>

/// The parameters of a booking.
struct ZahlungRecord {
    int Ergebnis = 0; ///< 1 when the payment dialog was confirmed
    Currency Betrag_Gesamt, Betrag_Gegeben, Betrag_Zurueck;
    QString ZahlArt;   ///< "BAR", "KARTE", "RECHNUNG_OFFEN", "RECHNUNG", "RUECKGABE", "EINLAGE", "ENTNAHME"
    QString KartenTyp; ///< "" for all but card payments
};

inline ZahlungRecord gZahlung;
