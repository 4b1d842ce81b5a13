#pragma once

#include "KeySet.h"

#include <store/Recordset.h>

/// A recordset is either keyed (a key set over one table, rows read live and changeable) or fixed (joins,
/// groups, unions: rows as they were at the first access, read-only).
class Recordset::Impl {
  public:
    Impl(std::shared_ptr<store::Connection> connection, const QString& source);
    ~Impl();
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    [[nodiscard]] bool eof();
    void moveNext();
    void moveFirst();
    void moveLast();
    [[nodiscard]] int place();
    void moveTo(int place);
    [[nodiscard]] int recordCount();
    void findFirst(const QString& criteria);
    [[nodiscard]] bool noMatch() const { return m_noMatch; }
    void moveToLastModified();
    void requery();
    void close();

    [[nodiscard]] const std::vector<jet::ResultColumn>& columns() const { return m_plan->statement->columns; }
    [[nodiscard]] std::size_t columnIndex(QStringView name) const; ///< raises 3265
    [[nodiscard]] const Value& value(std::size_t column);

    void addNew();
    void edit();
    void set(QStringView name, const Value& value);
    void update();
    void cancelUpdate() { m_buffer.mode = Buffer::None; }
    [[nodiscard]] bool editing() const { return m_buffer.mode != Buffer::None; }
    void remove();
    void checkOpen() const; ///< raises 3420

  private:
    struct Buffer {
        enum Mode { None, Add, Change } mode = None;
        std::vector<Value> values; ///< by base column
        std::vector<bool> written; ///< by base column
    };

    void translate();
    void start(); ///< makes sure that the set has been begun to be read
    void readFixed();
    [[nodiscard]] bool keyed() const { return m_plan->statement->dynaset.has_value(); }
    [[nodiscard]] bool has(std::size_t index);
    void standOn(qint64 key);                ///< the row exists; its place in the set does not matter yet
    void settle();                           ///< gives a row found by FindFirst its place in the set
    [[nodiscard]] qint64 currentKey();       ///< raises 3021, 3167
    enum class Reading { Live, AsItStands }; ///< AsItStands: certainly from the store at this moment
    const std::vector<Value>& currentRow(Reading reading = Reading::Live);
    void findFixed(const QString& criteria);
    void checkChangeable() const;
    void prepareDefaults();
    [[nodiscard]] const jet::Column& baseColumn(std::size_t index) const {
        return m_plan->base->table.columns[index];
    }
    void insertBuffer();
    [[nodiscard]] qint64 insertAnyhow(store::Prepared& statement);
    void updateBuffer();
    void bindBuffer(store::Prepared& statement);

    std::shared_ptr<store::Connection> m_connection;
    QString m_source;
    std::vector<Value> m_literals;
    std::shared_ptr<store::Plan> m_plan;
    std::optional<store::KeySet> m_keys;
    std::vector<std::vector<Value>> m_fixed;
    bool m_started = false;

    std::size_t m_index = 0;
    std::size_t m_seen = 0;               ///< rows that have been the current one, from the first on
    std::optional<qint64> m_found;        ///< the current row is this one, its place in the set not yet known
    std::optional<qint64> m_lastModified; ///< the row that was written last
    bool m_gone = false;                  ///< the current row was deleted here
    bool m_noMatch = false;

    std::vector<Value> m_row;
    bool m_rowValid = false;
    qint64 m_rowChanges = 0; ///< the plan's count of changes when the row was read
    Buffer m_buffer;
};
