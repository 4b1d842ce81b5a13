#pragma once

#include <QString>

/// List items carry their record number behind a prefix, "ID" + number.

/// The number behind the first `Prefix` characters; raises 13 when there is none.
[[nodiscard]] int GetKeyID(const QString& Key, int Prefix);
[[nodiscard]] QString GetKeyText(const QString& Key, int Prefix);
