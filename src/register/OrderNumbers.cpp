#include <register/OrderNumbers.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

namespace till {

QString FindOrderNumber(const QString& BestellNummer) {
    return u"SELECT ArtikelLieferanten.ArtikelNummer, Artikel.Name, Lieferanten.Name_1 "
           "FROM (ArtikelLieferanten LEFT JOIN Artikel ON ArtikelLieferanten.ArtikelNummer = Artikel.Nummer) "
           "LEFT JOIN Lieferanten ON ArtikelLieferanten.LieferantID = Lieferanten.LieferantID "
           "WHERE ArtikelLieferanten.BestellNummer="_s +
           sql::text(BestellNummer);
}

} // namespace till
