#pragma once

#include <text/DetailedError.h>

#include <QString>

namespace till {

/// Runs `act` and adds to what an error tells what the cashier should know: the text of `advice(error)`,
/// unless it is empty.
template <typename Act, typename Advice>
void WithAdvice(Act&& act, Advice&& advice) {
    try {
        act();
    } catch (const RuntimeError& error) {
        const QString more = advice(error);
        if (more.isEmpty()) throw;
        throw DetailedError(error.Number, error.Description + QStringLiteral("\n\n") + more, DetailsOf(error),
                            error.Source);
    }
}

} // namespace till
