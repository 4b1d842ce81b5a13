#pragma once

#include <session/gArtikel.h>

namespace till {

/// One unit that stands in no table of articles, for Basket::AddArtikelToBestellung: all four prices are `price`,
/// the unit is "Stück", one of it, and it may be sold. `SteuerSatz` in percent.
[[nodiscard]] ArtikelRecord LineWithoutArticle(QStringView Nummer, const QString& WarenGruppe, const QString& Name,
                                               Currency price, double SteuerSatz);

} // namespace till
