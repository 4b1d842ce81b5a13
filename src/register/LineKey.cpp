#include "LineKey.h"

#include <register/Prices.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <text/Convert.h>

using namespace Qt::StringLiterals;

namespace till {

LineKey KeyOf(const Recordset& rs, QStringView price) {
    return {rs.Text(u"ArtikelNummer"), rs.Text(u"ArtikelName"), rs.Number(u"Buchungs_Menge"),
            rs.Number(u"Menge"),       rs.Money(price),         rs.Number(u"SteuerSatz"),
            rs.Text(u"SNNummer")};
}

std::vector<LineKey> LinesOf(const QString& query, QStringView price) {
    std::vector<LineKey> lines;
    const auto rs = gDB->OpenRecordset(query);
    for (; !rs->Eof(); rs->MoveNext())
        lines.push_back(KeyOf(*rs, price));
    return lines;
}

QString Shown(const LineKey& line) {
    const auto& [nummer, name, anzahl, menge, price, steuerSatz, serie] = line;
    QString text = u"%1  %2, %3 × %4 €"_s.arg(nummer, name, NumberText(anzahl), MoneyText(price));
    if (!serie.isEmpty()) text += u", Nr. "_s + serie;
    return text;
}

} // namespace till
