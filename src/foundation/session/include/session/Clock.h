#pragma once

#include <QDateTime>

#include <functional>

/// The one clock of the program, also behind Date(), Time() and Now() in statements and defaults of columns.
[[nodiscard]] QDateTime Now();
[[nodiscard]] inline QDate Today() { return Now().date(); }
/// Replaces the clock; an empty function brings the system's back.
void SetClock(std::function<QDateTime()> clock);
