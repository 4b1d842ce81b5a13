#include <register/Prices.h>
#include <register/TotalDialog.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gUser.h>
#include <session/gZahlung.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// What nobody hands over: more digits are an article's code, scanned while the dialog was open.
constexpr qint64 beyondAnyCash = 1'000'000;

Currency amountOf(const QString& text) { return IsNumeric(text) ? ReadMoney(text) : Currency{}; }

} // namespace

TotalDialog::TotalDialog()
    : m_summe(MoneyText(gZahlung.Betrag_Gesamt)) {
    Passend();
}

void TotalDialog::SetGegeben(const QString& text) {
    m_gegeben = text;
    m_back = Format(Value(amountOf(m_gegeben) - amountOf(m_summe)), u"####0.00");
}

QChar TotalDialog::AcceptKey(QChar key) {
    if (key == u'.') return u',';
    return (key >= u'0' && key <= u'9') || key == u',' || key == u'\b' ? key : QChar{};
}

bool TotalDialog::MayAddDecimal() const { return !m_gegeben.contains(u','); }

void TotalDialog::Clear() { SetGegeben(m_summe); }

void TotalDialog::Passend() {
    m_notes.clear();
    SetGegeben(MoneyText(gZahlung.Betrag_Gesamt < Currency{} ? Currency{} : gZahlung.Betrag_Gesamt));
}

void TotalDialog::AddNote(int euros) {
    const Currency so = m_gegeben == m_notes ? amountOf(m_notes) : Currency{};
    m_notes = MoneyText(so + Currency::fromInteger(euros));
    SetGegeben(m_notes);
}

bool TotalDialog::IsShort() const { return amountOf(m_back) < Currency{}; }

QString TotalDialog::BackCaption() const { return IsShort() ? u"Noch offen"_s : u"Zurück"_s; }

bool TotalDialog::MayCancel() { return gKassenUser.R_KassenAbschluss; }

bool TotalDialog::Bar() {
    if (IsShort()) {
        MsgBox(u"FEHLER: Der gegebene Betrag kann nicht kleiner sein als die Rechnungssumme."_s,
               MsgIcon::Critical);
        SetGegeben(MoneyText(gZahlung.Betrag_Gesamt));
        return false;
    }
    if (amountOf(m_gegeben) >= Currency::fromInteger(beyondAnyCash)) {
        MsgBox(u"Der gegebene Betrag ist ungültig."_s, MsgIcon::Critical);
        SetGegeben(MoneyText(gZahlung.Betrag_Gesamt));
        return false;
    }
    gZahlung.Betrag_Gegeben = amountOf(m_gegeben);
    gZahlung.Betrag_Zurueck =
        ReadMoney(Format(Value(gZahlung.Betrag_Gegeben - gZahlung.Betrag_Gesamt), u"###0.00"));
    gZahlung.ZahlArt = u"BAR"_s;
    gZahlung.KartenTyp.clear();
    gZahlung.Ergebnis = 1;
    return true;
}

// The rate stands in the statement as the till writes it. One with decimals has a comma there, which is no
// number in SQL: the statement fails before a line has changed, and nothing is booked. No reduced rate has
// decimals; a setting that has is told in this way instead of being booked.
bool TotalDialog::AHVerkauf() {
    // The rate goes in as it is shown. One with decimals carries a comma, with which the statement fails:
    // nothing is changed then, and nothing is paid.
    gDB->Execute(u"UPDATE Bestellung SET SteuerSatz="_s + CStr(Value(gHalberSteuerSatz)) +
                 u" WHERE Maschine="_s + sql::text(gMaschine) + u';');
    return Bar();
}

bool TotalDialog::Escape() {
    if (!MayCancel()) {
        MsgBox(u"Sie sind nicht berechtigt, diese Aktion abzubrechen."_s);
        return false;
    }
    gZahlung.Ergebnis = 0;
    return true;
}

} // namespace till
