#include "KasseNumberDialogs.h"

#include <session/gArtikel.h>

#include <QKeyEvent>

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
    input()->setDecimal(true);
    input()->installEventFilter(this);
    setText(m_rules.OpensWith());
}

void KasseNumberDialog::enter() {
    m_rules.Confirm(text());
    accept();
}

void KasseNumberDialog::cancelled() { m_rules.Cancel(); }

bool KasseNumberDialog::eventFilter(QObject* receiver, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const QString typed = static_cast<QKeyEvent*>(event)->text();
        if (!typed.isEmpty() && typed.front().isPrint() && m_rules.AcceptKey(typed.front()).isNull())
            return true;
    }
    return NumberDialog::eventFilter(receiver, event);
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
