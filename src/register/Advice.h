#pragma once

#include <text/DetailedError.h>
#include <text/RuntimeError.h>

#include <QString>

namespace till {

/// Runs `act`, and adds to what an error tells what the cashier should know about the sale: the text of
/// `advice`, if it gives one.
template <typename Act, typename Advice>
void WithAdvice(Act&& act, Advice&& advice) {
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
