#pragma once

#include <text/DetailedError.h>

#include <QString>

#include <type_traits>

namespace till {

/// Runs `act` and adds to what an error tells what the cashier should know: the text of `advice(error)` or
/// `advice()`, unless it is empty.
template <typename Act, typename Advice>
void WithAdvice(Act&& act, Advice&& advice) {
    try {
        act();
    } catch (const RuntimeError& error) {
        QString more;
        if constexpr (std::is_invocable_v<Advice, const RuntimeError&>)
            more = advice(error);
        else
            more = advice();
        if (more.isEmpty()) throw;
        throw DetailedError(error.Number, error.Description + QStringLiteral("\n\n") + more, DetailsOf(error),
                            error.Source);
    }
}

} // namespace till
