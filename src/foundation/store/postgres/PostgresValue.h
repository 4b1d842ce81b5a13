#pragma once

#include <text/Value.h>

#include <QByteArray>

#include <optional>

namespace store {

/// A typed value in the text form of the server's types; nothing for Null. Raises 3421 for a text with the
/// character NUL, which the server cannot keep.
[[nodiscard]] std::optional<QByteArray> postgresText(const Value& value);

/// The value of a column of this type from its text form. Null as type: a text that tells its type by its
/// first letter, or by `oid` where it is none. Raises 6 where the number leaves the type's range.
[[nodiscard]] Value decodePostgres(const char* text, int length, Type type, unsigned oid);

/// "{...}" of texts, for a parameter of an array type; nothing is NULL.
[[nodiscard]] QByteArray postgresArray(const std::vector<std::optional<QByteArray>>& texts);

} // namespace store
