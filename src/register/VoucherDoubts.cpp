#include "VoucherDoubts.h"

#include <register/Prices.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace till {

namespace {

const QString nameBegins = u"Gutscheinerlös Nr. "_s, restBegins = u"Aktuelles Guthaben: "_s;

QString amount(Currency value) { return MoneyText(value) + u' ' + gWaehrungsSymbol; }

/// Redemptions bear no number of their own, voucher lines that were sold do.
QString redemptions(const QString& from) {
    return from + u" AND SNNummer='' AND ArtikelNummer="_s + sql::text(SonderArtikel::Gutschein) +
           u" AND ArtikelName LIKE "_s + sql::startingWith(nameBegins) + u';';
}

/// The rest that a redemption tells.
std::optional<Currency> toldRest(const QString& langText) {
    const qsizetype at = langText.lastIndexOf(restBegins);
    if (at < 0) return std::nullopt;
    QString text = langText.mid(at + restBegins.size());
    if (text.endsWith(gWaehrungsSymbol)) text.chop(gWaehrungsSymbol.size());
    try {
        return ReadMoney(text.trimmed());
    } catch (const RuntimeError&) { // the shop's formats have changed since
        return std::nullopt;
    }
}

std::optional<Currency> storedRest(int id) {
    const auto rs =
        gDB->OpenRecordset(u"SELECT Betrag FROM Gutscheine WHERE GutscheinID="_s + sql::number(id) + u';');
    if (rs->Eof()) return std::nullopt;
    return rs->Money(u"Betrag");
}

void tellRedemptions(int receipt) {
    const auto lines = gDB->OpenRecordset(redemptions(
        u"SELECT ArtikelName, LangText FROM RechnungsDetail WHERE RechnungID="_s + sql::number(receipt)));
    for (; !lines->Eof(); lines->MoveNext()) {
        const int id = lines->Text(u"ArtikelName").mid(nameBegins.size()).toInt();
        const auto told = toldRest(lines->Text(u"LangText")), stored = storedRest(id);
        if (!told || !stored || ReadMoney(MoneyText(*stored)) <= *told) continue;
        MsgBox(
            u"Beleg %1 hat Gutschein Nr. %2 eingelöst. Danach bleiben auf ihm %3, gespeichert sind aber noch %4. "
            "Bitte lassen Sie das Guthaben berichtigen, bevor der Gutschein wieder angenommen wird."_s
                .arg(receipt)
                .arg(id)
                .arg(amount(*told), amount(*stored)),
            MsgIcon::Exclamation);
    }
}

void tellPayout(int receipt) {
    const auto head =
        gDB->OpenRecordset(u"SELECT Betrag_Gesamt FROM Rechnung WHERE ZahlArt='ENTNAHME' AND RechnungID="_s +
                           sql::number(receipt) + u';');
    if (head->Eof() || sql::count(*gDB, u"RechnungsDetail WHERE WarenGruppe="_s + sql::text(PayoutName()) +
                                            u" AND RechnungID="_s + sql::number(receipt)) == 0)
        return;
    // One that was emptied has the amount no longer.
    const Currency paid = head->Money(u"Betrag_Gesamt");
    const QStringList candidates =
        sql::firstTexts(*gDB, u"SELECT GutscheinID FROM Gutscheine WHERE Betrag="_s + sql::number(paid) +
                                  u" ORDER BY GutscheinID;"_s);
    if (candidates.isEmpty()) return;
    constexpr qsizetype mostTold = 10;
    QString numbers = candidates.first(std::min(mostTold, candidates.size())).join(u", "_s);
    if (candidates.size() > mostTold) numbers += u" und weitere"_s;
    MsgBox(
        u"Beleg %1 hat einen Gutschein über %2 ausgezahlt. Ob dessen Guthaben schon auf 0 steht, weiß die Kasse "
        "nicht. Diesen Betrag haben noch die Gutscheine Nr. %3. Bitte prüfen Sie, ob der ausgezahlte dabei ist, und "
        "nehmen Sie ihn nicht wieder an."_s.arg(receipt)
            .arg(amount(paid), numbers),
        MsgIcon::Exclamation);
}

} // namespace

QString RedemptionName(int GutscheinID) { return nameBegins + QString::number(GutscheinID); }

QString RedemptionText(int GutscheinID, Currency rest) {
    return u"Erlös aus Gutschein Nr. %1\n"_s.arg(GutscheinID) + restBegins + amount(rest);
}

QString PayoutName() { return u"Gutscheinauszahlung"_s; }

void TellVoucherDoubts(int RechnungID) {
    Handle("frmKasse", [&] { tellRedemptions(RechnungID); });
}

void TellPayoutDoubt(int RechnungID) {
    Handle("frmKasse", [&] { tellPayout(RechnungID); });
}

bool TellOpenRedemptions() {
    const auto lines = gDB->OpenRecordset(
        redemptions(u"SELECT ArtikelName FROM Bestellung WHERE Maschine="_s + sql::text(gMaschine)));
    if (lines->Eof()) return false;
    MsgBox(
        u"In diesem Verkauf steht noch die Zeile \"%1\". Die Einlösung wurde nicht zu Ende gebucht, und vom "
        "Guthaben des Gutscheins ist nichts abgezogen. Stornieren Sie die Zeile (F5), und lösen Sie den Gutschein "
        "dann noch einmal ein."_s.arg(lines->Text(u"ArtikelName")),
        MsgIcon::Exclamation);
    return true;
}

} // namespace till
