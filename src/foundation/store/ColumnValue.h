#pragma once

#include <jet/Translator.h>

namespace store {

/// The value as a column of this type holds it. Null stays Null, except in a Boolean, which becomes False.
/// Raises 3421 where the value has no such meaning, 6 outside the type's range.
[[nodiscard]] Value valueForType(const Value& value, Type type, const QString& column);
/// Also checks the size of texts: 3163 too long, 3315 empty where that is not allowed.
[[nodiscard]] Value valueForColumn(const Value& value, const jet::Column& column);

} // namespace store
