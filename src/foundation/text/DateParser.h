#pragma once

#include <text/DateTime.h>

#include <QStringView>

#include <optional>

/// A date, a time or both as a German system reads them; nothing when the text is neither.
[[nodiscard]] std::optional<DateTime> parseDate(QStringView text);
