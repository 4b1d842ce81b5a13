#include "EnteredAmount.h"
#include "Limits.h"

#include <register/NumberDialogs.h>
#include <register/Prices.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// No text is no answer.
bool takePrice(const QString& text, Currency& price, int& result) {
    if (text.isEmpty()) {
        result = 0;
        return true;
    }
    const auto entered = ReadEntered(text);
    if (!entered || !limits::IsPriceMeant(*entered)) return false;
    price = *entered;
    result = 1;
    return true;
}

bool takeDiscount(QString& text) {
    const auto prozent =
        Entered(text, [&] { return Currency::fromInteger(CInt(Value(text.isEmpty() ? u"0"_s : text))); });
    if (!prozent || !limits::IsDiscountMeant(*prozent)) return false;
    gRabattAngabe.Prozent = *prozent;
    gRabattAngabe.Ergebnis = 1;
    return true;
}

bool takeCredit(QString& text) {
    gArtikel.Ergebnis = 0;
    if (text.isEmpty()) return true;
    const auto amount = ReadEntered(text);
    if (!amount) return false;
    if (!IsLargeAmountMeant(*amount,
                            u"Sind Sie sicher, dass Sie eine Gutschrift über %1 erstellen möchten?"_s)) {
        text.clear();
        return false;
    }
    gArtikel.VKPreis = *amount;
    gArtikel.Ergebnis = 1;
    return true;
}

/// The price of the article's content becomes that of the entered one. It is the purchase price of a customer
/// who buys at it, but it is written where such a customer does not look.
bool takeVolume(QString& text) {
    gArtikel.Ergebnis = 0;
    if (text.isEmpty()) return true;
    if (gArtikel.Menge == 0) {
        MsgBox(
            u"Für \"%1\" ist keine Menge hinterlegt, auf die sich der Preis bezieht. Der Artikel kann so nicht "
            "verkauft werden."_s.arg(gArtikel.Name),
            MsgIcon::Exclamation);
        return true;
    }
    const double volume = CDbl(Value(text));
    if (!limits::IsQuantityMeant(volume)) return false;
    Currency* scaled = &gArtikel.VKPreis;
    Currency base = gArtikel.VKPreis;
    if (gKunde.EKPreis)
        base = gArtikel.EKPreis;
    else if (gKunde.PreisGruppe == 1)
        base = *(scaled = &gArtikel.VKPreis2);
    else if (gKunde.PreisGruppe == 2)
        base = *(scaled = &gArtikel.VKPreis3);
    const auto price =
        Entered(text, [&] { return Currency::fromDouble(base.toDouble() / gArtikel.Menge * volume); });
    if (!price) return false;
    gArtikel.GrundPreis = base;
    *scaled = *price;
    gArtikel.Menge = volume;
    gArtikel.Ergebnis = 1;
    return true;
}

QString volumeDescription() {
    return u"%1 %2  =  %3\nBitte geben Sie die gewünschte Menge ein."_s.arg(
        NumberText(gArtikel.Menge), gArtikel.Einheit, MoneyText(gArtikel.VKPreis));
}

} // namespace

struct NumberDialog::Rules {
    bool decimal, minus, point; ///< "." counts as ","
    QString (*title)();
    QString (*description)();
    QString (*opensWith)();
    bool (*confirm)(QString& text);
    void (*cancel)();
};

const NumberDialog::Rules& NumberDialog::rules() const {
    const auto articleCancelled = [] { gArtikel.Ergebnis = 0; };
    static const Rules table[]{
        {false, false, false, [] { return u"Rabatt..."_s; },
         [] { return u"Bitte geben Sie den Rabatt in Prozent ein."_s; }, [] { return QString(); },
         takeDiscount, [] { gRabattAngabe.Ergebnis = 0; }},
        {true, false, true, [] { return u"Preisangabe: "_s + gArtikel.Name; },
         [] { return u"Bitte geben Sie den Verkaufspreis ein."_s; },
         [] { return CStr(Value(gArtikel.VKPreis)); },
         [](QString& text) { return takePrice(text, gArtikel.VKPreis, gArtikel.Ergebnis); },
         articleCancelled},
        {true, true, true, [] { return u"Freier Preis..."_s; },
         [] { return u"Bitte geben Sie den neuen Preis ein."_s; },
         [] { return CStr(Value(gPreisAngabe.Preis)); },
         [](QString& text) { return takePrice(text, gPreisAngabe.Preis, gPreisAngabe.Ergebnis); },
         [] { gPreisAngabe.Ergebnis = 0; }},
        {true, false, true, [] { return u"Gutschrift..."_s; },
         [] { return u"Bitte geben Sie den Betrag der Gutschrift ein."_s; },
         [] { return CStr(Value(gArtikel.VKPreis)); }, takeCredit, articleCancelled},
        {true, false, true, [] { return u"Volumenangabe: "_s + gArtikel.Name; }, volumeDescription,
         [] { return NumberText(gArtikel.Menge); }, takeVolume, articleCancelled}};
    return table[m_kind];
}

QString NumberDialog::Title() const { return rules().title(); }
QString NumberDialog::Description() const { return rules().description(); }
QString NumberDialog::OpensWith() const { return rules().opensWith(); }
bool NumberDialog::HasDecimal() const { return rules().decimal; }
bool NumberDialog::HasMinus() const { return rules().minus; }
bool NumberDialog::Confirm(QString& text) const { return rules().confirm(text); }
void NumberDialog::Cancel() const { rules().cancel(); }

QChar NumberDialog::AcceptKey(QChar key) const {
    if ((key >= u'0' && key <= u'9') || key == u',' || key == u'\b') return key;
    if (key == u'.' && rules().point) return u',';
    if (key == u'-' && rules().minus) return key;
    return {};
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
