#include <register/Prices.h>
#include <register/SalePanel.h>
#include <session/Globals.h>

using namespace Qt::StringLiterals;

namespace till {

bool LastSale::byCard() const { return ZahlArt == u"KARTE"_s; }

bool LastSale::isPayout() const { return ZahlArt == u"ENTNAHME"_s; }

QString LastSale::title() const { return u"letzter Verkauf "_s + Zeit.toString(u"hh:mm"_s); }

QString LastSale::number() const { return u"Beleg %1"_s.arg(Rechnung); }

QString LastSale::caption() const {
    if (byCard()) return u"Karte"_s;
    if (isPayout()) return u"Auszahlung"_s;
    return Gesamt < Currency{} ? u"Auszahlung"_s : u"Rückgeld"_s;
}

QString LastSale::amount() const {
    return MoneyText(byCard() || isPayout() ? Gesamt : Zurueck) + u' ' + gWaehrungsSymbol;
}

QString LastSale::detail() const {
    if (byCard()) return KartenTyp;
    if (isPayout()) return {};
    return u"bar %1 von %2"_s.arg(MoneyText(Gegeben), MoneyText(Gesamt));
}

void SalePanel::TellUnknown(const QString& code) {
    m_unknown = m_unknown.isEmpty() ? u"Unbekannt: "_s + code : m_unknown + u", "_s + code;
    emit Changed();
}

void SalePanel::TellSold(const LastSale& sale) {
    m_last = sale;
    m_showsChange = true;
    emit Changed();
}

void SalePanel::EntryBegan() {
    if (m_unknown.isEmpty() && !m_showsChange) return;
    m_unknown.clear();
    m_showsChange = false;
    emit Changed();
}

void SalePanel::DropUnknown() {
    if (m_unknown.isEmpty()) return;
    m_unknown.clear();
    emit Changed();
}

} // namespace till
