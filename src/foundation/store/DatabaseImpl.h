#pragma once

#include "Connection.h"

#include <store/Database.h>

class Database::Impl {
  public:
    static std::unique_ptr<Impl> over(std::unique_ptr<store::Engine> engine) {
        auto impl = std::make_unique<Impl>();
        impl->connection = std::make_shared<store::Connection>(std::move(engine));
        return impl;
    }
    std::shared_ptr<store::Connection> connection;
    QString name; ///< of the store, as it was opened; "" for one that is being made
};
