#pragma once

#include <text/Currency.h>

#include <QString>

#include <tuple>
#include <vector>

class Recordset;

namespace till {

/// What a line keeps wherever it goes from the open sale: number, name, pieces, content of one, price, tax
/// rate and serial number. Two lines of one key may still be two: customers buy alike.
using LineKey = std::tuple<QString, QString, double, double, Currency, double, QString>;

/// The line at which `rs` stands; `price` is the column of what is charged.
[[nodiscard]] LineKey KeyOf(const Recordset& rs, QStringView price = u"VKPreis_Rabatt");
/// The lines that `query` finds, in its order; `price` is the column of what is charged. Raises what the
/// store raises.
[[nodiscard]] std::vector<LineKey> LinesOf(const QString& query, QStringView price = u"VKPreis_Rabatt");
/// As a person reads it: "101  Brot, 2 × 4,05 €".
[[nodiscard]] QString Shown(const LineKey& line);

} // namespace till
