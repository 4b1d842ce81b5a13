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

/// A line that stands for money instead of goods.
struct BetragAngabe {
    int Ergebnis = 0;
    QString WarenGruppe, Name;
    double SteuerSatz = 0; ///< percent
    Currency Betrag;       ///< positive, also of a withdrawal
};

/// Money that is put into the till or taken out of it without a sale.
struct KassenBuchung : BetragAngabe {
    bool IsEinlage = false;
};
inline KassenBuchung gKassenBuchung;

/// A deposit: pieces and the amount of one, negative when it comes back. Nobody sets `Retour`.
struct PfandAngabe {
    bool Retour = false;
    int Anzahl = 1;
    Currency Betrag;
};
inline PfandAngabe gPfandAngabe;

/// The long text of a line.
struct LangTextAngabe {
    QString Text;
    int Ergebnis = 0;
};
inline LangTextAngabe gLangTextAngabe;

/// A voucher that is to be sold.
struct GutscheinAngabe : BetragAngabe {
    bool IsNeu = false;
};
inline GutscheinAngabe gGutscheinAngabe;

/// The money that was counted in the till.
struct KasseBestandErgebnis {
    int Ergebnis = 0;
    Currency Betrag;
};
inline KasseBestandErgebnis gKasseBestandErgebnis;

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
