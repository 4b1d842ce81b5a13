#pragma once

#include <text/DateTime.h>

#include <QString>

/// "22.11.2026 14:07:09", without the time at midnight, without the day for a pure time; empty for days that
/// no calendar has.
[[nodiscard]] QString generalDate(DateTime date);
