#pragma once

#include <session/MsgBox.h>
#include <text/Currency.h>
#include <text/RuntimeError.h>

#include <QString>

#include <optional>
#include <utility>

namespace till {

/// What `read()` makes of an entered text; nothing when it is too large for its type, which is told.
template <typename Read>
[[nodiscard]] auto Entered(const QString& text, Read&& read) -> std::optional<decltype(read())> {
    try {
        return std::forward<Read>(read)();
    } catch (const RuntimeError& error) {
        if (error.Number != 6) throw;
        MsgBox(QStringLiteral("Die Zahl %1 ist zu groß.").arg(text), MsgIcon::Exclamation);
        return std::nullopt;
    }
}

/// The same for an amount of money. Raises 13 for a text that is none.
[[nodiscard]] std::optional<Currency> ReadEntered(const QString& text);

/// True for an amount up to 9,999 and for one that the cashier confirms. `question` has the place %1 for the
/// amount.
[[nodiscard]] bool IsLargeAmountMeant(Currency amount, const QString& question);

} // namespace till
