#pragma once

#include <QString>

/// Name of the store inside its folder.
inline constexpr char16_t StoreFileName[] = u"Merivane.mdb";

/// True when the folder holds a store; an empty path is no folder.
[[nodiscard]] bool HasStore(const QString& folder);
/// True when the folder is there; an empty path is none.
[[nodiscard]] bool HasFolder(const QString& folder);
/// Writes [GLOBAL] DBPath and DBServer to konfig.ini and sets gSetupDone. An empty `server` means the file in
/// the folder. Raises 70 or 61 when the file cannot be written; then gSetupDone is 0.
void SaveStorePlace(const QString& folder, const QString& server);
