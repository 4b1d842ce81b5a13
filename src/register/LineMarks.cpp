#include "LineMarks.h"

#include <text/Convert.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace till {

QString DiscountMark(Currency VKPreis, Currency VKPreis_Rabatt) {
    if (VKPreis.isZero()) return {};
    const double off = 100 * (1 - VKPreis_Rabatt.toDouble() / VKPreis.toDouble());
    const double tenths = std::round(off * 10) / 10;
    if (tenths <= 0) return {};
    return u'−' + NumberText(tenths) + u" %"_s;
}

QString CountText(int lines, double pieces) {
    if (lines == 0) return {};
    return (lines == 1 ? u"1 Zeile"_s : u"%1 Zeilen"_s.arg(lines)) + u" · "_s + NumberText(pieces) +
           u" Artikel"_s;
}

bool LinkedLines::next(const QString& ArtikelNummer) {
    if (m_due.removeOne(ArtikelNummer)) return true;
    m_due = m_links.value(ArtikelNummer);
    return false;
}

} // namespace till
