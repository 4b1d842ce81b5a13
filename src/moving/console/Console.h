#pragma once

#include <QStringList>

namespace moving {

/// The program merivane-umzug. Returns its exit code: 0 moved and equal, 1 failed, 2 wrong use, 3 cancelled.
[[nodiscard]] int run(const QStringList& arguments);

} // namespace moving
