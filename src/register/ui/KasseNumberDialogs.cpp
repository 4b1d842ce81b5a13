#include "KasseNumberDialogs.h"

#include <session/gArtikel.h>

using namespace Qt::StringLiterals;

namespace {

DigitPad::Keys padKeys(const till::NumberDialog& rules) {
    DigitPad::Keys keys;
    if (rules.HasDecimal()) keys |= DigitPad::Decimal;
    if (rules.HasMinus()) keys |= DigitPad::Minus;
    return keys;
}

} // namespace

KasseNumberDialog::KasseNumberDialog(till::NumberDialog rules, const QString& title,
                                     const QString& description, QWidget* parent)
    : NumberDialog(title, description, padKeys(rules), parent)
    , m_rules(rules) {
    // Which characters may be typed is not the same as which keys are shown, so the rules decide alone.
    input()->setFilter([this](QChar typed) { return m_rules.AcceptKey(typed); });
    setText(m_rules.OpensWith());
}

void KasseNumberDialog::ok() {
    if (m_rules.Confirm(text()))
        accept();
    else
        setText(text());
}

bool KasseNumberDialog::cancelled() {
    m_rules.Cancel();
    return true;
}

frmKasseRabatt::frmKasseRabatt(QWidget* parent)
    : KasseNumberDialog(till::NumberDialog(till::NumberDialog::Rabatt), u"Rabatt..."_s,
                        u"Bitte geben Sie den Rabatt in Prozent ein."_s, parent) {
    setObjectName(u"frmKasseRabatt"_s);
}

frmKassePreisAngabe::frmKassePreisAngabe(QWidget* parent)
    : KasseNumberDialog(till::NumberDialog(till::NumberDialog::PreisAngabe),
                        u"Preisangabe: "_s + gArtikel.Name, u"Bitte geben Sie den Verkaufspreis ein."_s,
                        parent) {
    setObjectName(u"frmKassePreisAngabe"_s);
}

frmKasseFreierPreis::frmKasseFreierPreis(QWidget* parent)
    : KasseNumberDialog(till::NumberDialog(till::NumberDialog::FreierPreis), u"Freier Preis..."_s,
                        u"Bitte geben Sie den neuen Preis ein."_s, parent) {
    setObjectName(u"frmKasseFreierPreis"_s);
}
