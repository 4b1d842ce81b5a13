#include "Limits.h"

#include <register/Prices.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <text/Convert.h>
#include <text/Format.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace till::limits {

namespace {

bool isBeyond(double figure, double limit) { return limit > 0 && std::abs(figure) > limit; }

bool confirmed(const QString& text) {
    return MsgBox(text + u"\n\nIst das so gewollt?"_s, MsgIcon::Question, MsgButtons::YesNo,
                  u"Bitte prüfen..."_s, MsgAnswer::No) == MsgAnswer::Yes;
}

QString amount(Currency value) { return Format(value, u"#,##0.00"_s) + u' ' + gWaehrungsSymbol; }

} // namespace

bool IsPriceMeant(Currency price) {
    return !isBeyond(price.toDouble(), gGrenzePreis) ||
           confirmed(u"Ein Preis von %1 ist ungewöhnlich hoch."_s.arg(amount(price)));
}

bool IsQuantityMeant(double quantity) {
    return !isBeyond(quantity, gGrenzeMenge) ||
           confirmed(u"Eine Menge von %1 ist ungewöhnlich groß."_s.arg(NumberText(quantity)));
}

bool IsDiscountMeant(Currency percent) {
    const double figure = percent.toDouble();
    if (figure >= 0 && !isBeyond(figure, gGrenzeRabatt)) return true;
    return confirmed(u"Ein Rabatt von %1 % ist ungewöhnlich."_s.arg(NumberText(figure)));
}

bool IsGivenMeant(Currency given, Currency total) {
    return given == total || !isBeyond(given.toDouble(), gGrenzeGegeben) ||
           confirmed(u"Der Kunde soll %1 gegeben haben."_s.arg(amount(given)));
}

} // namespace till::limits
