#pragma once

#include "SqliteEngine.h"

#include <sqlite3.h>

namespace store {

class SqlitePrepared final : public Prepared {
  public:
    SqlitePrepared(SqliteEngine& engine, sqlite3_stmt* statement);
    ~SqlitePrepared() override;
    SqlitePrepared(const SqlitePrepared&) = delete;
    SqlitePrepared& operator=(const SqlitePrepared&) = delete;

    void bind(int parameter, const Value& typed) override;
    void bindInteger(int parameter, qint64 value) override;
    bool step() override;
    void reset() noexcept override;
    int columnCount() const override;
    qint64 integer(int column) const override;
    Value value(int column, Type type) const override;
    int reprepared() const override;
    void abandon() noexcept; ///< the engine closes

  private:
    void check(int code);
    SqliteEngine* m_engine;
    sqlite3_stmt* m_statement;
    bool m_writes;
    std::vector<QByteArray> m_texts; ///< bound without a copy, so they live here
};

} // namespace store
