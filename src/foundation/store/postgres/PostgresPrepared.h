#pragma once

#include "../Engine.h"
#include "PostgresLink.h"

namespace store {

class PostgresEngine;

/// A statement that the server keeps prepared under a name of its own, from its first run on.
class PostgresPrepared final : public Prepared {
  public:
    PostgresPrepared(PostgresEngine& engine, const QByteArray& sql);
    ~PostgresPrepared() override;
    PostgresPrepared(const PostgresPrepared&) = delete;
    PostgresPrepared& operator=(const PostgresPrepared&) = delete;

    void bind(int parameter, const Value& value) override;
    void bindInteger(int parameter, qint64 value) override;
    bool step() override;
    void reset() noexcept override;
    int columnCount() const override;
    qint64 integer(int column) const override;
    Value value(int column, Type type) const override;
    int reprepared() const override;
    void stream() override { m_stream = true; }
    void allowRepeat() override { m_repeatable = true; }
    void abandon() noexcept { m_engine = nullptr; } ///< the engine closes

  private:
    friend class PostgresEngine;
    bool nextStreamed();

    PostgresEngine* m_engine;
    QByteArray m_sql;
    QByteArray m_name;
    std::vector<unsigned> m_types; ///< 0: the server tells it from the text
    PostgresValues m_values;
    bool m_reads = false;
    bool m_inserts = false;
    bool m_repeatable = false;
    bool m_stream = false;
    quint64 m_epoch = 0; ///< of the connection that knows it; 0 for none
    int m_prepared = 0;  ///< how often

    bool m_running = false;
    PostgresResult m_result{nullptr, PQclear};
    int m_row = -1;
};

} // namespace store
