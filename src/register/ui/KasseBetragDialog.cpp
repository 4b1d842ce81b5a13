#include "KasseBetragDialog.h"

#include "ui_KasseBetragDialog.h"

#include <session/gAngaben.h>
#include <ui/Theme.h>

using namespace Qt::StringLiterals;

using Field = till::BetragDialog::Field;

KasseBetragDialog::KasseBetragDialog(till::BetragDialog rules, QWidget* parent)
    : FormDialog(parent)
    , m_rules(rules)
    , m_ui(std::make_unique<Ui::KasseBetragDialog>()) {
    m_ui->setupUi(this);
    setUpForm(m_rules.record().Name.isEmpty() ? m_ui->txtName : static_cast<QWidget*>(m_ui->txtBetrag));
    const int edge = Theme::Current().keyHeight;
    m_ui->pad->setKeys(DigitPad::Decimal | DigitPad::Clear);
    m_ui->pad->setMinimumSize(edge * 4, edge * 4);
    m_ui->pad->setTarget(m_ui->txtBetrag);
    m_ui->txtName->setMinimumWidth(edge * 5);
    m_ui->txtBetrag->setFilter(
        [](QChar typed) { return till::BetragDialog::AcceptKey(Field::Betrag, typed); });
    auto* rate = new NumberEdit(this);
    rate->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    rate->setFrame(false);
    rate->setStyleSheet(u"QLineEdit { padding: 0px; border: none; font: inherit; }"_s);
    rate->setFilter([](QChar typed) { return till::BetragDialog::AcceptKey(Field::SteuerSatz, typed); });
    m_ui->cboSteuerSatz->setLineEdit(rate);
    guard()([this] {
        const BetragAngabe& record = m_rules.record();
        setWindowTitle(m_rules.Title());
        m_ui->wizPane->setHeaderTitle(m_rules.Title());
        m_ui->wizPane->setHeaderDescription(m_rules.Description());
        m_ui->cboWarenGruppe->addItems(m_rules.WarenGruppen());
        m_ui->cboWarenGruppe->setEditText(record.WarenGruppe);
        m_ui->txtName->setText(record.Name);
        m_ui->cboSteuerSatz->addItems(m_rules.SteuerSaetze());
        m_ui->cboSteuerSatz->setEditText(m_rules.SteuerSatz());
    });
}

KasseBetragDialog::~KasseBetragDialog() = default;

QLineEdit* KasseBetragDialog::box(Field field) const {
    switch (field) {
    case Field::WarenGruppe:
        return m_ui->cboWarenGruppe->lineEdit();
    case Field::Name:
        return m_ui->txtName;
    case Field::SteuerSatz:
        return m_ui->cboSteuerSatz->lineEdit();
    case Field::Betrag:
    case Field::None:
        break;
    }
    return m_ui->txtBetrag;
}

void KasseBetragDialog::ok() {
    const Field faulty = m_rules.Confirm(m_ui->cboWarenGruppe->currentText(), m_ui->txtName->text(),
                                         m_ui->txtBetrag->text(), m_ui->cboSteuerSatz->currentText());
    if (faulty == Field::None) return accept();
    box(faulty)->setFocus();
    box(faulty)->selectAll();
}

bool KasseBetragDialog::cancelled() {
    m_rules.Cancel();
    return true;
}

frmKasseEinlage::frmKasseEinlage(QWidget* parent)
    : KasseBetragDialog(till::BetragDialog(till::BetragDialog::KassenBuchung), parent) {
    setObjectName(u"frmKasseEinlage"_s);
}

frmKasseGutschein::frmKasseGutschein(QWidget* parent)
    : KasseBetragDialog(till::BetragDialog(till::BetragDialog::Gutschein), parent) {
    setObjectName(u"frmKasseGutschein"_s);
}
