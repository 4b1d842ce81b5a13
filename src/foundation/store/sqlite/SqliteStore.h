#pragma once

#include "../Engines.h"

namespace store {

/// A new file, made under another name so that a store is there completely or not at all. Raises 3204, 3024.
[[nodiscard]] std::unique_ptr<NewStore> newFileStore(const QString& name);

/// A table with its indexes in the engine's words, as a new store gets it.
[[nodiscard]] QByteArray sqliteStructure(const TableDefinition& table);

} // namespace store
