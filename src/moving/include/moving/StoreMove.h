#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class Database;

namespace moving {

/// How far a move is. Every row counts twice for `percent`: when it is copied and when it is compared.
struct Progress {
    enum class Step { Copying, Comparing };
    Step step = Step::Copying;
    QString table;
    qint64 row = 0; ///< of `rows` in this table
    qint64 rows = 0;
    int percent = 0; ///< of the whole move
};

/// One table on both sides, after the move.
struct ComparedTable {
    QString name;
    qint64 rows = 0;         ///< in the source
    QString hash;            ///< over every value of the source in row order, as hexadecimal digits
    QStringList sums;        ///< of the number columns in the source, as "Preis 12,5000"
    QStringList differences; ///< German sentences; empty when both sides are equal
};

struct MoveResult {
    bool cancelled = false;
    std::vector<ComparedTable> tables; ///< by name; empty when cancelled
    [[nodiscard]] bool equal() const;
};

/// Moves a whole shop from one store to another: tables with types, sizes, defaults and indexes, rows in
/// their order, AutoNumbers with their counters, the store's password. Both are paths of store files or
/// connection URIs, in any combination.
///
/// The source stays as it is; both stores are held exclusively meanwhile. The target may be missing, or a
/// store without rows, or the unfinished target of a move from the same source: then what is there already
/// and still equal is not copied again. Until every table has been compared the target is marked and no till
/// opens it, so that a move that ended in any way can be repeated.
class StoreMove {
  public:
    /// Returns false to stop. Called at least once a table and every few hundred rows.
    using Report = std::function<bool(const Progress&)>;

    StoreMove(QString source, QString target);

    /// Raises what opening raises (3024, 3031, 3045 in use, 3050, 3343), 3204 for a target with rows, 3734
    /// for a source that is an unfinished target, or a target whose move came from elsewhere, 3219 when both
    /// are the same, and what writing raises; the text then tells the table. The description says which side.
    [[nodiscard]] MoveResult run(const Report& report = {});

  private:
    QString m_source;
    QString m_target;
};

} // namespace moving
