#include "frmKasseGutschein.h"

#include "ui_frmKasseGutschein.h"

#include <register/GutscheinDialog.h>
#include <session/gAngaben.h>
#include <ui/Theme.h>

#include <map>

namespace rules = till::GutscheinDialog;

frmKasseGutschein::frmKasseGutschein(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseGutschein>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtName);
    const int edge = Theme::Current().keyHeight;
    m_ui->pad->setKeys(DigitPad::Decimal | DigitPad::Clear);
    m_ui->pad->setMinimumSize(edge * 4, edge * 4);
    m_ui->pad->setTarget(m_ui->txtBetrag);
    m_ui->txtName->setMinimumWidth(edge * 5);
    guard()([this] {
        m_ui->cboWarenGruppe->addItems(rules::WarenGruppen());
        m_ui->cboWarenGruppe->setEditText(gGutscheinAngabe.WarenGruppe);
        m_ui->txtName->setText(gGutscheinAngabe.Name);
        m_ui->cboSteuerSatz->addItems(rules::SteuerSaetze());
        m_ui->cboSteuerSatz->setEditText(rules::SteuerSatz());
    });
}

frmKasseGutschein::~frmKasseGutschein() = default;

void frmKasseGutschein::ok() {
    using rules::Field;
    const Field faulty = rules::Confirm(m_ui->cboWarenGruppe->currentText(), m_ui->txtName->text(),
                                        m_ui->txtBetrag->text(), m_ui->cboSteuerSatz->currentText());
    if (faulty == Field::None) return accept();
    const std::map<Field, QLineEdit*> boxes{{Field::WarenGruppe, m_ui->cboWarenGruppe->lineEdit()},
                                            {Field::Name, m_ui->txtName},
                                            {Field::Betrag, m_ui->txtBetrag},
                                            {Field::SteuerSatz, m_ui->cboSteuerSatz->lineEdit()}};
    boxes.at(faulty)->setFocus();
    boxes.at(faulty)->selectAll();
}

bool frmKasseGutschein::cancelled() {
    rules::Cancel();
    return true;
}
