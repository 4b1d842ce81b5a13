#pragma once

#include "Engine.h"

#include <QHash>

namespace store {

/// The structure of the store as the dialect sees it. It is kept in tables of our own inside the store, since
/// the engine knows neither the dialect's types nor sizes, defaults and the order of columns.
class Catalogue final : public jet::Catalogue {
  public:
    void load(Engine& engine);
    /// Writes one table's definition, in place of an older one.
    void save(Engine& engine, const TableDefinition& table);
    void remove(Engine& engine, const QString& table);

    [[nodiscard]] const jet::Table* find(QStringView table) const override;
    [[nodiscard]] const TableDefinition* definition(QStringView table) const; ///< names compare without case
    [[nodiscard]] std::shared_ptr<const TableDefinition> share(QStringView table) const;
    [[nodiscard]] std::vector<const TableDefinition*> all() const; ///< in the order of their names

  private:
    QHash<QString, std::shared_ptr<const TableDefinition>> m_tables;
};

/// Setting that marks the unfinished target of a move; its value tells the source.
inline constexpr char moveSourceKey[] = "movesource";

/// The store's own settings beside the catalogue ("salt", "verifier", ...); empty when there is none.
[[nodiscard]] QByteArray setting(Engine& engine, const char* key);
void setSetting(Engine& engine, const char* key, const QByteArray& value); ///< an empty value removes it

} // namespace store
