#pragma once

#include <QString>

class QHeaderView;
class QSettings;
class QSplitter;
class QWidget;

/// How a person has arranged the desk: sizes of windows, splitters, columns. It stands in the person's own
/// folder for settings and never in the shop's; without it everything has its delivered place.

/// Where it stands.
[[nodiscard]] QSettings& UserSettings();
/// Another file in its place, for tests and scripted runs; an empty path means the person's own again.
void SetUserSettingsFile(const QString& path);

/// Brings a window back to the size and place that it had when it was closed last, as far as it lies on a
/// screen, and keeps them when it is closed again. Call it once, before the window is shown. False without
/// such a memory.
bool RememberWindow(QWidget& window, const QString& key);
/// The same for the sizes of a splitter.
void RememberSplitter(QSplitter& splitter, const QString& key);
/// The same for the widths and the order of columns, and for what they are sorted by. A list that has got
/// other columns since begins anew. False without such a memory.
bool RememberColumns(QHeaderView& header, const QString& key);
