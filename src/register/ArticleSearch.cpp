#include "Entry.h"
#include "Sale.h"

#include <register/ArticleSearch.h>
#include <session/ArtikelFields.h>
#include <session/Bilder.h>
#include <session/Globals.h>
#include <session/Keys.h>
#include <session/RowGone.h>
#include <store/Database.h>
#include <text/Convert.h>

using namespace Qt::StringLiterals;

namespace till {

void ArticleSearch::cmdSearch_Click() {
    const bool done = m_sale.Trap([this] {
        if (!m_sale.Settle()) return;
        ArtikelRecord preset;
        preset.Nummer = preset.Name = m_entry.input();
        preset.SteuerSatz = Currency::fromDouble(16);
        preset.Einheit = u"Stück"_s;
        preset.Menge = 1;
        preset.Aktiv = preset.LagerAktiv = true;
        gArtikel = preset;
        m_sale.screen.Show(Dialog::ArtikelSuche);
        m_sale.screen.MovePointerAway();
        if (gArtikel.Ergebnis == 0) return m_entry.Clear();
        gArtikel.Ergebnis = 0;
        m_entry.SetInput(gArtikel.Nummer);
        m_entry.Enter();
    });
    if (!done) m_entry.TellLeft();
}

QStringList ArticleSearch::Columns() {
    return {u"Nummer"_s, u"Name"_s, u"LangText"_s, u"Zusatz1"_s, u"Zusatz2"_s};
}

std::vector<std::pair<int, QString>> ArticleSearch::Patterns(const QString& text) {
    const QString wanted = sql::spoken(text), anywhere = u'*' + wanted + u'*';
    return {{0, wanted + u'*'}, {1, anywhere}, {2, anywhere}, {3, anywhere}, {4, anywhere}};
}

QStringList ArticleSearch::Groups() {
    return sql::firstTexts(
        *gDB, u"SELECT WarenGruppe FROM Artikel GROUP BY WarenGruppe ORDER BY WarenGruppe ASC;"_s);
}

sql::Query ArticleSearch::InGroup(const QString& group) {
    const QString all = u"SELECT * FROM Artikel"_s;
    if (group.isEmpty()) return {all, u"Name ASC"_s};
    return {all + u" WHERE WarenGruppe="_s + sql::text(sql::doubled(group)), u"Name ASC"_s};
}

bool ArticleSearch::Select(const QString& key) {
    // The number comes from the store and may hold anything.
    QString nummer = GetKeyText(key, 3);
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM Artikel WHERE Nummer='"_s +
                                       nummer.replace(u'\'', u"''"_s) + u"';"_s);
    if (rs->Eof()) return false;
    ArtikelRecord record;
    load(*rs, ArtikelFields(), record);
    record.Bild = VorhandenesBild(Bild::Artikel, record.Nummer);
    gArtikel = record;
    return true;
}

bool ArticleSearch::Choose(const QString& key) {
    if (!Select(key)) {
        TellRowGone();
        return false;
    }
    gArtikel.Ergebnis = 1;
    return true;
}

QString ArticleSearch::StockText() {
    if (!gArtikel.LagerAktiv) return u"keine Lagerhaltung..."_s;
    return u"aktueller Bestand: "_s + NumberText(gArtikel.IstBestand) + u' ' + gArtikel.Einheit;
}

} // namespace till
