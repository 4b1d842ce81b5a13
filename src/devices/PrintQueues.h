#pragma once

#include <QStringList>

namespace devices {

struct PrintQueues {
    QStringList names;
    QString defaultName; ///< "" when the system has none
};
/// What the print system of the platform knows.
[[nodiscard]] PrintQueues printQueues();

} // namespace devices
