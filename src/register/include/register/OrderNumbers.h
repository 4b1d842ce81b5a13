#pragma once

#include <QString>

namespace till {

/// The articles that suppliers deliver under an order number, with ArtikelNummer, Name and Name_1 of the
/// supplier, for frmKasseArtikelLieferanten; the names are Null where the article or the supplier is gone.
/// Raises 3075 for a number that would end its literal.
[[nodiscard]] QString FindOrderNumber(const QString& BestellNummer);
/// What documents print as the order number of an article: that of the first supplier on file, or "nicht
/// verfügbar". Raises what the store raises.
[[nodiscard]] QString OrderNumberOf(const QString& ArtikelNummer);

} // namespace till
