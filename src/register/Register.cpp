#include "Cancellation.h"
#include "CustomerDisplay.h"
#include "Entry.h"
#include "Payment.h"
#include "PriceChanges.h"

#include <devices/CashDrawer.h>
#include <register/Register.h>
#include <register/gMaschine.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZVT.h>
#include <store/Database.h>

using namespace Qt::StringLiterals;

namespace till {

Register::Register(RegisterScreen& screen, QObject* parent)
    : QObject(parent)
    , m_screen(screen)
    , m_display(std::make_unique<CustomerDisplay>())
    , m_basket(screen, *m_display)
    , m_entry(std::make_unique<Entry>(*this)) {}

Register::~Register() = default;

bool Register::Trap(const std::function<void()>& body) {
    const bool ok = Handle("frmKasse", body, [this] {
        m_basket.CancelEdit();
        if (m_rsArtikel) m_rsArtikel->CancelUpdate();
    });
    if (!ok) Handle("frmKasse", [this] { m_basket.RefreshGesamt(); });
    return ok;
}

Recordset& Register::rsArtikel() {
    if (!m_rsArtikel) throw RuntimeError(91, u"Die Artikel sind nicht geladen"_s, u"frmKasse"_s);
    return *m_rsArtikel;
}

void Register::Load() {
    gPrintMode = gDruckerDefault;
    // Each step is a handler of its own: whatever fails, the open sale comes back to the screen.
    Trap([this] { m_karten = ArticleKeys::ReadKarten(); });
    gMaschine = gSystem->ComputerName();
    Trap([this] {
        m_rsArtikel = gDB->OpenRecordset(u"Artikel"_s);
        m_basket.Open();
    });
    Trap([this] { m_keys.LoadGroups(); });
    cmdGruppe_Click(0);
    ResetKunde();
    emit UserChanged(UserDisplay());
    LoadBestellungen();
}

Register::Unload Register::QueryUnload() {
    Unload answer = Unload::Close;
    Trap([this] { ClearPaid(); });
    Trap([&] { answer = Cancellation(*this).QueryUnload(); });
    return answer;
}

const QString& Register::Input() const { return m_entry->input(); }
const QString& Register::Mal() const { return m_entry->mal(); }

void Register::SetInput(const QString& text) {
    Trap([&] { m_entry->SetInput(text); });
}
void Register::SetMal(const QString& text) { m_entry->SetMal(text); }

void Register::cmdNumber_Click(int Index) {
    if (Index >= 0 && Index <= 9) SetInput(Input() + QString::number(Index));
}
void Register::cmdDecimal_Click() { SetInput(Input() + u','); }
void Register::cmdMal_Click() { SetInput(Input() + u'*'); }
void Register::cmdMinus_Click() { SetInput(Input() + u'-'); }

void Register::cmdClear_Click() {
    Trap([this] { m_entry->Clear(); });
}
void Register::cmdPlus_Click() {
    Trap([this] { m_entry->AddQuantity(1); });
}
void Register::cmdEnter_Click() {
    Trap([this] {
        ClearPaid();
        m_entry->Decide();
    });
}
void Register::BookVerbundArtikel(const QString& ArtikelNummer, double Menge) {
    Trap([&] { m_entry->ExpandLinks(ArtikelNummer, Menge); });
}

void Register::MoveSelection(int rows) {
    const int row = m_basket.selected() + rows;
    if (!m_basket.isEmpty() && row >= 0 && row < m_basket.rowCount()) ItemClick(row);
}

void Register::ItemClick(int row) {
    Trap([&] { m_basket.ItemClick(row); });
}

bool Register::AddArtikelToBestellung() {
    return Trap([this] {
        m_entry->Clear();
        m_basket.AddArtikelToBestellung();
    });
}

void Register::LoadBestellungen() {
    Trap([this] { m_basket.LoadBestellungen(); });
}
void Register::RefreshGesamt() {
    Trap([this] { m_basket.RefreshGesamt(); });
}
void Register::cmdStorno_Click() {
    Trap([this] {
        ClearPaid();
        Cancellation(*this).Storno();
    });
}
void Register::cmdRabatt_Click() {
    Trap([this] { PriceChanges(*this).Rabatt(); });
}
void Register::cmdArtikelPreis_Click() {
    Trap([this] { PriceChanges(*this).ArtikelPreis(); });
}
void Register::cmdTotal_Click() {
    Trap([this] { Payment(*this).Total(); });
}
void Register::cmdKarte_Click() {
    if (gZVTEnabled) return PayByKarte({});
    Trap([this] { m_screen.ShowKartenMenu(); });
}
void Register::PayByKarte(const QString& KartenName) {
    Trap([&] { Payment(*this).ByKarte(KartenName); });
}

void Register::OpenKassenLade() { ::OpenKassenLade(DrawerOwner::Kasse); }
void Register::OpenLade_Click() {
    if (gKFKassenlade) OpenKassenLade();
}

void Register::TerminalFunction(TerminalAct act) {
    Trap([&] {
        m_screen.MovePointerAway();
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

void Register::cmdKunde_Click() {
    Trap([this] {
        if (!gKFKunden) return;
        if (!gKassenUser.R_Kunden) {
            MsgBox(u"Sie besitzen nicht die nötigen Rechte um diese Aktion auszuführen."_s);
            return;
        }
        gKunde.Ergebnis = 0;
        m_screen.ShowKundenSuche();
        m_screen.MovePointerAway();
        if (gKunde.Ergebnis == 0) return;
        gKunde.Ergebnis = 0;
        RebuildTitle(true);
        m_basket.LoadBestellungen();
    });
}

void Register::ChangeUser() {
    Trap([this] {
        if (!gKFBenutzerWechsel) return;
        struct Forced {
            Forced() { gLoginPflicht = true; }
            ~Forced() { gLoginPflicht = false; }
        };
        {
            const Forced forced;
            m_screen.ShowDesktopLogin();
        }
        emit UserChanged(UserDisplay());
    });
}

QString Register::UserDisplay() const { return gKassenUser.Vorname + u' ' + gKassenUser.Name; }

// A booked sale must not be booked again because the store was away when its lines should go.
void Register::ClearPaid() {
    if (!m_paid) return;
    m_basket.DeleteRows(m_paid->lastID);
    m_paid.reset();
    ResetKunde();
    m_basket.LoadBestellungen();
}

void Register::ResetKunde() {
    gKunde = KundeRecord::Standard();
    RebuildTitle(false);
}

void Register::RebuildTitle(bool doubleAmpersand) {
    QString name = gKunde.Name_1;
    if (doubleAmpersand) name.replace(u"&"_s, u"&&"_s);
    m_title = gKunde.Anrede + u' ' + name + u"  -  Rabatt: "_s + QString::number(gKunde.Rabatt) + u"/100"_s;
    emit TitleChanged(m_title);
}

void Register::cmdGruppe_Click(int Index) {
    Trap([&] { m_keys.PressGroup(Index); });
    emit KeysChanged();
}

void Register::cmdArtikel_Click(int Index) {
    if (Index < 0 || Index >= ArticleKeys::Keys) return;
    SetInput(m_keys.key(Index).artikelNummer);
    m_screen.FocusInput();
    cmdEnter_Click();
}

void Register::txtInput_GotFocus() {
    if (IsShortCutFocus && Input().trimmed() == u"S"_s) SetInput({});
    IsShortCutFocus = false;
}

void Register::txtInput_LostFocus() {
    if (!IsShortCutFocus) m_screen.FocusInput();
}

void Register::cmdGruppe_GotFocus() {
    if (Input().trimmed() == u"S"_s) SetInput({});
}

void Register::ToggleShortCutFocus() {
    if (IsShortCutFocus) {
        m_screen.FocusInput();
    } else {
        IsShortCutFocus = true;
        m_screen.FocusGruppe();
    }
}

} // namespace till
