#include "Fuzz.h"
#include "PldFormat.h"

#include <algorithm>

/// Whatever is taken for a template can be stored, and comes back from its own bytes as it was.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto list = pld::read({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    if (!list) return 0;
    fuzz::require(std::ranges::all_of(*list, IsStorable));
    const QByteArray bytes = pld::write(*list);
    const auto again = pld::read(bytes);
    fuzz::require(again && *again == *list && pld::write(*again) == bytes);
    return 0;
}
