#pragma once

#include <QStringView>

/// Article numbers that the program itself books. No article on file needs to have them.
namespace SonderArtikel {

inline constexpr QStringView Diverses = u"400-Diverses";     ///< a free amount
inline constexpr QStringView Gutschrift = u"400-Gutschrift"; ///< a credit note
inline constexpr QStringView Pfand = u"400-Pfand";           ///< a deposit
inline constexpr QStringView Einlage = u"401-Einlage";       ///< cash put into the till
inline constexpr QStringView Entnahme = u"401-Entnahme";     ///< cash taken out of it
inline constexpr QStringView Gutschein = u"401-Gutschein";   ///< a voucher; its number stands in SNNummer

/// What the number of a price template begins with.
inline constexpr QStringView PreisVorlage = u"@@";

} // namespace SonderArtikel
