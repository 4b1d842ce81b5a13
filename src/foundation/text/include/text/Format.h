#pragma once

#include <text/Value.h>

#include <QStringView>

/// Visual Basic's Format in the German locale.
///
/// Numbers: 0 # . , % E+ E- \x "text" and up to four sections for positive, negative, zero and Null; ","
/// between places groups thousands, behind the last place it divides by 1000. Rounding is half away from zero
/// on the decimal digits of the value, so money and doubles give the same. Dates: d dd ddd dddd ddddd dddddd
/// w ww m mm mmm mmmm q y yy yyyy h hh n nn s ss ttttt c AM/PM; "m" and "mm" behind an hour are minutes, "/"
/// is the German ".". Texts:
/// @ & < > ! and a second section for the empty text and Null. The named formats are "General Number",
/// "Currency", "Euro", "Fixed", "Standard", "Percent", "Scientific", "Yes/No", "True/False", "On/Off",
/// "General Date", "Long Date", "Medium Date", "Short Date", "Long Time", "Medium Time" and "Short Time".
/// `firstDayOfWeek` and `firstWeekOfYear` as in DatePart.
///
///     Format(Value(1234.5), u"##,##0.00")  ->  "1.234,50"
///
/// Never raises for a strange format: what has no meaning stands for itself. A text that is neither number
/// nor date comes back as it is from their formats. Null gives "" unless the format has a section for it.
[[nodiscard]] QString Format(const Value& value, QStringView format = {}, int firstDayOfWeek = 1,
                             int firstWeekOfYear = 1);
