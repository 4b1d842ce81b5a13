#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

class Database;

namespace moving {

/// What a table's rows add up to. Equal sums of two tables mean equal values in equal order, on whichever
/// engines they lie.
struct TableSum {
    struct Column {
        QString name;
        QString sum; ///< all digits; truth values are counted, dates are days
        friend bool operator==(const Column&, const Column&) = default;
    };
    qint64 rows = 0;
    std::vector<Column> columns; ///< those with numbers, dates or truth values
    QByteArray hash;             ///< over every value in row order
    friend bool operator==(const TableSum&, const TableSum&) = default;
};

/// Reads the whole table and calls `row` for each row. Raises 3376 no such table.
[[nodiscard]] TableSum sumOf(Database& db, const QString& table, const std::function<void()>& row = {});

} // namespace moving
