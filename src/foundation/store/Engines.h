#pragma once

#include "Engine.h"

/// Which engine a store's name asks for: a connection URI ("postgresql://...") names a server's database,
/// anything else a file.
namespace store {

/// Opens a store that exists. Raises what Database::OpenDatabase tells.
[[nodiscard]] std::unique_ptr<Engine> openEngine(const QString& name, Access access);

/// A store about to be made. Nobody sees it before it is finished, and without that nothing of it stays.
class NewStore {
  public:
    virtual ~NewStore() = default;
    /// The engine on the new place; furnish it in a transaction.
    [[nodiscard]] virtual std::unique_ptr<Engine> takeEngine() = 0;
    /// After the engine's commit and close.
    virtual void finish() = 0;
};
/// Raises 3204 when there is one already, 3024, 3050, and on a server what OpenDatabase tells.
[[nodiscard]] std::unique_ptr<NewStore> newStore(const QString& name);

/// The text of an engine's own tables, for the golden files: "sqlite" or "postgres".
[[nodiscard]] QByteArray structureText(QStringView engine, const TableDefinition& table);

} // namespace store
