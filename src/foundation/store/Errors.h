#pragma once

#include <store/Database.h>
#include <text/RuntimeError.h>

#include <QString>

namespace store {

/// A server that cannot be reached; and a connection lost while it was writing, so that nobody knows whether
/// it did.
inline constexpr int notConnected = 3151;
inline constexpr int outcomeUnknown = 3157;

/// Raises one of the store's own errors with its German description; `what` is the name it is about.
[[noreturn]] void raise(int number, const QString& what = {});

} // namespace store
