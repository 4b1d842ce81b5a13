#include <register/NumberDialogs.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace till {

QString NumberDialog::OpensWith() const {
    switch (m_kind) {
    case PreisAngabe:
        return CStr(Value(gArtikel.VKPreis));
    case FreierPreis:
        return CStr(Value(gPreisAngabe.Preis));
    case Rabatt:
        break;
    }
    return {};
}

QChar NumberDialog::AcceptKey(QChar key) const {
    if ((key >= u'0' && key <= u'9') || key == u',' || key == u'\b') return key;
    if (key == u'.' && m_kind != Rabatt) return u',';
    if (key == u'-' && HasMinus()) return key;
    return {};
}

void NumberDialog::Confirm(const QString& text) const {
    switch (m_kind) {
    case Rabatt:
        gRabattAngabe.Prozent = Currency::fromInteger(CInt(Value(text.isEmpty() ? u"0"_s : text)));
        gRabattAngabe.Ergebnis = 1;
        break;
    case PreisAngabe:
        if (!text.isEmpty()) gArtikel.VKPreis = CCur(Value(text));
        gArtikel.Ergebnis = text.isEmpty() ? 0 : 1;
        break;
    case FreierPreis:
        if (!text.isEmpty()) ::gPreisAngabe.Preis = CCur(Value(text));
        ::gPreisAngabe.Ergebnis = text.isEmpty() ? 0 : 1;
        break;
    }
}

void NumberDialog::Cancel() const {
    switch (m_kind) {
    case Rabatt:
        gRabattAngabe.Ergebnis = 0;
        break;
    case PreisAngabe:
        gArtikel.Ergebnis = 0;
        break;
    case FreierPreis:
        gPreisAngabe.Ergebnis = 0;
        break;
    }
}

namespace FreierArtikelDialog {

QStringList SteuerSaetze() {
    return {Format(Value(gVollerSteuerSatz), u"0.0"), Format(Value(gHalberSteuerSatz), u"0.0")};
}

QString SteuerSatz() { return Format(Value(gFreierArtikel.SteuerSatz), u"0.0"); }

QStringList WarenGruppen() {
    return sql::firstTexts(
        *gDB, u"SELECT WarenGruppe FROM RechnungsDetail GROUP BY WarenGruppe ORDER BY WarenGruppe ASC;"_s);
}

bool Confirm(const QString& name, const QString& steuerSatz, const QString& warenGruppe) {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        MsgBox(u"Sie müssen ein Namen für diesen Artikel eingeben."_s);
        return false;
    }
    gFreierArtikel.SteuerSatz = CDbl(Value(steuerSatz));
    gFreierArtikel.Name = trimmed;
    gFreierArtikel.WarenGruppe = warenGruppe.left(50);
    gFreierArtikel.Ergebnis = 1;
    return true;
}

void Cancel() { gFreierArtikel.Ergebnis = 0; }

} // namespace FreierArtikelDialog

} // namespace till
