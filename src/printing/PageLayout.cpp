#include "PageLayout.h"

#include <page/VSPrinter.h>
#include <printing/Texte.h>
#include <session/Globals.h>
#include <templates/PropertiesList.h>
#include <templates/Units.h>
#include <text/Format.h>

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace layout {

namespace {

constexpr double labelWidth = 25; // mm

} // namespace

int Position(const PropertiesList& vorlage, QStringView key) {
    return qRound(vorlage.Number(key) * twipsPerPosition);
}

double Width(const PropertiesList& vorlage, QStringView key) {
    return std::max(0.0, vorlage.Number(key) * 10);
}

void StartDocument(VSPrinter& printer, const PropertiesList& vorlage, const QString& docName) {
    constexpr int paperCodes[] = {9, 11, 256};
    const int size = vorlage.Choice(u"page_size");
    if (size >= 1 && size <= 3) printer.PaperSize(paperCodes[size - 1]);
    if (size == 3) {
        printer.PaperWidth(qRound(vorlage.Number(u"page_width") * twipsPerPaper));
        printer.PaperHeight(qRound(vorlage.Number(u"page_height") * twipsPerPaper));
    }
    printer.MarginTop(Position(vorlage, u"page_margintop"));
    printer.MarginBottom(Position(vorlage, u"page_marginbottom"));
    printer.MarginLeft(Position(vorlage, u"page_marginleft"));
    printer.MarginRight(Position(vorlage, u"page_marginright"));
    printer.DocName(docName);
    printer.StartDoc();
    printer.TextAlign(0);
    printer.TableBorder(0);
}

void PageFont(VSPrinter& printer, const PropertiesList& vorlage) {
    if (vorlage.Flag(u"page_useprinterfont")) {
        printer.FontName(vorlage.Text(u"page_fontname"));
        printer.FontSize(vorlage.Number(u"page_fontsize"));
    } else {
        printer.Font(vorlage.Font(u"page_font"));
    }
}

void Bold(VSPrinter& printer, const PropertiesList& vorlage, bool on) {
    if (!vorlage.Flag(u"page_useprinterfont")) printer.FontBold(on);
}

void Align(VSPrinter& printer, int choice) {
    if (choice >= 1 && choice <= 3) printer.TextAlign(choice - 1);
}

void Logo(VSPrinter& printer, const PropertiesList& vorlage) {
    const QImage logo = vorlage.Picture(u"kopfzeile_logo");
    if (!logo.isNull())
        printer.DrawPicture(logo, Position(vorlage, u"kopfzeile_logo_left"),
                            Position(vorlage, u"kopfzeile_logo_top"));
}

QString FirstHeaderLine(const FirmaDaten& firma) {
    QString line = firma.Kopf.front();
    return line.replace(u"&&"_s, u"&"_s);
}

void BonHeader(VSPrinter& printer, const PropertiesList& vorlage, const FirmaDaten& firma) {
    if (!vorlage.Flag(u"page_useprinterfont")) Logo(printer, vorlage);
    if (vorlage.Flag(u"kopfzeile_visible")) {
        printer.CurrentY(Position(vorlage, u"kopfzeile_top"));
        printer.Paragraph(u" "_s);
        Align(printer, vorlage.Choice(u"kopfzeile_align"));
        Bold(printer, vorlage, true);
        printer.Paragraph(FirstHeaderLine(firma));
        Bold(printer, vorlage, false);
        for (auto line = firma.Kopf.begin() + 1; line != firma.Kopf.end(); ++line)
            if (!line->trimmed().isEmpty()) printer.Paragraph(*line);
    }
    printer.TextAlign(0);
    printer.CurrentY(Position(vorlage, u"infofeld_top"));
    Align(printer, vorlage.Choice(u"infofeld_align"));
}

InfoBlock::InfoBlock(VSPrinter& printer, const PropertiesList& vorlage, const BelegKopf& kopf)
    : m_printer(printer)
    , m_vorlage(vorlage)
    , m_kopf(kopf)
    , m_format(Columns({{u'<', labelWidth}, {u'>', Width(vorlage, u"infofeld_width")}})) {}

void InfoBlock::row(const QString& label, const QString& value) { Row(m_printer, m_format, {label, value}); }

void InfoBlock::number() {
    if (m_vorlage.Flag(u"infofeld_auftragnr_visible"))
        row(m_vorlage.Text(u"formulartitel_text") + u" Nr:"_s, QString::number(m_kopf.Nummer));
}

void InfoBlock::clerk() {
    if (m_vorlage.Flag(u"infofeld_bearbeiter_visible")) row(u"Bearbeiter:"_s, m_kopf.Bearbeiter);
}

void InfoBlock::date() {
    if (m_vorlage.Flag(u"infofeld_datum_visible")) row(u"Datum:"_s, m_kopf.Datum.toString(u"dd.MM.yyyy"_s));
}

void InfoBlock::taxNumber() {
    if (m_vorlage.Flag(u"infofeld_ust_visible")) row(m_vorlage.Text(u"infofeld_ust_text"), m_kopf.Firma.USt);
}

QString Columns(std::initializer_list<Column> columns) {
    QStringList texts;
    for (const Column& column : columns)
        texts.append(QChar(column.align) + QString::number(std::max(0.0, column.millimetres)) + u"mm"_s);
    return texts.join(u'|');
}

QString Cells(std::initializer_list<QString> cells) {
    QStringList texts;
    for (const QString& cell : cells)
        texts.append(VSPrinter::CellText(cell));
    return texts.join(u'|');
}

void Row(VSPrinter& printer, const QString& format, std::initializer_list<QString> cells) {
    printer.AddTable(format, {}, Cells(cells));
}

QString TotalFormat() { return gRoundDecimal ? u"##,##0.00"_s : gFormatPreis; }

QString Amount(const Value& value, const QString& format) {
    return Format(value, format) + VSPrinter::joint + gWaehrungsSymbol;
}

QString Rate(double percent) { return Format(Value(percent), u"0.0"); }

QString Percent(double percent) { return Rate(percent) + VSPrinter::joint + u'%'; }

QString ClosingText(const QString& text, QDate day, Currency amount) {
    const QString sum = u"[SUMME]"_s, expanded = ExpandTextMakros(sum, day, amount);
    QString joined = expanded;
    joined.replace(u' ', VSPrinter::joint);
    return ExpandTextMakros(text, day, amount).replace(expanded, joined);
}

} // namespace layout
