#include "EnteredAmount.h"
#include "Limits.h"

#include <register/BetragDialog.h>
#include <register/NumberDialogs.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr qsizetype mostOfGroup = 50, mostOfName = 100;
constexpr double mostPercent = 100;

QString shownRate(double rate) { return Format(Value(rate), u"0.0"); }

} // namespace

struct BetragDialog::Texts {
    QString title, description, noGroup, noName, noAmount;
};

const BetragDialog::Texts& BetragDialog::texts() const {
    static const QString group = u"Sie müssen eine Warengruppe für diesen Vorgang eingeben."_s,
                         name = u"Sie müssen eine Bezeichnung für diesen Vorgang eingeben."_s,
                         amount = u"Bitte geben Sie einen Betrag > Null ein."_s;
    static const Texts einlage{u"Einlage in die Kasse..."_s, u"Wie viel Geld legen Sie in die Kasse?"_s,
                               group, name, amount},
        entnahme{u"Entnahme aus der Kasse..."_s, u"Wie viel Geld nehmen Sie aus der Kasse?"_s, group, name,
                 amount},
        gutschein{u"Neuer Gutschein..."_s, u"Bitte geben Sie Bezeichnung, Betrag und Steuersatz an."_s,
                  u"Sie müssen eine Warengruppe für diesen Gutschein eingeben."_s,
                  u"Sie müssen eine Bezeichnung für diesen Gutschein eingeben."_s,
                  u"Sie müssen ein Betrag größer 0,00 für den Gutschein eingeben."_s};
    if (m_kind == Gutschein) return gutschein;
    return gKassenBuchung.IsEinlage ? einlage : entnahme;
}

QString BetragDialog::Title() const { return texts().title; }
QString BetragDialog::Description() const { return texts().description; }

BetragAngabe& BetragDialog::record() const {
    if (m_kind == Gutschein) return gGutscheinAngabe;
    return gKassenBuchung;
}

QStringList BetragDialog::WarenGruppen() const {
    return sql::firstTexts(
        *gDB, u"SELECT WarenGruppe FROM Artikel GROUP BY WarenGruppe ORDER BY WarenGruppe ASC;"_s);
}

QStringList BetragDialog::SteuerSaetze() const {
    if (m_kind == Gutschein) return FreierArtikelDialog::SteuerSaetze();
    QStringList rates;
    const auto rs =
        gDB->OpenRecordset(u"SELECT SteuerSatz FROM Artikel GROUP BY SteuerSatz ORDER BY SteuerSatz ASC;"_s);
    for (; !rs->Eof(); rs->MoveNext())
        rates << shownRate(rs->Number(u"SteuerSatz"));
    return rates;
}

QString BetragDialog::SteuerSatz() const { return shownRate(record().SteuerSatz); }

QChar BetragDialog::AcceptKey(Field field, QChar key) {
    if (key == u'.') return u',';
    const bool digit = key >= u'0' && key <= u'9';
    const bool taken = digit || key == u',' || key == u'\b' || (key == u'-' && field == Field::Betrag);
    return taken ? key : QChar();
}

BetragDialog::Field BetragDialog::Confirm(const QString& warenGruppe, const QString& name,
                                          const QString& betrag, const QString& steuerSatz) const {
    const auto refuse = [](Field field, const QString& text) {
        MsgBox(text);
        return field;
    };
    if (warenGruppe.trimmed().isEmpty()) return refuse(Field::WarenGruppe, texts().noGroup);
    if (name.trimmed().isEmpty()) return refuse(Field::Name, texts().noName);
    const auto amount = ReadEntered(IsNumeric(betrag) ? betrag : u"0"_s);
    if (!amount) return Field::Betrag;
    if (*amount <= Currency{}) return refuse(Field::Betrag, texts().noAmount);
    if (!limits::IsPriceMeant(*amount)) return Field::Betrag;
    const double rate = IsNumeric(steuerSatz) ? CDbl(Value(steuerSatz)) : -1;
    if (rate < 0 || rate > mostPercent)
        return refuse(Field::SteuerSatz, u"Bitte geben Sie einen Steuersatz von 0 bis 100 Prozent ein."_s);

    BetragAngabe& filled = record();
    filled.WarenGruppe = warenGruppe.left(mostOfGroup);
    filled.Name = name.trimmed().left(mostOfName);
    filled.Betrag = *amount;
    filled.SteuerSatz = rate;
    filled.Ergebnis = 1;
    return Field::None;
}

void BetragDialog::Cancel() const { record().Ergebnis = 0; }

} // namespace till
