#pragma once

#include "../Engines.h"

namespace store {

/// An empty database or schema on a server that becomes a store.
[[nodiscard]] std::unique_ptr<NewStore> newServerStore(const QString& name);

/// A table with its counter and indexes in the server's words, as a new store gets it.
[[nodiscard]] QByteArray postgresStructure(const TableDefinition& table);

/// The statements that make the catalogue and the settings.
[[nodiscard]] QByteArray catalogueSql();

/// The sequence of a table's AutoNumber, as identifier.
[[nodiscard]] QByteArray counterName(const QString& table);

} // namespace store
