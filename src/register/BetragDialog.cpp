#include "EnteredAmount.h"
#include "Limits.h"

#include <register/BetragDialog.h>
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

QString BetragDialog::Title() const {
    return gKassenBuchung.IsEinlage ? u"Einlage in die Kasse..."_s : u"Entnahme aus der Kasse..."_s;
}

QString BetragDialog::Description() const {
    return gKassenBuchung.IsEinlage ? u"Wie viel Geld legen Sie in die Kasse?"_s
                                    : u"Wie viel Geld nehmen Sie aus der Kasse?"_s;
}

BetragAngabe& BetragDialog::record() const { return gKassenBuchung; }

QStringList BetragDialog::WarenGruppen() const {
    return sql::firstTexts(
        *gDB, u"SELECT WarenGruppe FROM Artikel GROUP BY WarenGruppe ORDER BY WarenGruppe ASC;"_s);
}

QStringList BetragDialog::SteuerSaetze() const {
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
    if (warenGruppe.trimmed().isEmpty())
        return refuse(Field::WarenGruppe, u"Sie müssen eine Warengruppe für diesen Vorgang eingeben."_s);
    if (name.trimmed().isEmpty())
        return refuse(Field::Name, u"Sie müssen eine Bezeichnung für diesen Vorgang eingeben."_s);
    const auto amount = ReadEntered(IsNumeric(betrag) ? betrag : u"0"_s);
    if (!amount) return Field::Betrag;
    if (*amount <= Currency{}) return refuse(Field::Betrag, u"Bitte geben Sie einen Betrag > Null ein."_s);
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
