#pragma once

/// The errors of a store on a server that callers tell apart.
namespace store {

/// The server cannot be reached; nothing of what was asked was done.
inline constexpr int notConnected = 3151;
/// The connection was lost while something was written: nobody knows whether it was.
inline constexpr int outcomeUnknown = 3157;

} // namespace store
