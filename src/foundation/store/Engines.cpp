#include "Engines.h"

#include "postgres/PostgresAddress.h"
#include "postgres/PostgresEngine.h"
#include "postgres/PostgresStructure.h"
#include "sqlite/SqliteEngine.h"
#include "sqlite/SqliteStore.h"

#include <store/StoreName.h>

#include <array>

namespace store {

namespace {

/// One row for each engine; the first whose `handles` agrees has the store.
struct Kind {
    QStringView name;
    bool (*handles)(QStringView store);
    std::unique_ptr<Engine> (*open)(const QString& store, Access access);
    std::unique_ptr<NewStore> (*create)(const QString& store);
    QByteArray (*structure)(const TableDefinition& table);
};

const std::array kinds{
    Kind{u"postgres", isServer,
         [](const QString& store, Access access) -> std::unique_ptr<Engine> {
             return std::make_unique<PostgresEngine>(PostgresAddress(store), access);
         },
         newServerStore, postgresStructure},
    Kind{u"sqlite", [](QStringView) { return true; },
         [](const QString& store, Access access) -> std::unique_ptr<Engine> {
             return std::make_unique<SqliteEngine>(store, access);
         },
         newFileStore, sqliteStructure},
};

const Kind& kindOf(const QString& store) {
    for (const Kind& kind : kinds)
        if (kind.handles(store)) return kind;
    return kinds.back();
}

} // namespace

std::unique_ptr<Engine> openEngine(const QString& name, Access access) {
    return kindOf(name).open(name, access);
}

std::unique_ptr<NewStore> newStore(const QString& name) { return kindOf(name).create(name); }

QByteArray structureText(QStringView engine, const TableDefinition& table) {
    for (const Kind& kind : kinds)
        if (kind.name == engine) return kind.structure(table);
    return {};
}

} // namespace store
