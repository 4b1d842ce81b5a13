#pragma once

#include <text/RuntimeError.h>

#include <optional>

struct sqlite3;

namespace store {

/// An error that one of the program's functions raised inside a statement; it must reach the caller
/// unchanged, but no exception may pass through the engine.
using PendingError = std::optional<RuntimeError>;

enum class SqliteTask { Open, Work };

/// Raises what the connection's last failure means to the program. `file` stands in the messages of opening.
[[noreturn]] void raiseSqlite(sqlite3* db, int code, PendingError& pending, SqliteTask task,
                              const QString& file);

} // namespace store
