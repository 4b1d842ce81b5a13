#pragma once

#include <session/Globals.h>
#include <store/Database.h>
#include <text/RuntimeError.h>

#include <utility>

namespace till {

/// All that `body` writes is written, or nothing. Raises what `body` and the store raise.
template <typename Body>
void InOneGo(Body&& body) {
    gDB->BeginTrans();
    try {
        std::forward<Body>(body)();
        gDB->CommitTrans();
    } catch (...) {
        try {
            gDB->Rollback();
        } catch (const RuntimeError&) { // the line to the store is gone, and with it what was written
        }
        throw;
    }
}

} // namespace till
