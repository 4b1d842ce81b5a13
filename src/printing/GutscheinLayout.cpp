#include "Barcode.h"
#include "PageLayout.h"

#include <page/VSPrinter.h>
#include <printing/Layout.h>
#include <session/Globals.h>
#include <templates/PropertiesList.h>
#include <text/Value.h>

using namespace Qt::StringLiterals;
using namespace layout;

namespace {

/// The number, long enough for the till to tell a scan from typing. Read as a number it is the same.
QString GutscheinCode(int number) {
    constexpr int digits = 8;
    return u"%1"_s.arg(number, digits, 10, QChar(u'0'));
}

} // namespace

void RenderGutschein(VSPrinter& printer, const PropertiesList& vorlage, const GutscheinDaten& gutschein) {
    const QString number = QString::number(gutschein.Nummer);
    StartDocument(printer, vorlage, u"Gutschein "_s + number);
    PageFont(printer, vorlage);
    BonHeader(printer, vorlage, gutschein.Firma);
    InfoBlock block(printer, vorlage, gutschein);
    block.number();
    block.clerk();
    block.date();
    block.taxNumber();

    printer.Paragraph(u"\n\n"_s);
    printer.FontSize(vorlage.Number(u"formulartitel_fontsize"));
    printer.Paragraph(vorlage.Text(u"formulartitel_text") + u" - Nr."_s + number + u"\n\n"_s);
    printer.FontSize(vorlage.Number(u"gutschein_fontsize"));
    printer.Paragraph(gutschein.Name);
    printer.Paragraph(u"Im Wert von: "_s + Amount(gutschein.Betrag, gFormatPreis));

    PageFont(printer, vorlage);
    printer.Paragraph(u"\n\n"_s);
    Align(printer, vorlage.Choice(u"schlusstext_align"));
    printer.Paragraph(ClosingText(vorlage.Text(u"schlusstext_text"), gutschein.Datum, gutschein.Betrag));
    printer.TextAlign(0);
    if (gGutscheinBarcode) {
        printer.Paragraph({});
        PutBarcode(printer, GutscheinCode(gutschein.Nummer));
    }
    printer.EndDoc();
}
