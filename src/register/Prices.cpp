#include <register/Prices.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>
#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// The group's own price, or the first sales price when it has none.
Currency listPrice(const ArtikelRecord& artikel, int group) {
    if (group == 1 && !artikel.VKPreis2.isZero()) return artikel.VKPreis2;
    if (group == 2 && !artikel.VKPreis3.isZero()) return artikel.VKPreis3;
    return artikel.VKPreis;
}

} // namespace

LinePrices ChoosePrices(const ArtikelRecord& artikel, const KundeRecord& kunde) {
    const Currency list = listPrice(artikel, kunde.PreisGruppe);
    const Currency base = kunde.EKPreis ? artikel.EKPreis : list;
    return {list, artikel.Rabatt ? Discounted(base, Currency::fromInteger(kunde.Rabatt)) : base};
}

Currency Discounted(Currency price, Currency percent) {
    return price - Currency::fromDouble(price.toDouble() / 100 * percent.toDouble());
}

Currency ActionPrice(const QString& artikelNummer, Currency vkPreis) {
    const auto rs =
        gDB->OpenRecordset(u"SELECT AktionsPreis, Von, Bis FROM AktionsPreise WHERE ArtikelNummer="_s +
                           sql::text(artikelNummer) + u';');
    if (rs->Eof()) return vkPreis;
    const DateTime now = DateTime::fromQDateTime(Now());
    const auto from = rs->Date(u"Von"), until = rs->Date(u"Bis");
    return from && until && *from <= now && *until >= now ? rs->Money(u"AktionsPreis") : vkPreis;
}

double NetPrice(Currency price, double steuerSatz) {
    const double factor = 1 + steuerSatz / 100;
    if (factor == 0) RaiseDivisionByZero();
    return price.toDouble() / factor;
}

Currency ReadMoney(const QString& text) { return CCur(Value(text)); }
QString MoneyText(Currency amount) { return Format(Value(amount), gFormatPreis); }
QString MoneyText(double amount) { return Format(Value(amount), gFormatPreis); }

} // namespace till
