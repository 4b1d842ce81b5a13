#include <session/gAngaben.h>
#include <text/RuntimeError.h>

#include <closing/KassenZaehlung.h>

using namespace Qt::StringLiterals;

const std::array<KassenZaehlung::Sorte, KassenZaehlung::Sorten>& KassenZaehlung::Alle() {
    static constexpr std::array<Sorte, Sorten> all{{{u"txt1Cent", u"1 Cent", 0.01, false},
                                                    {u"txt2Cent", u"2 Cent", 0.02, false},
                                                    {u"txt5Cent", u"5 Cent", 0.05, false},
                                                    {u"txt10Cent", u"10 Cent", 0.1, false},
                                                    {u"txt20Cent", u"20 Cent", 0.2, false},
                                                    {u"txt50Cent", u"50 Cent", 0.5, false},
                                                    {u"txt1Euro", u"1 Euro", 1, false},
                                                    {u"txt2Euro", u"2 Euro", 2, false},
                                                    {u"txt5Euro", u"5 Euro", 5, true},
                                                    {u"txt10Euro", u"10 Euro", 10, true},
                                                    {u"txt20Euro", u"20 Euro", 20, true},
                                                    {u"txt50Euro", u"50 Euro", 50, true},
                                                    {u"txt100Euro", u"100 Euro", 100, true},
                                                    {u"txt200Euro", u"200 Euro", 200, true},
                                                    {u"txt500Euro", u"500 Euro", 500, true}}};
    return all;
}

void KassenZaehlung::Set(int sorte, const QString& pieces) {
    bool isNumber = true;
    const int count = pieces.isEmpty() ? 0 : pieces.toInt(&isNumber);
    if (!isNumber || count < 0 || count > mostPieces)
        throw RuntimeError(13, u"\"%1\" ist keine Anzahl von 0 bis %2."_s.arg(pieces).arg(mostPieces),
                           u"Closing"_s);
    m_pieces.at(size_t(sorte)) = count;
}

template <typename Wanted>
Currency KassenZaehlung::sum(const Wanted& wanted) const {
    Currency total;
    for (int i = 0; i < Sorten; ++i) {
        const Sorte& sorte = Alle()[size_t(i)];
        if (wanted(sorte)) total = Currency::fromDouble(total.toDouble() + m_pieces[size_t(i)] * sorte.value);
    }
    return total;
}

Currency KassenZaehlung::Betrag(int sorte) const {
    return Currency::fromDouble(m_pieces.at(size_t(sorte)) * Alle().at(size_t(sorte)).value);
}

Currency KassenZaehlung::Summe() const {
    return sum([](const Sorte&) { return true; });
}

Currency KassenZaehlung::Muenzen() const {
    return sum([](const Sorte& sorte) { return !sorte.note; });
}

Currency KassenZaehlung::Scheine() const {
    return sum([](const Sorte& sorte) { return sorte.note; });
}

void KassenZaehlung::Confirm() const { gKasseBestandErgebnis = {1, Summe()}; }
void KassenZaehlung::Cancel() { gKasseBestandErgebnis = {}; }
