#pragma once

#include <QString>

/// Name of the store inside its folder.
inline constexpr char16_t StoreFileName[] = u"Merivane.mdb";

/// True when the folder holds a store; an empty path is no folder.
[[nodiscard]] bool HasStore(const QString& folder);
/// Writes [GLOBAL] DBPath to konfig.ini and sets gSetupDone. Raises 70 or 61 when the file cannot be written;
/// then gSetupDone is 0.
void SaveStorePath(const QString& folder);
