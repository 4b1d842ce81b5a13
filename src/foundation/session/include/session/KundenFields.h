#pragma once

#include <session/gKunde.h>
#include <store/Fields.h>

/// What a sale and its documents take from a row of `Kunden`, in the order of its columns. The discount of
/// the row is rounded to whole percent, half to even.
[[nodiscard]] const Fields<KundeRecord>& KundenFields();
