#pragma once

#include <session/gKunde.h>
#include <text/Currency.h>

#include <QDate>
#include <QString>

#include <array>
#include <vector>

/// What a document shows: read from the store, or made up for a sample. The layouts of <printing/Layout.h>
/// need nothing else but the settings of the session.

/// The shop: header lines and tax number.
struct FirmaDaten {
    std::array<QString, 5> Kopf;
    QString USt;
};

/// What the info block of every document tells.
struct BelegKopf {
    int Nummer = 0;
    QDate Datum;
    QString Bearbeiter; ///< first and last name
    FirmaDaten Firma;
};

/// A line of a document. Prices are for one piece; a net price may have more than four decimals.
struct BelegZeile {
    QString ArtikelNummer, ArtikelName;
    double Buchungs_Menge = 1, Menge = 1;
    QString Einheit;
    Currency VKPreis_Brutto, VKPreisOrg;
    double VKPreis_Netto = 0;
    double SteuerSatz = 0; ///< percent
    QString SNNummer, LangText, Zusatz1, Zusatz2, PreisInfo, BestellNummer;
};

/// The sums of all lines of one tax rate.
struct SteuerZeile {
    double SteuerSatz = 0; ///< percent
    double Netto = 0, Steuer = 0;
};

struct BelegDaten : BelegKopf {
    KundeRecord Kunde;
    Currency Betrag_Gesamt;
    std::vector<BelegZeile> Zeilen;
    std::vector<SteuerZeile> Steuern;
};

/// A receipt.
struct BonDaten : BelegDaten {
    QString ZahlArt, KartenTyp;
    Currency Betrag_Gegeben, Betrag_Zurueck;
};

enum class FormularArt {
    Rechnung = 0,
    Angebot = 1,
    Lieferung = 2,
    Ankauf = 4 ///< second-hand purchase: bears no tax
};

/// A document on a sheet of its own.
struct FormularDaten : BelegDaten {
    FormularArt Art = FormularArt::Rechnung;
    QString Zusatz; ///< printed below the closing text of offers and delivery notes
};

struct GutscheinDaten : BelegKopf {
    QString Name;
    Currency Betrag;
};
