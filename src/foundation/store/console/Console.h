#pragma once

#include <QStringList>

namespace console {

/// The program merivane-sql. Returns its exit code: 0 good, 1 a statement failed, 2 wrong use, 3 the store
/// could not be opened.
[[nodiscard]] int run(const QStringList& arguments);

} // namespace console
