#include "BookedData.h"
#include "Copies.h"
#include "Kunde.h"

#include <devices/ReceiptLine.h>
#include <printing/Beleg.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <text/CodePage.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 40; // of the printer in its narrow font
constexpr int labelWidth = 33, amountWidth = columns - labelWidth;
constexpr int menge = 4, name = 24, steuer = 5;
constexpr int steuerBetrag = 15;

/// Exactly `width` characters: filled with blanks or cut at the right.
QString field(const QString& text, int width) { return text.leftJustified(width, u' ', true); }

QString amount(const Value& value) { return Format(value, u"##,##0.00"); }
QString rate(double percent) { return Format(Value(percent), u"0.0"); }

/// The bytes of one receipt. Text goes out as it stands in the store, in Windows-1252.
class BonBytes {
  public:
    BonBytes& raw(QByteArrayView bytes) {
        m_bytes.append(bytes);
        return *this;
    }
    BonBytes& text(const QString& text) { return raw(ToWindows1252(text)); }
    BonBytes& end() { return raw("\r\n"); }
    BonBytes& line(const QString& content) { return text(content).end(); }
    BonBytes& amountLine(const QString& label, const Value& value) {
        return text(field(label, labelWidth) + field(amount(value), amountWidth));
    }
    BonBytes& rule() { return line(QString(columns, u'-')); }
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

  private:
    QByteArray m_bytes;
};

constexpr QByteArrayView reset("\x1B\x40", 2), centred("\x1B\x61\x01", 3), leftAligned("\x1B\x61\x00", 3),
    narrowFont("\x1B\x21\x01", 3), feed("\x1B\x64\x0D", 3);
// The cut starts with ESC, not with GS.
constexpr QByteArrayView cut("\x1B\x56\x42\x00", 4);

void addHead(BonBytes& bon, int RechnungID, const Recordset& rechnung) {
    bon.raw(reset).end().raw(centred).end().raw(narrowFont).end();
    bon.line(gKopf1);
    for (const QString& kopf : {gKopf2, gKopf3, gKopf4})
        if (!kopf.trimmed().isEmpty()) bon.line(kopf);
    if (!gKopf5.trimmed().isEmpty()) bon.text(gKopf5).raw("\n");
    bon.raw(leftAligned).end();
    bon.line(u"Beleg-Nr:  "_s + QString::number(RechnungID));
    bon.line(u"Datum:     "_s + Format(rechnung.Field(u"Datum"), u"dd.mm.yyyy"));
    bon.text(u"Steuernr.: "_s + gUSt).raw("\n\n");
}

void addLines(BonBytes& bon, int RechnungID) {
    bon.line(field(u"Anz"_s, menge) + field(u"Artikelname"_s, name) + field(u"Ust"_s, steuer) +
             field(u"Gesamt"_s, amountWidth));
    bon.rule();
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM RechnungsDetail WHERE RechnungID="_s +
                                       QString::number(RechnungID) + u';');
    for (; !rs->Eof(); rs->MoveNext()) {
        const double count = rs->Number(u"Buchungs_Menge");
        const double percent = rs->Number(u"SteuerSatz");
        const double total = rs->Number(u"VKPreis_Netto") * count * (percent / 100 + 1);
        bon.line(field(NumberText(count), menge) + field(rs->Text(u"ArtikelName").left(name - 1), name) +
                 field(rate(percent), steuer) + field(amount(total), amountWidth));
    }
    bon.rule();
}

void addTotals(BonBytes& bon, const Recordset& rechnung) {
    bon.amountLine(u"Summe"_s, rechnung.Money(u"Betrag_Gesamt")).end();
    bon.amountLine(rechnung.Text(u"ZahlArt") + rechnung.Text(u"KartenTyp"), rechnung.Money(u"Betrag_Gegeben"))
        .end();
    if (gShowWechselgeldDialog)
        bon.amountLine(u"Rueckgeld"_s, rechnung.Money(u"Betrag_Zurueck")).raw("\n").end();
}

void addTaxes(BonBytes& bon, int RechnungID) {
    bon.line(field(u"Enthaltene Ust"_s, columns));
    Currency netSum;
    for (const SteuerZeile& group : ReadSteuern(TabellenOf(FormularArt::Rechnung), RechnungID, false)) {
        if (group.SteuerSatz != 0 || gPrintSteuerNull)
            bon.line(field(rate(group.SteuerSatz), labelWidth - steuerBetrag) +
                     field(amount(group.Steuer), steuerBetrag) + field(amount(group.Netto), amountWidth));
        netSum += Currency::fromDouble(group.Netto);
    }
    bon.amountLine(u"Netto"_s, netSum).end();
}

QByteArray bonBytes(int RechnungID, const Recordset& rechnung) {
    BonBytes bon;
    addHead(bon, RechnungID, rechnung);
    addLines(bon, RechnungID);
    addTotals(bon, rechnung);
    addTaxes(bon, RechnungID);
    bon.raw(centred).end().line(u"Vielen Dank fuer Ihren Einkauf"_s).raw(feed).raw(cut);
    return bon.bytes();
}

void print(int RechnungID) {
    const auto rechnung = OpenKopf(TabellenOf(FormularArt::Rechnung), RechnungID);
    if (rechnung->Eof()) {
        MsgBox(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden."_s, MsgIcon::Critical);
        return;
    }
    LoadBelegKunde(rechnung->Long(u"KundenNummer"));
    const auto printCopy = [&](int, int) {
        // Opened and closed for each copy, so that the drawer on the same line can be opened in between.
        if (SendToReceiptPrinter(bonBytes(RechnungID, *rechnung))) return true;
        MsgBox(u"Der Druck wurde abgebrochen. Die Buchung bleibt davon unberührt."_s);
        return false;
    };
    PrintCopies(printCopy, CopyScreen::Waits);
    gKunde = KundeRecord::Standard();
}

} // namespace

void Print_BON_Direct(int RechnungID) {
    Handle("frmKasse", [&] { print(RechnungID); });
}
