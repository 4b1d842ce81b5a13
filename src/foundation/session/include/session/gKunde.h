#pragma once

#include <QString>

/// The customer of the sale, shared with printing.
struct KundeRecord {
    int Ergebnis = 0; ///< 1 after the customer search was confirmed
    int KundenID = 0; ///< 0 is the standard customer
    QString KundenNummer;
    QString Anrede, Name_1, Name_2, Strasse, PLZ, Ort, Land;
    int Rabatt = 0; ///< whole percent
    bool EKPreis = false;
    int PreisGruppe = 0; ///< 0, 1, 2: first, second, third sales price
    QString Kennzeichen; ///< registration of the customer's vehicle, for forms

    /// The standard customer: "Standardkunde", number "0", all else empty.
    static KundeRecord Standard();
};

inline KundeRecord gKunde = KundeRecord::Standard();
