#pragma once

#include <store/Database.h>
#include <store/Trouble.h>
#include <text/RuntimeError.h>

#include <QString>

namespace store {

/// Raises one of the store's own errors with its German description; `what` is the name it is about.
[[noreturn]] void raise(int number, const QString& what = {});

} // namespace store
