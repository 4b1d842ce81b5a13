#include "LineWithoutArticle.h"

using namespace Qt::StringLiterals;

namespace till {

ArtikelRecord LineWithoutArticle(QStringView Nummer, const QString& WarenGruppe, const QString& Name, Currency price,
                                 double SteuerSatz) {
    ArtikelRecord record;
    record.Nummer = Nummer.toString();
    record.WarenGruppe = WarenGruppe;
    record.Name = Name;
    record.EKPreis = record.VKPreis = record.VKPreis2 = record.VKPreis3 = price;
    record.SteuerSatz = Currency::fromDouble(SteuerSatz);
    record.Buchungs_Menge = 1;
    record.Einheit = u"Stück"_s;
    record.Menge = 1;
    record.Aktiv = true;
    return record;
}

} // namespace till
