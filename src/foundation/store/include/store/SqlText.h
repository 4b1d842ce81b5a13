#pragma once

#include <text/Value.h>

#include <QString>
#include <QStringList>

#include <vector>

class Database;

/// Values as they stand in statements, and the small questions that many callers ask.
///
///     gDB->OpenRecordset(u"SELECT * FROM Artikel WHERE Nummer="_s + sql::text(code))
///     gDB->Execute(u"UPDATE Artikel SET IstBestand = IstBestand - "_s + sql::number(menge) + ...)
namespace sql {

/// A text between single quotes. An apostrophe inside is never doubled, so a pair of them stands for one. A
/// text whose apostrophes would end the literal (a run of odd length) raises 3075 as a statement with a lone
/// apostrophe does, with the place in `typed`: what a person types can fail, but never carry SQL.
[[nodiscard]] QString text(QStringView typed);
/// The pattern of LIKE that finds `typed` anywhere: '*typed*', and the one that finds it at the start. The
/// wildcards * ? # [ keep their meaning. Raise as text() does.
[[nodiscard]] QString containing(QStringView typed);
[[nodiscard]] QString startingWith(QStringView typed);
/// A text in which each lone apostrophe is doubled, so that any text can be looked for as it is; a pair
/// stands for one already. `spoken` is the text that it means in a statement.
[[nodiscard]] QString doubled(QStringView typed);
[[nodiscard]] QString spoken(QStringView typed);
/// With a decimal point, as Visual Basic prints numbers.
[[nodiscard]] QString number(int value);
[[nodiscard]] QString number(double value); ///< up to 15 digits; raises 6 for what is no number
[[nodiscard]] QString number(Currency value);
/// Between # signs, the month first; with the time of day unless it is midnight.
[[nodiscard]] QString date(DateTime value);
[[nodiscard]] QString date(QDate value); ///< raises 5 for an invalid date
[[nodiscard]] QString flag(bool value);  ///< -1 and 0

/// A statement of a list: what it selects, and what stands behind ORDER BY.
struct Query {
    QString select, order;
};

/// How many rows `from` has: a table, or a table and its WHERE.
[[nodiscard]] int count(Database& db, const QString& from);
/// The first column of all rows, without Null and empty texts: the fill of a combo box.
[[nodiscard]] std::vector<Value> firstColumn(Database& db, const QString& query);
[[nodiscard]] QStringList firstTexts(Database& db, const QString& query);

} // namespace sql
