#include "EnteredAmount.h"

#include <register/Prices.h>
#include <session/Globals.h>
#include <text/Convert.h>

using namespace Qt::StringLiterals;

namespace till {

std::optional<Currency> ReadEntered(const QString& text) {
    return Entered(text, [&] { return CCur(Value(text)); });
}

bool IsLargeAmountMeant(Currency amount, const QString& question) {
    constexpr int most = 9999;
    return amount <= Currency::fromInteger(most) ||
           AskYesNo(question.arg(MoneyText(amount) + u' ' + gWaehrungsSymbol));
}

} // namespace till
