#include "Limits.h"

#include <register/NumberDialogs.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// What `number` reads from `text`; nothing when it is too large for its type, which is told.
template <typename Number>
std::optional<Currency> read(const QString& text, const Number& number) {
    try {
        return number();
    } catch (const RuntimeError& error) {
        if (error.Number != 6) throw;
        MsgBox(u"Die Zahl %1 ist zu groß."_s.arg(text), MsgIcon::Exclamation);
        return std::nullopt;
    }
}

/// No text is no answer.
bool takePrice(const QString& text, Currency& price, int& result) {
    if (text.isEmpty()) {
        result = 0;
        return true;
    }
    const auto entered = read(text, [&] { return CCur(Value(text)); });
    if (!entered || !limits::IsPriceMeant(*entered)) return false;
    price = *entered;
    result = 1;
    return true;
}

} // namespace

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

bool NumberDialog::Confirm(const QString& text) const {
    switch (m_kind) {
    case Rabatt: {
        const auto prozent =
            read(text, [&] { return Currency::fromInteger(CInt(Value(text.isEmpty() ? u"0"_s : text))); });
        if (!prozent || !limits::IsDiscountMeant(*prozent)) return false;
        gRabattAngabe.Prozent = *prozent;
        gRabattAngabe.Ergebnis = 1;
        return true;
    }
    case PreisAngabe:
        return takePrice(text, gArtikel.VKPreis, gArtikel.Ergebnis);
    case FreierPreis:
        return takePrice(text, gPreisAngabe.Preis, gPreisAngabe.Ergebnis);
    }
    return true;
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
