#include "KasseNumberDialogs.h"

#include <session/gArtikel.h>
#include <ui/Wizard.h>

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

DigitPad::Keys padKeys(const till::NumberDialog& rules) {
    DigitPad::Keys keys;
    if (rules.HasDecimal()) keys |= DigitPad::Decimal;
    if (rules.HasMinus()) keys |= DigitPad::Minus;
    return keys;
}

} // namespace

KasseNumberDialog::KasseNumberDialog(till::NumberDialog rules, const QString& name, QWidget* parent)
    : NumberDialog(rules.Title(), rules.Description(), padKeys(rules), parent)
    , m_rules(rules) {
    setObjectName(name);
    // Which characters may be typed is not the same as which keys are shown, so the rules decide alone.
    input()->setFilter([this](QChar typed) { return m_rules.AcceptKey(typed); });
    setText(m_rules.OpensWith());
}

void KasseNumberDialog::ok() {
    QString entered = text();
    if (m_rules.Confirm(entered))
        accept();
    else
        setText(entered);
}

bool KasseNumberDialog::cancelled() {
    m_rules.Cancel();
    return true;
}

using Rules = till::NumberDialog;

frmKasseRabatt::frmKasseRabatt(QWidget* parent)
    : KasseNumberDialog(Rules(Rules::Rabatt), u"frmKasseRabatt"_s, parent) {}

frmKassePreisAngabe::frmKassePreisAngabe(QWidget* parent)
    : KasseNumberDialog(Rules(Rules::PreisAngabe), u"frmKassePreisAngabe"_s, parent) {}

frmKasseFreierPreis::frmKasseFreierPreis(QWidget* parent)
    : KasseNumberDialog(Rules(Rules::FreierPreis), u"frmKasseFreierPreis"_s, parent) {}

frmKasseGutschrift::frmKasseGutschrift(QWidget* parent)
    : KasseNumberDialog(Rules(Rules::Gutschrift), u"frmKasseGutschrift"_s, parent) {}

frmKasseVolumenAngabe::frmKasseVolumenAngabe(QWidget* parent)
    : KasseNumberDialog(Rules(Rules::Volumen), u"frmKasseVolumenAngabe"_s, parent) {
    pane()->setHeaderDescription(gArtikel.Nummer);
    setHelp(Rules(Rules::Volumen).Description());
    auto* unit = new QLabel(gArtikel.Einheit, this);
    unit->setObjectName(u"lblEinheit"_s);
    unit->setTextFormat(Qt::PlainText);
    unit->setAlignment(Qt::AlignRight);
    body()->insertWidget(body()->indexOf(input()) + 1, unit);
}
