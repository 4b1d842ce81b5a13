#pragma once

#include <QString>

/// What a store is called: the path of its file, or the connection URI of a database server.
namespace store {

/// The passwords that the program gives its stores: older ones carry the first, and every start moves them to
/// the second. See docs/settings.md.
inline constexpr char16_t oldPassword[] = u"kestrel";
inline constexpr char16_t newPassword[] = u"brsk-604917";

/// True for "postgresql://..." and "postgres://...".
[[nodiscard]] bool isServer(QStringView name);
/// The name without the passwords that a URI may hold: for screens, messages and logs. A path stays as it is.
[[nodiscard]] QString withoutPassword(const QString& name);

} // namespace store
