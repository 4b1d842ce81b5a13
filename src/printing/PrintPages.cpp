#include "BookedData.h"
#include "Copies.h"
#include "Kunde.h"

#include <devices/Printers.h>
#include <page/VSPrinter.h>
#include <printing/Beleg.h>
#include <printing/Layout.h>
#include <printing/Seiten.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <session/gKunde.h>
#include <store/Recordset.h>
#include <templates/PropertiesList.h>
#include <templates/TemplateCheck.h>
#include <templates/Units.h>

#include <QFileInfo>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {

/// The head of a document; a missing one is told.
std::unique_ptr<Recordset> findKopf(FormularArt art, int nummer) {
    auto kopf = OpenKopf(TabellenOf(art), nummer);
    if (!kopf->Eof()) return kopf;
    MsgBox(u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden."_s, MsgIcon::Critical);
    return nullptr;
}

/// Why the template of a document cannot be used for `printer`; "" when it is loaded and can. `missing` tells
/// that there is none.
QString loadVorlage(PropertiesList& vorlage, const QString& fileName, TemplateKind kind,
                    const QString& printer, const QString& missing) {
    if (!vorlage.Load(gDBPath + fileName)) return missing;
    const QSizeF own = paperSize(vorlage).isEmpty() ? PrinterPaper(printer) : QSizeF();
    const QString fault = templateFault(vorlage, kind, own);
    if (fault.isEmpty()) return {};
    return u"Mit der Druckvorlage \"%1\" kann nicht gedruckt werden. "_s.arg(fileName) + fault;
}

/// The same, told.
bool hasVorlage(PropertiesList& vorlage, const QString& fileName, TemplateKind kind, const QString& printer,
                const QString& missing) {
    const QString fault = loadVorlage(vorlage, fileName, kind, printer, missing);
    if (!fault.isEmpty()) MsgBox(fault);
    return fault.isEmpty();
}

const QString noBon =
    u"Der Bon kann nicht gedruckt werden, da das System die Druckvorlage für den Kassenbon nicht finden konnte."_s;
const QString noFormular =
    u"Das Formular kann nicht gedruckt werden, da das System die dafür nötige Druckvorlage nicht finden, oder öffnen konnte."_s;

void loadFormularKunde(const Recordset& kopf) {
    LoadBelegKunde(kopf.Long(u"KundenNummer"));
    if (gKunde.KundenID == 0) gKunde.KundenNummer.clear();
}

QString documentName(const QString& fileName, int id) {
    return QFileInfo(fileName).completeBaseName() + u' ' + QString::number(id);
}

/// Lays out a document whose head is there.
template <typename Render>
BelegSeiten show(FormularArt art, int id, const Render& render) {
    const QScopedValueRollback customer(gKunde);
    const auto kopf = OpenKopf(TabellenOf(art), id);
    if (kopf->Eof()) return {{}, u"Der Beleg %1 ist nicht mehr da."_s.arg(id)};
    return render(*kopf);
}

void printBon(int RechnungID) {
    const auto kopf = findKopf(FormularArt::Rechnung, RechnungID);
    if (!kopf) return;
    PropertiesList vorlage;
    if (!hasVorlage(vorlage, u"Kassenbon.pld"_s, TemplateKind::Bon, gBonDrucker, noBon)) return;
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
    if (!hasVorlage(vorlage, FileName, TemplateKind::Form, gFormularDrucker, noFormular)) return;
    loadFormularKunde(*kopf);
    const FormularDaten formular = ReadFormular(art, *kopf);
    const QString docName = documentName(FileName, ID);
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
    if (!hasVorlage(
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

BelegSeiten BonSeiten(int RechnungID) {
    return show(FormularArt::Rechnung, RechnungID, [](const Recordset& kopf) -> BelegSeiten {
        PropertiesList vorlage;
        const QString fault = loadVorlage(vorlage, u"Kassenbon.pld"_s, TemplateKind::Bon, gBonDrucker, noBon);
        if (!fault.isEmpty()) return {{}, fault};
        LoadBelegKunde(kopf.Long(u"KundenNummer"));
        VSPrinter printer;
        printer.Device(gBonDrucker);
        RenderBon(printer, vorlage, ReadBon(kopf));
        return {printer.Document(), {}};
    });
}

BelegSeiten FormularSeiten(int ID, const QString& FileName, int kind) {
    if (kind < 0 || kind > 2) RaiseInvalidCall();
    const auto art = static_cast<FormularArt>(kind);
    return show(art, ID, [&](const Recordset& kopf) -> BelegSeiten {
        PropertiesList vorlage;
        const QString fault =
            loadVorlage(vorlage, FileName, TemplateKind::Form, gFormularDrucker, noFormular);
        if (!fault.isEmpty()) return {{}, fault};
        loadFormularKunde(kopf);
        VSPrinter printer;
        printer.Device(gFormularDrucker);
        RenderFormular(printer, vorlage, ReadFormular(art, kopf), documentName(FileName, ID));
        return {printer.Document(), {}};
    });
}
