#include "LineText.h"

#include <page/VSPrinter.h>
#include <session/Globals.h>
#include <session/SonderArtikel.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace layout {

namespace {

constexpr int nameLength = 100;

/// Name, content and single price, as far as they say more than the other cells.
QString bonName(const BelegZeile& zeile) {
    QString text = zeile.ArtikelName.left(nameLength);
    const bool several = zeile.Buchungs_Menge > 1;
    if (zeile.Menge > 1 && (several || zeile.Buchungs_Menge == 1))
        text += u' ' + NumberText(zeile.Menge) + u' ' + zeile.Einheit;
    if (several)
        text += u" (je"_s + VSPrinter::joint + Format(Value(zeile.VKPreis_Brutto), gFormatPreis) + u')';
    return text;
}

QString additions(const BelegZeile& zeile, const QString& sellerLabel, bool printLangText) {
    const bool voucher = zeile.ArtikelNummer == SonderArtikel::Gutschein;
    QString text;
    if (!zeile.PreisInfo.trimmed().isEmpty()) text += u'\n' + zeile.PreisInfo.trimmed();
    if (gPrintSpecialBon) text += u' ' + zeile.Zusatz1 + u"\nArtNr. "_s + zeile.ArtikelNummer;
    if (gHeron) text += u'\n' + sellerLabel + zeile.BestellNummer;
    if (gPrintZusatzInfo) text += u' ' + zeile.Zusatz1 + u' ' + zeile.Zusatz2;
    if (!zeile.SNNummer.trimmed().isEmpty())
        text += (voucher ? u"\nGutschein Nr.: "_s : u"\nSN: "_s) + zeile.SNNummer;
    if (voucher || (printLangText && !zeile.LangText.trimmed().isEmpty())) text += u'\n' + zeile.LangText;
    return text;
}

} // namespace

QString BonText(const BelegZeile& zeile, bool printLangText) {
    return bonName(zeile) + additions(zeile, u"Verkäufer Nr: "_s, printLangText);
}

QString FormularText(const BelegZeile& zeile, bool printLangText) {
    return zeile.ArtikelName + additions(zeile, u"Verkäufer Nr:"_s, printLangText);
}

} // namespace layout
