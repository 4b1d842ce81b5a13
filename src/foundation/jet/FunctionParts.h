#pragma once

#include <jet/Functions.h>
#include <jet/Translator.h>

namespace jet {

void addDateFunctions(std::vector<Function>& list);
void addFinanceFunctions(std::vector<Function>& list);

[[nodiscard]] constexpr bool isClock(Encoding e) { return e >= Encoding::Today && e <= Encoding::Timer; }
/// What the clock gives under Today, TimeOfDay, Now or Timer.
[[nodiscard]] Value clockValue(Encoding encoding);

/// The wildcards % and _ as * and ?.
[[nodiscard]] QString jetPattern(QStringView ansi);
/// A pattern of LIKE as a regular expression that finds what LikeText finds, case and the order of letters
/// written out, so that it needs no collation. Raises 93.
[[nodiscard]] QString likeExpression(QStringView pattern);

} // namespace jet
