#pragma once

#include <text/RuntimeError.h>

/// The global error report: one box with the Critical icon under the title "Unerwarteter Fehler...". Never
/// raises.
void ShowProgrammFehler(int Number, const QString& Source, const QString& Description);
/// The same for a caught error; `source` names the form or module when the error carries no source of its
/// own. Behind the error of a store whose file has gone, a copy of the store is offered.
void ShowProgrammFehler(const RuntimeError& error, const QString& source);
