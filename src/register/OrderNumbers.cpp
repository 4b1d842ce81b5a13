#include <register/OrderNumbers.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
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

QString OrderNumberOf(const QString& ArtikelNummer) {
    const auto supplier =
        gDB->OpenRecordset(u"SELECT BestellNummer FROM ArtikelLieferanten WHERE ArtikelNummer="_s +
                           sql::text(ArtikelNummer) + u';');
    return supplier->Eof() ? u"nicht verfügbar"_s : supplier->Text(u"BestellNummer");
}

} // namespace till
