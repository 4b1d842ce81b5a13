#include "frmKasseFreierArtikel.h"

#include "ui_frmKasseFreierArtikel.h"

#include <register/NumberDialogs.h>
#include <session/Handle.h>
#include <session/gAngaben.h>

#include <QKeyEvent>

namespace rules = till::FreierArtikelDialog;

frmKasseFreierArtikel::frmKasseFreierArtikel(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseFreierArtikel>()) {
    m_ui->setupUi(this);
    Handle("frmKasseFreierArtikel", [this] {
        m_ui->txtName->setText(gFreierArtikel.Name);
        m_ui->cboSteuerSatz->addItems(rules::SteuerSaetze());
        m_ui->cboSteuerSatz->setEditText(rules::SteuerSatz());
        m_ui->cboWarenGruppe->addItems(rules::WarenGruppen());
        m_ui->cboWarenGruppe->setEditText(gFreierArtikel.WarenGruppe);
    });
    connect(m_ui->cmdOK, &TouchKey::clicked, this, &frmKasseFreierArtikel::ok);
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &frmKasseFreierArtikel::reject);
}

frmKasseFreierArtikel::~frmKasseFreierArtikel() = default;

void frmKasseFreierArtikel::ok() {
    Handle("frmKasseFreierArtikel", [this] {
        if (rules::Confirm(m_ui->txtName->text(), m_ui->cboSteuerSatz->currentText(),
                           m_ui->cboWarenGruppe->currentText()))
            accept();
        else
            m_ui->txtName->setFocus();
    });
}

void frmKasseFreierArtikel::reject() {
    rules::Cancel();
    QDialog::reject();
}

void frmKasseFreierArtikel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_ui->cmdOK->click();
    else
        QDialog::keyPressEvent(event);
}

void frmKasseFreierArtikel::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    m_ui->txtName->setFocus();
    m_ui->txtName->selectAll();
}
