#include "Advice.h"
#include "Checkout.h"
#include "Entry.h"
#include "LineWithoutArticle.h"
#include "Sale.h"
#include "VoucherDoubts.h"

#include <devices/CashDrawer.h>
#include <printing/Beleg.h>
#include <register/Prices.h>
#include <register/Vouchers.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <session/gAngaben.h>
#include <session/gKunde.h>
#include <session/gZahlung.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <store/Trouble.h>
#include <text/Convert.h>

#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// The number of a voucher; 0 for what no voucher has.
int voucherNumber(const QString& typed) {
    const bool plain =
        std::all_of(typed.begin(), typed.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool ok = false;
    const int number = typed.toInt(&ok);
    return plain && ok ? number : 0;
}

} // namespace

void Vouchers::CreateGutschein() {
    m_sale.Trap([this] { create(); });
}
void Vouchers::RedeemGutschein() {
    m_sale.Trap([this] { redeem(); });
}
void Vouchers::PayoutGutschein() {
    m_sale.Trap([this] { payout(); });
}

void Vouchers::create() {
    if (!gKFGutscheinErstellen || m_sale.isBooking || !m_sale.Settle()) return;
    gGutscheinAngabe = {};
    gGutscheinAngabe.IsNeu = true;
    gGutscheinAngabe.WarenGruppe = u"Gutschein"_s;
    gGutscheinAngabe.SteuerSatz = gVollerSteuerSatz;
    m_sale.screen.Show(Dialog::Gutschein);
    m_sale.screen.MovePointerAway();
    if (gGutscheinAngabe.Ergebnis == 0) return;
    const GutscheinAngabe& wanted = gGutscheinAngabe;

    const auto rs = gDB->OpenRecordset(u"Gutscheine"_s);
    rs->AddNew();
    const int id = rs->Long(u"GutscheinID");
    rs->Set(u"Betrag", wanted.Betrag);
    rs->Set(u"SteuerSatz", wanted.SteuerSatz);
    rs->Set(u"WarenGruppe", wanted.WarenGruppe);
    rs->Set(u"Name", wanted.Name);
    rs->Update();
    Print_Gutschein(id, wanted.Name, wanted.Betrag);

    ArtikelRecord line = LineWithoutArticle(SonderArtikel::Gutschein, wanted.WarenGruppe, wanted.Name,
                                            wanted.Betrag, wanted.SteuerSatz);
    line.SNNummer = QString::number(id);
    if (!m_entry.AddAmount(std::move(line))) {
        MsgBox(
            u"Gutschein Nr. %1 über %2 ist angelegt und gilt schon, steht aber nicht im Verkauf. Geben Sie ihn nicht "
            "heraus, ohne dass er bezahlt ist."_s.arg(id)
                .arg(MoneyText(wanted.Betrag) + u' ' + gWaehrungsSymbol),
            MsgIcon::Exclamation);
    }
}

std::optional<Vouchers::Voucher> Vouchers::ask() {
    const auto typed =
        InputCode(u"Bitte geben Sie die gewünschte Gutscheinnummer ein."_s, u"Gutscheinnummer"_s);
    if (!typed || !IsNumeric(*typed)) return std::nullopt;
    constexpr qsizetype mostTold = 40;
    const QString number = typed->trimmed();
    const auto rs = gDB->OpenRecordset(u"Gutscheine"_s);
    rs->FindFirst(u"GutscheinID="_s + sql::number(voucherNumber(number)));
    if (rs->NoMatch()) {
        MsgBox(u"Der Gutschein mit der Nummer "_s + number.left(mostTold) +
               u" konnte nicht gefunden werden."_s);
        return std::nullopt;
    }
    Voucher voucher{rs->Long(u"GutscheinID"), rs->Money(u"Betrag"), rs->Number(u"SteuerSatz"),
                    rs->Text(u"WarenGruppe")};
    if (voucher.Betrag <= Currency{}) {
        MsgBox(u"Es befindet sich auf diesen Gutschein kein Guthaben mehr."_s);
        return std::nullopt;
    }
    return voucher;
}

void Vouchers::removeLine(int ID) {
    Recordset& rs = m_sale.basket.rsBestellung();
    rs.FindFirst(u"ID="_s + sql::number(ID));
    if (!rs.NoMatch()) rs.Delete();
    rs.Requery();
    m_sale.basket.LoadBestellungen();
}

void Vouchers::redeem() {
    if (!gKFGutscheinEinloesen) return;
    Basket& basket = m_sale.basket;
    Checkout checkout(m_sale);
    if (!checkout.Begin()) return;
    if (basket.isEmpty()) {
        MsgBox(
            u"Sie müssen zuerst eine Position buchen bevor Sie den Betrag von einem Gutschein abbuchen können."_s);
        return;
    }
    if (!basket.IsAsStored() || TellOpenRedemptions()) return;
    const auto voucher = ask();
    if (!voucher) return;
    const Currency taken = std::min(voucher->Betrag, ReadMoney(basket.Gesamt()));
    const Currency rest = voucher->Betrag - taken;
    ArtikelRecord line = LineWithoutArticle(SonderArtikel::Gutschein, voucher->WarenGruppe,
                                            RedemptionName(voucher->ID), -taken, voucher->SteuerSatz);
    line.LangText = RedemptionText(voucher->ID, rest);
    if (!m_entry.AddAmount(std::move(line))) return;
    const int added = basket.lastID();
    bool paid = false;
    try {
        paid = pay(checkout, *voucher);
    } catch (...) { // a line of a voucher that was not taken must not be paid another way
        removeLine(added);
        throw;
    }
    if (!paid) return removeLine(added);
    const int id = checkout.Book();
    if (id == 0) return;
    // Not the name of the template that all other routes print.
    PrintVorgang(id, u"Quittung.pdl"_s, m_sale.printDialogs());
    writeRest(*voucher, rest, id);
    checkout.Finish();
}

