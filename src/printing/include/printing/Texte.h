#pragma once

#include <text/Currency.h>

#include <QDate>
#include <QString>

/// Replaces "DateAdd[n]" (in any case; `BelegDatum` plus n days as dd.mm.yyyy) and "[SUMME]" (in capitals;
/// the amount with two decimals and the currency sign). Only the first date macro decides: others with
/// another number and those without a number stay. Raises 6 or 5 for a date that does not exist.
[[nodiscard]] QString ExpandTextMakros(const QString& Text, QDate BelegDatum, Currency Betrag);
/// The text of a file in gDBPath with its date macro replaced; "" when there is no such file.
[[nodiscard]] QString GetFussZeile(const QString& FileName, QDate BelegDatum);
