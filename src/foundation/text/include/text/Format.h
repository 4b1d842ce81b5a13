#pragma once

#include <text/Value.h>

#include <QStringView>

/// Visual Basic's Format in the German locale. Numbers: 0 # . , % E+ E- \x "text" and up to four sections;
/// dates: d dd ddd dddd ddddd dddddd w ww m mm mmm mmmm q y yy yyyy h hh n nn s ss ttttt AM/PM, "mm" after an
/// hour or before seconds meaning minutes; texts: @ & < > !; the named formats ("Standard", "Fixed",
/// "Percent", "Currency", "General Number", "Scientific", "Yes/No", "True/False", "On/Off", "General Date",
/// "Long Date", "Medium Date", "Short Date", "Long Time", "Medium Time", "Short Time"). The rounding of
/// numbers is half away from zero on the decimal digits of the value. `firstDayOfWeek` and `firstWeekOfYear`
/// as in DatePart.
///
///     Format(Value(1234.5), u"##,##0.00")  ->  "1.234,50"
///
/// Never raises for a strange format: what has no meaning stands for itself. Null gives "".
[[nodiscard]] QString Format(const Value& value, QStringView format = {}, int firstDayOfWeek = 1,
                             int firstWeekOfYear = 1);
