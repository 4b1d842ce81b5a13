#include "frmKasseFreierArtikel.h"

#include "ui_frmKasseFreierArtikel.h"

#include <register/NumberDialogs.h>
#include <session/gAngaben.h>

namespace rules = till::FreierArtikelDialog;

frmKasseFreierArtikel::frmKasseFreierArtikel(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseFreierArtikel>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtName);
    guard()([this] {
        m_ui->txtName->setText(gFreierArtikel.Name);
        m_ui->cboSteuerSatz->addItems(rules::SteuerSaetze());
        m_ui->cboSteuerSatz->setEditText(rules::SteuerSatz());
        m_ui->cboWarenGruppe->addItems(rules::WarenGruppen());
        m_ui->cboWarenGruppe->setEditText(gFreierArtikel.WarenGruppe);
    });
}

frmKasseFreierArtikel::~frmKasseFreierArtikel() = default;

void frmKasseFreierArtikel::ok() {
    if (rules::Confirm(m_ui->txtName->text(), m_ui->cboSteuerSatz->currentText(),
                       m_ui->cboWarenGruppe->currentText()))
        accept();
    else
        m_ui->txtName->setFocus();
}

bool frmKasseFreierArtikel::cancelled() {
    rules::Cancel();
    return true;
}
