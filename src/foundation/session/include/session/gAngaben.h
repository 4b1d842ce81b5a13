#pragma once

#include <text/Currency.h>

#include <QString>

/// Records of the register's small dialogs: the caller fills one, shows the dialog, reads `Ergebnis` (1
/// confirmed, 0 cancelled).

struct RabattAngabe {
    Currency Prozent;
    int Ergebnis = 0;
};
inline RabattAngabe gRabattAngabe;

struct PreisAngabe {
    int Ergebnis = 0;
    Currency Preis;
};
inline PreisAngabe gPreisAngabe;

struct FreierArtikel {
    int Ergebnis = 0;
    QString Name, WarenGruppe;
    double SteuerSatz = 0; ///< percent
};
inline FreierArtikel gFreierArtikel;

/// A voucher that is to be sold.
struct GutscheinAngabe {
    bool IsNeu = false;
    int Ergebnis = 0;
    QString WarenGruppe, Name;
    double SteuerSatz = 0; ///< percent
    Currency Betrag;
};
inline GutscheinAngabe gGutscheinAngabe;

/// Several articles share a supplier's order number: `BestellNummer` in, the chosen `ArtikelNummer` out, ""
/// when cancelled.
struct BestellNummerWahl {
    QString BestellNummer, ArtikelNummer;
};
inline BestellNummerWahl gBestellNummerWahl;

/// The closing text of an invoice: `Ergebnis` 0 cancelled, 1 the one of the template, 2 `Text`.
struct VorlagenAuswahl {
    int Ergebnis = 0;
    QString Text;
};
inline VorlagenAuswahl gVorlagenAuswahl;
