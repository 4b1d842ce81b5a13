#pragma once

#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <text/Currency.h>

namespace till {

/// Both prices of a line, gross and per unit.
struct LinePrices {
    Currency VKPreis;        ///< the list price of the customer's price group
    Currency VKPreis_Rabatt; ///< what the customer pays
};

/// The prices of a new line. A group price of 0 means that the group has none of its own; a customer who buys
/// at purchase price keeps the list price beside it; the discount needs the article's consent.
[[nodiscard]] LinePrices ChoosePrices(const ArtikelRecord& artikel, const KundeRecord& kunde);

/// `price` less `percent` of it: the discount is computed in double precision and becomes money, ties to
/// even, before it is taken off. Above 100 percent the result is negative.
[[nodiscard]] Currency Discounted(Currency price, Currency percent);

/// The action price of an article that is in force now, else `vkPreis`. Only the first row on file counts.
[[nodiscard]] Currency ActionPrice(const QString& artikelNummer, Currency vkPreis);

/// `price` without the tax of `steuerSatz` percent.
[[nodiscard]] double NetPrice(Currency price, double steuerSatz);

/// A money text of the screen read back; raises 13 for a text that is no amount.
[[nodiscard]] Currency ReadMoney(const QString& text);
/// The same amount as the screen shows it, in gFormatPreis.
[[nodiscard]] QString MoneyText(Currency amount);
[[nodiscard]] QString MoneyText(double amount);

} // namespace till
