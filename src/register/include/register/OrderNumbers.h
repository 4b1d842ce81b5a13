#pragma once

#include <QString>

#include <vector>

namespace till {

/// An article that a supplier delivers under an order number.
struct OrderNumberHit {
    QString ArtikelNummer, Name, Lieferant;
};

/// The articles of gBestellNummerWahl.BestellNummer, for frmKasseArtikelLieferanten. `Name` and `Lieferant`
/// are empty where the article or the supplier is gone.
[[nodiscard]] std::vector<OrderNumberHit> FindOrderNumber(const QString& BestellNummer);

} // namespace till
