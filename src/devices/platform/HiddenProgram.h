#pragma once

#include <QString>

namespace devices {

/// Starts a program without a window of its own and does not wait for it; false when it cannot be started.
[[nodiscard]] bool startHidden(const QString& path);

} // namespace devices
