#include <register/OrderNumbers.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

using namespace Qt::StringLiterals;

namespace till {

std::vector<OrderNumberHit> FindOrderNumber(const QString& BestellNummer) {
    std::vector<OrderNumberHit> hits;
    const auto rs = gDB->OpenRecordset(
        u"SELECT ArtikelLieferanten.ArtikelNummer, Artikel.Name, Lieferanten.Name_1 "_s +
        u"FROM (ArtikelLieferanten LEFT JOIN Artikel ON ArtikelLieferanten.ArtikelNummer = Artikel.Nummer) "_s +
        u"LEFT JOIN Lieferanten ON ArtikelLieferanten.LieferantID = Lieferanten.LieferantID "_s +
        u"WHERE ArtikelLieferanten.BestellNummer="_s + sql::text(BestellNummer) + u';');
    for (; !rs->Eof(); rs->MoveNext())
        hits.push_back({rs->Text(u"ArtikelNummer"), rs->Text(u"Name"), rs->Text(u"Name_1")});
    return hits;
}

} // namespace till
