#pragma once

#include <store/Database.h>

/// How the console writes values: the same plain form whatever the system's language is.
namespace console {

/// Decimal point, dates "YYYY-MM-DD HH:MM:SS", truth values -1 and 0, Null empty; tabulator, line feed,
/// carriage return and backslash as \t \n \r \\ so that a row is a line.
[[nodiscard]] QByteArray tabbed(const Value& value);
/// The same as a JSON value; numbers keep all their digits.
[[nodiscard]] QByteArray json(const Value& value);
[[nodiscard]] QByteArray jsonText(const QString& text);
/// "LONG", "TEXT", ...; "VARIANT" for a column without a type of its own.
[[nodiscard]] QString typeText(Type type);

} // namespace console
