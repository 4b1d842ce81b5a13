#include "BookedData.h"
#include "Copies.h"
#include "Kunde.h"

#include <devices/Printers.h>
#include <page/VSPrinter.h>
#include <printing/Beleg.h>
#include <printing/Layout.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <store/Recordset.h>
#include <templates/PropertiesList.h>
#include <templates/TemplateCheck.h>
#include <templates/Units.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// The head of a document; a missing one is told.
std::unique_ptr<Recordset> findKopf(FormularArt art, int nummer) {
    auto kopf = OpenKopf(TabellenOf(art), nummer);
    if (!kopf->Eof()) return kopf;
    MsgBox(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden."_s, MsgIcon::Critical);
    return nullptr;
}

/// The template of a document for `printer`; one that cannot be used is told.
bool loadVorlage(PropertiesList& vorlage, const QString& fileName, TemplateKind kind, const QString& printer,
                 const QString& complaint) {
    if (!vorlage.Load(gDBPath + fileName)) {
        MsgBox(complaint);
        return false;
    }
    const QSizeF own = paperSize(vorlage).isEmpty() ? PrinterPaper(printer) : QSizeF();
    const QString fault = templateFault(vorlage, kind, own);
    if (fault.isEmpty()) return true;
    MsgBox(u"Mit der Druckvorlage \"%1\" kann nicht gedruckt werden. "_s.arg(fileName) + fault);
    return false;
}

void printBon(int RechnungID) {
    const auto kopf = findKopf(FormularArt::Rechnung, RechnungID);
    if (!kopf) return;
    PropertiesList vorlage;
    if (!loadVorlage(
            vorlage, u"Kassenbon.pld"_s, TemplateKind::Bon, gBonDrucker,
            u"Der Bon kann nicht gedruckt werden, da das System die Druckvorlage für den Kassenbon nicht finden konnte."_s))
        return;
    LoadBelegKunde(kopf->Long(u"KundenNummer"));
    const BonDaten bon = ReadBon(*kopf);
    PrintCopies([&](int, int) {
        VSPrinter printer;
        printer.Device(gBonDrucker);
        RenderBon(printer, vorlage, bon);
        printer.PrintDoc();
        return true;
    });
    gKunde = KundeRecord::Standard();
}

/// What stands below a form: nothing for the template's own text. False when the person gave up.
bool askSchlussText(const BelegDialoge& dialoge, std::optional<QString>& text) {
    gVorlagenAuswahl = {};
    dialoge.ShowRechnungsVorlage();
    if (gVorlagenAuswahl.Ergebnis == 2) text = gVorlagenAuswahl.Text;
    return gVorlagenAuswahl.Ergebnis != 0;
}

void printFormular(int ID, const QString& FileName, FormularArt art, const BelegDialoge& dialoge) {
    const auto kopf = findKopf(art, ID);
    if (!kopf) return;
    PropertiesList vorlage;
    if (!loadVorlage(
            vorlage, FileName, TemplateKind::Form, gFormularDrucker,
            u"Das Formular kann nicht gedruckt werden, da das System die dafür nötige Druckvorlage nicht "
            "finden, oder öffnen konnte."_s))
        return;
    LoadBelegKunde(kopf->Long(u"KundenNummer"));
    if (gKunde.KundenID == 0) gKunde.KundenNummer.clear();
    const FormularDaten formular = ReadFormular(art, *kopf);
    const QString docName = QFileInfo(FileName).completeBaseName() + u' ' + QString::number(ID);
    const bool ask = art == FormularArt::Rechnung && gAskSchlussText;
    const auto printCopy = [&](int copy, int copies) {
        VSPrinter printer;
        printer.Device(gFormularDrucker);
        std::optional<QString> schlussText;
        // Each copy is a document of its own.
        if (ask && !askSchlussText(dialoge, schlussText)) return WantsFurtherCopies(copies - copy);
        RenderFormular(printer, vorlage, formular, docName, schlussText);
        printer.PrintDoc();
        return true;
    };
    PrintCopies(printCopy, ask ? CopyScreen::Asks : CopyScreen::None);
    gKunde = KundeRecord::Standard();
}

void printGutschein(int GutscheinID, const QString& Name, Currency Betrag) {
    PropertiesList vorlage;
    if (!loadVorlage(
            vorlage, u"Gutschein.pld"_s, TemplateKind::Voucher, gBonDrucker,
            u"Der Gutschein kann nicht gedruckt werden, da das System die Druckvorlage nicht finden oder öffnen konnte."_s))
        return;
    VSPrinter printer;
    printer.Device(gBonDrucker);
    RenderGutschein(printer, vorlage,
                    {{GutscheinID, Now().date(), SessionBearbeiter(), SessionFirma()}, Name, Betrag});
    printer.PrintDoc();
}

} // namespace

void Print_BON(int RechnungID) {
    Handle("frmKasse", [&] { printBon(RechnungID); });
}

void Print_Formular(int ID, const QString& FileName, int kind, const BelegDialoge& dialoge) {
    Handle("frmKasse", [&] {
        if (kind < 0 || kind > 2) RaiseInvalidCall();
        printFormular(ID, FileName, static_cast<FormularArt>(kind), dialoge);
    });
}

void Print_Gutschein(int GutscheinID, const QString& Name, Currency Betrag) {
    Handle("frmKasse", [&] { printGutschein(GutscheinID, Name, Betrag); });
}
