#include "Cancellation.h"
#include "Entry.h"
#include "Payment.h"
#include "PriceChanges.h"
#include "Reprint.h"
#include "Sale.h"
#include "Undo.h"

#include <devices/CashDrawer.h>
#include <register/ArticleSearch.h>
#include <register/CashMovements.h>
#include <register/CustomerAccount.h>
#include <register/Documents.h>
#include <register/IncompleteReceipts.h>
#include <register/Parking.h>
#include <register/ReceiptHistory.h>
#include <register/Register.h>
#include <register/Returns.h>
#include <register/SpecialLines.h>
#include <register/Vouchers.h>
#include <register/gMaschine.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/ShopFiles.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZVT.h>
#include <store/Database.h>
#include <store/Recordset.h>

#include <tuple>

using namespace Qt::StringLiterals;

namespace till {

Register::Register(RegisterScreen& screen, QObject* parent)
    : QObject(parent)
    , m_sale(std::make_unique<Sale>(screen))
    , m_entry(std::make_unique<Entry>(*m_sale))
    , m_undo(std::make_unique<Undo>(*m_sale))
    , m_special(std::make_unique<SpecialLines>(*m_sale, *m_entry))
    , m_movements(std::make_unique<CashMovements>(*m_sale))
    , m_parking(std::make_unique<Parking>(*m_sale))
    , m_returns(std::make_unique<Returns>(*m_sale))
    , m_account(std::make_unique<CustomerAccount>(*m_sale))
    , m_vouchers(std::make_unique<Vouchers>(*m_sale, *m_entry))
    , m_documents(std::make_unique<Documents>(*m_sale)) {
    connect(m_undo.get(), &Undo::Changed, this, &Register::UndoChanged);
    connect(m_entry.get(), &Entry::InputChanged, this, &Register::InputChanged);
    connect(m_entry.get(), &Entry::InputLeft, this, &Register::InputLeft);
    connect(m_entry.get(), &Entry::MalChanged, this, &Register::MalChanged);
    connect(m_sale.get(), &Sale::TitleChanged, this, &Register::TitleChanged);
    connect(m_sale.get(), &Sale::UserChanged, this, &Register::UserChanged);
}

Register::~Register() = default;

template <typename Body>
bool Register::Trap(Body&& body) {
    return m_sale->Trap(std::forward<Body>(body));
}

Basket& Register::basket() { return m_sale->basket; }
const SalePanel& Register::panel() const { return m_sale->panel; }
const QString& Register::Title() const { return m_sale->Title(); }

void Register::Load() {
    gPrintMode = gDruckerDefault;
    // Each step is a handler of its own: whatever fails, the open sale comes back to the screen.
    Trap([this] { m_karten = ReadKarten(); });
    gMaschine = gSystem->ComputerName();
    Trap([this] {
        m_entry->Open();
        m_sale->basket.Open();
        m_sale->LookBack();
    });
    Trap([this] { m_keys.LoadGroups(); });
    cmdGruppe_Click(0);
    m_sale->ResetKunde();
    emit UserChanged(UserDisplay());
    LoadBestellungen();
    m_parking->ShowParked();
}

void Register::ResumeBooking() {
    Trap([this] { std::ignore = m_sale->Settle(); });
}

bool Register::HasIncompleteReceipts() {
    bool any = false;
    Trap([&] { any = !IncompleteReceipts().empty(); });
    return any;
}

void Register::ShowIncompleteReceipts() {
    Trap([] { MsgBox(IncompleteReceiptsText(IncompleteReceipts())); });
}

Unload Register::QueryUnload() {
    Unload answer = Unload::Close;
    if (m_sale->begun()) m_sale->LookBack(); // what failed here can be finished before the lines are given up
    ResumeBooking();
    Trap([&] { answer = Cancellation(*m_sale, *m_undo).QueryUnload(); });
    return answer;
}

const QString& Register::Input() const { return m_entry->input(); }
const QString& Register::Mal() const { return m_entry->mal(); }

void Register::SetInput(const QString& text) {
    if (!Trap([&] { m_entry->SetInput(text); })) m_entry->TellLeft();
}
void Register::SetMal(const QString& text) { m_entry->SetMal(text); }

void Register::cmdNumber_Click(int Index) {
    if (Index >= 0 && Index <= 9) SetInput(Input() + QString::number(Index));
}
void Register::cmdDecimal_Click() { SetInput(Input() + u','); }
void Register::cmdMal_Click() { SetInput(Input() + u'*'); }
void Register::cmdMinus_Click() { SetInput(Input() + u'-'); }

void Register::cmdClear_Click() {
    Trap([this] {
        m_sale->panel.DropUnknown();
        m_entry->Clear();
    });
}
void Register::cmdPlus_Click() {
    if (!Trap([this] { m_entry->AddQuantity(1); })) m_entry->TellLeft();
}
void Register::cmdEnter_Click() { m_entry->Enter(); }
void Register::cmdSearch_Click() { ArticleSearch(*m_sale, *m_entry).cmdSearch_Click(); }
void Register::BookVerbundArtikel(const QString& ArtikelNummer, double Menge) {
    m_entry->BookVerbundArtikel(ArtikelNummer, Menge);
}
bool Register::IsVerbundBuchung() const { return m_entry->IsVerbundBuchung; }

void Register::MoveSelection(int rows) {
    const int row = m_sale->basket.selected() + rows;
    if (!m_sale->basket.isEmpty() && row >= 0 && row < m_sale->basket.rowCount()) ItemClick(row);
}

void Register::ItemClick(int row) {
    Trap([&] { m_sale->basket.ItemClick(row); });
}

bool Register::AddArtikelToBestellung() { return m_entry->AddArtikelToBestellung(); }

void Register::LoadBestellungen() {
    m_undo->Forget(); // the rows may have been changed elsewhere
    Trap([this] { m_sale->basket.LoadBestellungen(); });
}
void Register::RefreshGesamt() {
    Trap([this] { m_sale->basket.RefreshGesamt(); });
}
void Register::cmdStorno_Click() {
    Trap([this] {
        if (m_sale->Settle()) Cancellation(*m_sale, *m_undo).Storno();
    });
}
void Register::cmdRabatt_Click() {
    Trap([this] { PriceChanges(*m_sale, *m_undo).Rabatt(); });
}
void Register::cmdArtikelPreis_Click() {
    Trap([this] { PriceChanges(*m_sale, *m_undo).ArtikelPreis(); });
}
void Register::TakeBack() {
    Trap([this] { m_undo->TakeBack(); });
}
bool Register::CanTakeBack() const { return m_undo->CanTakeBack(); }
QString Register::UndoCaption() const { return m_undo->Caption(); }
void Register::cmdTotal_Click() {
    Trap([this] { Payment(*m_sale).Total(); });
}
void Register::cmdKarte_Click() {
    if (gZVTEnabled) return PayByKarte({});
    Trap([this] { m_sale->screen.Show(Dialog::KartenMenu); });
}
void Register::PayByKarte(const QString& KartenName) {
    Trap([&] { Payment(*m_sale).ByKarte(KartenName); });
}

ReceiptHistory Register::receipts() { return ReceiptHistory(*m_sale); }

void Register::ShowBonHistorie() {
    Trap([this] {
        if (!gKFRechnungsHistorie) return;
        m_sale->screen.Show(Dialog::BonHistorie);
        m_sale->screen.MovePointerAway();
    });
}

void Register::ShowArtikelInfo() {
    Trap([this] {
        if (!gKFArtikelInfo || m_sale->basket.isEmpty()) return;
        if (!ArticleSearch::Select(ArticleSearch::KeyPrefix +
                                   m_sale->basket.rsBestellung().Text(u"ArtikelNummer"))) {
            MsgBox(u"Zu dieser Zeile gibt es keinen Artikel in der Datenbank."_s);
            return;
        }
        m_sale->screen.Show(Dialog::ArtikelInfo);
        m_sale->screen.MovePointerAway();
    });
}

void Register::PrintLast() {
    Trap([this] { Reprint(*m_sale).Last(); });
}

void Register::OpenKassenLade() { ::OpenKassenLade(DrawerOwner::Kasse); }
void Register::OpenLade_Click() {
    if (gKFKassenlade) OpenKassenLade();
}

void Register::TerminalFunction(TerminalAct act) {
    Trap([&] {
        m_sale->screen.MovePointerAway();
        if (!gZVTEnabled || !gZVT) return;
        switch (act) {
        case TerminalAct::Storno:
            return gZVT->Storno();
        case TerminalAct::Gutschrift:
            return gZVT->Gutschrift();
        case TerminalAct::KassenSchnitt:
            return gZVT->Kassenschnitt();
        }
    });
}

void Register::cmdKunde_Click() { m_sale->ChooseKunde(); }
void Register::ChangeUser() { m_sale->ChangeUser(); }
QString Register::UserDisplay() const { return Sale::UserDisplay(); }
void Register::SetLCDDefault() { m_sale->basket.SetLCDDefault(); }

void Register::cmdGruppe_Click(int Index) {
    Trap([&] { m_keys.PressGroup(Index); });
    emit KeysChanged();
}

void Register::cmdArtikel_Click(int Index) {
    if (Index < 0 || Index >= ArticleKeys::Keys) return;
    SetInput(m_keys.key(Index).artikelNummer);
    m_sale->screen.FocusInput();
    cmdEnter_Click();
}

void Register::txtInput_GotFocus() {
    if (IsShortCutFocus && Input().trimmed() == u"S"_s) SetInput({});
    IsShortCutFocus = false;
}

void Register::txtInput_LostFocus() {
    if (!IsShortCutFocus) m_sale->screen.FocusInput();
}

void Register::cmdGruppe_GotFocus() {
    if (Input().trimmed() == u"S"_s) SetInput({});
}

void Register::ToggleShortCutFocus() {
    if (IsShortCutFocus) {
        m_sale->screen.FocusInput();
    } else {
        IsShortCutFocus = true;
        m_sale->screen.FocusGruppe();
    }
}

} // namespace till
