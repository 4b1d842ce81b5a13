#include <register/SerienNummernDialog.h>
#include <register/gMaschine.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gArtikel.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace till::SerienNummernDialog {

namespace {

constexpr qsizetype most = 50; // as the column holds

std::unique_ptr<Recordset> ofArticle() {
    return gDB->OpenRecordset(u"SELECT * FROM ArtikelSerienNummern WHERE ArtikelNummer="_s +
                              sql::text(gArtikel.Nummer) + u" ORDER BY SNNummer ASC;"_s);
}

/// Why the number cannot be sold; "" when it can.
QString refusal(const QString& number, Recordset& rs) {
    if (number.size() > most) return u"Eine Seriennummer hat höchstens %1 Zeichen."_s.arg(most);
    if (number.contains(u'\'')) return u"Eine Seriennummer enthält kein Hochkomma (')."_s;
    const QString invalid = u"Seriennummer ungülig!\n\n"_s;
    rs.FindFirst(u"SNNummer="_s + sql::text(number));
    if (rs.NoMatch()) return {};
    if (rs.Long(u"RechnungID") > 0)
        return invalid + u"Diese Serien- Vertragsnummer wurde bereits am %1 mit der Beleg-Nr. %2 verkauft."_s
                             .arg(rs.Text(u"VKDatum"))
                             .arg(rs.Long(u"RechnungID"));
    if (sql::count(*gDB, u"Bestellung WHERE Maschine="_s + sql::text(gMaschine) + u" AND SNNummer="_s +
                             sql::text(number)) > 0)
        return invalid + u"Diese Serien- Vertragsnummer ist bereits auf der aktiven Bestellung vorhanden."_s;
    return {};
}

} // namespace

QStringList Free() {
    QStringList numbers;
    const auto rs = ofArticle();
    for (; !rs->Eof(); rs->MoveNext())
        if (rs->Long(u"RechnungID") == 0) numbers << rs->Text(u"SNNummer");
    return numbers;
}

bool Confirm(QString& text) {
    gArtikel.Ergebnis = 0;
    const QString number = text.trimmed();
    if (number.isEmpty()) return true;
    const auto rs = ofArticle();
    if (const QString why = refusal(number, *rs); !why.isEmpty()) {
        MsgBox(why, MsgIcon::Critical);
        text.clear();
        return false;
    }
    if (rs->NoMatch()) {
        const auto drop = qScopeGuard([&] { rs->CancelUpdate(); });
        rs->AddNew();
        rs->Set(u"ArtikelNummer", gArtikel.Nummer);
        rs->Set(u"SNNummer", number);
        rs->Set(u"VKDatum", QString());
        rs->Set(u"EKDatum", Today().toString(u"dd.MM.yyyy"_s));
        rs->Set(u"RechnungID", 0);
        rs->Update();
    }
    gArtikel.SNNummer = number;
    gArtikel.Ergebnis = 1;
    return true;
}

void Cancel() { gArtikel.Ergebnis = 0; }

} // namespace till::SerienNummernDialog
