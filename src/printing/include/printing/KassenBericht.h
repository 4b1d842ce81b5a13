#pragma once

#include <text/Currency.h>

#include <QDateTime>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

class PropertiesList;
class VSPrinter;

/// The interim and the closing report of a till and the slip of its closing, laid out by
/// "Kassenabschluss.pld". As in <printing/Layout.h> a layout goes from StartDoc to EndDoc.

/// Sums of a block; money.
struct SteuerSummen {
    Currency Netto, Steuer, Brutto;

    SteuerSummen& operator+=(const SteuerSummen& other);
    SteuerSummen& operator-=(const SteuerSummen& other);
};

/// What was booked at one tax rate in one way of payment, as exact as the store sums it up.
struct BerichtZeile {
    double SteuerSatz = 0; ///< percent
    double Netto = 0, Steuer = 0, Brutto = 0;
    QString KartenTyp; ///< of card payments
};

/// The till as it was counted; of the closing report only.
struct KassenZaehlung {
    Currency KassenBestand; ///< counted, with the float
    Currency WechselGeld;
};

struct KassenBericht {
    QString Titel; ///< "Zwischenbericht", "Kassenabschluss Nr.: 7"
    QString Bearbeiter, Maschine;
    QDateTime Zeitpunkt;

    QString StatistikTitel;     ///< "Kundenstatistik:", "Statistik:"
    std::optional<int> Stornos; ///< a row of its own when told
    int KundenAnzahl = 0;
    Currency Umsatz;
    std::vector<std::pair<QString, double>> WarenGruppen; ///< name and gross turnover

    std::vector<BerichtZeile> Einlage, Entnahme, Bar, Rechnung;
    std::vector<BerichtZeile> Karte; ///< rows of the same card stand together
    std::optional<KassenZaehlung> Zaehlung;
};

void RenderKassenBericht(VSPrinter& printer, const PropertiesList& vorlage, const KassenBericht& bericht);

/// The slip that a closing leaves at the till.
struct AbschlussBeleg {
    int Nummer = 0;
    QString Bearbeiter, Maschine;
};

void RenderAbschlussBeleg(VSPrinter& printer, const PropertiesList& vorlage, const AbschlussBeleg& beleg);
