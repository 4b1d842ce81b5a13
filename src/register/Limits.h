#pragma once

#include <text/Currency.h>

/// Figures that nobody means are asked about before they are booked ([GRENZEN] in konfig.ini). Each function
/// is true for a figure within its limit and for one that the cashier confirms; Enter says no.
namespace till::limits {

/// What was entered as a price, per unit and gross.
[[nodiscard]] bool IsPriceMeant(Currency price);
[[nodiscard]] bool IsQuantityMeant(double quantity);
/// Percent; 0 to the limit is not asked about.
[[nodiscard]] bool IsDiscountMeant(Currency percent);
/// What a customer hands over for `total`, which he may always do.
[[nodiscard]] bool IsGivenMeant(Currency given, Currency total);

} // namespace till::limits
