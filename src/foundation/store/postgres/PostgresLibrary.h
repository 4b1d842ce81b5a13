#pragma once

#include <QByteArray>

#include <vector>

namespace store {

/// The server's side of the dialect's functions, see functions/*.sql. To be installed with the schema, and
/// again when the one that a store has is older. Higher with every change of those files.
inline constexpr int postgresLibraryVersion = 7;

/// Scripts to be run one after the other in one transaction, the store's schema first in the search path.
/// They replace what an older library left.
[[nodiscard]] const std::vector<QByteArray>& postgresLibrary();

} // namespace store
