#pragma once

#include <text/RuntimeError.h>

/// The global error report: one box with the Critical icon under the title "Unerwarteter Fehler...". Never
/// raises. 51 stands for what a library raised: its words are the details of the box, see MessageDetails.
void ShowProgrammFehler(int Number, const QString& Source, const QString& Description);
/// The same for a caught error; `source` names the form or module when the error carries no source of its
/// own, and its details are those of the box. Behind the error of a store whose file has gone, a copy of the
/// store is offered.
void ShowProgrammFehler(const RuntimeError& error, const QString& source);
