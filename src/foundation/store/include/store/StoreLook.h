#pragma once

#include <chrono>

namespace store {

/// How long one look at the files of a store counts for the writes that follow: a booking is a hundred of
/// them within milliseconds. Tests that take the file away at once set 0.
inline std::chrono::milliseconds LookInterval{5};

} // namespace store