bool Vouchers::pay(Checkout& checkout, const Voucher& voucher) {
    checkout.ShowTotal(gRoundDecimal);
    const bool cash = AskYesNo(
        u"Möchten Sie die eventuell anfallende Differenz als Barzahlung verbuchen?\nWählen Sie Nein, "
        "wenn diese per Kreditkarte verrechnet werden soll."_s,
        u"Zahlart..."_s);
    gZahlung = {};
    gZahlung.Betrag_Gesamt = gZahlung.Betrag_Gegeben = ReadMoney(m_sale.basket.Gesamt());
    gZahlung.ZahlArt = cash ? u"BAR"_s : u"KARTE"_s;
    if (!cash) {
        gZahlung.KartenTyp = u"sonstige Kreditkarten"_s;
        return isUnchanged(voucher) && checkout.ConfirmKarte(gZahlung.KartenTyp);
    }
    OpenKassenLade(DrawerOwner::Kasse);
    if (gShowWechselgeldDialog && !checkout.AskAmount()) return false;
    return isUnchanged(voucher);
}

bool Vouchers::isUnchanged(const Voucher& voucher) {
    const auto rs = gDB->OpenRecordset(u"SELECT Betrag FROM Gutscheine WHERE GutscheinID="_s +
                                       sql::number(voucher.ID) + u';');
    if (!rs->Eof() && rs->Money(u"Betrag") == voucher.Betrag) return true;
    MsgBox(
        u"Das Guthaben von Gutschein Nr. %1 hat sich gerade geändert, vermutlich an einer anderen Kasse. Es wurde "
        "nichts gebucht. Bitte lösen Sie den Gutschein noch einmal ein."_s.arg(voucher.ID),
        MsgIcon::Exclamation);
    return false;
}

void Vouchers::writeRest(const Voucher& voucher, Currency rest, int Rechnung) const {
    const auto write = [&] {
        gDB->Execute(u"UPDATE Gutscheine SET Betrag="_s + sql::text(CStr(Value(rest))) +
                     u" WHERE GutscheinID="_s + sql::number(voucher.ID) + u';');
    };
    const auto advice = [&](const RuntimeError& error) {
        const QString doubt =
            error.Number == store::outcomeUnknown
                ? u"Ob das Guthaben von Gutschein Nr. %2 schon verringert ist, ist nicht sicher"_s
                : u"Das Guthaben von Gutschein Nr. %2 wurde nicht verringert"_s;
        return (u"Beleg %1 ist gebucht. "_s + doubt +
                u": Es muss von %3 auf %4 berichtigt werden, bevor der Gutschein wieder angenommen wird."_s)
            .arg(Rechnung)
            .arg(voucher.ID)
            .arg(MoneyText(voucher.Betrag) + u' ' + gWaehrungsSymbol,
                 MoneyText(rest) + u' ' + gWaehrungsSymbol);
    };
    // Told when it fails; the sale is booked and comes to its end all the same.
    Handle("frmKasse", [&] { WithAdvice(write, advice); });
}

void Vouchers::payout() {
    if (!gKFGutscheinAuszahlung) return;
    Checkout checkout(m_sale);
    if (!checkout.Begin()) return;
    if (!m_sale.basket.isEmpty()) {
        MsgBox(u"Sie müssen zuerst die Positionen abrechnen, bevor Sie den Gutschein einlösen können."_s);
        return;
    }
    if (!m_sale.basket.IsAsStored()) return;
    const auto voucher = ask();
    if (!voucher || !isUnchanged(*voucher)) return;
    ArtikelRecord line =
        LineWithoutArticle(SonderArtikel::Entnahme, PayoutName(), PayoutName(), voucher->Betrag, 0);
    line.Einheit = u"x"_s;
    if (!m_entry.AddAmount(std::move(line))) return;
    gZahlung = {};
    gZahlung.Betrag_Gesamt = voucher->Betrag;
    gZahlung.ZahlArt = u"ENTNAHME"_s;
    int id = 0;
    checkout.CreateRechnung(id);
    if (id != 0) {
        OpenKassenLade(DrawerOwner::Kasse);
        PrintVorgang(id, u"Quittung.pld"_s, m_sale.printDialogs());
        writeRest(*voucher, {}, id);
    } else {
        MsgBox(u"Beim Erstellen des Beleges ist ein Fehler aufgetreten."_s);
    }
    checkout.EndMovement();
}

} // namespace till
