#pragma once

#include <text/Value.h>

#include <QStringView>

#include <initializer_list>
#include <utility>

class Recordset;

namespace till {

class Sale;

/// Adds a row to `to` that is a line of `from`, for lines that leave the open sale for a while and come back.
/// `instead` tells other values for some columns. Raises what the store raises; the row is dropped then.
void CopyLine(const Recordset& from, Recordset& to,
              std::initializer_list<std::pair<QStringView, Value>> instead = {});

/// Lines are copied first and deleted then, so whoever is interrupted in between leaves them in two places.
/// Where the open lines look like such a copy, of the parked sale or of a customer's account, the cashier is
/// asked which of both shall go. True when he was asked.
bool SettleInterruptedCopy(Sale& sale);

} // namespace till
