#pragma once

#include <QString>

/// The computer name of this till, set when the register loads; it owns the rows of the open sale.
inline QString gMaschine;
