#pragma once

#include "SqliteErrors.h"

#include <text/Value.h>

struct sqlite3;
struct sqlite3_value;

namespace store {

/// Registers the dialect's functions and aggregates, the German collation and the conversion that a rebuilt
/// table needs. Errors that they raise go to `pending`.
void registerFunctions(sqlite3* db, PendingError& pending);

/// Decodes by the type, Null by the engine's own storage class. Raises 6 for a REAL where the type is whole:
/// the engine widens silently.
[[nodiscard]] Value decode(sqlite3_value* value, Type type);

/// A value in the engine's shapes, which are Null, qint64, double and QString: truth values -1/0, Currency as
/// ten-thousandths, dates as days.
[[nodiscard]] Value encode(const Value& value);

} // namespace store
