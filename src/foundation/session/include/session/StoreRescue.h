#pragma once

inline bool gStoreSaved = false; ///< a copy of a store that has gone lies safe

/// Asks whether what the till can still read of a store whose file was deleted or replaced is to be saved as
/// a copy, where to, and tells what came of it; asks again until there is a copy or nobody wants one. Once
/// one was saved it does nothing. Never raises.
void OfferStoreCopy() noexcept;
