#pragma once

#include <zvt/protocol/Apdu.h>

#include <QString>

namespace zvt {

/// A message in one line for the protocol log. Only fields that cannot hold data of a card or a password show
/// their value; a card number shows its last four digits at most, all else its length.
[[nodiscard]] QString describe(const Apdu& apdu);

} // namespace zvt
