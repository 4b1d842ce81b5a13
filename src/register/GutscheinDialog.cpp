#include "Limits.h"

#include <register/GutscheinDialog.h>
#include <register/NumberDialogs.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/gAngaben.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>

using namespace Qt::StringLiterals;

namespace till::GutscheinDialog {

QStringList WarenGruppen() {
    return sql::firstTexts(
        *gDB, u"SELECT WarenGruppe FROM Artikel GROUP BY WarenGruppe ORDER BY WarenGruppe ASC;"_s);
}

QStringList SteuerSaetze() { return FreierArtikelDialog::SteuerSaetze(); }

QString SteuerSatz() { return Format(Value(gGutscheinAngabe.SteuerSatz), u"0.0"); }

Field Confirm(const QString& warenGruppe, const QString& name, const QString& betrag,
              const QString& steuerSatz) {
    constexpr qsizetype mostOfGroup = 50, mostOfName = 100;
    const auto failed = [](Field field, const QString& text) {
        MsgBox(text);
        return field;
    };
    if (warenGruppe.trimmed().isEmpty())
        return failed(Field::WarenGruppe, u"Sie müssen eine Warengruppe für diesen Gutschein eingeben."_s);
    if (name.trimmed().isEmpty())
        return failed(Field::Name, u"Sie müssen eine Bezeichnung für diesen Gutschein eingeben."_s);
    Currency amount;
    try {
        if (IsNumeric(betrag)) amount = CCur(Value(betrag));
    } catch (const RuntimeError& error) {
        if (error.Number != 6) throw;
        MsgBox(u"Die Zahl %1 ist zu groß."_s.arg(betrag), MsgIcon::Exclamation);
        return Field::Betrag;
    }
    if (amount <= Currency{})
        return failed(Field::Betrag, u"Sie müssen ein Betrag größer 0,00 für den Gutschein eingeben."_s);
    if (!limits::IsPriceMeant(amount)) return Field::Betrag;
    constexpr double mostPercent = 100;
    const double rate = IsNumeric(steuerSatz) ? Val(QString(steuerSatz.trimmed()).replace(u',', u'.')) : -1;
    if (rate < 0 || rate > mostPercent)
        return failed(Field::SteuerSatz,
                      u"Sie müssen einen Steuersatz zwischen 0 und 100 Prozent eingeben."_s);

    gGutscheinAngabe.WarenGruppe = warenGruppe.left(mostOfGroup);
    gGutscheinAngabe.Name = name.trimmed().left(mostOfName);
    gGutscheinAngabe.Betrag = amount;
    gGutscheinAngabe.SteuerSatz = rate;
    gGutscheinAngabe.Ergebnis = 1;
    return Field::None;
}

void Cancel() { gGutscheinAngabe.Ergebnis = 0; }

} // namespace till::GutscheinDialog
