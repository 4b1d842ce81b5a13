#pragma once

#include <jet/Functions.h>
#include <jet/Translator.h>

namespace jet {

void addDateFunctions(std::vector<Function>& list);
void addFinanceFunctions(std::vector<Function>& list);

} // namespace jet
