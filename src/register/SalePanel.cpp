#include <register/Prices.h>
#include <register/SalePanel.h>
#include <session/Globals.h>

using namespace Qt::StringLiterals;

namespace till {

bool LastSale::byCard() const { return ZahlArt == u"KARTE"_s; }

QString LastSale::title() const { return u"letzter Verkauf "_s + Zeit.toString(u"hh:mm"_s); }

QString LastSale::number() const { return u"Beleg %1"_s.arg(Rechnung); }

namespace {

/// What the panel calls a booking that is no cash sale; "" for one.
QString nameOf(const QString& ZahlArt) {
    static const std::pair<QString, QString> names[] = {{u"KARTE"_s, u"Karte"_s},
                                                        {u"EINLAGE"_s, u"Einlage"_s},
                                                        {u"ENTNAHME"_s, u"Auszahlung"_s},
                                                        {u"RECHNUNG_OFFEN"_s, u"Auf Rechnung"_s}};
    for (const auto& [kind, name] : names)
        if (kind == ZahlArt) return name;
    return {};
}

} // namespace

QString LastSale::caption() const {
    const QString name = nameOf(ZahlArt);
    if (!name.isEmpty()) return name;
    return Gesamt < Currency{} ? u"Auszahlung"_s : u"Rückgeld"_s;
}

QString LastSale::amount() const {
    return MoneyText(nameOf(ZahlArt).isEmpty() ? Zurueck : Gesamt) + u' ' + gWaehrungsSymbol;
}

QString LastSale::detail() const {
    if (!nameOf(ZahlArt).isEmpty()) return KartenTyp;
    return u"bar %1 von %2"_s.arg(MoneyText(Gegeben), MoneyText(Gesamt));
}

QString ParkedSale::text(const QDateTime& at) const {
    const QString when = at.isValid() ? at.toString(u"'um 'hh:mm"_s) : Tag.toString(u"'am 'dd.MM.yyyy"_s);
    QString text = u"Geparkt "_s + when + u": "_s;
    if (!Kunde.isEmpty()) text += Kunde + u", "_s;
    text += (Zeilen == 1 ? u"1 Zeile"_s : u"%1 Zeilen"_s.arg(Zeilen)) + u", "_s + MoneyText(Gesamt) + u' ' +
            gWaehrungsSymbol;
    if (!Kassierer.isEmpty()) text += u" ("_s + Kassierer + u')';
    return text;
}

void SalePanel::ShowParked(const ParkedSale& sale) {
    m_parked = sale.text(m_parkedAt);
    emit Changed();
}

void SalePanel::DropParked() {
    m_parkedAt = {};
    if (m_parked.isEmpty()) return;
    m_parked.clear();
    emit Changed();
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
