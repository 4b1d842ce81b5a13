#pragma once

#include "Connection.h"

#include <store/Database.h>

class Database::Impl {
  public:
    std::shared_ptr<store::Connection> connection;
};
