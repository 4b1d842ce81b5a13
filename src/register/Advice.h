#pragma once

#include <text/DetailedError.h>

#include <QString>

namespace till {

/// Adds to what an error of `act` tells what the cashier should know about what was written before; an empty
/// text of `advice` adds nothing.
template <typename Act, typename Advice>
void withAdvice(Act&& act, Advice&& advice) {
    try {
        act();
    } catch (const RuntimeError& error) {
        const QString more = advice();
        if (more.isEmpty()) throw;
        throw DetailedError(error.Number, error.Description + QStringLiteral("\n\n") + more, DetailsOf(error),
                            error.Source);
    }
}

} // namespace till
